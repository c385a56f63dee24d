#!/bin/sh
# Builds the Debian package vantrell_VERSION_ARCH.deb and prints its path.
# usage: package.sh [BUILD_DIR]
# Without an argument a release build is made in build-release (only the programs and
# icons are built); with one, that already built tree is packaged as it is (the test
# script packages its debug tree this way, the binaries are stripped either way).
set -eu
top=$(cd "$(dirname "$0")/.." && pwd)
if [ $# -ge 1 ]; then
    build=$(cd "$1" && pwd)
else
    "$top/scripts/install-deps.sh"
    build="$top/build-release"
    cmake -S "$top" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release >/dev/null
    cmake --build "$build" -j "$(nproc 2>/dev/null || echo 2)" \
        --target vantrell vantrell-tool vantrell-icons
fi
(cd "$build" && cpack -G DEB >/dev/null)
ls "$build"/vantrell_*.deb
