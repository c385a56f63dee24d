// Opens the 100 links of a local page in windows of their own and reports the time until
// every window has opened and loaded, the memory of the whole process tree (PSS) and the
// longest gap of a 50 ms timer while it ran. Run without arguments: it starts itself once
// per way of opening and prints both.
#include "engine/webenginesetup.h"
#include "localhttpserver.h"
#include "ui/browser/frmbrowser.h"
#include "ui/frame/framemenus.h"
#include "ui/frame/mdiform1.h"
#include "ui/frame/openalllinks.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>

namespace {

constexpr int Links = 100;

// Proportional set size of this process and every process below it, in KiB.
qint64 treePss()
{
    QHash<qint64, qint64> parentOf;
    for (const QString &entry : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs)) {
        bool numeric = false;
        const qint64 pid = entry.toLongLong(&numeric);
        if (!numeric)
            continue;
        QFile stat(QStringLiteral("/proc/%1/stat").arg(pid));
        if (!stat.open(QIODevice::ReadOnly))
            continue;
        const QByteArray line = stat.readAll();
        const QList<QByteArray> fields = line.mid(line.lastIndexOf(')') + 2).split(' ');
        parentOf.insert(pid, fields.value(1).toLongLong());
    }
    const qint64 self = QCoreApplication::applicationPid();
    qint64 total = 0;
    for (auto it = parentOf.cbegin(); it != parentOf.cend(); ++it) {
        qint64 pid = it.key();
        while (pid > 1 && pid != self)
            pid = parentOf.value(pid, 0);
        if (pid != self)
            continue;
        QFile rollup(QStringLiteral("/proc/%1/smaps_rollup").arg(it.key()));
        if (!rollup.open(QIODevice::ReadOnly))
            continue;
        for (const QByteArray &line : rollup.readAll().split('\n')) {
            if (line.startsWith("Pss:"))
                total += line.mid(4).trimmed().split(' ').value(0).toLongLong();
        }
    }
    return total;
}

int runOnce(const QString &mode)
{
    LocalHttpServer server;
    QByteArray page = "<html><head><title>Links</title></head><body>";
    for (int n = 0; n < Links; ++n) {
        const QString path = QStringLiteral("/p/%1").arg(n, 3, 10, QLatin1Char('0'));
        server.setPage(path,
            "<html><head><title>P" + QByteArray::number(n) + "</title></head><body>Seite "
                + QByteArray::number(n) + "</body></html>");
        page += "<a href='" + path.toUtf8() + "'>" + QByteArray::number(n) + "</a> ";
    }
    server.setPage(QStringLiteral("/links"), page + "</body></html>");

    MDIForm1 frame;
    frame.resize(1200, 800);
    frame.show();
    OpenAllLinks *opener = frame.menus()->openAllLinks();
    opener->setConfirmation([](const QString &, bool *) { return true; });

    frmBrowser *source = frame.OpenNewBrowser(server.url(QStringLiteral("/links")).toString());
    QEventLoop wait;
    QTimer poll;
    poll.setInterval(10);
    const QMetaObject::Connection sourceLoaded
        = QObject::connect(&poll, &QTimer::timeout, &wait, [&] {
              if (source->Title == u"Links" && !source->page()->isLoading())
                  wait.quit();
          });
    poll.start();
    wait.exec();
    poll.stop();
    QObject::disconnect(sourceLoaded);
    const qint64 pssBefore = treePss();

    // The event loop's pulse: the longest gap between two ticks of a 50 ms timer.
    QElapsedTimer pulse;
    qint64 maxGap = 0;
    QTimer heartbeat;
    heartbeat.setInterval(50);
    QObject::connect(
        &heartbeat, &QTimer::timeout, &heartbeat, [&] { maxGap = qMax(maxGap, pulse.restart()); });

    QElapsedTimer clock;
    qint64 openedMs = -1;
    pulse.start();
    heartbeat.start();
    clock.start();
    if (mode == u"loop") {
        // The plain way: every window in one go.
        QList<QString> addresses;
        for (int n = 0; n < Links; ++n)
            addresses.append(
                server.url(QStringLiteral("/p/%1").arg(n, 3, 10, QLatin1Char('0'))).toString());
        for (const QString &address : addresses)
            frame.OpenNewBrowser(address);
        openedMs = clock.elapsed();
    } else {
        QObject::connect(
            opener, &OpenAllLinks::finished, &frame, [&] { openedMs = clock.elapsed(); });
        opener->run(source);
    }
    QObject::connect(&poll, &QTimer::timeout, &wait, [&] {
        if (openedMs < 0 || frame.browsers().size() < Links + 1)
            return;
        for (frmBrowser *window : frame.browsers()) {
            if (window->Title.isEmpty() || window->page()->isLoading())
                return;
        }
        wait.quit();
    });
    poll.start();
    wait.exec();
    const qint64 loadedMs = clock.elapsed();
    heartbeat.stop();
    QTimer::singleShot(2000, &wait, &QEventLoop::quit);
    wait.exec();
    const qint64 pssAfter = treePss();
    std::printf("%s %lld %lld %lld %lld %lld\n", qPrintable(mode), static_cast<long long>(openedMs),
        static_cast<long long>(loadedMs), static_cast<long long>(maxGap),
        static_cast<long long>(pssBefore), static_cast<long long>(pssAfter));
    std::fflush(stdout);
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc < 2) {
        // One process per way of opening, so neither inherits the other's engine processes.
        QCoreApplication app(argc, argv);
        std::printf("%-8s %10s %10s %10s %12s %12s\n", "mode", "opened ms", "loaded ms",
            "max gap ms", "PSS before", "PSS after");
        for (const char *mode : {"loop", "openall"}) {
            QProcess child;
            child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
            child.start(QCoreApplication::applicationFilePath(), {QLatin1String(mode)});
            child.waitForFinished(600000);
            const QList<QByteArray> v = child.readAllStandardOutput().trimmed().split(' ');
            if (v.size() < 6) {
                std::printf("%s: no result\n", mode);
                continue;
            }
            std::printf("%-8s %10s %10s %10s %9.0f MiB %9.0f MiB\n", mode, v[1].constData(),
                v[2].constData(), v[3].constData(), v[4].toDouble() / 1024, v[5].toDouble() / 1024);
        }
        return 0;
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
    qputenv("QTWEBENGINE_CHROMIUM_FLAGS", "--disable-gpu --no-sandbox");
    QTemporaryDir dataDir;
    qputenv("VANTRELL_DATA_DIR", dataDir.path().toUtf8());
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    WebEngineSetup::registerSchemes();
    QApplication app(argc, argv);
    WebEngineSetup::profile(dataDir.path());
    return runOnce(QString::fromLocal8Bit(argv[1]));
}
