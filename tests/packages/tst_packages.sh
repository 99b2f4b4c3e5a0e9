#!/usr/bin/env bash
# Makes both packages and uses them as a user does who has nothing else: tst_packages.sh BUILD_FOLDER
set -euo pipefail
build=$1 source=$(dirname "$(readlink -f "$0")")/../..
here=$(readlink -f "$(mktemp -d "${TMPDIR:-/tmp}/orlo packages.XXXXXX")") # as /proc names the files in it
export QT_QPA_PLATFORM=offscreen LC_ALL=C.UTF-8 XDG_RUNTIME_DIR=$here
pid= screen=
trap 'kill $pid $screen 2>/dev/null || :; rm -rf "$here"' EXIT
trap 'echo "failed in line $LINENO: $BASH_COMMAND"; tail "$here"/complaints; exit 1' ERR
set -E

starts() { # starts FOLDER COMMAND: the program comes up in the folder, opens the database there and complains of nothing
    "$2" 2>"$here/complaints" & pid=$!
    for _ in {1..300}; do
        opened=$(find "/proc/$pid/fd" -lname "$1/Quorrel11.mdb" 2>/dev/null) || : # a file closed in between fails find
        [ -z "$opened" ] || break
        sleep 0.1
    done
    [ -n "$opened" ] # on a line of its own: within a && list, its failure wouldn't end the test
    [ "$(readlink "/proc/$pid/exe")" = "$1/orlo" ]
    sleep 6 # past the splash
    kill "$pid" # fails if it has already ended
    wait "$pid" || [ $? -eq 143 ]
    pid=
    diff /dev/null <(sed '/propagateSizeHints/d' "$here/complaints") # about having no display
}
complete() { # complete FOLDER: everything that the program needs is there
    for file in "$source"/src/{reports/files/*.{rpt,inc},layouts/*.grd}; do cmp "$file" "$1/${file##*/}"; done
    for file in "$source"/src/reports/files/examples/*.rpt; do cmp "$file" "$1/examples/${file##*/}"; done
    [ ! -e "$build/app/orlo-pdf.so" ] || [ -z "$(ldd "$1/orlo-pdf.so" | grep 'not found' || :)" ]
    [ ! -e "$build/app/orlo-jet" ] || "$1/orlo-jet" "$source/tests/jet/data/small-1.1.mdb" >/dev/null
}

cpack -G "TGZ;DEB" --config "$build/CPackConfig.cmake" -B "$here" >"$here/log" || { cat "$here/log"; false; }

newer='printf "#!/bin/sh\\necho newer\\n" >orlo && chmod +x orlo'
change_by_hand() { # change_by_hand FOLDER: the user's records, a report and a layout; "before" keeps them
    for file in PurchaseList.rpt DenAssign.grd Quorrel11.mdb; do echo mine >>"$1/$file"; done
    rm -rf "$here/before"
    cp -r "$1" "$here/before"
}
stays_changed() { # stays_changed FOLDER GIVEN: what was changed by hand is still there, the rest is the package's
    for file in PurchaseList.rpt DenAssign.grd Quorrel11.mdb; do cmp "$here/before/$file" "$1/$file"; done
    cmp "$2/AwardListing.rpt" "$1/AwardListing.rpt"
}

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
[ -s "$here/AwardListing.pdf" ] && [ -s "$here/a folder/man/orlo-db.1" ]
for program in orlo-db orlo-report; do # output that can't be written is a failure
    [ -c /dev/full ] && ! "$here/a folder/$program" --help >/dev/full 2>"$here/log" && grep -q 'standard output' "$here/log"
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

dpkg-deb -f "$here"/orlo_*.deb Depends | grep libqt6printsupport6 | grep libsqlite3-0 | grep -q libqt6widgets6
[ ! -e "$build/app/orlo-pdf.so" ] || dpkg-deb -f "$here"/orlo_*.deb Recommends | grep -q libqpdf
dpkg-deb -x "$here"/orlo_*.deb "$here/root"
export XDG_DATA_HOME="$here/the data"
launcher=$here/root/usr/bin/orlo given=$here/root/usr/lib/orlo user=$XDG_DATA_HOME/orlo
"$here/root/usr/bin/orlo-db" check "$given/Quorrel11.mdb" | grep -q 'sound$'
[ -s "$here/root/usr/share/man/man1/orlo-db.1.gz" ] && [ -s "$here/root/usr/share/man/man1/orlo-report.1.gz" ]
[ -z "$(readelf -d "$given/orlo" "$here"/root/usr/bin/orlo-{db,report} | grep -E 'R(UN)?PATH' || :)" ] # the system's libraries
[ -z "$(command -v appstreamcli || :)" ] || appstreamcli validate --no-net "$here"/root/usr/share/metainfo/*.xml >"$here/log"
[ -z "$(command -v desktop-file-validate || :)" ] ||
    desktop-file-validate "$here/root/usr/share/applications/orlo.desktop" "$here/a folder/Start ORLO.desktop"
starts "$user" "$launcher"
complete "$user"
[ ! -e "$build/app/manual" ] || [ -s "$user/manual/index.html" ]
[ -s "$user/sample-pack/Quorrel11_Backup" ]

# If the user's folder can't be made or run from, one box says why, and nothing starts.
timeout 3 "$given/orlo-notice" box 2>"$here/log" || [ $? -eq 124 ] # the box waits
mv "$given/orlo-notice" "$here" && printf '#!/bin/sh\necho "box: $1"\n' >"$given/orlo-notice" && chmod +x "$given/orlo-notice"
stays_away() { # stays_away XDG_DATA_HOME WORDS
    [ "$({ XDG_DATA_HOME=$1 timeout 60 "$launcher" 2>"$here/log" || :; } | grep -cE "^box:|$2" || :)" = 2 ]
}
stays_away "$given/orlo" 'Not a directory'
chmod -x "$user/orlo"
stays_away "$XDG_DATA_HOME" 'noexec'
chmod +x "$user/orlo"
mv "$here/orlo-notice" "$given"

# A newer package brings another program and another report: what the user has changed stays, the rest follows.
(cd "$given" && eval "$newer")
change_by_hand "$user"
for file in AwardListing.rpt PurchaseList.rpt; do echo >>"$given/$file"; done
for _ in 1 2; do [ "$(timeout 60 "$launcher")" = newer ]; done
stays_changed "$user" "$given"

# Many first starts at once, of a user who has put an earlier version's file there.
XDG_DATA_HOME="$here/second" user="$here/second/orlo"
mkdir -p "$user" && touch "$user/quorrel.MDB"
[ "$(for _ in {1..8}; do timeout 60 "$launcher" & done; wait)" = "$(printf 'newer\n%.0s' {1..8})" ]
diff -r -x .package -x orlo-notice -x '*.[mM][dD][bB]' "$given" "$user"
[ ! -e "$user/Quorrel11.mdb" ]
