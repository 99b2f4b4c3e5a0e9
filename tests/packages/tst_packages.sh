#!/usr/bin/env bash
# Makes both packages and uses them as a user does who has nothing else, one beside the other, since much of the time
# is waiting: tst_packages.sh BUILD_FOLDER
set -euo pipefail
here=$(dirname "$(readlink -f "$0")")
"$here/archive.sh" "$1" & archive=$!
"$here/debian.sh" "$1" & debian=$!
trap 'kill $archive $debian 2>/dev/null || :' EXIT
wait $archive && archive= && wait $debian && debian=
