#!/usr/bin/env bash
# Whatever a page of the manual has in double quotes is a text of the program, or one of the others in others.txt.
set -Eeuo pipefail
cd "$(dirname "$(readlink -f "$0")")/../.."
here=$(mktemp -d "${TMPDIR:-/tmp}/orlo-quotes.XXXXXX")
trap 'rm -rf "$here"' EXIT
export LC_ALL=C.UTF-8

# Everything that the program can say: the texts of the windows, of the code (those on several lines joined), of the
# reports and of the launcher. Access keys have no mark.
{
    find src -name '*.ui' -exec grep -ohE '<string[^>]*>[^<]*' {} + | sed 's/^[^>]*>//; s/&lt;/</g; s/&gt;/>/g; s/&amp;//g'
    find src tools -name '*.cpp' -o -name '*.h' | xargs sed -z -E 's/"[[:space:]]*\n[[:space:]]*u?"//g' |
        tr '\0' '\n' | grep -oE '"([^"\]|\\.)*"' | sed 's/\\"/"/g; s/&//g'
    cat src/reports/files/*.* src/reports/files/examples/* src/layouts/* packaging/orlo.sh share/orlo.desktop packaging/Start.desktop
} | tr -s '[:space:]' ' ' >"$here/program"

quotes=0 unknown=0
for page in docs/manual/*.md; do
    while read -r quote; do
        quotes=$((quotes + 1))
        if grep -qxF -- "$quote" <(tail -n +2 tests/manual/others.txt); then
            echo "$quote" >>"$here/met"
            continue
        fi
        pattern=$(sed -E "s/[][\\.^$*+?(){}|]/\\\\&/g; s/…/(%[0-9])+/g; s/'[0-9]+'/'%1'/g" <<<"$quote")
        grep -qE "(^|\W)$pattern(\W|\$)" "$here/program" || { echo "$page: $quote"; unknown=1; }
    done < <(sed -z -E 's/```[^`]*```//g; s/`[^`]*`//g' "$page" | tr -s '[:space:]' ' ' | grep -oE '"[^"]+"' | sed 's/"//g; s/^ //; s/ $//' || :)
done
while read -r quote; do
    grep -qxF -- "$quote" "$here/met" || { echo "no page quotes any more: $quote"; unknown=1; }
done < <(tail -n +2 tests/manual/others.txt)
echo "$quotes quotes"
[ $quotes -gt 300 ] && [ $unknown = 0 ]
