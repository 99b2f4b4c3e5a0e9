#!/usr/bin/env bash
# The manual's page about the file has all tables with all fields, as a new file has them.
set -Eeuo pipefail
cd "$(dirname "$(readlink -f "$0")")/../.."
here=$(mktemp -d "${TMPDIR:-/tmp}/orlo-fields.XXXXXX")
trap 'rm -rf "$here"' EXIT
export LC_ALL=C.UTF-8

# A line for each table: its name, and "`Field` | kind" for each field.
lines() { awk '/^### / { if (all) print all; all = substr($0, 5); next } all { all = all "; " $0 } END { print all }' | sort; }

awk '/^= / { new = $0 == "= what a new file holds" } new' tests/store/terminal.txt | sed -nE 's/^CREATE TABLE "(.*)"\($/### \1/p
    s/^    ("[^"]+") TEXT\(([0-9]+)\).*/\1 | text, \2/
    s/^    ("[^"]+") (SMALLINT|INTEGER|INT)\b.*/\1 | whole number/
    s/^    ("[^"]+") DOUBLE\b.*/\1 | number/
    s/^    ("[^"]+") DATE\b.*/\1 | date/
    s/^    ("[^"]+") LONGTEXT\b.*/\1 | long text/
    s/^    ("[^"]+") BOOLEAN\b.*/\1 | yes\/no/
    /^"/ s/"/`/gp' | lines | grep -v '^Stored_Queries' >"$here/file"
sed '1,/^## Tables/d; /^## Stored/,$d' docs/manual/database-file.md |
    sed -nE 's/^(### .*)/\1/p; s/^\| (`[^`]+` \| [^|]*[^| ]) *\|.*/\1/p' | lines >"$here/page"
diff "$here/file" "$here/page"
[ "$(wc -l <"$here/page")" -gt 12 ]
