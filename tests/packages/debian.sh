#!/usr/bin/env bash
# Makes the Debian package and uses it: debian.sh BUILD_FOLDER
. "$(dirname "$0")/package.sh"
make DEB

dpkg-deb -f "$here"/orlo_*.deb Depends | grep libqt6printsupport6 | grep libsqlite3-0 | grep -q libqt6widgets6
[ ! -e "$build/app/orlo-pdf.so" ] || dpkg-deb -f "$here"/orlo_*.deb Recommends | grep -q libqpdf
dpkg-deb -x "$here"/orlo_*.deb "$here/root"
export XDG_DATA_HOME="$here/the data"
launcher=$here/root/usr/bin/orlo given=$here/root/usr/lib/orlo user=$XDG_DATA_HOME/orlo
"$here/root/usr/bin/orlo-db" check "$given/Quorrel11.mdb" | grep -q 'sound$'
for tool in orlo-db orlo-report; do [ -s "$here/root/usr/share/man/man1/$tool.1.gz" ]; done
[ -z "$(readelf -d "$given/orlo" "$here"/root/usr/bin/orlo-{db,report} | grep -E 'R(UN)?PATH' || :)" ] # the system's libraries
[ -z "$(command -v appstreamcli || :)" ] || appstreamcli validate --no-net "$here"/root/usr/share/metainfo/*.xml >"$here/log"
[ -z "$(command -v desktop-file-validate || :)" ] || desktop-file-validate "$here/root/usr/share/applications/orlo.desktop"
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
