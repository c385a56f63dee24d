#!/bin/sh
# Fails when an include points up the layers (core <- engine <- ui <- app) or when a
# file outside src/engine includes an engine header, in any spelling:
# <QWebEngineView>, <QtWebEngineWidgets/QWebEngineView>, <qwebengineview.h>, <QtWebEngineCore>.
src=${1:?usage: layers.sh SRC_DIR}
cd "$src" || exit 2
status=0

report() {
    if [ -n "$2" ]; then
        echo "$1:"
        echo "$2"
        status=1
    fi
}

includes() {
    grep -rnE --include='*.cpp' --include='*.h' '^[[:space:]]*#[[:space:]]*include' "$@"
}

report "engine headers outside src/engine" \
    "$(includes . | grep -iE 'include[[:space:]]*[<"][^>"]*q(t)?webengine' | grep -v '^\./engine/')"
report "core includes a layer above it" \
    "$(includes core | grep -E '"(engine|ui|app)/')"
report "engine includes a layer above it" \
    "$(includes engine | grep -E '"(ui|app)/')"
report "ui includes the program" \
    "$(includes ui | grep -E '"app/')"
report "the browser window reaches into the frame" \
    "$(includes ui/browser | grep -E '"ui/frame/')"
exit $status
