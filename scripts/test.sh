#!/bin/sh
# Installs what is missing, builds everything with warnings as errors and runs every
# test; kills the tool 300 times, and the program 30 times, while they save; builds and checks the Debian package;
# builds the headless core with the address and undefined-behaviour sanitizers and runs
# its tests again; last, runs every fuzz harness for 20 seconds (VANTRELL_SKIP_FUZZ=1
# leaves that out).
set -eu
top=$(cd "$(dirname "$0")/.." && pwd)
"$top/scripts/install-deps.sh"
jobs=$(nproc 2>/dev/null || echo 2)

# Formatting first: it takes a second and says exactly which file is off.
(cd "$top" && git ls-files 'src/*.cpp' 'src/*.h' 'tests/*.cpp' 'tests/*.h' 'bench/*.cpp' 'bench/*.h' \
    'fuzz/*.cpp' 'fuzz/*.h' \
    | grep -v '^tests/corpus/' | xargs clang-format --dry-run -Werror)

cmake -S "$top" -B "$top/build-test" -G Ninja -DCMAKE_BUILD_TYPE=Debug -DVANTRELL_WERROR=ON >/dev/null
cmake --build "$top/build-test" -j "$jobs"
ctest --test-dir "$top/build-test" --output-on-failure -j "$jobs"
# The tool killed 300 times while it saves, the program 30 times while it saves the
# archive on quit: no data file may be left torn.
"$top/build-test/bench/killsafety/killSafety" 300 30
# The Debian package, made from the debug tree just built (stripped, so it stays quick).
"$top/tests/checks/install.sh" "$top/build-test" --deb

cmake -S "$top" -B "$top/build-asan" -G Ninja -DCMAKE_BUILD_TYPE=Debug -DVANTRELL_WERROR=ON \
    -DVANTRELL_CORE_ONLY=ON -DVANTRELL_SANITIZE=ON >/dev/null
cmake --build "$top/build-asan" -j "$jobs"
ASAN_OPTIONS=detect_leaks=0 UBSAN_OPTIONS=print_stacktrace=1 \
    ctest --test-dir "$top/build-asan" --output-on-failure -j "$jobs" -L core

# Every fuzz harness for a short while, after replaying the inputs of earlier findings.
if [ "${VANTRELL_SKIP_FUZZ:-0}" != 1 ]; then
    "$top/scripts/fuzz.sh" all 20
fi
