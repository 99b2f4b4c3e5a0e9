#!/usr/bin/env bash
# What a build costs: the time that its steps took, added up by kind, from the build's own log.
# cmake/edge-times.sh [BUILD_FOLDER [HEADER]]. A step that was run again counts once, with its last time. With a header,
# such as store/engine/Value.h, only the objects that include it count: what a change of it compiles again.
# Those are times on the clock. Beside other work, and without a compiler cache, build with
# -DCMAKE_CXX_COMPILER_LAUNCHER='/usr/bin/time;-a;-o;cpu-times;-f;%U,%S,%C': then objects count by their CPU time.
set -euo pipefail
build=${1:-$(dirname "$0")/../build} header=${2:-}
{
    [ -z "$header" ] || ninja -C "$build" -t deps
    echo
    cat "$build/.ninja_log"
    [ ! -f "$build/cpu-times" ] || sed -nE 's/^([0-9.]+),([0-9.]+),.* -o ([^ ]+) .*/cpu\t\1\t\2\t\3/p' "$build/cpu-times"
} | awk -F'\t' -v header="$header" '
    function kind(name) {
        if (name ~ /_autogen/) return "moc and uic"
        if (name ~ /\.o$/) return name ~ /^src\// ? "objects of src" : name ~ /^tests\// ? "objects of tests" : "objects of tools and benchmarks"
        if (name ~ /\.a$/) return "libraries"
        if (name ~ /^tests\/(tests_|fuzz)|^fuzz\//) return "linking test programs"
        if (name ~ /^(app|tools|benchmarks)\/[^.]*$/) return "linking programs"
        return "other"
    }
    /: #deps / { object = $1; sub(/: #deps .*/, "", object) }
    /^ / && index($1 "\n", "/" header "\n") { includes[object] = 1 }
    NF == 5 && (header == "" || $4 in includes) { spent[$4] = $2 - $1; hash[$4] = $5 }
    $1 == "cpu" && $4 in spent { spent[$4] = ($2 + $3) * 1000 }
    END {
        for (name in spent) if (!((spent[name], hash[name]) in seen)) {
            seen[spent[name], hash[name]] = 1 # a step with several results
            time[kind(name)] += spent[name]; edges[kind(name)]++; total += spent[name]; steps++
        }
        for (k in time) printf "%8.1f s  %4d  %s\n", time[k] / 1000, edges[k], k | "sort -rn"
        close("sort -rn")
        printf "%8.1f s  %4d  in all\n", total / 1000, steps
    }'
[ -n "$header" ] || du -sh "$build" | awk '{ print $1 "  size of the build tree" }'
