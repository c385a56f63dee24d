#include "core/base/appinfo.h"
#include "core/base/uitexts.h"
#include "core/browsing/linkstoopen.h"
#include "core/browsing/usercommand.h"
#include "core/model/book.h"
#include "core/model/bookediting.h"
#include "core/model/layout.h"
#include "core/prefs/prefer.h"
#include "engineenvironment.h"
#include "localhttpserver.h"
#include "ui/browser/browsertoolbar.h"
#include "ui/browser/frmbrowser.h"
#include "ui/browser/infobar.h"
#include "ui/frame/framemenus.h"
#include "ui/frame/mdiform1.h"
#include "ui/frame/openalllinks.h"
#include "ui/frame/tabstrip.h"
#include "ui/frame/twips.h"
#include "ui/frame/windowsets.h"

#include <QAbstractButton>
#include <QAction>
#include <QCheckBox>
#include <QFile>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QStatusBar>
#include <QStyle>
#include <QTest>

using namespace Qt::StringLiterals;

using namespace EngineTest;
using Kind = MDIForm1::BrowserKind;

namespace {
QStringList tabKeys(const MDIForm1 &frame)
{
    QStringList keys;
    for (int i = 0; i < frame.tabStrip()->count(); ++i)
        keys.append(frame.tabStrip()->keyAt(i));
    return keys;
}

QStringList requested(const QList<frmBrowser *> &windows)
{
    QStringList addresses;
    for (const frmBrowser *window : windows)
        addresses.append(window->LastRequestUrl);
    return addresses;
}

void activate(MDIForm1 &frame, frmBrowser *window)
{
    frame.mdiArea()->setActiveSubWindow(qobject_cast<QMdiSubWindow *>(window->parentWidget()));
}

// Counts the shortcut events that keys give ("?" for an ambiguous one) and swallows them.
struct ShortcutCatcher final : QObject
{
    QString caught;
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Shortcut)
            caught += static_cast<QShortcutEvent *>(event)->isAmbiguous() ? u'?' : u'!';
        return event->type() == QEvent::Shortcut;
    }
};
} // namespace

class FrameTest : public QObject
{
    Q_OBJECT

private:
    LocalHttpServer m_server;
    QString url(const char *path) const { return m_server.url(QLatin1String(path)).toString(); }

    frmBrowser *open(MDIForm1 &frame, const char *path, const char *title)
    {
        return EngineTest::openOn(frame, url(path), title);
    }
    // Loads the page again and waits until it has: a window its page asked for before
    // would have been made by then.
    void reload(frmBrowser *window)
    {
        QSignalSpy loaded(window->page(), &PageView::loadFinished);
        window->page()->reload();
        QVERIFY(loaded.wait());
    }

private slots:
    void initTestCase()
    {
        EngineTest::failOnWarnings();
        m_server.setPage(u"/amp"_s, titled("Tom & Jerry"));
        m_server.setPage(u"/one"_s, titled("One"));
        m_server.setPage(u"/two"_s, titled("Two"));
        m_server.setPage(
            u"/opener"_s, titled("Opener", "<a id='blank' href='/target' target='_blank'>new</a>"));
        m_server.setPage(u"/target"_s, titled("Target"));
        m_server.setPage(u"/popper"_s,
            titled("Popper",
                "<a id='blank' href='/target' target='_blank'>new</a><script>"
                "addEventListener('load', () => { document.body.dataset.opened ="
                " window.open('/target') === null ? 'null' : 'window'; });</script>"));
        m_server.setPage(u"/spammer"_s,
            titled("Spammer",
                "<script>setInterval(() => { if (window.spam) window.open('/target'); }, 5);"
                "</script>"));
        m_server.setPage(u"/links"_s,
            titled("Links",
                "<a href='/t/2'>2</a><a href='/t/1'>1</a><a href='/t/2'>again</a>"
                "<a href='/T/1'>case</a><a href='mailto:a@example.org'>m</a>"
                "<a href='JavaScript:void(0)'>s</a><a href='#top'>t</a>"
                "<a href='/links#part'>p</a><iframe src='/inner'></iframe>"));
        m_server.setPage(u"/inner"_s, titled("Inner", "<a href='/t/3'>3</a>"));
        m_server.setSilent(u"/never"_s);
        m_server.setPage(u"/silent-links"_s,
            titled("Silent links",
                "<a href='/never?1'>1</a><a href='/never?2'>2</a><a href='/never?3'>3</a>"
                "<a href='/never?4'>4</a><a href='/never?5'>5</a><a href='/never?6'>6</a>"));
        m_server.setPage(u"/image.png"_s, EngineTest::pixelPng(), "image/png");
    }

    void init()
    {
        EngineTest::failOnWarnings();
        UserCommand::clear();
    }

    void tabCaptionShowsAmpersandOnceAndCloneTakesTheAddress()
    {
        MDIForm1 frame;
        frame.show();
        QVERIFY(!frame.IsCloneable());
        frmBrowser *window = open(frame, "/amp", "Tom & Jerry");
        const int index = frame.tabStrip()->indexOfKey(u"[1]"_s);
        QCOMPARE(frame.tabStrip()->tabText(index), u"Tom && Jerry"_s);
        QCOMPARE(frame.tabStrip()->tabToolTip(index), u"Tom & Jerry"_s);
        QVERIFY(frame.menuAction(u"mn_CloneBrowser"_s)->isEnabled());
        QVERIFY(frame.windowTitle().endsWith(u"Tom & Jerry"_s));
        window->commands()->menuClick(window->commands()->entry(u"Cloneit"_s));
        QCOMPARE(frame.browsers().size(), 2);
        VERIFY_SOON(frame.browsers().last()->LocationURL() == url("/amp"));
    }

    void windowNumbersAreNeverReusedAndTabsFollowTheRegistry()
    {
        MDIForm1 frame;
        frame.show();
        QList<frmBrowser *> windows;
        for (int i = 0; i < 5; ++i)
            windows.append(frame.CreateBrowser(Kind::MDI));
        QCOMPARE(tabKeys(frame).join(u' '), u"[1] [2] [3] [4] [5]"_s);
        delete windows.at(2)->parentWidget();
        QCOMPARE(tabKeys(frame).join(u' '), u"[1] [2] [4] [5]"_s);
        frmBrowser *sixth = frame.CreateBrowser(Kind::MDI);
        QCOMPARE(sixth->ID, 6);
        QCOMPARE(frame.openWindowCount(), 6);

        // A left click on a tab restores and activates its window; the tab follows.
        windows.at(0)->parentWidget()->showMinimized();
        emit frame.tabStrip()->tabLeftClicked(u"[1]"_s);
        QCOMPARE(frame.activeBrowser(), windows.at(0));
        QVERIFY(!windows.at(0)->parentWidget()->isMinimized());
        QCOMPARE(frame.tabStrip()->keyAt(frame.tabStrip()->currentIndex()), u"[1]"_s);
        activate(frame, sixth);
        QCOMPARE(frame.tabStrip()->keyAt(frame.tabStrip()->currentIndex()), u"[6]"_s);

        frame.CloseOtherBrowsers(sixth);
        VERIFY_SOON(frame.browsers().size() == 1);
        QCOMPARE(tabKeys(frame), QStringList {u"[6]"_s});
        frame.CloseAll();
        VERIFY_SOON(frame.browsers().isEmpty());
        QCOMPARE(frame.tabStrip()->count(), 0);
        QCOMPARE(frame.windowTitle(), AppInfo::frameCaption());
    }

    void previousWindowReadsCtrlShiftTabAndGoesBack()
    {
        MDIForm1 frame;
        frame.show();
        QVERIFY(QTest::qWaitForWindowActive(&frame));
        frmBrowser *first = frame.CreateBrowser(Kind::MDI);
        frame.CreateBrowser(Kind::MDI);
        const QKeySequence keys = frame.menuAction(u"mn_PreviousWindow"_s)->shortcut();
        QCOMPARE(keys.toString(QKeySequence::NativeText),
            QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Tab).toString(QKeySequence::NativeText));
        // Shift+Tab arrives as Backtab.
        QTest::keyClick(&frame, Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(frame.activeBrowser(), first);
    }

    void everyShortcutActsOnceAndCtrlWClosesTheActiveWindow()
    {
        MDIForm1 frame;
        frame.show();
        QVERIFY(QTest::qWaitForWindowActive(&frame));
        for (int i = 0; i < 3; ++i)
            frame.CreateBrowser(Kind::MDI);
        frmBrowser *middle = frame.browsers().at(1);
        activate(frame, middle);
        middle->page()->setFocus();

        // Every key of the frame's actions and of its windows', and the menu titles' keys.
        QList<QKeySequence> keys;
        for (const QAction *action : frame.findChildren<QAction *>())
            keys += action->shortcuts();
        for (const QAction *menu : frame.menuBar()->actions())
            keys.append(QKeySequence::mnemonic(menu->text()));
        ShortcutCatcher catcher;
        qApp->installEventFilter(&catcher);
        for (const QKeySequence &key : keys) {
            catcher.caught.clear();
            QTest::keySequence(&frame, key);
            QVERIFY2(catcher.caught == u"!", qPrintable(key.toString() + catcher.caught));
        }
        qApp->removeEventFilter(&catcher);

        QTest::keySequence(&frame, QKeySequence(Qt::CTRL | Qt::Key_W));
        VERIFY_SOON(frame.browsers().size() == 2);
        QVERIFY(!frame.browsers().contains(middle));
    }

    void captionNamesThePageOnceAndTabsCloseTheirWindows()
    {
        MDIForm1 frame;
        frame.setCaption(AppInfo::frameCaption());
        frame.show();
        open(frame, "/one", "One");
        frmBrowser *two = open(frame, "/two", "Two");
        two->parentWidget()->showMaximized();
        evaluate(two, u"document.title = 'Zwei & Drei'; 1"_s);
        VERIFY_SOON(two->Title == u"Zwei & Drei"_s);
        QCOMPARE(frame.windowTitle(), AppInfo::frameCaption() + u" - Zwei & Drei"_s);

        // A middle click on a tab closes its window, and so does the tab's close button.
        TabStrip *tabs = frame.tabStrip();
        QTest::mouseClick(
            tabs, Qt::MiddleButton, {}, tabs->tabRect(tabs->indexOfKey(u"[1]"_s)).center());
        VERIFY_SOON(frame.browsers() == QList<frmBrowser *> {two});
        const auto side = QTabBar::ButtonPosition(
            tabs->style()->styleHint(QStyle::SH_TabBar_CloseButtonPosition, nullptr, tabs));
        auto *close = qobject_cast<QAbstractButton *>(tabs->tabButton(0, side));
        QVERIFY(close);
        close->click();
        VERIFY_SOON(frame.browsers().isEmpty());
        QCOMPARE(frame.windowTitle(), AppInfo::frameCaption());
    }

    void tabStripPlacementKeepsItsThreeMenuCopiesEqual()
    {
        MDIForm1 frame;
        frame.show();
        frame.CreateBrowser(Kind::MDI); // a tab, so that the strip takes room
        frame.menuAction(u"mn_ctxtRegisterUntenT"_s)->trigger();
        QCOMPARE(prefer().TabAlign(), qint16(3));
        for (const char *name :
            {"mn_RegisterUnten", "mn_ctxtRegisterUnten", "mn_ctxtRegisterUntenT"})
            QVERIFY2(frame.menuAction(QLatin1String(name))->isChecked(), name);
        for (const char *name : {"mn_RegisterOben", "mn_ctxtRegisterOben", "mn_ctxtRegisterObenT"})
            QVERIFY2(!frame.menuAction(QLatin1String(name))->isChecked(), name);
        VERIFY_SOON(frame.tabStrip()->geometry().top() > frame.mdiArea()->geometry().top());
        frame.menuAction(u"mn_ctxtRegisterOben"_s)->trigger();
        QCOMPARE(prefer().TabAlign(), qint16(1));
        QVERIFY(frame.menuAction(u"mn_ctxtRegisterObenT"_s)->isChecked());
        VERIFY_SOON(frame.tabStrip()->geometry().top() < frame.mdiArea()->geometry().top());
        frame.menuAction(u"mn_ctxtRegisterTabsT"_s)->trigger();
        QCOMPARE(prefer().TabButton(), qint16(0));
        QVERIFY(frame.menuAction(u"mn_RegisterTabs"_s)->isChecked());
        QVERIFY(!frame.menuAction(u"mn_ctxtRegisterButton"_s)->isChecked());
    }

    void quitStoresTheLastNormalSizeAndASecondInstanceNothing()
    {
        const QString path = AppInfo::dataFile(u"Pref.vtp"_s);
        QFile::remove(path);
        prefer().resetToDefaults();
        {
            MDIForm1 frame;
            frame.SecondInstance = true;
            frame.show();
            frame.close();
        }
        QVERIFY(!QFile::exists(path));
        {
            MDIForm1 frame;
            frame.resize(800, 600);
            frame.show();
            QVERIFY(QTest::qWaitForWindowExposed(&frame));
            frame.Unload();
        }
        const qint16 width = prefer().MdiWidth();
        const qint16 height = prefer().MdiHeight();
        QVERIFY(width > 0 && height > 0);
        {
            MDIForm1 frame;
            frame.resize(500, 400);
            frame.showMaximized();
            VERIFY_SOON(frame.isMaximized());
            frame.close();
        }
        QCOMPARE(prefer().MdiState(), qint16(2));
        QCOMPARE(prefer().MdiWidth(), width);
        QCOMPARE(prefer().MdiHeight(), height);
    }

    void historyKeepsTheNewestRows()
    {
        prefer().setHistoryRows(2);
        MDIForm1 frame;
        for (const char *address : {"http://one/", "http://two/", "http://three/"})
            frame.AddToHistory(QLatin1String(address), u"t"_s);
        QCOMPARE(frame.history().size(), 2);
        QCOMPARE(frame.history().first().URL(), u"http://two/"_s);
        prefer().setHistoryRows(50);
    }

    void bookmarkFolderOpensOneWindowPerBookmark()
    {
        const QString data = AppInfo::dataFolderPath();
        {
            Book book(data);
            using BookEditing::Duplicates;
            Thema *other = BookEditing::addFolder(book, u"Andere"_s, -1);
            BookEditing::addBookmark(book, *other, u"X"_s, url("/two"), Duplicates::Allow);
            Thema *travel = BookEditing::addFolder(book, u"Reise"_s, -1);
            BookEditing::addBookmark(book, *travel, u"Eins"_s, url("/one"), Duplicates::Allow);
            auto two = BookEditing::addBookmark(
                book, *travel, u"Zwei"_s, url("/two"), Duplicates::Allow);
            two.bookmark->Toolbar = 0;
            QVERIFY(book.SaveAllThema());
        }
        Book reread(data);
        QVERIFY(reread.LoadAllThema());
        const QString travelFile = reread.folderNamed(u"Reise"_s)->FileName;

        MDIForm1 frame;
        frame.show();
        QString problem;
        QCOMPARE(WindowSets::openBookmarkFolder(frame, data, travelFile + u"   "_s, &problem), 2);
        QCOMPARE(problem, QString());
        const QList<frmBrowser *> windows = frame.browsers();
        VERIFY_SOON(shows(windows.at(0), "One") && shows(windows.at(1), "Two"));
        QVERIFY(windows.at(0)->toolbarVisible());
        QVERIFY(!windows.at(1)->toolbarVisible());
        QCOMPARE(WindowSets::openBookmarkFolder(frame, data, u"99.bkm"_s, &problem), 0);
        QVERIFY(problem.contains(u"99.bkm"_s));
        QCOMPARE(frame.browsers().size(), 2);
    }

    void layoutFileRestoresAddressesGeometryBarsAndState()
    {
        const QString path = AppInfo::dataFile(u"start.wlt"_s);
        // Geometry in twips, address, address bar, toolbar, state (1 minimised).
        const WindowDescription first {1440, 720, 7200, 4320, url("/one"), -1, 0, 0, {}};
        const WindowDescription second {1440, 720, 7200, 4320, url("/two"), 0, -1, 1, {}};
        QVERIFY(Layout::SaveLayout(path, {first, second}).ok());

        MDIForm1 frame;
        frame.resize(1000, 800);
        frame.show();
        QString problem;
        QCOMPARE(WindowSets::openLayoutFile(frame, path, &problem), 2);
        QCOMPARE(problem, QString());
        const QList<frmBrowser *> windows = frame.browsers();
        VERIFY_SOON(shows(windows.at(0), "One"));
        QCOMPARE(windows.at(0)->parentWidget()->geometry(),
            QRect(Twips::toPixels(1440, &frame), Twips::toPixels(720, &frame),
                Twips::toPixels(7200, &frame), Twips::toPixels(4320, &frame)));
        QVERIFY(!windows.at(0)->toolbarVisible() && windows.at(0)->addressBarVisible());
        QVERIFY(windows.at(1)->parentWidget()->isMinimized());
        QVERIFY(!windows.at(1)->addressBarVisible());

        // Saving the open windows writes them back as they were read.
        const QString saved = AppInfo::dataFile(u"saved.wlt"_s);
        QVERIFY(WindowSets::saveLayoutFile(frame, saved, &problem));
        const Layout::ReadResult back = Layout::LoadLayout(saved);
        QCOMPARE(back.windows.size(), 2);
        QCOMPARE(back.windows.at(0).address, url("/one"));
        QCOMPARE(back.windows.at(0).toolbarVisible, qint16(0));
        QCOMPARE(back.windows.at(1).windowState, qint16(1));
        QCOMPARE(back.windows.at(1).addressBarVisible, qint16(0));
        QVERIFY(qAbs(back.windows.at(0).left - 1440) <= 15
            && qAbs(back.windows.at(0).width - 7200) <= 15);
        QVERIFY(qAbs(back.windows.at(1).width - 7200) <= 15); // the minimised one's normal size

        // A damaged file is moved aside and said so; it opens nothing.
        QFile damaged(path);
        QVERIFY(damaged.open(QIODevice::WriteOnly));
        damaged.write("not a layout");
        damaged.close();
        QCOMPARE(WindowSets::openLayoutFile(frame, path, &problem), 0);
        QVERIFY(problem.contains(u".bad-"_s));
        QVERIFY(!QFile::exists(path));
    }

    // The window menu has more entries than the German captions leave letters for:
    // "Kaskadiert" and "aktualisieren" share k, and the key moves between the two.
    void menuMnemonicsAreUniqueAndTooltipsPlainInBothLanguages()
    {
        QStringList clashes;
        for (const auto language : {UiTexts::Language::German, UiTexts::Language::English}) {
            UiTexts::load(language);
            MDIForm1 frame;
            QList<QMenu *> menus;
            for (QAction *top : frame.menuBar()->actions())
                menus.append(top->menu());
            for (qsizetype i = 0; i < menus.size(); ++i) {
                for (const QAction *entry :
                    menus.at(i) ? menus.at(i)->actions() : QList<QAction *> {})
                    if (entry->menu())
                        menus.append(entry->menu());
            }
            for (const QMenu *menu : menus) {
                QHash<QChar, QString> taken;
                for (const QAction *entry : menu ? menu->actions() : QList<QAction *> {}) {
                    if (entry->toolTip().contains(QRegularExpression(u"(^|[^&])&[^&]"_s)))
                        clashes.append(u"tooltip "_s + entry->toolTip());
                    const qsizetype at = entry->text().indexOf(QRegularExpression(u"&[^&]"_s));
                    if (entry->isSeparator() || at < 0)
                        continue;
                    const QChar key = entry->text().at(at + 1).toLower();
                    const bool shared = language == UiTexts::Language::German && key == u'k'
                        && menu->title() == uiText(400);
                    if (taken.contains(key) && !shared)
                        clashes.append(
                            menu->title() + u": "_s + taken.value(key) + u" / "_s + entry->text());
                    taken.insert(key, entry->text());
                }
            }
        }
        UiTexts::load(UiTexts::Language::German);
        QVERIFY2(clashes.isEmpty(), qPrintable(clashes.join(u"\n"_s)));
    }

    void manyTabsStayReadableAndTheStripScrolls()
    {
        MDIForm1 frame;
        frame.resize(1000, 700);
        frame.show();
        for (int i = 0; i < 25; ++i)
            frame.NewBrowser(url("/one"));
        const TabStrip *strip = frame.tabStrip();
        VERIFY_SOON(strip->tabText(24) == u"One"_s);
        const int readable = strip->fontMetrics().horizontalAdvance(u"One"_s);
        for (int i = 0; i < strip->count(); ++i)
            QVERIFY(strip->tabRect(i).width() > readable);
        // Together wider than the strip: it scrolls rather than squeezing them.
        QVERIFY(strip->tabRect(24).right() - strip->tabRect(0).left() > strip->width());
        frame.SetTabAlign(3); // at the bottom, pointing down
        QCOMPARE(strip->shape(), QTabBar::RoundedSouth);
    }

    void pageWindowsFollowTheSwitches()
    {
        MDIForm1 frame;
        frame.resize(1000, 800);
        frame.show();
        QVERIFY(QTest::qWaitForWindowExposed(&frame));
        frame.menuAction(u"mn_DisablePopup"_s)->trigger();
        QVERIFY(!frame.policy().AllowOpenWin);
        QVERIFY(frame.menuAction(u"mn_ctxtDisablePopup"_s)->isChecked());
        QVERIFY(!frame.menuAction(u"mn_PopupToBack"_s)->isEnabled());
        // A page's own window is refused: the script gets null and the user a notice.
        frmBrowser *opener = open(frame, "/popper", "Popper");
        VERIFY_SOON(evaluate(opener, u"document.body.dataset.opened"_s) == QVariant(u"null"_s));
        evaluate(opener, u"window.open('/target'); document.getElementById('blank').click(); 1"_s);
        reload(opener);
        QCOMPARE(frame.browsers().size(), 1);
        QCOMPARE(frame.tabStrip()->count(), 1);
        auto *notice = opener->findChild<InfoBar *>();
        QVERIFY(notice->text().contains(url("/target")));

        // A click of the user opens a window, switch off and command pending alike; it
        // is not a popup and has no view of its opener.
        const QVariantList centre = evaluate(opener,
            u"(() => { const r = document.getElementById('blank').getBoundingClientRect();"
            " return [r.left + r.width / 2, r.top + r.height / 2]; })()"_s)
                                        .toList();
        QCOMPARE(centre.size(), 2);
        UserCommand::mark();
        QTest::mouseClick(opener->page()->focusWidget(), Qt::LeftButton, {},
            QPoint(centre.at(0).toInt(), centre.at(1).toInt()));
        VERIFY_SOON(frame.browsers().size() == 2 && shows(frame.browsers().last(), "Target"));
        QVERIFY(!UserCommand::pending());
        frmBrowser *clicked = frame.browsers().last();
        QVERIFY(!clicked->IsPopup);
        QCOMPARE(frame.popupCount(), 0);
        QCOMPARE(frame.activeBrowser(), clicked);
        QCOMPARE(evaluate(clicked, u"window.opener === null"_s), QVariant(true));
        // A middle-click opens behind the active window.
        activate(frame, opener);
        QTest::mouseClick(opener->page()->focusWidget(), Qt::MiddleButton, {},
            QPoint(centre.at(0).toInt(), centre.at(1).toInt()));
        VERIFY_SOON(frame.browsers().size() == 3 && shows(frame.browsers().last(), "Target"));
        QCOMPARE(frame.activeBrowser(), opener);
        frame.browsers().last()->parentWidget()->close();
        VERIFY_SOON(frame.browsers().size() == 2);

        // "Open it" in the notice opens the refused window after all; "always allow"
        // lets the site's pages open windows from now on, and is kept on disk.
        activate(frame, opener);
        notice->choose(1);
        VERIFY_SOON(frame.browsers().size() == 3 && shows(frame.browsers().last(), "Target"));
        evaluate(opener, u"window.open('/target?blank'); 1"_s);
        VERIFY_SOON(!notice->text().isEmpty());
        notice->choose(2);
        VERIFY_SOON(frame.browsers().size() == 4);
        QVERIFY(frame.policy().allowsSite(QUrl(url("/opener"))));
        QVERIFY(QFile::exists(AppInfo::dataFile(NewWindowPolicy::allowedSitesFileName())));
        evaluate(opener, u"window.open('/target?allowed'); 1"_s);
        VERIFY_SOON(frame.browsers().size() == 5 && frame.browsers().last()->IsPopup);
        // Any completed load ends a user command, so none may still be under way below.
        const QList<frmBrowser *> windows = frame.browsers();
        VERIFY_SOON(std::none_of(windows.cbegin(), windows.cend(),
            [](const frmBrowser *w) { return w->page()->isLoading(); }));
        frame.allowPopupSite(QString());
        NewWindowPolicy noSites = frame.policy();
        noSites.AllowedSites.clear();
        frame.setPolicy(noSites);

        // A pending command of the user refuses a page's next window and is cleared.
        frame.menuAction(u"mn_ctxtEnablePopup"_s)->trigger();
        QVERIFY(frame.policy().AllowOpenWin);
        UserCommand::mark();
        evaluate(opener, u"window.open('/target'); 1"_s);
        VERIFY_SOON(!UserCommand::pending());
        QCOMPARE(frame.browsers().size(), 5);

        // In the background, cut from its opener; such a page may size but not move its
        // window.
        frame.menuAction(u"mn_ctxtPopupToBack"_s)->trigger();
        QVERIFY(frame.menuAction(u"mn_PopupToBack"_s)->isChecked());
        QVERIFY(!frame.policy().AllowWinRef);
        activate(frame, opener);
        evaluate(opener, u"window.open('/target', 'sized', 'width=400,height=300'); 1"_s);
        VERIFY_SOON(frame.browsers().size() == 6 && shows(frame.browsers().last(), "Target"));
        frmBrowser *sized = frame.browsers().last();
        QCOMPARE(frame.tabStrip()->count(), 6);
        QCOMPARE(frame.activeBrowser(), opener);
        auto *sub = qobject_cast<QMdiSubWindow *>(sized->parentWidget());
        const QPoint before = sub->pos();
        QVERIFY(evaluate(sized, u"window.opener === null"_s).toBool());
        // The page's own script asks, as a page would (not the test's script world).
        const auto pageAsks = [sized](const QString &call) {
            evaluate(sized,
                u"document.body.setAttribute('onclick', '"_s + call
                    + u"'); document.body.click(); 1"_s);
        };
        pageAsks(u"resizeTo(420, 330); moveTo(5, 5)"_s);
        VERIFY_SOON(qAbs(sized->page()->width() - 420) <= 2);
        pageAsks(u"resizeBy(20, 0)"_s);
        VERIFY_SOON(qAbs(sized->page()->width() - 440) <= 2);
        QCOMPARE(sub->pos(), before);
        frame.menuAction(u"mn_PopupResize"_s)->trigger();
        QVERIFY(!frame.policy().AllowResizeWin);
        pageAsks(u"resizeTo(600, 500)"_s);
        evaluate(sized, u"1"_s);
        QVERIFY(qAbs(sized->page()->width() - 440) <= 2);
    }

    void openerReachesTheWindowItOpened_data()
    {
        QTest::addColumn<bool>("reference");
        QTest::newRow("reference switch off") << false;
        QTest::newRow("reference switch on") << true;
    }

    void openerReachesTheWindowItOpened()
    {
        QFETCH(bool, reference);
        MDIForm1 frame;
        frame.show();
        if (frame.policy().AllowWinRef != reference)
            frame.menuAction(u"mn_PopupReferenz"_s)->trigger();
        frmBrowser *opener = open(frame, "/opener", "Opener");
        evaluate(opener, u"window.w = window.open('/target', 'named'); 1"_s);
        VERIFY_SOON(frame.browsers().size() == 2 && shows(frame.browsers().last(), "Target"));
        frmBrowser *named = frame.browsers().last();
        VERIFY_SOON(evaluate(opener, u"w.document.title"_s) == QVariant(u"Target"_s));
        QCOMPARE(evaluate(named, u"window.opener === null"_s), QVariant(!reference));
        // The name finds the same window again.
        evaluate(opener, u"window.open('/one', 'named'); 1"_s);
        VERIFY_SOON(shows(named, "One"));
        QCOMPARE(frame.browsers().size(), 2);

        // A receipt written into a blank window shows there, and more can follow.
        evaluate(opener,
            u"window.r = window.open(''); r.document.write('<p id=\"r\">Receipt</p>');"
            " r.document.close(); 1"_s);
        VERIFY_SOON(frame.browsers().size() == 3);
        frmBrowser *receipt = frame.browsers().last();
        VERIFY_SOON(receipt->page()->focusWidget()->isVisible());
        QCOMPARE(evaluate(receipt, u"document.getElementById('r')?.textContent ?? ''"_s),
            QVariant(u"Receipt"_s));
        evaluate(opener, u"r.document.body.insertAdjacentHTML('beforeend', '<b>Total</b>'); 1"_s);
        VERIFY_SOON(
            evaluate(receipt, u"document.body.innerText"_s).toString().contains(u"Total"_s));
        QVERIFY(!receipt->page()->grab().isNull());
    }

    void popupsCloseTogetherAndASpammingOneLeavesNothing()
    {
        MDIForm1 frame;
        frame.show();
        frmBrowser *opener = open(frame, "/opener", "Opener");
        evaluate(opener,
            QStringLiteral("window.open('/spammer'); for (let i = 0; i < 9; ++i) "
                           "window.open('/target?' + i); 1"));
        VERIFY_SOON(frame.browsers().size() == 11);
        QCOMPARE(frame.popupCount(), 10);
        QCOMPARE(frame.tabStrip()->count(), 11);
        frmBrowser *spammer = frame.browsers().at(1);
        VERIFY_SOON(shows(spammer, "Spammer"));
        evaluate(spammer, u"window.spam = true; 1"_s);
        frame.menuAction(u"mn_ctxtClosePopups"_s)->trigger();
        QVERIFY(frame.policy().AllowOpenWin); // restored after the sweep
        QCOMPARE(frame.popupCount(), 0);
        reload(opener);
        QCOMPARE(frame.browsers(), QList<frmBrowser *> {opener});
        QCOMPARE(frame.tabStrip()->count(), 1);
    }

    void arrangementChecksExactlyOneEntryAndSharesTheArea()
    {
        MDIForm1 frame;
        frame.resize(900, 700);
        frame.show();
        for (int i = 0; i < 3; ++i)
            frame.CreateBrowser(Kind::MDI);
        const QStringList names = {u"Kaskadiert"_s, u"Untereinander"_s, u"Nebeneinander"_s};
        for (const QString &chosen : names) {
            frame.menuAction(u"mn_ctxt"_s + chosen)->trigger();
            for (const QString &other : names) {
                QCOMPARE(frame.menuAction(u"mn_"_s + other)->isChecked(), other == chosen);
                QCOMPARE(frame.menuAction(u"mn_ctxt"_s + other)->isChecked(), other == chosen);
            }
        }
        // Side by side: equal widths, full height; one below another: the reverse.
        const QList<QMdiSubWindow *> subs = frame.mdiArea()->subWindowList(QMdiArea::CreationOrder);
        const QSize area = frame.mdiArea()->viewport()->size();
        for (int i = 0; i < 3; ++i)
            QCOMPARE(subs.at(i)->geometry(),
                QRect(area.width() * i / 3, 0, area.width() * (i + 1) / 3 - area.width() * i / 3,
                    area.height()));
        frame.Arrange(MDIForm1::Arrangement::OneBelowAnother);
        for (int i = 0; i < 3; ++i)
            QCOMPARE(subs.at(i)->geometry(),
                QRect(0, area.height() * i / 3, area.width(),
                    area.height() * (i + 1) / 3 - area.height() * i / 3));
    }

    void openAllLinksTakesEachAddressOnceAndAsksFromSixteen()
    {
        MDIForm1 frame;
        frame.show();
        OpenAllLinks *links = frame.menus()->openAllLinks();
        QStringList asked;
        links->setConfirmation([&asked](const QString &message, bool *showAgain) {
            asked.append(message);
            *showAgain = false; // the check box cleared
            return false;
        });
        frmBrowser *window = open(frame, "/links", "Links");
        VERIFY_SOON(
            evaluate(window, u"document.querySelector('iframe').contentDocument.links.length"_s)
            == QVariant(1));
        // Eleven windows more: 12 open + 4 links reach the notice.
        for (int i = 0; i < 11; ++i)
            frame.CreateBrowser(Kind::MDI);
        QSignalSpy finished(links, &OpenAllLinks::finished);
        window->commands()->menuClick(window->commands()->entry(u"OpenallA"_s));
        QVERIFY(finished.wait());
        QCOMPARE(finished.last().first().toInt(), 0);
        QCOMPARE(asked, QStringList {LinksToOpen::noticeText(4)});
        QCOMPARE(frame.browsers().size(), 12);
        QVERIFY(!links->noticeSwitch());

        // Switched off, the notice stays away for this run.
        activate(frame, window);
        frame.menuAction(u"mn_OpenAllLinks"_s)->trigger();
        QVERIFY(finished.wait());
        QCOMPARE(finished.last().first().toInt(), 4);
        QCOMPARE(asked.size(), 1);
        const QStringList expected = {url("/t/2"), url("/t/1"), url("/T/1"), url("/t/3")};
        VERIFY_SOON(requested(frame.browsers().mid(12)) == expected);

        // A document that is no HTML has no links to open.
        frmBrowser *image = frame.OpenNewBrowser(url("/image.png"));
        VERIFY_SOON(!image->LocationURL().isEmpty() && !image->page()->isLoading());
        links->run(image);
        QVERIFY(finished.wait());
        QCOMPARE(finished.last().first().toInt(), 0);

        // Only a handful load at once; a page that never answers holds its place for
        // the load time-out only.
        links->setLoadTimeoutMs(1500);
        frmBrowser *silent = open(frame, "/silent-links", "Silent links");
        links->run(silent);
        VERIFY_SOON(m_server.requestCount(u"/never"_s) == OpenAllLinks::MaxLoading);
        EngineTest::waitUntil([] { return false; }, 500);
        QCOMPARE(m_server.requestCount(u"/never"_s), OpenAllLinks::MaxLoading);
        QVERIFY(finished.wait(20000));
        QCOMPARE(finished.last().first().toInt(), 6);
        VERIFY_SOON(m_server.requestCount(u"/never"_s) == 6);
    }

    void noticeDialogShowsTheTextAndRemembersItsCheckBox()
    {
        const QString message = LinksToOpen::noticeText(15);
        for (const bool yes : {true, false}) {
            QString seen;
            EngineTest::whenMessageBoxShows(this, [&seen, yes](QMessageBox *box) {
                seen = box->text() + u'|' + box->checkBox()->text()
                    + (box->checkBox()->isChecked() ? u'+' : u'-');
                box->checkBox()->setChecked(!yes); // "yes" also switches the notice off
                box->button(yes ? QMessageBox::Yes : QMessageBox::No)->click();
            });
            bool showAgain = true;
            QCOMPARE(OpenAllLinks::askUser(message, &showAgain), yes);
            QCOMPARE(seen, message + u"|Diesen Hinweis immer anzeigen.+"_s);
            QCOMPARE(showAgain, !yes);
        }
    }

    void statusBarTicksAndZoomStepsSkip325()
    {
        MDIForm1 frame;
        frame.show();
        auto *time = frame.statusBar()->findChild<QLabel *>(u"time"_s);
        QVERIFY(QDate::fromString(
            frame.statusBar()->findChild<QLabel *>(u"date"_s)->text(), u"dd.MM.yyyy"_s)
                    .isValid());
        QVERIFY(QTime::fromString(time->text(), u"hh:mm:ss"_s).isValid());
        const QString before = time->text();
        VERIFY_SOON(time->text() != before);
        QVERIFY(frame.statusBar()->findChild<QLabel *>(u"email"_s)->isHidden());
        QCOMPARE(frame.menuAction(u"mn_Z350"_s)->text(), u"350%"_s);
        QVERIFY(frame.menuAction(u"mn_Z400"_s) && !frame.menuAction(u"mn_Z325"_s));
    }
};

VANTRELL_ENGINE_TEST_MAIN(FrameTest)
#include "frame_test.moc"
