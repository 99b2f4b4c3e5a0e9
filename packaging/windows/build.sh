#!/usr/bin/env bash
# Builds ORLO for Windows on Debian 12: build.sh   It leaves orlo-VERSION-win64.zip in build/windows, or in the folder
# that ORLO_WINDOWS names. Everything else that it makes or fetches is there too. The first run takes an hour or two,
# nearly all of it for Qt; if it is stopped anywhere, the next run continues from there. build.sh tests builds the tests
# and the tour, too.
source "$(dirname "$0")/../../cmake/setup.sh"
source packaging/windows/folder.sh
windows_packages=(g++-mingw-w64-x86-64-posix dpkg-dev icoutils tcl)
install_program
install_missing "${windows_packages[@]}"
testing=OFF
[ "${1:-}" != tests ] || testing=ON
host_qt=(-DQT_HOST_PATH=/usr -DQT_HOST_PATH_CMAKE_DIR="/usr/lib/$(gcc -print-multiarch)/cmake") # its tools
mkdir -p "$work/done" "$work/logs" "$root/bin" "$root/licences"

# logged NAME COMMAND...: the output goes to a file of that name; if the command fails, its end goes to the screen
logged() {
    local log=$work/logs/$1 status=0
    shift
    set +e # a condition would switch it off inside the command, too
    (set -e; "$@") >"$log" 2>&1
    status=$?
    set -e
    [ $status -eq 0 ] && return
    tail -n 30 "$log"
    echo "It failed; all that it said is in $log."
    exit 1
}

# once NAME WHAT: runs the function NAME, unless an earlier run has completed it
once() {
    ! declare -f "$1" | cmp -s - "$work/done/$1" || return 0
    echo "$2 ..."
    logged "$1" "$1"
    declare -f "$1" >"$work/done/$1"
}

# source_of PACKAGE VERSION: Debian's source, in the folder $work/PACKAGE. The list of sources is the build's own, from
# the mirror that this machine gets its packages from; the system's lists stay as they are.
source_of() {
    local lists=$work/apt
    mkdir -p "$lists/lists/partial" "$lists/cache/archives/partial"
    apt-get indextargets --format 'deb-src $(REPO_URI) $(RELEASE) $(COMPONENT)' 'Origin: Debian' 'Created-By: Packages' |
        sort -u >"$lists/sources.list"
    local options=(-o "Dir::Etc::sourcelist=$lists/sources.list" -o Dir::Etc::sourceparts=/dev/null
                   -o "Dir::State::lists=$lists/lists" -o "Dir::Cache=$lists/cache" -o APT::Sandbox::User=)
    apt-get "${options[@]}" update
    (cd "$lists" && apt-get "${options[@]}" source --download-only "$1=$2")
    rm -rf "${work:?}/$1"
    dpkg-source -x "$lists/$1_${2#*:}.dsc" "$work/$1"
}

version_of() { # version_of PACKAGE: of the source that it was made from
    dpkg-query -W -f '${source:Version}' "$1"
}

toolchain() { # written only where it differs, or Qt would prepare itself anew each time
    local new=$work/toolchain.new
    cat >"$new" <<END
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER $compiler-gcc-posix)
set(CMAKE_CXX_COMPILER $compiler-g++-posix)
set(CMAKE_RC_COMPILER $compiler-windres)
set(CMAKE_CROSSCOMPILING_EMULATOR $wine)
set(CMAKE_FIND_ROOT_PATH $root /usr/$compiler)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_LIBDIR} $root/lib/pkgconfig)
END
    cmp -s "$new" "$work/toolchain.cmake" || mv "$new" "$work/toolchain.cmake"
    rm -f "$new"
}

# The version of the system's own Qt, whose tools run during the builds.
qt_source() {
    source_of qt6-base "$(version_of qt6-base-dev)"
    cp "$work/qt6-base/debian/copyright" "$root/licences/qt6-base.txt"
}

# Without what the program doesn't use, and without pens, whose header Debian's source lacks.
qt_configure() {
    cmake -G Ninja -S "$work/qt6-base" -B "$work/qt-build" --toolchain "$work/toolchain.cmake" \
        -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX="$root" -DBUILD_SHARED_LIBS=ON \
        "${host_qt[@]}" \
        -DFEATURE_{sql,network,dbus,icu,xml,concurrent,pkg_config,vulkan,zstd,direct2d1_1,tabletevent}=OFF -DINPUT_opengl=no
}

qt_build() {
    cmake --build "$work/qt-build"
    cmake --install "$work/qt-build"
}

# Part of the program's own library, with the options of Debian's SQLite that matter to a pack's file.
sqlite() {
    source_of sqlite3 "$(version_of libsqlite3-dev)"
    cd "$work/sqlite3"
    ./configure --disable-tcl
    make sqlite3.c
    "$compiler-gcc-posix" -O2 -DSQLITE_THREADSAFE=1 -DSQLITE_SECURE_DELETE -DSQLITE_ENABLE_COLUMN_METADATA \
        -DSQLITE_LIKE_DOESNT_MATCH_BLOBS -DSQLITE_ALLOW_ROWID_IN_VIEW -DSQLITE_USE_URI=1 \
        -DSQLITE_ENABLE_FTS3 -DSQLITE_ENABLE_FTS3_PARENTHESIS -DSQLITE_ENABLE_FTS4 -DSQLITE_ENABLE_FTS5 \
        -DSQLITE_ENABLE_RTREE -DSQLITE_ENABLE_DBSTAT_VTAB -c sqlite3.c
    mkdir -p "$root/lib" "$root/include"
    "$compiler-ar" rcs "$root/lib/libsqlite3.a" sqlite3.o
    cp sqlite3.h "$root/include"
    cp debian/copyright "$root/licences/sqlite3.txt"
}

# What every program of this compiler needs.
runtime() {
    local library
    for library in libgcc_s_seh-1.dll libstdc++-6.dll libwinpthread-1.dll; do
        "$compiler-strip" -o "$root/bin/$library" "$("$compiler-g++-posix" -print-file-name=$library)"
    done
    cp "/usr/share/doc/gcc-mingw-w64-x86-64-posix-runtime/copyright" "$root/licences/gcc.txt"
    cp "/usr/share/doc/mingw-w64-x86-64-dev/copyright" "$root/licences/mingw-w64.txt"
}

settings=(-G Ninja -S . -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_FLAGS_RELEASE="-O2 -DNDEBUG" -DCMAKE_UNITY_BUILD=ON
          -DCMAKE_UNITY_BUILD_BATCH_SIZE=0)

tools() { # of this machine
    cmake "${settings[@]}" -B "$work/host" -DBUILD_TESTING=OFF
    cmake --build "$work/host" --target art orlo-db
}

program() {
    cmake "${settings[@]}" -B "$work/orlo" --toolchain "$work/toolchain.cmake" -DBUILD_TESTING=$testing \
        "${host_qt[@]}" -DORLO_BUILD_TOOLS="$work/host/tools"
    cmake --build "$work/orlo"
    [ $testing = OFF ] || cmake --build "$work/orlo" --target tour
    rm -f "$work"/orlo-*.zip
    cpack --config "$work/orlo/CPackConfig.cmake" -B "$work"
}

toolchain
once qt_source "Fetching the source of Qt"
once qt_configure "Preparing Qt"
once qt_build "Building Qt (an hour or two; $work/logs/qt_build shows its progress)"
once sqlite "Building SQLite"
once runtime "Fetching the compiler's own libraries"
echo "Building ORLO ..."
logged tools tools
logged program program
ls -sh "$work"/orlo-*.zip
