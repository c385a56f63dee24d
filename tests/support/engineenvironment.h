#pragma once

#include "engine/webenginesetup.h"

#include <QApplication>
#include <QTemporaryDir>

// Test main for tests that use the engine: the program's scheme registered before
// the application object exists, and a data folder of the test's own.
#define VANTRELL_ENGINE_TEST_MAIN(TestClass)                                                       \
    int main(int argc, char *argv[])                                                               \
    {                                                                                              \
        qputenv("QT_QPA_PLATFORM", "offscreen");                                                   \
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");                                               \
        qputenv("QTWEBENGINE_CHROMIUM_FLAGS", "--disable-gpu --no-sandbox");                       \
        QTemporaryDir dataDir;                                                                     \
        qputenv("VANTRELL_DATA_DIR", dataDir.path().toUtf8());                                     \
        QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);                                \
        WebEngineSetup::registerSchemes();                                                         \
        QApplication app(argc, argv);                                                              \
        WebEngineSetup::profile(dataDir.path());                                                   \
        TestClass test;                                                                            \
        return QTest::qExec(&test, argc, argv);                                                    \
    }
