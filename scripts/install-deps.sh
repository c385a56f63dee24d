#!/bin/sh
# Installs every Debian package that building, running and testing Vantrell needs.
# Does nothing when all of them are present already.
set -eu

PACKAGES="
build-essential cmake ninja-build pkg-config git
qt6-base-dev qt6-base-dev-tools libqt6opengl6-dev
qt6-webengine-dev libqt6webenginecore6-bin qt6-webengine-dev-tools
libqt6svg6 qt6-qpa-plugins qt6-image-formats-plugins
libgumbo-dev libgl-dev libxkbcommon-dev openssl clang-format
clang-14 libclang-rt-14-dev
xvfb xauth xdg-utils libglib2.0-bin
fonts-dejavu-core fonts-liberation2
qt6-multimedia-dev dovecot-pop3d
qt6-translations-l10n qt6-pdf-dev
appstream desktop-file-utils librsvg2-bin dpkg-dev file man-db
qt6-multimedia-dev dovecot-pop3d qtkeychain-qt6-dev libsecret-1-0
"

missing=""
for p in $PACKAGES; do
    if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
        missing="$missing $p"
    fi
done

[ -z "$missing" ] && exit 0

if [ "$(id -u)" -eq 0 ]; then
    SUDO=""
else
    SUDO="sudo"
fi

echo "Installing:$missing"
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -q
# shellcheck disable=SC2086
$SUDO apt-get install -y -q --no-install-recommends $missing
