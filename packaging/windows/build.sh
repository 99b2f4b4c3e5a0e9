#!/usr/bin/env bash
# Builds ORLO for Windows on Debian 12: build.sh   It leaves orlo-VERSION-win64.zip and orlo-VERSION-setup.exe in
# build/windows, or in the folder that ORLO_WINDOWS names. Everything else that it makes or fetches is there too. The
# first run takes an hour or two, nearly all of it for Qt; if it is stopped anywhere, the next run continues from there.
# build.sh tests builds the tests and the tour, too.
source "$(dirname "$0")/../../cmake/setup.sh"
source packaging/windows/folder.sh
windows_packages=(g++-mingw-w64-x86-64-posix libz-mingw-w64-dev autoconf automake libtool gettext dpkg-dev icoutils nsis
                  tcl)
install_program
install_missing "${windows_packages[@]}"
testing=OFF
[ "${1:-}" != tests ] || testing=ON
host_qt=(-DQT_HOST_PATH=/usr -DQT_HOST_PATH_CMAKE_DIR="/usr/lib/$(gcc -print-multiarch)/cmake") # its tools
mkdir -p "$work/done" "$work/logs" "$root/bin" "$root/lib" "$root/include" "$root/licences"
exec 3>&1 # the screen, from within logged

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

# once NAME WHAT [FILE...]: runs the function NAME, unless an earlier run has completed it with the same files
once() {
    local name=$1 what=$2
    shift 2
    ! recipe "$name" "$@" | cmp -s - "$work/done/$name" || return 0
    echo "$what ..."
    logged "$name" "$name"
    recipe "$name" "$@" >"$work/done/$name"
}

recipe() { # recipe NAME [FILE...]
    declare -f "$1"
    shift
    [ $# -eq 0 ] || cat "$@"
}

# source_of PACKAGE VERSION: Debian's source, in the folder $work/PACKAGE. Where the mirror has lost a file of that
# version, it is the next release's, and the screen says so; that one is unpacked by hand, since it may lack its
# description.
source_of() {
    local lists=$work/apt lost taken
    rm -rf "${work:?}/$1"
    fetch "$lists" "$release" "$1=$2"
    if [ -z "$lost" ]; then
        dpkg-source -x "$lists/$1_${2#*:}.dsc" "$work/$1"
        return
    fi
    lists=$lists/next
    fetch "$lists" "$next_release" "$1"
    mkdir "$work/$1"
    tar -xf "$lists/$1"_*.orig.tar.?z --strip-components=1 -C "$work/$1"
    tar -xf "$lists/$1"_*.debian.tar.?z -C "$work/$1"
    [ ! -e "$work/$1/debian/patches/series" ] || sed -n '/^[^#]/p' "$work/$1/debian/patches/series" |
        while read -r patch _; do patch -d "$work/$1" -p1 <"$work/$1/debian/patches/$patch"; done
    taken=$(cd "$lists" && ls "$1"_*.debian.tar.?z | sed 's/.*_\(.*\)\.debian.*/\1/')
    echo "The mirror lacks a file of $1 $2; what is built is $taken of $next_release." >&3
}
release=$(sed -n 's/^VERSION_CODENAME=//p' /etc/os-release)
next_release=trixie

# fetch FOLDER RELEASE PACKAGE[=VERSION]: the source's files, as the release's signed list has them. "lost" is what the
# mirror doesn't have; any other failure ends the build. The list of sources is the build's own, from the mirror that this
# machine gets its packages from; the system's lists stay as they are.
fetch() {
    local lists=$1 place file sum said
    rm -f "$lists/${3%%=*}"_*
    mkdir -p "$lists/lists/partial" "$lists/cache/archives/partial"
    apt-get indextargets --format 'deb-src $(REPO_URI) $(RELEASE) $(COMPONENT)' 'Origin: Debian' 'Created-By: Packages' |
        sed -n "s/ $release\([- ]\)/ $2\1/p" | sort -u >"$lists/sources.list"
    local options=(-o "Dir::Etc::sourcelist=$lists/sources.list" -o Dir::Etc::sourceparts=/dev/null
                   -o "Dir::State::lists=$lists/lists" -o "Dir::Cache=$lists/cache" -o APT::Sandbox::User=)
    apt-get "${options[@]}" update --error-on=any
    lost=$3
    apt-get "${options[@]}" source --print-uris "$3" >"$lists/files" || return 0 # the list has no such version
    lost=
    while read -r place file _ sum; do
        [[ $place == \'*\' ]] || continue # a notice
        if said=$(LC_ALL=C /usr/lib/apt/apt-helper "${options[@]}" download-file "${place//\'/}" "$lists/$file" "$sum" 2>&1); then
            continue
        fi
        echo "$said"
        [[ $said == *' 404  Not Found'* ]] || return 1
        lost+=" $file"
    done <"$lists/files"
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
if(NOT DEFINED CMAKE_CROSSCOMPILING_EMULATOR)
    set(CMAKE_CROSSCOMPILING_EMULATOR $wine)
endif()
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

# Reads files of the former format. A library of its own, so that its licence's wish is met: it can be exchanged.
libmdb() {
    local iconv=$PWD/packaging/windows/iconv
    source_of mdbtools "$(version_of mdbtools-dev)"
    cp "$iconv.h" "$root/include"
    cd "$work/mdbtools"
    "$compiler-gcc-posix" -O2 -c "$iconv.c"
    autoreconf -fi
    ./configure --host=$compiler --prefix="$root" --disable-glib --disable-man --disable-shared \
        CC="$compiler-gcc-posix" CPPFLAGS="-I$root/include" \
        am_cv_func_iconv=yes am_cv_lib_iconv=no am_cv_func_iconv_works=yes
    make -C include install
    make -C src/libmdb CFLAGS="-O2 -Dlocale_t=_locale_t"
    "$compiler-gcc-posix" -shared -s -o "$root/bin/libmdb.dll" -Wl,--whole-archive src/libmdb/.libs/libmdb.a \
        -Wl,--no-whole-archive iconv.o -Wl,--out-implib,"$root/lib/libmdb.dll.a"
    sed -i "s/typedef locale_t/typedef _locale_t/" "$root/include/mdbtools.h"
    make install-pkgconfigDATA
    cp debian/copyright "$root/licences/mdbtools.txt"
}

# What qpdf needs of libjpeg-turbo, from whose full installation it would take more than the library.
jpeg() {
    source_of libjpeg-turbo "$(version_of libjpeg62-turbo-dev)"
    cd "$work/libjpeg-turbo"
    cmake -G Ninja -S . -B "$work/jpeg-build" --toolchain "$work/toolchain.cmake" -DCMAKE_BUILD_TYPE=Release \
        -DCMAKE_INSTALL_PREFIX="$root" -DWITH_SIMD=0 -DENABLE_SHARED=0 -DWITH_TURBOJPEG=0
    cmake --build "$work/jpeg-build" --target jpeg-static
    cp "$work/jpeg-build/libjpeg.a" "$root/lib"
    cp "$work/jpeg-build/jconfig.h" jerror.h jmorecfg.h jpeglib.h "$root/include"
    cp debian/copyright "$root/licences/libjpeg-turbo.txt"
}

# Part of the module that finishes PDF files, with zlib and libjpeg-turbo; without encryption by others' libraries.
qpdf() {
    local part
    source_of qpdf "$(version_of libqpdf-dev)"
    sed -i 's/Advapi32/advapi32/' "$work/qpdf/CMakeLists.txt" # as this compiler spells it
    cmake -G Ninja -S "$work/qpdf" -B "$work/qpdf-build" --toolchain "$work/toolchain.cmake" \
        -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX="$root" -DBUILD_SHARED_LIBS=OFF \
        -DUSE_IMPLICIT_CRYPTO=OFF -DREQUIRE_CRYPTO_NATIVE=ON -DZLIB_LIB_PATH="/usr/$compiler/lib/libz.a"
    cmake --build "$work/qpdf-build" --target libqpdf
    for part in dev Unspecified; do # the library and its description for cmake
        cmake --install "$work/qpdf-build" --component $part
    done
    cp "$work/qpdf/debian/copyright" "$root/licences/qpdf.txt"
    cp /usr/share/doc/libz-mingw-w64-dev/copyright "$root/licences/zlib.txt"
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
        "${host_qt[@]}" -DORLO_BUILD_TOOLS="$work/host/tools" \
        -DCMAKE_CROSSCOMPILING_EMULATOR="$PWD/packaging/windows/apart.sh"
    cmake --build "$work/orlo"
    [ $testing = OFF ] || cmake --build "$work/orlo" --target tour
    rm -rf "$work"/orlo-*.zip "$work"/orlo-*-setup.exe "$work/packed"
    cpack --config "$work/orlo/CPackConfig.cmake" -B "$work"
}

installer() { # of the archive's own files
    local folder version
    mkdir "$work/packed"
    (cd "$work/packed" && cmake -E tar xf ../orlo-*-win64.zip)
    folder=$(echo "$work"/packed/*)
    version=${folder##*/orlo-} version=${version%-win64}
    packaging/windows/installer.sh "$folder" "$version" "$work/orlo/art/orlo.ico" "$work/orlo-$version-setup.exe"
    rm -r "$work/packed"
}

toolchain
once qt_source "Fetching the source of Qt"
once qt_configure "Preparing Qt"
once qt_build "Building Qt (an hour or two; $work/logs/qt_build shows its progress)"
once sqlite "Building SQLite"
once libmdb "Building libmdb" packaging/windows/iconv.{h,c}
once jpeg "Building libjpeg-turbo"
once qpdf "Building qpdf"
once runtime "Fetching the compiler's own libraries"
echo "Building ORLO ..."
logged tools tools
logged program program
logged installer installer
ls -sh "$work"/orlo-*.zip "$work"/orlo-*-setup.exe
