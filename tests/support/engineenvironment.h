#pragma once

#include "engine/webenginesetup.h"

#include <QApplication>
#include <QEventLoop>
#include <QMessageBox>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <functional>

namespace EngineTest {

// Every Qt warning fails the test, but for those that speak of the machine, not of the
// program: the offscreen platform cannot pass a window's size hints on, raise a popup or
// let it grab the keyboard, and says so each time; and Qt reports the font lookup as slow
// when a loaded machine makes it take longer than it likes. The test library forgets the
// pattern after each test function: call this from init().
inline void failOnWarnings()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
    static QtMessageHandler testLog = nullptr;
    if (testLog)
        return;
    testLog = qInstallMessageHandler(
        [](QtMsgType type, const QMessageLogContext &context, const QString &message) {
            if (type == QtWarningMsg
                && (message == u"This plugin does not support propagateSizeHints()"
                    || message == u"This plugin does not support raise()"
                    || message == u"This plugin does not support grabbing the keyboard"
                    || message.startsWith(u"Populating font family aliases took")))
                return;
            testLog(type, context, message);
        });
}

// Runs `act` on the next message box once it shows, however late it comes; the test
// then goes on inside the box's exec(). Gives up after a minute.
inline void whenMessageBoxShows(QObject *context, std::function<void(QMessageBox *)> act)
{
    auto *poll = new QTimer(context);
    const QDeadlineTimer deadline(60000);
    QObject::connect(poll, &QTimer::timeout, poll, [poll, deadline, act] {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        if (!box && !deadline.hasExpired())
            return;
        poll->stop();
        poll->deleteLater();
        if (box)
            act(box);
    });
    poll->start(10);
}

// Runs the event loop until `done` holds, at most `timeoutMs`; tells whether it holds.
// The engine does its work in the event loop, which a running loop serves at once, where
// processing events between sleeps (QTest::qWaitFor) keeps it waiting for seconds.
inline bool waitUntil(const std::function<bool()> &done, int timeoutMs = 15000)
{
    if (done())
        return true;
    QEventLoop loop;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        if (done())
            loop.quit();
    });
    QTimer::singleShot(timeoutMs, &loop, &QEventLoop::quit);
    poll.start(5);
    loop.exec();
    return done();
}

// A page with a title, and a one-pixel picture: what the tests' local server serves.
inline QByteArray titled(
    const char *title, const QByteArray &body = {}, const QByteArray &head = {})
{
    return "<html><head><title>" + QByteArray(title) + "</title>" + head + "</head><body>" + body
        + "</body></html>";
}
inline QByteArray pixelPng()
{
    return QByteArray::fromBase64("iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAYAAAAfFcSJAAAADUlEQVR42mP8z8B"
                                  "QDwAEhQGAhKmMIQAAAABJRU5ErkJggg==");
}

// Whether a browser window shows the page with that title, loaded to its end.
template<typename Window> bool shows(const Window *window, const char *title)
{
    return window->Title == QLatin1String(title) && !window->page()->isLoading();
}

// A new window of the frame on the address, once it shows the page with that title.
template<typename Frame> auto openOn(Frame &frame, const QString &address, const char *title)
{
    auto *window = frame.OpenNewBrowser(address);
    if (!waitUntil([&] { return shows(window, title); }))
        qInfo("%s did not load", qPrintable(address));
    return window;
}

// The value of a script in the page, or "<no answer>". The answer comes after every
// answer to scripts run in that page before.
template<typename Window> QVariant evaluate(Window *window, const QString &script)
{
    QVariant result = QStringLiteral("<no answer>");
    bool done = false;
    window->page()->runScript(script, [&](const QVariant &value) {
        result = value;
        done = true;
    });
    waitUntil([&] { return done; });
    return result;
}

} // namespace EngineTest

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
        QTemporaryDir runtimeDir;                                                                  \
        qputenv("XDG_RUNTIME_DIR", runtimeDir.path().toUtf8());                                    \
        QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);                                \
        WebEngineSetup::registerSchemes();                                                         \
        QApplication app(argc, argv);                                                              \
        WebEngineSetup::profile(dataDir.path());                                                   \
        TestClass test;                                                                            \
        return QTest::qExec(&test, argc, argv);                                                    \
    }

// Fails the test unless the condition comes true within the time of a page load.
#define VERIFY_SOON(expr) QVERIFY2(EngineTest::waitUntil([&] { return bool(expr); }), #expr)
