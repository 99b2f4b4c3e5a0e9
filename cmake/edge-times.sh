#!/usr/bin/env bash
# What a build costs: the time that its steps took, added up by kind, from the build's own log.
# cmake/edge-times.sh [BUILD_FOLDER]. A step that was run again counts once, with its last time.
set -euo pipefail
build=${1:-$(dirname "$0")/../build}
awk -F'\t' '
    function kind(name) {
        if (name ~ /_autogen/) return "moc and uic"
        if (name ~ /\.o$/) return name ~ /^src\// ? "objects of src" : name ~ /^tests\// ? "objects of tests" : "objects of tools and benchmarks"
        if (name ~ /\.a$/) return "libraries"
        if (name ~ /^tests\/(tests_|fuzz)|^fuzz\//) return "linking test programs"
        if (name ~ /^(app|tools|benchmarks)\/[^.]*$/) return "linking programs"
        return "other"
    }
    NR > 1 && !/^#/ { spent[$4] = $2 - $1; hash[$4] = $5 }
    END {
        for (name in spent) if (!((spent[name], hash[name]) in seen)) {
            seen[spent[name], hash[name]] = 1 # a step with several results
            time[kind(name)] += spent[name]; edges[kind(name)]++; total += spent[name]; steps++
        }
        for (k in time) printf "%8.1f s  %4d  %s\n", time[k] / 1000, edges[k], k | "sort -rn"
        close("sort -rn")
        printf "%8.1f s  %4d  in all\n", total / 1000, steps
    }' "$build/.ninja_log"
du -sh "$build" | awk '{ print $1 "  size of the build tree" }'
