#!/usr/bin/env bash
# Makes the installer for Windows of the archive's folder: installer.sh FOLDER VERSION ICON OUT
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
folder=$1 version=$2
lists=$(mktemp -d)
trap 'rm -rf "$lists"' EXIT
cd "$folder"

# Each file with its folder, as Windows writes names. A user may change reports, layouts, and the packs to try the program
# with; the records and the program itself are the script's own business.
changeable='.*(\.(rpt|inc|grd|csv|mdb)|_Backup)'
find . -type f -printf '%P\n' | LC_ALL=C sort >"$lists/all"
grep -vxE 'Quorrel11\.mdb|orlo\.exe' "$lists/all" | grep -xE "$changeable" >"$lists/changed"
grep -vxE "Quorrel11\.mdb|orlo\.exe|$changeable" "$lists/all" >"$lists/files"
find . -mindepth 1 -type d -printf '%P\n' | LC_ALL=C sort -r >"$lists/folders" # the inner ones first
windows() { sed 's|/|\\|g'; }
{
    { cat "$lists/folders"; sed -n 's|/[^/]*$||p' "$lists/changed" | sort -u | sed 's|^|.package/|'; } | windows |
        sed 's|.*|CreateDirectory "$INSTDIR\\&"|'
    while read -r file; do
        echo "File \"/oname=$(windows <<<"$file")\" \"\${FILES}/$file\""
    done <"$lists/files"
    windows <"$lists/changed" | sed 's|.*|!insertmacro Give "&"|'
} >"$lists/files.nsh"
{
    echo '[changed]'
    sed 's|$|=1|' "$lists/changed"
    echo '[files]'
    sed 's|$|=1|' "$lists/files"
    echo 'orlo.exe=1'
    echo '[folders]'
    sed 's|$|=1|' "$lists/folders"
} | windows | sed 's|$|\r|' >"$lists/list.ini"
makensis -V2 -WX "-DVERSION=$version" "-DFILES=$folder" "-DLISTS=$lists" "-DICON=$3" "-DOUT=$4" "$here/orlo.nsi"
