#!/usr/bin/env bash
# cmake/rooms.sh        checks that the rooms include each other only as cmake/rooms.txt allows, that no room includes one
#                       above it, and that docs/architecture.md shows the picture of that list
# cmake/rooms.sh draw   prints the picture, a mermaid graph, without the edges that others imply
set -euo pipefail
cd "$(dirname "$0")/.."

draw() {
    echo '```mermaid'
    echo 'graph TD'
    awk -F': *' '
        /^#/ || !NF { next }
        { room[++rooms] = $1; n = split($2, list, " "); for (i = 1; i <= n; i++) door[$1, list[i]] = 1 }
        END { # a room reaches only rooms above its line, so one pass in that order is enough
            for (a = 1; a <= rooms; a++) for (b = a - 1; b >= 1; b--) if ((room[a], room[b]) in door) {
                round = 0
                for (c = b + 1; c < a; c++) if ((room[a], room[c]) in door && reach[c, b]) round = 1
                if (!round) print "    " room[a] " --> " room[b]
                reach[a, b] = 1
                for (c = 1; c < b; c++) if (reach[b, c]) reach[a, c] = 1
            }
        }' cmake/rooms.txt
    echo '```'
}

if [ "${1:-}" = draw ]; then
    draw
    exit
fi

failed=0
includes=$(grep -rnoE '^#include "[a-z/]+/[A-Za-z_0-9-]+\.h"' src --include='*.h' --include='*.cpp')
printf '%s\n' "$includes" | awk '
    FNR == NR { if (!/^#/ && NF) { room = $1; sub(/:$/, "", room); known[room] = 1
                    for (i = 2; i <= NF; i++) { door[room, $i] = 1
                        if (!($i in known)) { print "a door leads up: " room " to " $i; failed = 1 } } }
                next }
    function roomOf(path) { sub(/\/[^\/]*$/, "", path); sub(/^platform\/(linux|windows)$/, "platform", path); return path }
    { split($0, part, ":"); file = part[1]; sub(/^src\//, "", file); split($0, quote, "\"")
      from = roomOf(file); to = roomOf(quote[2])
      if (file !~ /\// || from == to) next
      if (!(from in known)) { print "no room of the list: " $0; failed = 1 }
      else if (!((from, to) in door)) { print "no door: " $0; failed = 1 } }
    END { exit failed }' cmake/rooms.txt - || failed=1
if [ "$(draw)" != "$(sed -n '/^```mermaid$/,/^```$/p' docs/architecture.md | sed '/^```$/q')" ]; then
    echo "docs/architecture.md shows other rooms than cmake/rooms.txt: put the output of cmake/rooms.sh draw there"
    failed=1
fi
exit $failed
