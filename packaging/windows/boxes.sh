#!/usr/bin/env bash
# Works the windows of the installer and of the uninstaller under Wine, on the screen that DISPLAY names: boxes.sh SETUP
# What they say is compared with boxes.txt; their pictures are in the folder "boxes". check.sh calls it, with Wine's
# settings.
set -euo pipefail
cd "$(dirname "$0")/../.."
source packaging/windows/folder.sh
trial=$work/boxes
rm -rf "$trial"
mkdir -p "$trial"
"$compiler-gcc-posix" -O2 -municode packaging/windows/boxes.c -o "$trial/boxes.exe"
version=${1##*/orlo-} version=${version%-setup.exe}
entry='HKCU\Software\Microsoft\Windows\CurrentVersion\Uninstall\ORLO'
taken=0

press() { "$wine" "$trial/boxes.exe" "$1" press; }
says() { # says WHAT BUTTON: the window with that button says what boxes.txt has
    printf '= %s\n' "$1" >>"$trial/said"
    "$wine" "$trial/boxes.exe" "$2" >>"$trial/said"
    import -window root "$trial/$((taken += 1)) $1.png"
}
step() { # step WHAT BUTTON...: so it does, and then they are pressed
    says "$1" "$2"
    shift
    local button
    for button; do press "$button"; done
}
starts() { # as long as the program runs, with a window
    "$wine" "$app/orlo.exe" 2>/dev/null & program=$!
    for _ in {1..300}; do ! xwininfo -root -tree | grep -q '("orlo.exe"' || return 0; sleep 0.2; done
    return 1
}
gone() { # the uninstaller
    for _ in {1..300}; do xwininfo -root -tree | grep -q '" *Verrano (ORLO) Uninstall' || return 0; sleep 0.2; done
    return 1
}
ends() { kill $program; wait $program || :; }
ended() { # ended STATUS: of the installer
    local status=0
    wait $setup || status=$?
    [ $status = "$1" ] || { echo "The installer ended with $status, not $1." >&2; exit 1; }
}

# Nothing of a run that was stopped.
"$wine" reg delete "$entry" /f >/dev/null 2>&1 || :
rm -rf "$WINEPREFIX"/drive_c/users/*/AppData/Local/Programs/ORLO

"$wine" "$1" & setup=$!
step "install" '&Install'
step "installed" 'Start ORLO' '&Finish'
ended 0
app=$(echo "$WINEPREFIX"/drive_c/users/*/AppData/Local/Programs/ORLO)
cp "$app/sample-pack/Quorrel11_Backup" "$app/Quorrel11.mdb"
before=$(sha256sum "$app/Quorrel11.mdb")

starts
"$wine" "$1" & setup=$!
press '&Install'
step "update while it runs" '&Retry' 'Cancel'
ended 2
ends

"$wine" reg add "$entry" /v DisplayVersion /d 99.0.0 /f >/dev/null
"$wine" "$1" & setup=$!
step "an older version" '&No'
ended 2

mv "$app/.package/list.ini" "$trial"
"$wine" "$app/uninstall.exe" # starts itself once more, from elsewhere, and ends
press '&Uninstall'
step "remove without the list" 'OK'
gone
mv "$trial/list.ini" "$app/.package"

starts
"$wine" "$app/uninstall.exe"
step "remove" '&Uninstall'
says "remove while it runs" '&Retry'
ends
press '&Retry'
step "removed" 'OK'
step "the end" '&Close'
gone
[ "$(sha256sum "$app"/*)" = "$before" ]
rm -r "$app"

user=$(basename "${app%/AppData/*}")
tr -d '\r' <"$trial/said" |
    sed "s/$version/VERSION/; s/\\\\$user\\\\/\\\\USER\\\\/; s/^\(Space [a-z]*:\) [0-9.]* [MG]B$/\1 SIZE/; s/ $//" |
    diff -u packaging/windows/boxes.txt -
echo "The windows of the installer and of the uninstaller say what they should; their pictures are in $trial."
