#!/usr/bin/env bash
# Makes the archive that runs anywhere and uses it: archive.sh BUILD_FOLDER
. "$(dirname "$0")/package.sh"
make TGZ

# The archive brings no records: the launcher makes an empty file if there is none.
mkdir "$here/a folder"
tar -xzf "$here"/orlo-*.tar.gz -C "$here/a folder" --strip-components=1
[ -z "$(find "$here/a folder" -maxdepth 1 -iname 'quorrel*' -o -maxdepth 1 -name '*.rpt')" ]
cp "$here/a folder/orlo" "$here/program"
(cd "$here/a folder" && eval "$newer")
[ "$(timeout 60 "$here/a folder/start-orlo")" = newer ]
cp "$here/program" "$here/a folder/orlo"
complete "$here/a folder"
"$here/a folder/orlo-db" check "$here/a folder/Quorrel11.mdb" | grep -q 'sound$'
"$here/a folder/orlo-db" import --dry-run "$here/a folder/sample-pack/Quorrel11_Backup" "$here/a folder/sample-pack/templates" | grep -q '^Scouts: 0 would'
"$here/a folder/orlo-report" "$here/a folder/sample-pack/Quorrel11_Backup" "$here/a folder/AwardListing.rpt" --pdf "$here" | grep -q 'in all$'
[ -s "$here/AwardListing.pdf" ]
[ -s "$here/a folder/man/orlo-db.1" ]
[ -c /dev/full ]
for program in orlo-db orlo-report; do # output that can't be written is a failure
    if "$here/a folder/$program" --help >/dev/full 2>"$here/log"; then false; fi
    grep -q 'standard output' "$here/log"
done
for program in orlo orlo-db orlo-report orlo-jet orlo-pdf.so; do # its own Qt and database engine
    [ -z "$(ldd "$here/a folder/$program" | grep -E 'libQt6|sqlite|mdb|qpdf' | grep -v "=> $here/a folder/lib/" || :)" ]
done
if command -v Xvfb >/dev/null; then
    Xvfb -displayfd 3 -nolisten tcp 3>"$here/display" 2>/dev/null & screen=$!
    for _ in {1..300}; do [ ! -s "$here/display" ] || break; sleep 0.1; done
    DISPLAY=:$(cat "$here/display") QT_QPA_PLATFORM=xcb starts "$here/a folder" "$here/a folder/start-orlo"
    kill "$screen" && screen=
fi
for kind in sample empty; do "$here/a folder/orlo-db" check "$here/a folder/$kind-pack/Quorrel11_Backup" >/dev/null; done
"$here/a folder/orlo-db" check "$here/a folder/sample-pack/version-1.0/Quorrel.mdb" | grep -q '1043 Assigned_Awards_Scouts'
[ -z "$(command -v desktop-file-validate || :)" ] || desktop-file-validate "$here/a folder/Start ORLO.desktop"
[ ! -e "$build/app/manual" ] || [ -s "$here/a folder/manual/index.html" ]
while IFS='|' read -r words page; do # what a user would look for in the manual, and the page that has it
    [ ! -e "$build/app/manual" ] ||
        awk -v words="$words" -v page="[\"$page" 'index($0, page) == 1 { n = split(words, word, " "); hits = 0
            for (i = 1; i <= n; i++) hits += index(tolower($0), word[i]) > 0
            if (hits == n) found = 1 } END { exit !found }' "$here/a folder/manual/sections.js"
done <<'END'
uninstall|remove.html
crash|surprises.html
labels|rosters.html#phone-list
phone list|rosters.html#phone-list
import|from-spreadsheet.html
excel|from-spreadsheet.html
csv|from-spreadsheet.html
END

# A newer archive, unpacked over the used folder.
mkdir "$here/newer"
tar -xzf "$here"/orlo-*.tar.gz -C "$here/newer" --strip-components=1
for file in AwardListing.rpt PurchaseList.rpt Quorrel11.mdb; do echo >>"$here/newer/fresh/$file"; done
(cd "$here/newer" && eval "$newer")
change_by_hand "$here/a folder"
tar -C "$here/newer" -cf - . | tar -C "$here/a folder" -xf -
for _ in 1 2; do [ "$(timeout 60 "$here/a folder/start-orlo")" = newer ]; done
stays_changed "$here/a folder" "$here/newer/fresh"
