// Shows a local page of 5,000 elements and times "show page pictures" and "show document
// structure" from the command until the generated page has loaded, against loading the
// page itself. Prints the median of five rounds.
#include "core/base/uitexts.h"
#include "engine/webenginesetup.h"
#include "localhttpserver.h"
#include "ui/browser/frmbrowser.h"
#include "ui/frame/mdiform1.h"

#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <functional>

namespace {

// 5,000 elements: sections of a heading, a picture, a background, a link and a field.
QByteArray bigPage()
{
    QByteArray body;
    for (int n = 0; n < 1000; ++n) {
        const QByteArray i = QByteArray::number(n);
        body += "<h" + QByteArray::number(n % 6 + 1) + ">Part " + i + "</h"
            + QByteArray::number(n % 6 + 1) + "><img src='/i/" + i + ".png' alt='picture " + i
            + "'><div style='background:url(/b/" + i + ".png);height:2px'></div><a href='/l/" + i
            + "'>" + i + "</a><input name='f" + i + "'>";
    }
    return "<html><head><title>Big</title></head><body><form>" + body + "</form></body></html>";
}

void waitFor(const std::function<bool()> &done)
{
    QEventLoop loop;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        if (done())
            loop.quit();
    });
    poll.start(2);
    loop.exec();
}

qint64 median(QList<qint64> values)
{
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QTWEBENGINE_CHROMIUM_FLAGS", "--disable-gpu --no-sandbox");
    QTemporaryDir dataDir;
    qputenv("VANTRELL_DATA_DIR", dataDir.path().toUtf8());
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    WebEngineSetup::registerSchemes();
    QApplication app(argc, argv);
    WebEngineSetup::profile(dataDir.path());

    LocalHttpServer server;
    server.setPage(QStringLiteral("/big"), bigPage());
    MDIForm1 frame;
    frame.resize(1200, 800);
    frame.show();

    QList<qint64> load, pictures, structure;
    for (int round = 0; round < 5; ++round) {
        QElapsedTimer clock;
        clock.start();
        frmBrowser *page = frame.OpenNewBrowser(server.url(QStringLiteral("/big")).toString());
        waitFor([&] { return page->Title == u"Big" && !page->page()->isLoading(); });
        load.append(clock.elapsed());
        for (const auto &[command, textId, times] : {std::tuple {"mn_PictureList", 2550, &pictures},
                 std::tuple {"mn_DocStruct", 2560, &structure}}) {
            frame.mdiArea()->setActiveSubWindow(
                qobject_cast<QMdiSubWindow *>(page->parentWidget()));
            const int before = int(frame.browsers().size());
            clock.restart();
            frame.menuAction(QLatin1String(command))->trigger();
            const QString title = uiText(textId).arg(QStringLiteral("Big"));
            waitFor([&] {
                const QList<frmBrowser *> windows = frame.browsers();
                return windows.size() > before && windows.last()->Title == title
                    && !windows.last()->page()->isLoading();
            });
            times->append(clock.elapsed());
        }
        frame.CloseAll();
    }
    std::printf("page load (baseline)   %5lld ms\n", median(load));
    std::printf("picture list shown     %5lld ms  ratio %.2f\n", median(pictures),
        double(median(pictures)) / double(median(load)));
    std::printf("document structure     %5lld ms  ratio %.2f\n", median(structure),
        double(median(structure)) / double(median(load)));
    return 0;
}
