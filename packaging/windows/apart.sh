#!/usr/bin/env bash
# Runs a program of the build in a Windows of its own, a copy of check.sh's: apart.sh PROGRAM ARGUMENT...   ctest runs
# each class of the tests so. It would wait until nobody has the output open any more, and Wine's services and the
# helpers of a program that was killed have it for as long as any program runs; so the output goes to a file first, and
# what is left in that Windows ends with the class.
set -euo pipefail
source "$(dirname "$0")/folder.sh"
most=1700 # seconds; ctest's own limit would leave the program running
own=$(mktemp -d "$WINEPREFIX-XXXXXX")
end() {
    WINEPREFIX=$own "${wine%/*}/wineserver64" -k || : # nothing is left
    rm -rf "$own"
}
trap end EXIT
trap 'exit 1' INT TERM
# The system's files are the same ones; what is written into is a copy.
cp -al "$WINEPREFIX/." "$own"
rm -r "$own"/*.reg "$own/drive_c/users"
cp "$WINEPREFIX"/*.reg "$own"
cp -a "$WINEPREFIX/drive_c/users" "$own/drive_c"
status=0
WINEPREFIX=$own timeout $most "$wine" "$@" >"$own/output" 2>&1 </dev/null || status=$?
cat "$own/output"
[ $status -ne 124 ] || echo "Stopped after $most seconds."
exit $status
