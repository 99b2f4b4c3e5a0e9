#!/usr/bin/env bash
# What the scripts do if packages are missing, with a stand-in for apt: they wait for locks, and tell a user who may not
# install anything what to ask for.
set -Eeuo pipefail
source=$(dirname "$(readlink -f "$0")")/../..
here=$(mktemp -d "${TMPDIR:-/tmp}/orlo-setup.XXXXXX")
trap 'rm -rf "$here"' EXIT
trap 'echo "failed in line $LINENO: $BASH_COMMAND"; cat "$here/said"; exit 1' ERR

stub() { # stub NAME SCRIPT
    printf '#!/bin/bash\n%s\n' "$2" >"$here/$1"
    chmod +x "$here/$1"
}
stub dpkg-query 'exit 1'
stub sleep ':'
stub apt-get 'echo "$*" >>'"$here"'/asked
    [[ "$*" != *update* ]] || [ "$(grep -c update '"$here"'/asked)" -ge 3 ] || { echo "E: Could not get lock /lists/lock" >&2; exit 100; }'
for tool in bash env dirname readlink grep true; do ln -s "$(type -P $tool)" "$here"; done
missing() { # missing USER_ID: the output and the status
    stub id "echo $1"
    rm -f "$here/asked"
    PATH=$here bash -c "source '$source/cmake/setup.sh'; install_missing cmake ninja-build" >"$here/said" 2>&1
}

missing 0
[ "$(grep -c update "$here/asked")" -eq 3 ]
grep -q -- '-o DPkg::Lock::Timeout=[1-9].* install .*cmake ninja-build$' "$here/asked"

if missing 1000; then false; fi
grep -q 'administrator of this computer for: apt-get install .* cmake ninja-build$' "$here/said"
[ ! -e "$here/asked" ]

stub sudo '[ "$1" != true ] || exit 1' # for a user who isn't in its list
if missing 1000; then false; fi
grep -q 'you may not install them: cmake ninja-build$' "$here/said"

stub sudo 'exec "$@"'
missing 1000
grep -q ' install ' "$here/asked"

stub apt-get 'echo "E: no network" >&2; exit 100'
if missing 0; then false; fi
grep -q 'no network' "$here/said"
