#!/bin/sh
# Installs a built tree into a temporary prefix and checks what lands there: every file
# in its place, the .desktop file and the AppStream metainfo valid, and both programs
# answering from the prefix, finding their shared files beside it.
# With --deb, also builds the Debian package from the tree and checks its control
# data and contents.
# usage: install.sh BUILD_DIR [--deb]
set -eu
build=$(cd "$1" && pwd)
top=$(cd "$(dirname "$0")/../.." && pwd)
prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT
failed=0
fail() { echo "FAIL: $*"; failed=1; }

cmake --install "$build" --prefix "$prefix" >/dev/null

version=$(sed -n 's/^project(Vantrell VERSION \([0-9.]*\).*/\1/p' "$top/CMakeLists.txt")
files="bin/vantrell bin/vantrell-tool
share/vantrell/vtbooksamples.html share/vantrell/notify.wav
share/applications/vantrell.desktop share/metainfo/org.vantrell.vantrell.metainfo.xml
share/icons/hicolor/scalable/apps/vantrell.svg
share/man/man1/vantrell.1 share/man/man1/vantrell-tool.1 share/doc/vantrell/copyright"
[ -f "$top/resources/search.html" ] && files="$files share/vantrell/search.html"
for size in 16 22 24 32 48 64 128 256; do
    png=share/icons/hicolor/${size}x$size/apps/vantrell.png
    files="$files $png"
    file "$prefix/$png" 2>/dev/null | grep -q "PNG image data, $size x $size," \
        || fail "$png is no $size x $size PNG"
done
for f in $files; do
    [ -f "$prefix/$f" ] || fail "missing $f"
done

desktop-file-validate "$prefix/share/applications/vantrell.desktop" || fail "desktop-file-validate"
appstreamcli validate --no-net "$prefix/share/metainfo/org.vantrell.vantrell.metainfo.xml" \
    >/dev/null || fail "appstreamcli validate"

[ "$("$prefix/bin/vantrell" --version)" = "Vantrell $version" ] || fail "vantrell --version"
[ "$("$prefix/bin/vantrell-tool" --version)" = "vantrell-tool $version" ] \
    || fail "vantrell-tool --version"
# A fresh data folder's search page is the installed one, not one beside the program.
VANTRELL_LANG=en "$prefix/bin/vantrell-tool" --data-dir "$prefix/data" prefs show \
    | grep -q "SearchEngineFile.*$prefix/share/vantrell/search.html" \
    || fail "the tool does not look for its shared files in $prefix/share/vantrell"

if [ "${2:-}" = --deb ]; then
    rm -f "$build"/vantrell_*.deb
    "$top/scripts/package.sh" "$build" >/dev/null
    deb=$(ls "$build"/vantrell_*.deb)
    control=$(dpkg-deb -I "$deb")
    # The libraries come from dpkg-shlibdeps, with their versions.
    for field in "Package: vantrell$" "Version: $version$" "Depends: .*libqt6webenginecore6 ("; do
        echo "$control" | grep -q "^ $field" || fail "control data lacks $field"
    done
    dpkg-deb -c "$deb" | awk '{print $NF}' > "$prefix/contents"
    for f in $files; do
        grep -qx "./usr/$f" "$prefix/contents" || fail "package lacks /usr/$f"
    done
fi
[ "$failed" = 0 ] && echo "install check passed"
exit "$failed"
