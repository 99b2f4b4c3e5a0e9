# shellcheck shell=bash
# What the tests of both packages share; they source it with the build folder as their argument.
set -euo pipefail
build=$1 source=$(dirname "$(readlink -f "$0")")/../..
here=$(readlink -f "$(mktemp -d "${TMPDIR:-/tmp}/orlo package.XXXXXX")") # as /proc names the files in it
export QT_QPA_PLATFORM=offscreen LC_ALL=C.UTF-8 XDG_RUNTIME_DIR=$here
pid= screen=
trap 'kill $pid $screen 2>/dev/null || :; rm -rf "$here"' EXIT
trap 'exit 1' TERM
trap 'echo "failed in line $LINENO: $BASH_COMMAND"; tail "$here/complaints"; exit 1' ERR
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

make() { # make GENERATOR: the package
    cpack -G "$1" --config "$build/CPackConfig.cmake" -B "$here" >"$here/log" || { cat "$here/log"; false; }
}

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
