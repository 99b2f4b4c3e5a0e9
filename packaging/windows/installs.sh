#!/usr/bin/env bash
# Tries the installer under Wine, silently, on the screen that DISPLAY names: installs.sh FOLDER   (FOLDER: the
# archive's, of which a newer version is made, too). check.sh calls it, with Wine's settings.
set -euo pipefail
cd "$(dirname "$0")/../.."
source packaging/windows/folder.sh
folder=$1 version=${1##*/orlo-}
version=${version%-win64}
newer=${version%.*}.$((${version##*.} + 1))
entry='HKCU\Software\Microsoft\Windows\CurrentVersion\Uninstall\ORLO'
trial=$work/installs

setup() { # setup VERSION STATUS: it ends with that status
    local status=0
    "$wine" "$trial/orlo-$1-setup.exe" /S || status=$?
    [ $status = "$2" ] || { echo "The installer of $1 ended with $status, not $2." >&2; exit 1; }
}
value() { "$wine" reg query "$entry" /v "$1" 2>/dev/null | tr -d '\r' | sed -n "s/^ *$1 *REG_[A-Z]* *//p"; }
mine=(AwardListing.rpt Den_Titles.grd PurchaseList.rpt Quorrel11.mdb sample-pack/Quorrel11_Backup)
sum() { (cd "$app" && sha256sum "${mine[@]}"); }

# Nothing of a run that was stopped: the older installer would ask, and nobody would answer.
"$wine" reg delete "$entry" /f >/dev/null 2>&1 || :
rm -rf "$trial" "$WINEPREFIX"/drive_c/users/*/AppData/{Local/Programs/ORLO,Roaming/Microsoft/Windows/Start\ Menu/Programs/ORLO.lnk}
mkdir -p "$trial/newer"
cp "$work"/orlo-*-setup.exe "$trial"
cp -r "$folder/." "$trial/newer"
for report in PurchaseList ScoutPhoneList AdultPhoneList; do
    echo '# newer' >>"$trial/newer/$report.rpt"
done
mv "$trial/newer/manual/surprises.html" "$trial/newer/manual/surprises2.html"
rm -r "$trial/newer/"{AwardListing.rpt,ScoutPhoneList1.rpt,examples}
packaging/windows/installer.sh "$trial/newer" "$newer" "$work/orlo/art/orlo.ico" "$trial/orlo-$newer-setup.exe"

setup "$version" 0
app=$(value InstallLocation)
app=$WINEPREFIX/drive_c/$(sed 's|^C:\\||; s|\\|/|g' <<<"$app")
[ "$(value DisplayVersion)" = "$version" ]
menu=("$WINEPREFIX"/drive_c/users/*/AppData/Roaming/Microsoft/Windows/Start\ Menu/Programs/ORLO.lnk)
[ -e "${menu[0]}" ]
[ -s "$app/Quorrel11.mdb" ]
diff -r -x .package -x uninstall.exe -x Quorrel11.mdb "$folder" "$app" # whose records were opened already
packaging/windows/starts.sh "$wine" "$app/orlo.exe"
echo "Installed, it starts."

# A pack's records, one of them changed, also in the pack to try the program with; reports and a layout changed, a report
# deleted.
cp "$app/sample-pack/Quorrel11_Backup" "$app/Quorrel11.mdb"
mkdir "$trial/list"
printf 'First,Last,Date of Birth\nIris,Installed,3/4/2017\n' >"$trial/list/Scouts.csv"
for records in Quorrel11.mdb sample-pack/Quorrel11_Backup; do
    "$wine" "$app/orlo-db.exe" import "Z:$app/$records" "Z:$trial/list" | grep Scouts >/dev/null # reads on
done
[ "$(stat -c %s "$app/sample-pack/Quorrel11_Backup")" = "$(stat -c %s "$folder/sample-pack/Quorrel11_Backup")" ]
for report in PurchaseList AwardListing; do echo '# mine' >>"$app/$report.rpt"; done
echo >>"$app/Den_Titles.grd"
rm "$app/AdultPhoneList.rpt"
sed -i 's/^\[files\]/&\r\nCombinedRoster.rpt=1/' "$app/.package/list.ini" # as of a version that took it for its own
before=$(sum)

# Not while it runs.
"$wine" "$app/orlo.exe" & program=$!
for _ in {1..300}; do ! xwininfo -root -tree | grep -q Verrano || break; sleep 0.2; done
setup "$newer" 2
[ "$(value DisplayVersion)" = "$version" ]
cmp "$folder/ScoutPhoneList.rpt" "$app/ScoutPhoneList.rpt"
kill $program
wait $program || :
echo "It isn't updated while it runs."

setup "$newer" 0
[ "$(sum)" = "$before" ]
[ "$(value DisplayVersion)" = "$newer" ]
tail -n 1 "$app/ScoutPhoneList.rpt" "$app/AdultPhoneList.rpt" | grep -c '# newer' | grep -qx 2
[ -e "$app/manual/surprises2.html" ]
for gone in manual/surprises.html ScoutPhoneList1.rpt examples; do [ ! -e "$app/$gone" ]; done
cmp "$folder/CombinedRoster.rpt" "$app/CombinedRoster.rpt"
setup "$version" 2 # an older one asks, and nobody answers
packaging/windows/starts.sh "$wine" "$app/orlo.exe"
[ "$(sum)" = "$before" ]
echo "An update kept the records and what the user changed, and replaced the rest."

"$wine" "$app/uninstall.exe" /S
for _ in {1..300}; do [ -e "$app/uninstall.exe" ] || break; sleep 0.2; done
[ "$(sum)" = "$before" ]
left=$(cd "$app" && find . -type f ! -path '*/copies/*' -printf '%P\n' | LC_ALL=C sort | tr '\n' ' ')
[ "$left" = "${mine[*]} " ] || { echo "Left: $left" >&2; exit 1; }
[ -z "$(value DisplayVersion)" ]
[ ! -e "${menu[0]}" ]
rm -rf "$trial" "$app"
echo "Removed, it left the records and what the user changed, and nothing else."
