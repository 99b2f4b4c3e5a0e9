#!/usr/bin/env bash
# Runs a command on a screen of its own, with a window manager: onscreen.sh 1366x768 COMMAND...
# ORLO_SCREEN_DPI sets the screen's dots per inch, by which the window manager sizes its titles.
set -euo pipefail
# The accessibility bus keeps a block of its own until the process ends.
export LSAN_OPTIONS="suppressions=$(dirname "$0")/lsan.supp:print_suppressions=0"
here=$(mktemp -d)
trap 'kill $(jobs -p) 2>/dev/null || :; rm -rf "$here"' EXIT
present() { for _ in {1..300}; do [ ! -s "$1" ] || return 0; sleep 0.1; done; echo "no $1"; exit 1; }

Xvfb -displayfd 3 -screen 0 "${1}x24" ${ORLO_SCREEN_DPI:+-dpi "$ORLO_SCREEN_DPI"} -nolisten tcp 3>"$here/display" 2>"$here/complaints" &
present "$here/display"
export DISPLAY=:$(cat "$here/display") QT_QPA_PLATFORM=xcb QT_ACCESSIBILITY=0
openbox --startup "sh -c 'echo up >$here/manager'" >"$here/manages" 2>&1 &
present "$here/manager"
shift
"$@"
