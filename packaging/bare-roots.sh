#!/usr/bin/env bash
# Tries the packages on systems without Qt: bare-roots.sh [SUITE... | commands]   (as root; it fetches the systems'
# packages). "commands" tries ./run, ./test and ./bench there, which takes as long as they do; without an argument
# everything is tried. For each of Debian's and Ubuntu's releases it makes a system with an X server and nothing else.
# There the unpacked folder starts, does the main work through the tour and leaves PDF files; it starts on Wayland, too.
# Then the Debian package is installed, started and purged. The systems stay in build/roots, so that the next run is
# shorter; so do pictures of the screen after each start, SUITE-WAY.png.
source "$(dirname "$0")/../cmake/setup.sh"
[ "$(id -u)" -eq 0 ] || { echo "Run this as root: it sets up whole systems." >&2; exit 2; }
install_missing "${check_packages[@]}"
packages=build/packages roots=build/roots
suites=("$@") commands=
[ $# -gt 0 ] || suites=(bookworm trixie noble) commands=yes
[ "${suites[*]}" != commands ] || suites=() commands=yes
if [ ${#suites[@]} -gt 0 ]; then
    ./run packages
    build release tour -DBUILD_TESTING=ON
    lintian --fail-on error,warning build/packages/orlo_*.deb
fi
# The mirror that this machine gets Debian from; other systems use debootstrap's own.
debian=$(apt-get indextargets --format '$(REPO_URI)' 'Label: Debian' | head -n 1)

make_root() { # make_root SUITE FOLDER
    local scripts=/usr/share/debootstrap/scripts options=("$1" "$2.new" "$debian") ubuntu
    if [ "$(readlink -f $scripts/"$1")" != $scripts/sid ]; then # Ubuntu's, whose keys Debian doesn't have
        ubuntu=$(sed -n 's/.*default_mirror //p' $scripts/gutsy | grep archive)
        options=(--no-check-gpg --components=main,universe "$1" "$2.new" "$ubuntu" $scripts/gutsy)
    fi
    rm -rf "$2.new"
    debootstrap --variant=minbase --include=xvfb "${options[@]}" >"$2.log" 2>&1 || { tail "$2.log"; return 1; }
    mv "$2.new" "$2"
}

root=
unmount() {
    for mounted in ${root:+/proc /home/pat/other /home/pat/.ccache /}; do
        ! mountpoint -q "$root$mounted" || umount "$root$mounted"
    done
}
leave() {
    unmount
    rm -rf --one-file-system "$root"
    root=
}
trap unmount EXIT # a system whose trial failed stays, to look into it
trap 'echo "failed in line $LINENO"' ERR
set -E

inside() { # inside COMMAND...: in the root, as its administrator
    chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin DEBIAN_FRONTEND=noninteractive "$@"
}
as_pat() { # as_pat SCRIPT: in a user's shell, on an X server without a desktop
    chroot --userspec=pat:pat "$root" env -i PATH=/usr/bin:/bin HOME=/home/pat LC_ALL=C.UTF-8 \
        XDG_RUNTIME_DIR=/run/pat bash -euc "
        starts() { # starts PLUGIN COMMAND...: comes up with its records open on that platform, without complaints
            local plugin=\$1 pid opened=
            shift
            \"\$@\" 2>/tmp/complaints & pid=\$!
            for _ in {1..1200}; do
                opened=\$(find /proc/\$pid/fd -lname '*/Quorrel11.mdb' 2>/dev/null) || :
                [ -z \"\$opened\" ] || break
                sleep 0.1
            done
            [ -n \"\$opened\" ] || { echo 'it opened no records'; cat /tmp/complaints; exit 1; }
            sleep 6 # past the splash
            grep -q \"/\$plugin\" /proc/\$pid/maps || { echo \"it didn't load \$plugin\"; exit 1; }
            # The letters on the screen come from the fonts that it has read.
            grep -qE '/[A-Za-z]+Sans(-[A-Za-z]+)?[.]ttf$' /proc/\$pid/maps || { echo 'it has no plain letters'; exit 1; }
            ! grep -E '/[A-Za-z]*Mono[^/]*[.]ttf$' /proc/\$pid/maps || { echo 'it writes with a typewriter'; exit 1; }
            cp /tmp/Xvfb_screen0 /tmp/screen
            kill \$pid || { echo 'it ended unexpectedly'; cat /tmp/complaints; exit 1; }
            wait \$pid || :
            # On Wayland the pictures go through shared memory; there is no plugin for another way.
            ! grep -v 'client buffer integration' /tmp/complaints
        }
        explains() { # explains WORDS COMMAND...: a box with those words comes instead of the program
            local words=\$1 box= process
            shift
            \"\$@\" >/dev/null 2>/tmp/complaints & pid=\$!
            for _ in {1..300}; do
                for process in /proc/[0-9]*; do
                    [[ \$(readlink \$process/exe 2>/dev/null || :) != */orlo-notice ]] || box=\${process##*/}
                done
                [ -z \"\$box\" ] || break
                sleep 0.1
            done
            [ -n \"\$box\" ] || { echo 'there is no box'; cat /tmp/complaints; exit 1; }
            for _ in {1..300}; do ! grep -q '/platforms/' /proc/\$box/maps || break; sleep 0.1; done
            grep -q '/platforms/' /proc/\$box/maps || { echo 'the box has no window'; exit 1; }
            tr '\\0' ' ' </proc/\$box/cmdline >/tmp/box
            kill \$box
            ! wait \$pid
            grep -q \"\$words\" /tmp/box || { cat /tmp/box; exit 1; }
        }
        rm -f /tmp/display
        Xvfb -displayfd 3 -screen 0 1366x768x24 -fbdir /tmp -nolisten tcp 3>/tmp/display >/dev/null 2>&1 & x=\$!
        trap 'kill \$x; wait \$x || :' EXIT
        for _ in {1..300}; do [ ! -s /tmp/display ] || break; sleep 0.1; done
        export DISPLAY=:\$(cat /tmp/display)
        $1"
}

picture() { # picture WAY: of the screen after the last start
    xwdtopnm "$root/tmp/screen" 2>/dev/null | pnmtopng 2>/dev/null >"$roots/$suite-$1.png"
}

enter() { # enter SUITE WHAT: makes a new root of it to try that, with a user
    echo "== $1, $2"
    mkdir -p "$roots"
    exec 9>"$roots/$1.$2.lock"
    flock -n 9 || { echo "Another run tries the same."; exit 1; }
    [ -d "$roots/$1" ] || make_root "$1" "$roots/$1"
    root=$roots/$1.$2
    unmount
    rm -rf --one-file-system "$root"
    cp -a "$roots/$1" "$root"
    mount --bind "$root" "$root" # a system's root is a volume
    mount -t proc proc "$root/proc"
    cp --remove-destination /etc/resolv.conf /etc/hosts "$root/etc/"
    [ -z "$(find "$root/usr" -name 'libQt*')" ]
    inside useradd -m pat
    install -d -m 700 -o "$(stat -c %u "$root/home/pat")" "$root/run/pat"
    inside install -d -m 1777 /tmp/.X11-unix
}

for suite in "${suites[@]}"; do
    enter "$suite" packages

    # The folder: started by its launcher, and by a double click on it.
    mkdir -p "$root/home/pat/tour/the folder" "$root/opt/tour"
    ln -s /home/pat/tour/app "$root/opt/app" # beside the tour's folder, as in a build
    tar -xf "$packages"/orlo-*.tar.xz -C "$root/home/pat/tour/the folder" --strip-components=1
    ln -s "the folder" "$root/home/pat/tour/app"
    cp build/tools/tour "$(ldconfig -p | sed -n 's/.*libQt6Test\.so\.6 .*=> //p')" "$root/opt/tour"
    inside chown -R pat:pat /home/pat
    as_pat 'cd; starts platforms/libqxcb.so "tour/the folder/start-orlo"'
    picture folder
    echo "the folder starts"
    as_pat 'cd ~/tour
        sed -n "s/^Exec=/exec /p" "app/Start ORLO.desktop" | sed "s/\\\\\\\\/\\\\/g; s|%k|\"$PWD/app/Start ORLO.desktop\"|" >/tmp/exec
        starts platforms/libqxcb.so sh /tmp/exec'
    echo "so does its double click"
    as_pat 'cd ~/tour/app
        cp sample-pack/Quorrel11_Backup Quorrel11.mdb
        export LD_LIBRARY_PATH=$PWD/lib QT_PLUGIN_PATH=$PWD/plugins FONTCONFIG_FILE=$PWD/fonts/fonts.conf
        LD_LIBRARY_PATH=$LD_LIBRARY_PATH:/opt/tour /opt/tour/tour ~/tour >/tmp/said 2>&1 || { tail /tmp/said; exit 1; }'
    printed=$(cd "$root/home/pat/tour" && find . -maxdepth 1 -name '*.pdf')
    [ -n "$printed" ]
    pdftotext "$root/home/pat/tour/PurchaseList.pdf" - | grep -q 'Neckerchief slides'
    pdffonts "$root/home/pat/tour/PurchaseList.pdf" | grep -q DejaVu
    pdfinfo "$root/home/pat/tour/PurchaseList.pdf" | grep -q '^Author'
    echo "the tour went through and printed" $printed
    # A newer archive over the used folder: records and reports that were changed by hand stay, the others follow.
    used="$root/home/pat/tour/the folder"
    newer=$root/newer
    echo >>"$used/PurchaseList.rpt"
    before=$(cd "$used" && sha256sum Quorrel11.mdb PurchaseList.rpt)
    mkdir "$newer"
    tar -xf "$packages"/orlo-*.tar.xz -C "$newer" --strip-components=1
    for file in AwardListing.rpt PurchaseList.rpt Quorrel11.mdb; do echo "# newer" >>"$newer/fresh/$file"; done
    tar -C "$newer" -cf - . | tar -C "$used" -xf -
    inside chown -R pat:pat /home/pat
    as_pat 'cd; starts platforms/libqxcb.so "tour/the folder/start-orlo"'
    [ "$(cd "$used" && sha256sum Quorrel11.mdb PurchaseList.rpt)" = "$before" ]
    cmp "$newer/fresh/AwardListing.rpt" "$used/AwardListing.rpt"
    echo "a newer archive over the folder left the records and the changed report alone"
    inside apt-get -qq update
    inside apt-get -qq install -y --no-install-recommends weston >/dev/null 2>&1
    as_pat 'cd
        weston --backend=headless-backend.so --socket=w >/tmp/weston 2>&1 & w=$!
        for _ in {1..100}; do [ ! -e /run/pat/w ] || break; sleep 0.1; done
        unset DISPLAY
        export WAYLAND_DISPLAY=w XDG_SESSION_TYPE=wayland
        starts platforms/libqwayland-generic.so "tour/the folder/start-orlo"
        kill $w'
    echo "the folder starts on Wayland"

    # The package.
    cp "$packages"/orlo_*.deb "$root/tmp/orlo.deb"
    inside apt-get -qq install -y --no-install-recommends /tmp/orlo.deb >"$roots/$suite.apt" 2>&1 ||
        { tail "$roots/$suite.apt"; exit 1; }
    as_pat 'cd; starts platforms/libqxcb.so orlo'
    picture package
    inside apt-get -qq install -y --no-install-recommends fontconfig >>"$roots/$suite.apt" 2>&1
    [[ $(inside fc-match -f '%{family}' sans-serif) == *Sans* ]]
    install -d -o "$(stat -c %u "$root/home/pat")" "$root/home/pat/other"
    for lacking in "ro;can only be read" "noexec;runs no programs" "size=64k;is full"; do
        mount -t tmpfs -o "uid=$(stat -c %u "$root/home/pat"),${lacking%;*}" tmpfs "$root/home/pat/other"
        as_pat "explains '${lacking#*;}' env XDG_DATA_HOME=/home/pat/other orlo"
        umount "$root/home/pat/other"
    done
    echo "it says why it can't start in a folder that is full, locked or runs no programs"
    action=$(sed -n 's/^Exec=sh -c "\(.*\)"$/\1/p' "$root/usr/share/applications/orlo.desktop")
    [[ $action == *xdg-open* ]]
    echo "$action" >"$root/tmp/action"
    as_pat 'explains "usr/share/doc/orlo/manual/index.html" sh /tmp/action'
    echo "so does its menu's manual if nothing opens it"
    user=$root/home/pat/.local/share/orlo
    "$root/usr/bin/orlo-db" check "$user/Quorrel11.mdb" >/dev/null
    [ -s "$user/manual/index.html" ] || inside test -s /home/pat/.local/share/orlo/manual/index.html
    before=$(sha256sum "$user/Quorrel11.mdb")
    inside apt-get -qq purge -y orlo >"$roots/$suite.apt" 2>&1
    [ "$(sha256sum "$user/Quorrel11.mdb")" = "$before" ]
    [ -z "$(find "$root/usr" "$root/var/lib/dpkg/info" -iname '*orlo*')" ]
    echo "the package was installed, started and purged; the records are there still"
    leave
done

# The README's commands, by a user who has the sources and may use sudo.
if [ -n "$commands" ]; then
    enter bookworm commands
    git archive --prefix=orlo/ HEAD | tar -C "$root/home/pat" -xf -
    mkdir -p "$roots/ccache" "$root/home/pat/.ccache" # what an earlier trial compiled
    mount --bind "$roots/ccache" "$root/home/pat/.ccache"
    inside chown -R pat:pat /home/pat
    as_pat 'cd ~/orlo; ! ./run >/tmp/said 2>&1; grep -q "^Ask an administrator" /tmp/said || { cat /tmp/said; exit 1; }'
    echo "./run tells a user who may not install anything what is missing"
    inside apt-get -qq update
    inside apt-get -qq install -y --no-install-recommends sudo >/dev/null 2>&1
    echo 'pat ALL=(ALL) NOPASSWD: ALL' >"$root/etc/sudoers.d/pat"
    as_pat 'cd ~/orlo; unset DISPLAY; ./run >/tmp/said 2>&1 || { tail /tmp/said; exit 1; }
        ls build/tour/light-100/*.pdf >/dev/null'
    echo "./run went through the tour without a display"
    as_pat 'cd ~/orlo; starts platforms/libqxcb.so bash -c "exec ./run 2>/dev/null"'
    echo "./run starts on a display"
    for display in "unset DISPLAY" :; do
        as_pat "cd ~/orlo; $display; ./test >/tmp/said 2>&1 || { tail -n 30 /tmp/said; exit 1; }; tail -n 1 /tmp/said"
    done
    as_pat 'cd ~/orlo; ./run packages >/tmp/said 2>&1 || { tail /tmp/said; exit 1; }; ls build/packages/*.tar.xz build/packages/*.deb'
    as_pat 'cd ~/orlo; ./bench start >/tmp/said 2>&1 || :; grep "^process start" /tmp/said || { tail /tmp/said; exit 1; }'
    leave
fi
