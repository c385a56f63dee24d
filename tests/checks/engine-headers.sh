#!/bin/sh
# Fails when a file outside src/platform includes an engine header.
cd "$1" || exit 2
found=$(grep -rl --include='*.cpp' --include='*.h' '#include <QWebEngine' . | grep -v '^\./platform/')
if [ -n "$found" ]; then
    echo "engine headers outside src/platform:"
    echo "$found"
    exit 1
fi
exit 0
