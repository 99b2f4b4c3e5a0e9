#!/usr/bin/env bash
# Sourced by build.sh and check.sh: the folders of the build for Windows.
work=$(realpath -m "${ORLO_WINDOWS:-build/windows}")
root=$work/root # the libraries that the program is built with
compiler=x86_64-w64-mingw32
wine=/usr/lib/wine/wine64
