#!/bin/sh
# Starts ORLO for the user at hand. The program keeps its records in its own folder. With the Debian package each user
# has such a folder with a copy of the program; the archive's folder is one already, and files that a user may change
# are in its folder "fresh". This script completes the folder and keeps it as new as the package.
set -u
here=$(dirname "$(readlink -f "$0")")
if [ -d "$here/fresh" ]; then # with its fonts beside the system's, and with its own plugins only
    package=$here/fresh app=$here
    export FONTCONFIG_FILE="$here/fonts/fonts.conf"
    unset QT_PLUGIN_PATH QT_QPA_PLATFORM_PLUGIN_PATH
else
    package=$here/../lib/orlo
    case ${XDG_DATA_HOME:-} in
        /*) app=$XDG_DATA_HOME/orlo ;;
        *) app=${HOME:-/dev/null}/.local/share/orlo ;;
    esac
    (umask 077 && mkdir -p "$app") 2>/dev/null # a failure is reported below
fi
given=$app/.package # the reports and layouts as the package gave them, to recognise the user's changes
new=$given/.new

held() { # held PATTERN: the user's file of that name, upper or lower case, as the program finds it
    find "$app" -maxdepth 1 -iname "$1" | head -n 1
}

copy() { # copy FILE TARGET [-n]: complete on the disk before it gets its name; -n never replaces a file
    rm -f "$new" && cp "$1" "$new" && sync "$new" && mv "${3:--f}" "$new" "$2"
}

refresh() { # refresh FILE NAME: the user's file becomes the package's, unless the user has changed it
    [ -e "$app/$2" ] && cmp -s "$1" "$given/$2" && return
    mine=$(held "$2")
    if [ -z "$mine" ] || cmp -s "$mine" "$given/$2"; then
        cmp -s "$1" "$mine" || copy "$1" "${mine:-$app/$2}" || return
    fi
    cmp -s "$1" "$given/$2" || copy "$1" "$given/$2"
}

complete() { # nothing if the folder can't be written to, which the program reports itself
    { command exec 9>"$given/.lock"; } 2>/dev/null || return
    flock 9 # two starts at once take turns
    for file in "$package"/*; do
        name=${file##*/}
        case $name in
            manual | examples | *-pack) [ -e "$app/$name" ] || ln -sfn "$(readlink -f "$file")" "$app/$name" ;;
            *.mdb) [ -n "$(held 'Quorrel*.mdb')" ] || copy "$file" "$app/$name" -n ;;
            orlo-notice) ;;
            orlo*) cmp -s "$file" "$app/$name" || copy "$file" "$app/$name" ;;
            *) refresh "$file" "$name" ;;
        esac
    done
    exec 9>&-
}

explain() { # nobody sees the output of a program started from a menu, so a box says why it didn't start
    if [ -e "$app/orlo" ] && [ ! -x "$app/orlo" ]; then
        why="This computer runs no programs from there (the disk is mounted with \"noexec\")."
        way="Let its administrator allow that, or use the folder that runs anywhere on another disk."
    else
        said=$(export LC_ALL=C; { mkdir -p "$given" && cp "$package/orlo" "$new"; } 2>&1)
        rm -f "$new" 2>/dev/null
        case $said in
            *"No space left"* | *"uota exceeded"*)
                why="The disk is full."
                way="Make room in your home folder, and start ORLO again."
                ;;
            *"Read-only file system"*)
                why="The disk with your home folder can only be read."
                way="Restart the computer; if that doesn't help, ask its administrator."
                ;;
            *)
                why="That folder can't be made or written to (${said##*: })."
                way="Ask the administrator for a home folder that you may write to."
                ;;
        esac
    fi
    text="ORLO can't start. It keeps its records in the folder
$app

$why
$way

Your records haven't changed. The manual says more on its page \"The folder or the file can't be written to\":
$(readlink -f "$package/manual")/read-only.html"
    echo "$text" >&2
    "$package/orlo-notice" "$text"
    exit 1
}

mkdir -p "$given" 2>/dev/null && complete
# A copy that failed has said so; the user's existing program still starts. Its lists of folders begin where it is.
[ "$package" = "$here/fresh" ] || { [ -x "$app/orlo" ] && [ -n "$(held 'Quorrel*.mdb')" ]; } || explain
cd "$app" || exit 1
exec "$app/orlo" "$@"
