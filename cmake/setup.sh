# Sourced by run, test and bench: installs what a fresh Debian 12 lacks, then builds.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# ccache from the beginning: were it found only later, everything would be compiled again.
program_packages=(g++ ccache cmake ninja-build pkgconf qt6-base-dev qt6-base-dev-tools qt6-svg-dev libgl1-mesa-dev
                  libsqlite3-dev libqpdf-dev mdbtools-dev fonts-dejavu-core)
manual_packages=(lowdown)
test_packages=(poppler-utils dpkg-dev file xvfb openbox libxtst-dev)
package_packages=(qt6-wayland dpkg-dev file)
check_packages=(debootstrap poppler-utils netpbm lintian appstream desktop-file-utils)
bench_packages=(libbenchmark-dev libqt6sql6-sqlite mdbtools)

install_missing() { # install_missing PACKAGE...
    local missing=() package
    for package in "$@"; do
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0
    local administrator=()
    if [ "$(id -u)" -ne 0 ]; then
        administrator=(sudo)
        if ! command -v sudo >/dev/null; then
            needs_administrator "${missing[@]}"
            return 1
        fi
    fi
    echo "Installing: ${missing[*]}"
    "${administrator[@]}" true || { needs_administrator "${missing[@]}"; return 1; }
    update_lists "${administrator[@]}" || return
    # Another program may be installing something.
    "${administrator[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -o DPkg::Lock::Timeout=600 \
        install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

needs_administrator() { # needs_administrator PACKAGE...
    echo "These packages are missing, and you may not install them: $*" >&2
    echo "Ask an administrator of this computer for: apt-get install --no-install-recommends $*" >&2
}

update_lists() { # update_lists [COMMAND...]: by that command; the lists have a lock that apt doesn't wait for
    local said
    for _ in {1..120}; do
        said=$("$@" env LC_ALL=C apt-get update -qq 2>&1) && return
        [[ $said == *"Could not get lock"* ]] || break
        sleep 5
    done
    echo "$said" >&2
    return 1
}

install_program() { # what the program is built from; without the converter it is built without its manual
    install_missing "${program_packages[@]}"
    install_missing "${manual_packages[@]}" || echo "The manual's pages are left out: ${manual_packages[*]} can't be had."
}

build() { # build PRESET "TARGET..." [CMAKE_OPTION...]
    local preset=$1 targets=$2
    shift 2
    cmake --preset "$preset" "$@" >/dev/null
    # shellcheck disable=SC2086 # the targets are words
    cmake --build --preset "$preset" --target $targets
}
