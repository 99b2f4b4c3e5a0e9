#!/usr/bin/env bash
# Makes the manual's pages for a browser: manual.sh SOURCE_FOLDER TARGET_FOLDER
# Each page of Markdown becomes one of HTML with the list of all pages beside it; README.md, which gives that list its
# order in its tables, becomes index.html. sections.js holds every section's text for the search, which runs from the disk.
set -euo pipefail
source=$1 target=$2 here=$(dirname "$(readlink -f "$0")")
rm -rf "$target"
mkdir -p "$target"
cp -r "$source/pictures" "$here/manual.css" "$here/search.js" "$target"
rm -f "$target/pictures/"*.txt

file_of() { [ "$1" = README ] && echo index.html || echo "$1.html"; }
title_of() { sed -n 's/^# //p;T;q' "$source/$1.md"; }

# Dates such as 1/2 and the quotes of the screens stay as they are written.
convert() { # convert PAGE: the page's content, with links to the other pages as they are named here, by their titles
    lowdown -thtml --out-no-smarty --html-no-owasp --html-no-skiphtml --html-no-escapehtml --parse-no-metadata \
        --parse-no-super --parse-no-intraemph "$source/$1.md" |
        sed -E 's/href="README\.md/href="index.md/g; s/href="([a-z-]+)\.md(["#])/href="\1.html\2/g' |
        sed -E "$titles" | sed -E "$sizes"
}

sizes=
pages=(README)
while read -r page; do
    [[ " ${pages[*]} " == *" $page "* ]] || pages+=("$page")
done < <(grep '^|' "$source/README.md" | grep -oE '\]\([a-z-]+\.md' | sed 's/](//; s/\.md//')
for file in "$source"/*.md; do
    page=$(basename "$file" .md)
    [[ " ${pages[*]} " == *" $page "* ]] || { echo "README.md doesn't lead to $page.md" >&2; exit 1; }
done

# The pictures are twice the screen's size.
number_at() { printf '%d' "0x$(od -An -tx1 -j"$2" -N4 "$1" | tr -d ' ')"; } # number_at FILE BYTE
for picture in "$source"/pictures/*.png; do
    name=pictures/$(basename "$picture") width=$(($(number_at "$picture" 16) / 2)) height=$(($(number_at "$picture" 20) / 2))
    sizes+="s|src=\"$name\"|& width=\"$width\" height=\"$height\"|;"
done

titles=
for page in "${pages[@]}"; do
    title=$(title_of "$page")
    titles+="s|(href=\"$(file_of "$page")[^>]*>)$page\.md</a>|\1${title//&/\\&}</a>|g;"
done

links() { # links PAGE: the list of the pages, this one marked
    local page
    for page in "${pages[@]}"; do
        printf '<li><a href="%s"%s>%s</a></li>\n' "$(file_of "$page")" \
            "$([ "$page" != "$1" ] || echo ' aria-current="page"')" "$(title_of "$page")"
    done
}

sections() { # sections FILE: of the content on standard input, an array entry for each section
    awk -v file="$1" '
        function plain(text) {
            gsub(/<\/?(a|code|em|strong|u)( [^>]*)?>/, "", text); gsub(/<[^>]*>/, " ", text)
            gsub(/&quot;|&#34;/, "\"", text); gsub(/&#39;/, "\047", text); gsub(/&lt;|&#60;/, "<", text)
            gsub(/&gt;|&#62;/, ">", text); gsub(/&amp;|&#38;/, "\\&", text); gsub(/[ \t\n]+/, " ", text)
            gsub(/\\/, "\\\\", text); gsub(/"/, "\\\"", text); sub(/^ /, "", text); sub(/ $/, "", text)
            return text
        }
        function put() {
            if (head != "") printf "[\"%s%s\", \"%s\", \"%s\"],\n", file, anchor, plain(head), plain(body)
            body = ""
        }
        /^<h[1-3] id="/ {
            put(); head = $0; body = ""; split($0, quoted, "\""); anchor = /^<h1/ ? "" : "#" quoted[2]; next
        }
        { body = body "\n" $0 }
        END { put() }'
}

echo 'const sections = [' >"$target/sections.js"
for page in "${pages[@]}"; do
    file=$(file_of "$page")
    content=$(convert "$page")
    sections "$file" <<<"$content" >>"$target/sections.js"
    cat >"$target/$file" <<END
<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width">
<title>$(title_of "$page")</title>
<link rel="stylesheet" href="manual.css">
<script src="sections.js" defer></script>
<script src="search.js" defer></script>
</head>
<body>
<nav>
<input id="search" type="search" placeholder="Search the manual" aria-label="Search the manual" hidden>
<ol id="found" aria-live="polite" hidden></ol>
<details id="list" open>
<summary>All pages</summary>
<ul id="pages">
$(links "$page")
</ul>
</details>
</nav>
<main>
$content
</main>
</body>
</html>
END
done
echo '];' >>"$target/sections.js"

# A broken link ends the build.
while IFS=: read -r file link; do
    name=${link%%#*} anchor=${link#"$name"}
    [ -e "$target/${name:-$file}" ] && { [ -z "$anchor" ] || grep -q "id=\"${anchor#\#}\"" "$target/${name:-$file}"; } ||
        { echo "$file leads to $link, which isn't there" >&2; exit 1; }
done < <(cd "$target" && grep -oE '(href|src)="[^":]*"' *.html | sed -E 's/(href|src)="//; s/"$//')
