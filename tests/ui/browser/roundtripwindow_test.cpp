#include "core/base/uitexts.h"
#include "core/browsing/roundtrip.h"
#include "engine/downloads.h"
#include "engineenvironment.h"
#include "localhttpserver.h"
#include "ui/browser/frmbrowser.h"
#include "ui/browser/roundtripbar.h"
#include "ui/frame/mdiform1.h"

#include <QAction>
#include <QPushButton>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace EngineTest;

class RoundtripWindowTest : public QObject
{
    Q_OBJECT

private:
    LocalHttpServer m_server;
    MDIForm1 *m_frame = nullptr;

    // The page paths the server was asked for, in order, without the icon.
    QStringList pagesRequested() const
    {
        QStringList paths = m_server.requests();
        paths.removeAll(u"/favicon.ico"_s);
        return paths;
    }
    frmBrowser *tourWindow()
    {
        frmBrowser *window = openOn(*m_frame, m_server.url(u"/tour"_s).toString(), "Tour");
        waitUntil([&] {
            return evaluate(window, u"document.querySelector('iframe').contentDocument.title"_s)
                == u"Frame"_s;
        });
        return window;
    }

private slots:
    void initTestCase()
    {
        EngineTest::failOnWarnings();
        m_server.setPage(u"/tour"_s,
            titled("Tour",
                "<a href='/p/2'>2</a><a href='/p/1'>1</a><a href='/silent'>s</a>"
                "<a href='/file.bin'>f</a><a href='/p/2'>again</a><a href='/p/3'>3</a>"
                "<a href='mailto:a@example.org'>m</a><iframe src='/frame'></iframe>"));
        m_server.setPage(
            u"/frame"_s, titled("Frame", "<a href='/p/3'>3</a><a href='/f/only'>o</a>"));
        for (const char *page : {"/p/1", "/p/2", "/p/3", "/f/only"})
            m_server.setPage(QLatin1String(page), titled(page));
        m_server.setSilent(u"/silent"_s);
        m_server.setPage(u"/file.bin"_s, "data", "application/octet-stream",
            "Content-Disposition: attachment; filename=file.bin\r\n");
        m_frame = new MDIForm1;
        m_frame->resize(1000, 700);
        m_frame->show();
    }

    void init() { EngineTest::failOnWarnings(); }

    void cleanupTestCase() { delete m_frame; }

    void visitsPageLinksInOrderPastASilentServerAndADownload()
    {
        Downloads downloads(WebEngineSetup::profile());
        int saveDialogs = 0;
        downloads.setTargetChooser([&saveDialogs](const QString &) {
            ++saveDialogs;
            return QString();
        });
        frmBrowser *window = tourWindow();
        int offered = 0;
        window->setRoundtripAsker([&offered](int count, Roundtrip::Timing *timing) {
            offered = count;
            *timing = {200, 2000};
            return true;
        });
        m_server.clearRequests();
        window->toolAction(u"Roundtrip"_s)->trigger();
        QVERIFY(waitUntil(
            [&] { return window->roundtrip() && !window->roundtrip()->isRunning(); }, 60000));
        QCOMPARE(offered, 6);
        QCOMPARE(pagesRequested(),
            QStringList(
                {u"/p/2"_s, u"/p/1"_s, u"/silent"_s, u"/file.bin"_s, u"/p/3"_s, u"/f/only"_s}));
        QCOMPARE(saveDialogs, 0);
        QCOMPARE(window->Title, u"/f/only"_s);
        QCOMPARE(window->roundtripBar()->text(), uiText(2588).arg(4).arg(6).arg(2));
    }

    void frameTourPausesSkipsAndEndsWithTheToolbarStop()
    {
        frmBrowser *window = tourWindow();
        evaluate(window, u"document.querySelector('iframe').focus()"_s);
        window->setRoundtripAsker([](int count, Roundtrip::Timing *timing) {
            timing->dwellMs = 60000;
            return count == 2;
        });
        m_server.clearRequests();
        window->toolAction(u"RoundtripFrame"_s)->trigger();
        VERIFY_SOON(shows(window, "/p/3"));
        RoundtripBar *bar = window->roundtripBar();
        QVERIFY(bar->text().startsWith(uiText(2583).arg(1).arg(2).arg(QString()).trimmed()));
        bar->pauseButton()->click();
        QCOMPARE(bar->text(), uiText(2592).arg(1).arg(2).arg(m_server.url(u"/p/3"_s).toString()));
        bar->nextButton()->click();
        VERIFY_SOON(shows(window, "/f/only"));
        window->toolAction(u"Stop"_s)->trigger();
        QCOMPARE(bar->text(), uiText(2589).arg(2).arg(2).arg(0));
        QCOMPARE(pagesRequested(), QStringList({u"/p/3"_s, u"/f/only"_s}));
    }

    void aGivenListRunsInABlankWindow()
    {
        frmBrowser *window = m_frame->NewBrowser(QString(), u"about:blank"_s);
        window->setRoundtripAsker([](int, Roundtrip::Timing *timing) {
            *timing = {50, 2000};
            return true;
        });
        // The second address has no server: refused at once.
        window->StartRoundtrip({m_server.url(u"/p/1"_s).toString(), u"http://127.0.0.1:1/"_s});
        QVERIFY(waitUntil(
            [&] { return window->roundtrip() && !window->roundtrip()->isRunning(); }, 60000));
        QCOMPARE(window->roundtrip()->visited(), 1);
        QCOMPARE(window->roundtrip()->failed(), 1);
    }
};

VANTRELL_ENGINE_TEST_MAIN(RoundtripWindowTest)
#include "roundtripwindow_test.moc"
