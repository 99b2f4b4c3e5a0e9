#!/usr/bin/env bash
# Whether a program comes up and shows the frame: starts.sh COMMAND...   (on the screen that DISPLAY names)
set -euo pipefail
"$@" & program=$!
for _ in {1..300}; do
    ! xwininfo -root -tree | grep -q 'Verrano' || shown=yes
    [ -z "${shown:-}" ] || break
    kill -0 $program
    sleep 0.2
done
[ -n "${shown:-}" ]
kill $program
