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
#include <QDialog>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>

#include <algorithm>
#include <string_view>

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
        TabStrip *tabs = frame.tabStrip();
        return tabs->tabToolTip(tabs->indexOfKey(TabStrip::keyOf(window->ID)));
    }
    static bool anyDialogShown()
    {
        const QList<QWidget *> windows = QApplication::topLevelWidgets();
        return std::any_of(windows.cbegin(), windows.cend(),
            [](QWidget *w) { return qobject_cast<QDialog *>(w) && w->isVisible(); });
    }
    void serveWatched(const QByteArray &text)
    {
        m_server.setPage(
            u"/watch"_s, titled("Watch", "<p>" + text + "</p><div style='height:6000px'></div>"));
    }

private slots:
    void initTestCase() { UiTexts::load(UiTexts::Language::German); }
    void init() { EngineTest::failOnWarnings(); }

    void reloadsOnItsIntervalKeepsTheScrollAndMarksChangedText()
    {
        MDIForm1 frame;
        frame.resize(900, 600);
        frame.show();
        serveWatched("first");
        frmBrowser *window = openOn(frame, m_server.url(u"/watch"_s).toString(), "Watch");
        QCOMPARE(evaluate(window, u"window.scrollTo(0, 1200); window.scrollY"_s).toInt(), 1200);
        window->setRefreshInterval(1000ms, true);
        QVERIFY(tabTip(frame, window).contains(uiText(2504).arg(u"1 s"_s)));

        const int loaded = m_server.requestCount(u"/watch"_s);
        VERIFY_SOON(m_server.requestCount(u"/watch"_s) >= loaded + 2);
        VERIFY_SOON(
            !window->page()->isLoading() && evaluate(window, u"window.scrollY"_s).toInt() == 1200);
        QVERIFY(!window->pageChangedMark());

        serveWatched("second");
        VERIFY_SOON(window->pageChangedMark());
        QVERIFY(tabTip(frame, window).contains(uiText(2506).section(u'%', 0, 0)));
        QCOMPARE(frame.tabStrip()->tabTextColor(0),
            frame.tabStrip()->palette().color(QPalette::Highlight));

        // "Stop" ends it: no request comes any more.
        window->commands()->buttonClick(u"Stop"_s);
        // A request already under way may still arrive.
        waitUntil([] { return false; }, 500);
        const int stopped = m_server.requestCount(u"/watch"_s);
        waitUntil([] { return false; }, 2500);
        QCOMPARE(m_server.requestCount(u"/watch"_s), stopped);
        QCOMPARE(tabTip(frame, window), window->Caption());
        QVERIFY(!window->autoRefresh()->timer()->isActive());
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
        QVERIFY(!anyDialogShown());
        QVERIFY(tabTip(frame, window).contains(uiText(2505).section(u'%', 0, 0)));

        QVERIFY(revived.listen(QHostAddress::LocalHost, port));
        VERIFY_SOON(window->Title == u"Back" && !window->autoRefresh()->lastFailed());
        QVERIFY(!tabTip(frame, window).contains(uiText(2505).section(u'%', 0, 0)));
        QVERIFY(window->autoRefresh()->isActive());
    }

    void theDialogSetsAPresetAndOff()
    {
        m_server.setPage(u"/one"_s, titled("One"));
        MDIForm1 frame;
        frame.show();
        frmBrowser *window = openOn(frame, m_server.url(u"/one"_s).toString(), "One");
        for (const char *preset : {"preset300", "preset0"}) {
            // The closed dialog took the activation with it; the offscreen frame does not
            // get it back as a desktop's would.
            frame.mdiArea()->setActiveSubWindow(
                qobject_cast<QMdiSubWindow *>(window->parentWidget()));
            frame.menuAction(u"mn_SetRefresh"_s)->trigger();
            auto *dialog = window->findChild<RefreshDialog *>();
            QVERIFY(dialog && dialog->isVisible());
            // The second time, the dialog shows the interval the first one set.
            QCOMPARE(dialog->seconds(), preset == std::string_view("preset0") ? 300 : 0);
            dialog->findChild<QPushButton *>(QLatin1String(preset))->click();
            dialog->accept();
            QTRY_VERIFY(!window->findChild<RefreshDialog *>());
        }
        QVERIFY(!window->autoRefresh()->isActive());
        window->commands()->menuClick(window->commands()->entry(u"Refresh"_s));
        auto *dialog = window->findChild<RefreshDialog *>();
        QVERIFY(dialog);
        dialog->findChild<QPushButton *>(u"preset900"_s)->click();
        dialog->accept();
        QCOMPARE(window->autoRefresh()->interval(), 900s);
        QVERIFY(tabTip(frame, window).contains(uiText(2504).arg(u"15 min"_s)));
    }
};

VANTRELL_ENGINE_TEST_MAIN(AutoRefreshTest)
#include "autorefresh_test.moc"
