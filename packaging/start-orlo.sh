#!/bin/sh
# Starts ORLO from this folder, with the letters that lie in it beside the system's, and with its own plugins only.
here=$(dirname "$(readlink -f "$0")")
export FONTCONFIG_FILE="$here/fonts/fonts.conf"
cd "$here" || exit 1 # where the program's lists of folders begin
unset QT_PLUGIN_PATH QT_QPA_PLATFORM_PLUGIN_PATH
exec "$here/orlo" "$@"
