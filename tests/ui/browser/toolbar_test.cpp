#include "core/base/uitexts.h"
#include "core/browsing/usercommand.h"
#include "core/prefs/prefer.h"
#include "engineenvironment.h"
#include "localhttpserver.h"
#include "ui/browser/browsertoolbar.h"
#include "ui/browser/drivemenu.h"
#include "ui/browser/findbar.h"
#include "ui/browser/frmbrowser.h"
#include "ui/frame/mdiform1.h"

#include <QAction>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

namespace {
constexpr int Wait = 15000;

QByteArray titled(const char *title, const QByteArray &head = {}, const QByteArray &body = {})
{
    return "<html><head><title>" + QByteArray(title) + "</title>" + head + "</head><body>" + body
        + "</body></html>";
}

QStringList strings(std::initializer_list<const char *> values)
{
    QStringList list;
    for (const char *value : values)
        list.append(QString::fromUtf8(value));
    return list;
}

QStringList namesOf(const QList<QAction *> &actions)
{
    QStringList names;
    for (const QAction *action : actions)
        names.append(action->isSeparator() ? QStringLiteral("-") : action->objectName());
    return names;
}

QVariant evaluate(frmBrowser *window, const QString &script)
{
    QVariant result;
    bool done = false;
    window->page()->runScript(script, [&](const QVariant &value) {
        result = value;
        done = true;
    });
    if (!QTest::qWaitFor([&] { return done; }, Wait))
        return QStringLiteral("<no answer>");
    return result;
}
} // namespace

class BrowserToolbarTest : public QObject
{
    Q_OBJECT

private:
    LocalHttpServer m_server;
    MDIForm1 *m_frame = nullptr;
    QString url(const char *path) const { return m_server.url(QLatin1String(path)).toString(); }

    void closeAll()
    {
        m_frame->CloseAll();
        QTRY_VERIFY_WITH_TIMEOUT(m_frame->browsers().isEmpty(), Wait);
        UserCommandPending = 0;
    }
    frmBrowser *openOn(const char *path, const char *title)
    {
        frmBrowser *window = m_frame->OpenNewBrowser(url(path));
        // A page may report the end of loading before its document is built.
        if (!QTest::qWaitFor(
                [&] {
                    return window->Title == QLatin1String(title) && !window->page()->isLoading()
                        && evaluate(window, QStringLiteral("document.readyState")).toString()
                        == u"complete";
                },
                Wait))
            qWarning("page %s did not load", path);
        return window;
    }

private slots:
    void initTestCase()
    {
        m_server.setPage(QStringLiteral("/a"), titled("A"));
        m_server.setPage(QStringLiteral("/fruit"),
            titled("Obst", {}, "Apfel, Birne, Apfel und noch ein Apfel."));
        m_server.setPage(QStringLiteral("/announce"),
            titled("Feeds",
                "<link rel='alternate' type='TEXT/XML' title='Eins' href='/feeds/one.xml'>"
                "<link rel='alternate' type='application/atom+xml' title='Atom' "
                "href='/feeds/atom.xml'>"
                "<link rel='alternate' type='application/rss+xml' title='Zwei' href='two.xml'>"));
        m_server.setPage(QStringLiteral("/feeds/one.xml"),
            "<?xml version='1.0'?><rss version='2.0'><channel><title>Testfeed</title>"
            "<item><title>Erster</title><description>Text "
            "eins</description><link>item1.html</link></item>"
            "<item><title>Zweiter</title><description>Text "
            "zwei</description><link>/feeds/item2.html</link></item>"
            "</channel></rss>",
            "application/rss+xml");
        m_server.setPage(QStringLiteral("/feeds/item1.html"), titled("Item eins"));
        m_server.setPage(QStringLiteral("/feeds/item2.html"), titled("Item zwei"));
        prefer().setHomeUrl(url("/a"));
        prefer().setHomeTitle(QString());
        m_frame = new MDIForm1;
        m_frame->resize(1000, 700);
        m_frame->show();
    }

    void init()
    {
        // A test that failed half-way leaves its windows behind.
        closeAll();
    }
    void cleanupTestCase() { delete m_frame; }

    void buttonsAndEntriesKeepTheirKeysAndOrder()
    {
        frmBrowser *window = m_frame->CreateBrowser(MDIForm1::BrowserKind::MDI);
        BrowserToolbar *bar = window->commands();
        QCOMPARE(bar->buttonKeys(),
            strings({"Back", "Forward", "Stop", "Refresh", "Home", "Search", "Clone", "Drive",
                "Mail", "history", "Bookm", "Save", "Print", "Feed"}));
        QCOMPARE(namesOf(bar->menuOf(QStringLiteral("Clone"))->actions()),
            strings({"Cloneit", "Startit", "StartBlank", "OpenallA", "ClosePopups", "CloseallWin",
                "CloseOthers"}));
        QCOMPARE(namesOf(bar->menuOf(QStringLiteral("Print"))->actions()),
            strings({"ppreview", "print"}));
        // Keys are compared exactly: the "Refresh" button is not its "Refresh" entry,
        // and "Print" is not "print".
        QVERIFY(window->toolAction(QStringLiteral("Refresh"))
            == bar->button(QStringLiteral("Refresh")));
        QVERIFY(bar->entry(QStringLiteral("Refresh")) != bar->button(QStringLiteral("Refresh")));
        QVERIFY(window->toolAction(QStringLiteral("print"))
            != window->toolAction(QStringLiteral("Print")));
        QCOMPARE(bar->button(QStringLiteral("Forward"))->toolTip(), QStringLiteral("Vorwärst"));
        QCOMPARE(bar->entry(QStringLiteral("Startit"))->text(), uiText(201));

        // Features not built yet are visible but disabled, and say so.
        for (const char *key : {"Refresh", "Roundtrip", "RoundtripFrame", "BrowserSearch"}) {
            QAction *entry = bar->entry(QLatin1String(key));
            QVERIFY2(entry->isVisible() && !entry->isEnabled(), key);
            QCOMPARE(entry->toolTip(), uiText(2045));
        }
        QVERIFY(!bar->button(QStringLiteral("Bookm"))->isEnabled());
        QVERIFY(bar->button(QStringLiteral("Refresh"))->isEnabled());

        // The drive list ends in its commands, each behind a separator; no pseudo file system is
        // listed.
        const QStringList drives = namesOf(bar->menuOf(QStringLiteral("Drive"))->actions());
        QCOMPARE(
            drives.mid(drives.size() - 6), strings({"-", "Browse", "-", "Map", "-", "Disconnect"}));
        for (QAction *volume : bar->driveMenu()->volumeEntries()) {
            const QString root = volume->data().toString();
            QVERIFY2(!root.startsWith(QStringLiteral("/proc"))
                    && !root.startsWith(QStringLiteral("/sys")),
                qPrintable(root));
            QCOMPARE(volume->text(), volume->text().toUpper());
        }
        closeAll();
    }

    void historyButtonIsEnabledOnlyWhileTheHistoryHoldsAnEntry()
    {
        MDIForm1 frame;
        frame.show();
        frmBrowser *window = frame.CreateBrowser(MDIForm1::BrowserKind::MDI);
        QAction *history = window->toolAction(QStringLiteral("history"));
        QTest::qWait(50);
        QVERIFY(frame.history().isEmpty());
        QVERIFY(!history->isEnabled());
        window->Navigate(url("/a"));
        QTRY_VERIFY_WITH_TIMEOUT(!frame.history().isEmpty(), Wait);
        QTRY_VERIFY(history->isEnabled());
        // A window opened later starts with the button enabled.
        frmBrowser *later = frame.CreateBrowser(MDIForm1::BrowserKind::MDI);
        QTRY_VERIFY(later->toolAction(QStringLiteral("history"))->isEnabled());
    }

    void menuCommandsAreIgnoredWhileThePageViewIsHidden()
    {
        frmBrowser *window = openOn("/a", "A");
        BrowserToolbar *bar = window->commands();
        window->page()->hide();
        QVERIFY(!window->isBrowserVisible());
        bar->menuClick(bar->entry(QStringLiteral("Startit")));
        QCOMPARE(UserCommandPending, qint16(-1));
        QCOMPARE(int(m_frame->browsers().size()), 1);
        // Buttons still act.
        bar->buttonClick(QStringLiteral("Clone"));
        QCOMPARE(int(m_frame->browsers().size()), 2);

        window->page()->show();
        UserCommandPending = 0;
        bar->menuClick(bar->entry(QStringLiteral("Startit")));
        QCOMPARE(UserCommandPending, qint16(-1));
        QCOMPARE(int(m_frame->browsers().size()), 3);
        closeAll();
    }

    void closeCommandsKeepThisWindowOrCloseItLast()
    {
        QList<frmBrowser *> windows;
        for (int i = 0; i < 3; ++i)
            windows.append(m_frame->CreateBrowser(MDIForm1::BrowserKind::MDI));
        frmBrowser *middle = windows.at(1);
        middle->commands()->menuClick(middle->commands()->entry(QStringLiteral("CloseOthers")));
        QTRY_COMPARE_WITH_TIMEOUT(int(m_frame->browsers().size()), 1, Wait);
        QCOMPARE(m_frame->browsers().first(), middle);

        m_frame->CreateBrowser(MDIForm1::BrowserKind::MDI);
        m_frame->CreateBrowser(MDIForm1::BrowserKind::MDI);
        const int middleId = middle->ID;
        QList<int> closed;
        for (frmBrowser *window : m_frame->browsers()) {
            const int id = window->ID;
            connect(window, &QObject::destroyed, this, [&closed, id] { closed.append(id); });
        }
        middle->commands()->menuClick(middle->commands()->entry(QStringLiteral("CloseallWin")));
        QTRY_VERIFY_WITH_TIMEOUT(m_frame->browsers().isEmpty(), Wait);
        QCOMPARE(closed.size(), 3);
        QCOMPARE(closed.last(), middleId);
    }

    void newWindowCommandsFollowTheFeedMark()
    {
        frmBrowser *window = openOn("/a", "A");
        BrowserToolbar *bar = window->commands();

        // The bare mark is no feed: an ordinary window on the start page.
        prefer().setHomeTitle(QStringLiteral("<FEED />"));
        bar->menuClick(bar->entry(QStringLiteral("Startit")));
        QCOMPARE(int(m_frame->browsers().size()), 2);
        frmBrowser *plain = m_frame->browsers().last();
        QTRY_COMPARE_WITH_TIMEOUT(plain->Title, QStringLiteral("A"), Wait);
        QVERIFY(plain->FeedSourceUrl.isEmpty());

        // The mark followed by a title: the start page is rendered as a feed.
        prefer().setHomeTitle(QStringLiteral("<FEED />") + url("/feeds/one.xml"));
        prefer().setHomeUrl(QStringLiteral("  ") + url("/feeds/one.xml") + QStringLiteral(" "));
        bar->buttonClick(QStringLiteral("Clone"));
        QCOMPARE(int(m_frame->browsers().size()), 3);
        frmBrowser *feed = m_frame->browsers().last();
        QTRY_COMPARE_WITH_TIMEOUT(feed->FeedSourceUrl, url("/feeds/one.xml"), Wait);
        QTRY_COMPARE_WITH_TIMEOUT(feed->Title, QStringLiteral("Testfeed"), Wait);

        // "StartBlank" opens a blank window whatever the start page is.
        bar->menuClick(bar->entry(QStringLiteral("StartBlank")));
        QCOMPARE(int(m_frame->browsers().size()), 4);
        frmBrowser *blank = m_frame->browsers().last();
        QTRY_COMPARE_WITH_TIMEOUT(blank->LocationURL(), QStringLiteral("about:blank"), Wait);

        // Home renders the feed home page in this window; an address typed afterwards ends it.
        bar->buttonClick(QStringLiteral("Home"));
        QTRY_COMPARE_WITH_TIMEOUT(window->FeedSourceUrl, url("/feeds/one.xml"), Wait);
        QTRY_COMPARE_WITH_TIMEOUT(window->Title, QStringLiteral("Testfeed"), Wait);
        window->addressBox()->setEditText(url("/a"));
        QTest::keyClick(window->addressBox()->lineEdit(), Qt::Key_Return);
        QVERIFY(window->FeedSourceUrl.isEmpty());
        QTRY_COMPARE_WITH_TIMEOUT(window->Title, QStringLiteral("A"), Wait);

        prefer().setHomeTitle(QString());
        prefer().setHomeUrl(url("/a"));
        closeAll();
    }

    void driveEntriesNavigateToTheirRootOnly()
    {
        frmBrowser *window = openOn("/a", "A");
        DriveMenu *drives = window->commands()->driveMenu();
        QAction *nowhere = drives->addVolume(QStringLiteral("nowhere"), QString());
        QCOMPARE(nowhere->text(), QStringLiteral("NOWHERE"));
        window->FeedSourceUrl = QStringLiteral("http://example.invalid/feed");
        window->commands()->menuClick(nowhere);
        QTest::qWait(300);
        QCOMPARE(window->LocationURL(), url("/a"));
        QCOMPARE(window->FeedSourceUrl, QStringLiteral("http://example.invalid/feed"));

        QTemporaryDir folder;
        QAction *local = drives->addVolume(QStringLiteral("local"), folder.path());
        window->commands()->menuClick(local);
        QVERIFY(window->FeedSourceUrl.isEmpty());
        QTRY_COMPARE_WITH_TIMEOUT(
            window->LocationURL(), QUrl::fromLocalFile(folder.path() + u'/').toString(), Wait);
        closeAll();
    }

    void findBarCountsAndStepsThroughMatches()
    {
        frmBrowser *window = openOn("/fruit", "Obst");
        FindBar *bar = window->findBar();
        QVERIFY(bar->isHidden());
        window->commands()->menuClick(window->commands()->entry(QStringLiteral("DocSearch")));
        QVERIFY(bar->isVisible());
        QTest::keyClicks(bar->textBox(), QStringLiteral("Apfel"));
        QTRY_COMPARE_WITH_TIMEOUT(bar->resultText(), QStringLiteral("1 von 3 Treffern"), Wait);
        bar->findNext();
        QTRY_COMPARE_WITH_TIMEOUT(bar->resultText(), QStringLiteral("2 von 3 Treffern"), Wait);
        bar->findPrevious();
        QTRY_COMPARE_WITH_TIMEOUT(bar->resultText(), QStringLiteral("1 von 3 Treffern"), Wait);
        bar->textBox()->setText(QStringLiteral("Kirsche"));
        QTRY_COMPARE_WITH_TIMEOUT(bar->resultText(), QStringLiteral("Keine Treffer"), Wait);
        QTest::keyClick(bar->textBox(), Qt::Key_Escape);
        QVERIFY(bar->isHidden());
        QVERIFY(bar->resultText().isEmpty());
        // Ctrl+F of the frame opens it again with the last text.
        m_frame->menuAction(QStringLiteral("key_find"))->trigger();
        QVERIFY(bar->isVisible());
        QCOMPARE(bar->textBox()->selectedText(), QStringLiteral("Kirsche"));
        closeAll();
    }

    void feedButtonListsAnnouncedFeedsAndShowsTheChosenOne()
    {
        frmBrowser *window = m_frame->OpenNewBrowser(url("/announce"));
        QSignalSpy collected(window, &frmBrowser::feedsCollected);
        QAction *feedButton = window->toolAction(QStringLiteral("Feed"));
        QTRY_VERIFY_WITH_TIMEOUT(feedButton->isEnabled(), Wait);
        QCOMPARE(window->GetFeedCount(), 2);
        QCOMPARE(window->GetFeedTitelByInd(0), QStringLiteral("Eins"));
        QCOMPARE(window->GetFeedUrlByInd(0), url("/feeds/one.xml"));
        QCOMPARE(window->GetFeedUrlByInd(1), QStringLiteral("two.xml"));
        QMenu *list = window->commands()->menuOf(QStringLiteral("Feed"));
        QCOMPARE(list->actions().size(), 2);
        QCOMPARE(list->actions().at(1)->text(), QStringLiteral("Zwei"));

        window->commands()->menuClick(list->actions().at(0));
        QTRY_COMPARE_WITH_TIMEOUT(window->FeedSourceUrl, url("/feeds/one.xml"), Wait);
        QTRY_COMPARE_WITH_TIMEOUT(window->Title, QStringLiteral("Testfeed"), Wait);
        QTRY_VERIFY_WITH_TIMEOUT(!window->page()->isLoading(), Wait);

        // The toggle sign hides the item's row and shows it again.
        const QString toggle
            = QStringLiteral("document.querySelectorAll('.toggle')[0].click();"
                             "document.getElementById('dr1').style.display + '|' + "
                             "document.querySelectorAll('.toggle')[0].innerText");
        QCOMPARE(evaluate(window, toggle).toString(), QStringLiteral("none|+"));
        QCOMPARE(evaluate(window, toggle).toString(), QStringLiteral("inline|-"));
        // Relative item links point into the feed's folder; each opens in its own named window.
        QCOMPARE(evaluate(window, QStringLiteral("document.querySelectorAll('a.lnk')[0].href"))
                     .toString(),
            url("/feeds/item1.html"));
        QCOMPARE(evaluate(window, QStringLiteral("document.querySelectorAll('a.lnk')[1].target"))
                     .toString(),
            QStringLiteral("frm2"));
        // The feed page announces no feeds of its own.
        QTRY_VERIFY_WITH_TIMEOUT(!feedButton->isEnabled(), Wait);
        QCOMPARE(window->GetFeedCount(), 0);

        // Refreshing a feed page fetches the feed anew and shows it again.
        const int fetched = m_server.requestCount(QStringLiteral("/feeds/one.xml"));
        window->commands()->buttonClick(QStringLiteral("Refresh"));
        QTRY_COMPARE_WITH_TIMEOUT(
            m_server.requestCount(QStringLiteral("/feeds/one.xml")), fetched + 1, Wait);
        QTRY_VERIFY_WITH_TIMEOUT(
            evaluate(window, QStringLiteral("document.querySelectorAll('a.lnk').length")).toInt()
                == 2,
            Wait);
        QCOMPARE(window->FeedSourceUrl, url("/feeds/one.xml"));

        // A feed that cannot be fetched is shown as a page that says so.
        window->LoadFeed(url("/feeds/missing.xml"));
        QTRY_COMPARE_WITH_TIMEOUT(window->FeedSourceUrl, url("/feeds/missing.xml"), Wait);
        QTRY_VERIFY_WITH_TIMEOUT(
            evaluate(window, QStringLiteral("document.body.innerText"))
                .toString()
                .startsWith(QStringLiteral("Der Feed ") + url("/feeds/missing.xml")),
            Wait);
        closeAll();
    }

    void feedItemOpensInItsNamedWindowAndReusesIt()
    {
        m_frame->setPolicySwitch(NewWindowPolicy::Switch::AllowOpenWin, true);
        const auto click = [](int index) {
            return QStringLiteral("document.querySelectorAll('a.lnk')[%1].click(); true")
                .arg(index);
        };
        // Whether pages keep a reference to their windows or not.
        for (const bool reference : {true, false}) {
            m_frame->setPolicySwitch(NewWindowPolicy::Switch::AllowWinRef, reference);
            frmBrowser *window = m_frame->CreateBrowser(MDIForm1::BrowserKind::MDI);
            window->LoadFeed(url("/feeds/one.xml"));
            QTRY_COMPARE_WITH_TIMEOUT(window->Title, QStringLiteral("Testfeed"), Wait);
            QTRY_VERIFY_WITH_TIMEOUT(!window->page()->isLoading(), Wait);
            UserCommandPending = 0;
            evaluate(window, click(0));
            QTRY_COMPARE_WITH_TIMEOUT(int(m_frame->browsers().size()), 2, Wait);
            frmBrowser *item = m_frame->browsers().last();
            QVERIFY(item->IsPopup);
            QTRY_COMPARE_WITH_TIMEOUT(item->Title, QStringLiteral("Item eins"), Wait);

            // The same item again: its window shows it again, none is added.
            item->Navigate(url("/a"));
            QTRY_COMPARE_WITH_TIMEOUT(item->Title, QStringLiteral("A"), Wait);
            evaluate(window, click(0));
            QTRY_COMPARE_WITH_TIMEOUT(item->Title, QStringLiteral("Item eins"), Wait);
            QCOMPARE(int(m_frame->browsers().size()), 2);

            // Another item has a window of its own.
            evaluate(window, click(1));
            QTRY_COMPARE_WITH_TIMEOUT(int(m_frame->browsers().size()), 3, Wait);
            QTRY_COMPARE_WITH_TIMEOUT(
                m_frame->browsers().last()->Title, QStringLiteral("Item zwei"), Wait);
            QCOMPARE(item->Title, QStringLiteral("Item eins"));
            closeAll();
        }
        m_frame->setPolicySwitch(NewWindowPolicy::Switch::AllowWinRef, false);
    }
};

VANTRELL_ENGINE_TEST_MAIN(BrowserToolbarTest)
#include "toolbar_test.moc"
