#!/usr/bin/env bash
# CHANGELOG.md in another format: changes.sh debian | appstream   (from the standard input)
# A version is a line "## VERSION (YEAR-MONTH-DAY)", each of its changes an item of the list below it.
set -euo pipefail
awk -v form="$1" '
    function put(   words, count, i, line) {
        if (item == "") return
        gsub(/`/, "", item)
        if (form == "debian") {
            count = split(item, words, " ")
            line = "  *"
            for (i = 1; i <= count; i++) {
                if (length(line " " words[i]) > 78) { print line; line = "   " }
                line = line " " words[i]
            }
            print line
        } else { gsub(/ +/, " ", item); gsub(/&/, "\\&amp;", item); gsub(/</, "\\&lt;", item); print "        <li>" item "</li>" }
        item = ""
    }
    function finish(   stamp) {
        put()
        if (version == "") return
        if (form == "debian") {
            ("LC_ALL=C date -uR -d " day) | getline stamp
            print "\n -- Tollbeck <orlo@tollbeck.example>  " stamp
        } else print "      </ul></description>\n    </release>"
    }
    /^## / {
        finish(); version = $2; day = $3; gsub(/[()]/, "", day)
        if (form == "debian") print "orlo (" version ".0) unstable; urgency=medium\n"
        else print "    <release version=\"" version ".0\" date=\"" day "\">\n      <description><ul>"
        next
    }
    /^- / { put(); item = substr($0, 3); next }
    /^  / { item = item " " $0 }
    END { finish() }'
