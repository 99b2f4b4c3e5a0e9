# Sourced by run, test and bench: installs what a fresh Debian 12 lacks, then builds the release preset.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

packages=(g++ cmake ninja-build ccache qt6-base-dev qt6-base-dev-tools qt6-svg-dev libqt6sql6-sqlite
          libgl1-mesa-dev libsqlite3-dev libbenchmark-dev mdbtools mdbtools-dev pkgconf
          fonts-dejavu-core poppler-utils dpkg-dev file)

missing=()
for package in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
done
if [ ${#missing[@]} -gt 0 ]; then
    echo "Installing: ${missing[*]}"
    sudo=
    [ "$(id -u)" -eq 0 ] || sudo=sudo
    $sudo apt-get update -qq
    DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
fi

build() { # build PRESET
    cmake --preset "$1" >/dev/null
    cmake --build --preset "$1"
}
