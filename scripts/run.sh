#!/bin/sh
# Installs what is missing, builds Vantrell and starts it, optionally on an address or file.
set -eu
top=$(cd "$(dirname "$0")/.." && pwd)
"$top/scripts/install-deps.sh"
cmake -S "$top" -B "$top/build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$top/build" --target vantrell vantrell-tool
exec "$top/build/bin/vantrell" "$@"
