#include "core/base/uitexts.h"
#include "core/browsing/autorefresh.h"
#include "engineenvironment.h"
#include "localhttpserver.h"
#include "ui/browser/browsertoolbar.h"
#include "ui/browser/frmbrowser.h"
#include "ui/browser/refreshdialog.h"
#include "ui/frame/mdiform1.h"
#include "ui/frame/tabstrip.h"

#include <QAction>
#include <QPushButton>

using namespace Qt::StringLiterals;
using namespace EngineTest;
using namespace std::chrono_literals;

// Windows that reload themselves on an interval, through the real engine.
class AutoRefreshTest : public QObject
{
    Q_OBJECT

    LocalHttpServer m_server;

    static QString tabTip(MDIForm1 &frame, frmBrowser *window)
    {
        return frame.tabStrip()->tabToolTip(
            frame.tabStrip()->indexOfKey(TabStrip::keyOf(window->ID)));
    }
    void serveWatched(const QByteArray &text)
    {
        // The page keeps the engine from restoring its position: the window has to.
        m_server.setPage(u"/watch"_s,
            titled("Watch", "<p>" + text + "</p><div style='height:6000px'></div>",
                "<script>history.scrollRestoration = 'manual'</script>"));
    }

private slots:
    void initTestCase() { UiTexts::load(UiTexts::Language::German); }
    void init() { EngineTest::failOnWarnings(); }

    void reloadsOnItsIntervalKeepsTheScrollMarksChangedTextAndStops()
    {
        MDIForm1 frame;
        frame.show();
        serveWatched("first");
        frmBrowser *window = openOn(frame, m_server.url(u"/watch"_s).toString(), "Watch");
        QCOMPARE(evaluate(window, u"window.scrollTo(0, 1200); window.scrollY"_s).toInt(), 1200);
        frame.menuAction(u"mn_SetRefresh"_s)->trigger();
        auto *dialog = window->findChild<RefreshDialog *>();
        QVERIFY(dialog && dialog->isVisible() && dialog->seconds() == 0);
        dialog->findChild<QPushButton *>(u"preset900"_s)->click();
        dialog->accept();
        QCOMPARE(window->autoRefresh()->interval(), 900s);
        QVERIFY(tabTip(frame, window).contains(uiText(2504).arg(u"15 min"_s)));
        // Faster than the dialog allows, for the test.
        window->setRefreshInterval(1000ms, true);
        const int loaded = m_server.requestCount(u"/watch"_s);
        VERIFY_SOON(m_server.requestCount(u"/watch"_s) >= loaded + 2);
        VERIFY_SOON(
            !window->page()->isLoading() && evaluate(window, u"window.scrollY"_s).toInt() == 1200);
        QVERIFY(!window->pageChangedMark());

        serveWatched("second");
        VERIFY_SOON(window->pageChangedMark());
        QCOMPARE(frame.tabStrip()->tabTextColor(0),
            frame.tabStrip()->palette().color(QPalette::Highlight));

        window->commands()->buttonClick(u"Stop"_s);
        waitUntil([] { return false; }, 500); // a request already under way may arrive
        const int stopped = m_server.requestCount(u"/watch"_s);
        waitUntil([] { return false; }, 2500);
        QCOMPARE(m_server.requestCount(u"/watch"_s), stopped);
        QCOMPARE(tabTip(frame, window), window->Caption());
    }

    void aDeadServerIsTriedAgainWithoutDialogsUntilItAnswers()
    {
        LocalHttpServer revived;
        const quint16 port = revived.serverPort();
        revived.close();
        revived.setPage(u"/back"_s, titled("Back"));
        MDIForm1 frame;
        frame.show();
        frmBrowser *window = frame.OpenNewBrowser(u"http://127.0.0.1:%1/back"_s.arg(port));
        window->setRefreshInterval(1000ms);
        VERIFY_SOON(window->autoRefresh()->failures() >= 3);
        QVERIFY(!QApplication::activeModalWidget());
        const QString failed = uiText(2505).section(u'%', 0, 0);
        QVERIFY(tabTip(frame, window).contains(failed));

        QVERIFY(revived.listen(QHostAddress::LocalHost, port));
        VERIFY_SOON(window->Title == u"Back" && !tabTip(frame, window).contains(failed));
    }
};

VANTRELL_ENGINE_TEST_MAIN(AutoRefreshTest)
#include "autorefresh_test.moc"
