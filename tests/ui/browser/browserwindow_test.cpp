#include "core/base/uitexts.h"
#include "core/browsing/savename.h"
#include "core/browsing/usercommand.h"
#include "core/prefs/prefer.h"
#include "engine/downloads.h"
#include "engineenvironment.h"
#include "localhttpserver.h"
#include "modaldialogs.h"
#include "ui/browser/browsertoolbar.h"
#include "ui/browser/drivemenu.h"
#include "ui/browser/findbar.h"
#include "ui/browser/frmbrowser.h"
#include "ui/browser/infobar.h"
#include "ui/frame/mdiform1.h"
#include "ui/frame/tabstrip.h"

#include <QAbstractItemView>
#include <QAction>
#include <QComboBox>
#include <QCompleter>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QPrintPreviewDialog>
#include <QPrintPreviewWidget>
#include <QPrinter>
#include <QSignalSpy>
#include <QSslCertificate>
#include <QSslKey>
#include <QSslServer>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

using namespace EngineTest;
using Kind = MDIForm1::BrowserKind;

namespace {
QByteArray supportFile(const char *name)
{
    QFile file(QStringLiteral(VANTRELL_SOURCE_DIR "/tests/support/") + QLatin1String(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// A printer that says when it is freed.
struct WatchedPrinter final : QPrinter
{
    WatchedPrinter(bool *gone, const QString &pdfFile)
        : m_gone(gone)
    {
        setOutputFileName(pdfFile);
    }
    ~WatchedPrinter() override { *m_gone = true; }
    bool *m_gone;
};
} // namespace

class BrowserWindowTest : public QObject
{
    Q_OBJECT

private:
    LocalHttpServer m_server;
    MDIForm1 *m_frame = nullptr;
    QString url(const char *path) const { return m_server.url(QLatin1String(path)).toString(); }

    frmBrowser *openOn(const char *path, const char *title)
    {
        return EngineTest::openOn(*m_frame, url(path), title);
    }
    int windows() const { return int(m_frame->browsers().size()); }

private slots:
    void initTestCase()
    {
        EngineTest::failOnWarnings();
        m_server.setPage(u"/a"_s, titled("A"));
        m_server.setPage(u"/b"_s, titled("B"));
        m_server.setPage(u"/"_s, titled("Root"));
        m_server.setPage(u"/search"_s, titled("Results"));
        m_server.setPage(u"/closer"_s,
            titled("Closer", {}, "<script>setTimeout(() => window.close(), 50)</script>"));
        m_server.setPage(u"/file.bin"_s, QByteArray(100000, 'z'), "application/octet-stream",
            "Content-Disposition: attachment; filename=\"file.bin\"\r\n");
        m_server.setPage(u"/image.png"_s, EngineTest::pixelPng(), "image/png");
        m_server.setPage(u"/geo"_s,
            titled("Geo", {},
                "<script>navigator.geolocation.getCurrentPosition("
                "() => fetch('/granted'), e => fetch('/denied?' + e.code));</script>"));
        m_server.setPage(u"/pictured"_s, titled("Bild", "<img src='/image.png'>"));
        m_server.setPage(u"/fruit"_s, titled("Obst", "Apfel, Birne, Apfel und noch ein Apfel."));
        m_server.setPage(u"/announce"_s,
            titled("Feeds", {},
                "<link rel='alternate' type='TEXT/XML' title='Eins' href='/feeds/one.xml'>"
                "<link rel='alternate' type='application/atom+xml' title='Atom' "
                "href='/feeds/atom.xml'>"
                "<link rel='alternate' type='application/rss+xml' title='Zwei' href='two.xml'>"));
        m_server.setPage(u"/feeds/one.xml"_s,
            "<?xml version='1.0'?><rss version='2.0'><channel><title>Testfeed</title>"
            "<item><title>Erster</title><description>Text eins</description>"
            "<link>item1.html</link></item>"
            "<item><title>Zweiter</title><description>Text zwei</description>"
            "<link>/feeds/item2.html</link></item></channel></rss>",
            "application/rss+xml");
        m_server.setPage(u"/feeds/item1.html"_s, titled("Item eins"));
        m_server.setPage(u"/feeds/item2.html"_s, titled("Item zwei"));
        prefer().setHomeUrl(url("/a"));
        m_frame = new MDIForm1;
        m_frame->resize(1000, 700);
        m_frame->show();
    }

    void init()
    {
        EngineTest::failOnWarnings();
        m_frame->CloseAll();
        VERIFY_SOON(m_frame->browsers().isEmpty());
        UserCommand::clear();
        prefer().setHomeTitle(QString());
        prefer().setHomeUrl(url("/a"));
    }

    void cleanupTestCase() { delete m_frame; }

    void savedPageFilesHoldTheirFormat()
    {
        Downloads downloads(WebEngineSetup::profile()); // takes the saves as the program does
        frmBrowser *window = openOn("/pictured", "Bild");
        QTemporaryDir folder;
        using Format = PageView::SaveFormat;
        const QString archive
            = SaveName::withSuffix(folder.filePath(u"seite.html"_s), SaveName::Kind::Archive);
        QCOMPARE(archive, folder.filePath(u"seite.html.mhtml"_s));
        const auto read = [&](const QString &name) {
            QFile file(folder.filePath(name));
            return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        };
        window->page()->savePage(archive, Format::Archive);
        VERIFY_SOON(read(u"seite.html.mhtml"_s).contains("MIME-Version: 1.0"));
        window->page()->savePage(folder.filePath(u"komplett.html"_s), Format::Complete);
        VERIFY_SOON(QDir(folder.filePath(u"komplett_files"_s)).entryList(QDir::Files).size() == 1);
        VERIFY_SOON(read(u"komplett.html"_s).contains("komplett_files/"));
        window->page()->savePage(folder.filePath(u"nur.htm"_s), Format::HtmlOnly);
        VERIFY_SOON(read(u"nur.htm"_s).contains("<title>Bild</title>"));
        QVERIFY(!QFileInfo::exists(folder.filePath(u"nur_files"_s)));
        QCOMPARE(SaveName::withSuffix(u"/x/a.MHT"_s, SaveName::Kind::Archive), u"/x/a.MHT"_s);
        QCOMPARE(SaveName::withSuffix(u"/x/a.mhtml"_s, SaveName::Kind::Html), u"/x/a.mhtml.html"_s);
    }

    void addressBarHistoryBackForwardAndZoomOfOneWindow()
    {
        MDIForm1 frame; // a history of its own
        frame.show();
        frmBrowser *window = frame.CreateBrowser(Kind::MDI);
        QAction *history = window->toolAction(u"history"_s);
        QVERIFY(!history->isEnabled());
        window->Navigate(url("/a"));
        VERIFY_SOON(shows(window, "A"));
        QVERIFY(history->isEnabled());
        QVERIFY(frame.CreateBrowser(Kind::MDI)->toolAction(u"history"_s)->isEnabled());

        QComboBox *box = window->addressBox();
        box->setEditText(u"   "_s + url("/b") + u"  "_s);
        QTest::keyClick(box->lineEdit(), Qt::Key_Return);
        VERIFY_SOON(shows(window, "B"));
        QCOMPARE(window->LastRequestUrl, url("/b"));
        box->setEditText(url("/a"));
        QTest::keyClick(box->lineEdit(), Qt::Key_Return);
        VERIFY_SOON(shows(window, "A"));
        QCOMPARE(box->count(), 2);
        QCOMPARE(box->itemText(0) + u' ' + box->itemText(1), url("/a") + u' ' + url("/b"));
        QCOMPARE(frame.history().size(), 3);
        QCOMPARE(frame.history().last().URL(), url("/a"));
        QCOMPARE(frame.history().last().Title(), u"A"_s);

        // Back and forward, and neither fails where there is nothing to go to.
        window->GoBack();
        VERIFY_SOON(shows(window, "B"));
        window->GoForward();
        VERIFY_SOON(shows(window, "A"));
        window->GoForward();
        evaluate(window, u"0"_s);
        QCOMPARE(window->LastRequestUrl, url("/a"));
        QCOMPARE(frame.history().size(), 5);

        // An empty address goes to the start page of the window.
        window->StartUrl = url("/b");
        window->Navigate(QString());
        VERIFY_SOON(shows(window, "B"));

        // Zoom applies to HTML documents only.
        window->SetZoomFactor(150);
        VERIFY_SOON(window->ZoomFactor == 150);
        QCOMPARE(window->page()->zoomPercent(), 150);
        window->Navigate(url("/image.png"));
        VERIFY_SOON(window->LocationURL().endsWith(u"/image.png") && !window->page()->isLoading());
        window->SetZoomFactor(300);
        evaluate(window, u"0"_s); // answered after the zoom's own question
        QCOMPARE(window->ZoomFactor, qint16(150));
    }

    void pageThatClosesItselfRemovesItsTab()
    {
        openOn("/a", "A");
        QPointer<frmBrowser> closer = m_frame->OpenNewBrowser(url("/closer"));
        VERIFY_SOON(closer.isNull());
        QCOMPARE(m_frame->tabStrip()->count(), 1);
    }

    void permissionIsAskedAndDeniedUnlessAllowed()
    {
        frmBrowser *window = m_frame->OpenNewBrowser(url("/geo"));
        auto *bar = window->findChild<InfoBar *>();
        VERIFY_SOON(bar->isVisible());
        QVERIFY2(bar->text().contains(u"127.0.0.1"_s), qPrintable(bar->text()));
        bar->answer(false);
        QVERIFY(!bar->isVisible());
        VERIFY_SOON(m_server.requestCount(u"/denied"_s) == 1);
        QCOMPARE(m_server.requestCount(u"/granted"_s), 0);
    }

    void invalidCertificateIsRefusedAndExplained()
    {
        QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
        tls.setLocalCertificate(QSslCertificate(supportFile("localhost-cert.pem")));
        tls.setPrivateKey(QSslKey(supportFile("localhost-key.pem"), QSsl::Rsa));
        QVERIFY(!tls.localCertificate().isNull() && !tls.privateKey().isNull());
        QSslServer server;
        server.setSslConfiguration(tls);
        QVERIFY(server.listen(QHostAddress::LocalHost));
        // A connection is handed over only once its handshake has succeeded.
        QSignalSpy accepted(&server, &QSslServer::pendingConnectionAvailable);
        frmBrowser *window = m_frame->CreateBrowser(Kind::MDI);
        QSignalSpy loaded(window->page(), &PageView::loadFinished);
        window->Navigate(u"https://127.0.0.1:%1/"_s.arg(server.serverPort()));
        QVERIFY(loaded.wait());
        QCOMPARE(loaded.first().first().toBool(), false);
        auto *bar = window->findChild<InfoBar *>();
        QVERIFY(bar->isVisible());
        QVERIFY2(bar->text().contains(u"127.0.0.1"_s), qPrintable(bar->text()));
        QVERIFY(accepted.isEmpty());
        QVERIFY(!window->Secure);
        QCOMPARE(window->SecureLockIcon, SecureLockLevel::Unsecure);
    }

    void downloadLandsOnDisk()
    {
        QTemporaryDir target;
        const QString path = target.filePath(u"saved.bin"_s);
        Downloads downloads(WebEngineSetup::profile());
        downloads.setTargetChooser([path](const QString &suggested) {
            return suggested.endsWith(u"file.bin"_s) ? path : QString();
        });
        QSignalSpy finished(&downloads, &Downloads::finished);
        m_frame->OpenNewBrowser(url("/file.bin"));
        QVERIFY(finished.wait());
        QCOMPARE(finished.first().at(1).toBool(), true);
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray(100000, 'z'));
    }

    void printerIsFreedWhetherTheEngineFinishesOrTheWindowClosesFirst()
    {
        QTemporaryDir folder;
        frmBrowser *window = openOn("/a", "A");
        bool gone = false;
        bool printed = false;
        window->page()->print(std::make_unique<WatchedPrinter>(&gone, folder.filePath(u"a.pdf"_s)),
            [&printed](bool ok) { printed = ok; });
        VERIFY_SOON(gone);
        QVERIFY(printed);
        QVERIFY(QFile(folder.filePath(u"a.pdf"_s)).size() > 0);

        // A window closed while its page prints: the printer goes once the engine is done.
        bool goneToo = false;
        window->page()->print(
            std::make_unique<WatchedPrinter>(&goneToo, folder.filePath(u"b.pdf"_s)));
        delete window->parentWidget();
        QCOMPARE(windows(), 0);
        QVERIFY(!goneToo);
        VERIFY_SOON(goneToo);
        QVERIFY(QFile(folder.filePath(u"b.pdf"_s)).size() > 0);
    }

    void printPreviewShowsThePageAndNeverWaitsForTheEngine()
    {
        frmBrowser *window = openOn("/a", "A");
        int pages = -1;
        whenShown<QPrintPreviewDialog>(this, [&pages](QPrintPreviewDialog *preview) {
            pages = preview->findChild<QPrintPreviewWidget *>()->pageCount();
            preview->reject(); // closed at once
        });
        window->WebPrintPreview();
        QVERIFY(QApplication::overrideCursor()); // busy while the engine lays it out
        VERIFY_SOON(pages >= 0);
        QCOMPARE(pages, 1);
        VERIFY_SOON(!QApplication::activeModalWidget());
        QVERIFY(!QApplication::overrideCursor());

        // The window goes before the engine answers: no preview, no busy cursor left.
        window->WebPrintPreview();
        delete window->parentWidget();
        QVERIFY(!QApplication::overrideCursor());
        QTest::qWait(1000);
        QVERIFY(!QApplication::activeModalWidget());
    }

    void toolbarKeysAreExactAndDrivesAreRealVolumes()
    {
        frmBrowser *window = m_frame->CreateBrowser(Kind::MDI);
        BrowserToolbar *bar = window->commands();
        // "Refresh" is a button and an entry; "Print" is the button, "print" the entry.
        QCOMPARE(window->toolAction(u"Refresh"_s), bar->button(u"Refresh"_s));
        QVERIFY(bar->entry(u"Refresh"_s) != bar->button(u"Refresh"_s));
        QVERIFY(window->toolAction(u"print"_s) == bar->entry(u"print"_s)
            && bar->entry(u"print"_s) != bar->button(u"Print"_s));
        QCOMPARE(bar->button(u"Forward"_s)->toolTip(), u"Vorwärst"_s);
        // The drive list ends in its commands; no pseudo file system is listed.
        QStringList drives;
        for (const QAction *action : bar->menuOf(u"Drive"_s)->actions())
            drives.append(action->isSeparator() ? u"-"_s : action->objectName());
        QCOMPARE(drives.mid(drives.size() - 6).join(u' '), u"- Browse - Map - Disconnect"_s);
        for (QAction *volume : bar->driveMenu()->volumeEntries()) {
            const QString root = volume->data().toString();
            QVERIFY2(!root.startsWith(u"/proc") && !root.startsWith(u"/sys"), qPrintable(root));
            QCOMPARE(volume->text(), volume->text().toUpper());
        }
    }

    void menuCommandsAreIgnoredWhileThePageViewIsHidden()
    {
        frmBrowser *window = m_frame->CreateBrowser(Kind::MDI);
        BrowserToolbar *bar = window->commands();
        window->page()->hide();
        bar->menuClick(bar->entry(u"StartBlank"_s));
        QCOMPARE(UserCommandPending, qint16(-1));
        bar->buttonClick(u"Clone"_s); // buttons still act
        window->page()->show();
        bar->menuClick(bar->entry(u"StartBlank"_s));
        QCOMPARE(windows(), 3);
    }

    void closeCommandsKeepThisWindowOrCloseItLast()
    {
        m_frame->CreateBrowser(Kind::MDI);
        frmBrowser *middle = m_frame->CreateBrowser(Kind::MDI);
        m_frame->CreateBrowser(Kind::MDI);
        middle->commands()->menuClick(middle->commands()->entry(u"CloseOthers"_s));
        VERIFY_SOON(windows() == 1);
        QCOMPARE(m_frame->browsers().first(), middle);

        m_frame->CreateBrowser(Kind::MDI);
        m_frame->CreateBrowser(Kind::MDI);
        const int middleId = middle->ID;
        QList<int> closed;
        for (frmBrowser *window : m_frame->browsers()) {
            const int id = window->ID;
            connect(window, &QObject::destroyed, this, [&closed, id] { closed.append(id); });
        }
        middle->commands()->menuClick(middle->commands()->entry(u"CloseallWin"_s));
        VERIFY_SOON(closed.size() == 3);
        QCOMPARE(closed.last(), middleId);
    }

    void newWindowCommandsFollowTheFeedMark()
    {
        frmBrowser *window = m_frame->CreateBrowser(Kind::MDI);
        BrowserToolbar *bar = window->commands();
        // The bare mark is no feed: an ordinary window on the start page.
        prefer().setHomeTitle(u"<FEED />"_s);
        bar->menuClick(bar->entry(u"Startit"_s));
        frmBrowser *plain = m_frame->browsers().last();
        VERIFY_SOON(shows(plain, "A"));
        QVERIFY(plain->FeedSourceUrl.isEmpty());

        // The mark followed by a title: the start page is rendered as a feed.
        prefer().setHomeTitle(u"<FEED />"_s + url("/feeds/one.xml"));
        prefer().setHomeUrl(u"  "_s + url("/feeds/one.xml") + u" "_s);
        bar->buttonClick(u"Clone"_s);
        frmBrowser *feed = m_frame->browsers().last();
        QCOMPARE(windows(), 3);
        VERIFY_SOON(feed->FeedSourceUrl == url("/feeds/one.xml") && shows(feed, "Testfeed"));

        // "StartBlank" opens a blank window whatever the start page is.
        bar->menuClick(bar->entry(u"StartBlank"_s));
        QCOMPARE(windows(), 4);
        VERIFY_SOON(m_frame->browsers().last()->LocationURL() == u"about:blank");

        // Home renders the feed home page here; taken as the home page, it stays a feed.
        bar->buttonClick(u"Home"_s);
        VERIFY_SOON(window->FeedSourceUrl == url("/feeds/one.xml") && shows(window, "Testfeed"));
        // The user sees the feed's own address everywhere, and a clone shows the feed.
        QCOMPARE(window->LocationURL(), url("/feeds/one.xml"));
        VERIFY_SOON(window->addressBox()->currentText() == url("/feeds/one.xml"));
        VERIFY_SOON(m_frame->history().last().URL() == url("/feeds/one.xml"));
        m_frame->mdiArea()->setActiveSubWindow(
            qobject_cast<QMdiSubWindow *>(window->parentWidget()));
        frmBrowser *clone = m_frame->CloneActive();
        VERIFY_SOON(clone->FeedSourceUrl == url("/feeds/one.xml") && shows(clone, "Testfeed"));
        window->SetHomepage();
        QCOMPARE(prefer().HomeUrl(), url("/feeds/one.xml"));
        QVERIFY(prefer().HomeTitle().startsWith(u"<FEED />"_s));
        // An address typed afterwards ends the feed; that page as home page is none.
        window->addressBox()->setEditText(url("/a"));
        QTest::keyClick(window->addressBox()->lineEdit(), Qt::Key_Return);
        QVERIFY(window->FeedSourceUrl.isEmpty());
        VERIFY_SOON(shows(window, "A"));
        window->SetHomepage();
        QCOMPARE(prefer().HomeUrl(), url("/a"));
        QCOMPARE(prefer().HomeTitle(), QString());
        QCOMPARE(window->toolAction(u"Home"_s)->toolTip(), url("/a"));
    }

    void enterOpensTheTypedTextAndWordsAreSearched()
    {
        const QString server = url("");
        prefer().setSearchEngine(server + u"/search?q=%s&src=vt"_s);
        m_frame->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_frame));
        frmBrowser *window = openOn("/a", "A");
        QComboBox *box = window->addressBox();
        box->setFocus();
        box->lineEdit()->clear();
        // The start of a remembered address: it is offered below the field, and Enter
        // opens what was typed.
        QTest::keyClicks(box->lineEdit(), url("/"));
        VERIFY_SOON(box->completer()->popup()->isVisible());
        QCOMPARE(box->currentText(), url("/"));
        QTest::keyClick(static_cast<QWidget *>(nullptr), Qt::Key_Return);
        VERIFY_SOON(shows(window, "Root"));
        // A click on a suggestion opens it.
        QAbstractItemView *list = box->completer()->popup();
        QTest::keyClicks(box->lineEdit(), u"/a"_s);
        VERIFY_SOON(list->isVisible());
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
            list->visualRect(list->model()->index(0, 0)).center());
        VERIFY_SOON(shows(window, "A"));

        box->setEditText(u" rust borrow checker "_s);
        QTest::keyClick(box->lineEdit(), Qt::Key_Enter);
        VERIFY_SOON(shows(window, "Results"));
        QCOMPARE(
            window->page()->url(), QUrl(server + u"/search?q=rust%20borrow%20checker&src=vt"_s));
        prefer().setSearchEngine(Prefer::defaultSearchEngine());
    }

    void newWindowsAndAddressKeysPutTheFocusInTheAddressField()
    {
        m_frame->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_frame));
        const auto focusedAddress = [this](const QString &text) {
            frmBrowser *window = m_frame->activeBrowser();
            const QLineEdit *field = window ? window->addressBox()->lineEdit() : nullptr;
            return field && field->hasFocus() && field->text() == text
                && field->selectedText() == text;
        };
        QTest::keyClick(m_frame, Qt::Key_T, Qt::ControlModifier);
        VERIFY_SOON(shows(m_frame->activeBrowser(), "A") && focusedAddress(url("/a")));
        QTest::keyClick(m_frame, Qt::Key_N, Qt::ControlModifier);
        VERIFY_SOON(m_frame->activeBrowser()->LocationURL() == u"about:blank"
            && focusedAddress(u"about:blank"_s));
        // Back in the first window's page, each key takes the focus to its address again.
        const QList<QKeyCombination> keys
            = {Qt::CTRL | Qt::Key_L, Qt::ALT | Qt::Key_D, QKeyCombination(Qt::Key_F6)};
        for (const QKeyCombination key : keys) {
            m_frame->tabStrip()->tabLeftClicked(u"[1]"_s);
            m_frame->browsers().first()->page()->setFocus();
            QVERIFY(!focusedAddress(url("/a")));
            QTest::keySequence(m_frame, key);
            VERIFY_SOON(focusedAddress(url("/a")));
        }
        // A page arriving meanwhile leaves what the user is typing.
        frmBrowser *first = m_frame->browsers().first();
        QTest::keyClicks(first->addressBox()->lineEdit(), u"wetter"_s);
        first->Navigate(url("/b"));
        VERIFY_SOON(shows(first, "B"));
        QCOMPARE(first->addressBox()->currentText(), u"wetter"_s);
    }

    void driveEntriesNavigateToTheirRootOnly()
    {
        frmBrowser *window = openOn("/a", "A");
        DriveMenu *drives = window->commands()->driveMenu();
        QAction *nowhere = drives->addVolume(u"nowhere"_s, QString());
        QCOMPARE(nowhere->text(), u"NOWHERE"_s);
        window->FeedSourceUrl = u"http://example.invalid/feed"_s;
        window->commands()->menuClick(nowhere);
        evaluate(window, u"0"_s);
        QCOMPARE(window->LastRequestUrl, url("/a"));
        QCOMPARE(window->FeedSourceUrl, u"http://example.invalid/feed"_s);

        QTemporaryDir folder;
        window->commands()->menuClick(drives->addVolume(u"local"_s, folder.path()));
        QVERIFY(window->FeedSourceUrl.isEmpty());
        VERIFY_SOON(window->LocationURL() == QUrl::fromLocalFile(folder.path() + u'/').toString());
    }

    void findBarCountsAndStepsThroughMatches()
    {
        frmBrowser *window = openOn("/fruit", "Obst");
        FindBar *bar = window->findBar();
        QVERIFY(bar->isHidden());
        window->commands()->menuClick(window->commands()->entry(u"DocSearch"_s));
        QVERIFY(bar->isVisible());
        QTest::keyClicks(bar->textBox(), u"Apfel"_s);
        VERIFY_SOON(bar->resultText() == u"1 von 3 Treffern");
        bar->findNext();
        VERIFY_SOON(bar->resultText() == u"2 von 3 Treffern");
        bar->findPrevious();
        VERIFY_SOON(bar->resultText() == u"1 von 3 Treffern");
        bar->textBox()->setText(u"Kirsche"_s);
        VERIFY_SOON(bar->resultText() == u"Keine Treffer");
        QTest::keyClick(bar->textBox(), Qt::Key_Escape);
        QVERIFY(bar->isHidden() && bar->resultText().isEmpty());
        // Ctrl+F of the frame opens it again with the last text.
        m_frame->menuAction(u"key_find"_s)->trigger();
        QVERIFY(bar->isVisible());
        QCOMPARE(bar->textBox()->selectedText(), u"Kirsche"_s);
    }

    void feedButtonListsAnnouncedFeedsAndShowsTheChosenOne()
    {
        frmBrowser *window = m_frame->OpenNewBrowser(url("/announce"));
        QAction *feedButton = window->toolAction(u"Feed"_s);
        VERIFY_SOON(feedButton->isEnabled());
        QCOMPARE(window->GetFeedCount(), 2);
        QCOMPARE(window->GetFeedTitelByInd(0), u"Eins"_s);
        QCOMPARE(window->GetFeedUrlByInd(0), url("/feeds/one.xml"));
        QCOMPARE(window->GetFeedUrlByInd(1), u"two.xml"_s);
        QMenu *list = window->commands()->menuOf(u"Feed"_s);
        QCOMPARE(list->actions().size(), 2);
        QCOMPARE(list->actions().at(1)->text(), u"Zwei"_s);

        window->commands()->menuClick(list->actions().at(0));
        VERIFY_SOON(window->FeedSourceUrl == url("/feeds/one.xml") && shows(window, "Testfeed"));
        // The toggle sign hides the item's row and shows it again.
        const QString toggle
            = QStringLiteral("document.querySelectorAll('.toggle')[0].click();"
                             "document.getElementById('dr1').style.display + '|' + "
                             "document.querySelectorAll('.toggle')[0].innerText");
        QCOMPARE(evaluate(window, toggle).toString(), u"none|+"_s);
        QCOMPARE(evaluate(window, toggle).toString(), u"inline|-"_s);
        VERIFY_SOON(!feedButton->isEnabled()); // the feed page announces no feeds
        QCOMPARE(window->GetFeedCount(), 0);

        // Refreshing a feed page fetches the feed anew and shows it again.
        const int fetched = m_server.requestCount(u"/feeds/one.xml"_s);
        window->commands()->buttonClick(u"Refresh"_s);
        QVERIFY(window->FeedSourceUrl.isEmpty());
        VERIFY_SOON(m_server.requestCount(u"/feeds/one.xml"_s) == fetched + 1
            && window->FeedSourceUrl == url("/feeds/one.xml") && shows(window, "Testfeed"));

        // A feed that cannot be fetched is shown as a page that says so.
        window->LoadFeed(url("/feeds/missing.xml"));
        VERIFY_SOON(window->FeedSourceUrl == url("/feeds/missing.xml"));
        VERIFY_SOON(evaluate(window, u"document.body.innerText"_s)
                        .toString()
                        .startsWith(u"Der Feed "_s + url("/feeds/missing.xml")));
    }

    void feedPageFitsTheWindowWithoutSpacerSquares()
    {
        // A long word, a wide picture, a wide table and a long preformatted line.
        const QByteArray wide = "&lt;p&gt;" + QByteArray(300, 'w') + "&lt;/p&gt;"
            + "&lt;img src='/none.png' width='2000' height='20'&gt;"
              "&lt;table width='1500'&gt;&lt;tr&gt;&lt;td&gt;x&lt;/td&gt;&lt;/tr&gt;&lt;/table&gt;"
              "&lt;pre&gt;"
            + QByteArray(400, 'p') + "&lt;/pre&gt;";
        m_server.setPage(u"/feeds/wide.xml"_s,
            "<?xml version='1.0'?><rss version='2.0'><channel><title>Breit</title>"
            "<item><title>"
                + QByteArray(200, 't') + "</title><description>" + wide
                + "</description><link>a.html</link></item>"
                  "<item><title>Zwei</title><description>z</description></item>"
                  "</channel></rss>",
            "application/rss+xml");
        frmBrowser *window = m_frame->CreateBrowser(Kind::MDI);
        window->parentWidget()->resize(1000, 700);
        window->LoadFeed(url("/feeds/wide.xml"));
        VERIFY_SOON(window->FeedSourceUrl == url("/feeds/wide.xml") && shows(window, "Breit"));
        QVERIFY(window->page()->width() <= 1000);
        QCOMPARE(evaluate(window, u"document.documentElement.scrollWidth <= window.innerWidth"_s)
                     .toBool(),
            true);
        // The spacer tables between the items take their room but show nothing.
        QCOMPARE(evaluate(window,
                     u"[...document.querySelectorAll('table[border=\"1\"]')].map("
                     "t => getComputedStyle(t).visibility).join()"_s)
                     .toString(),
            u"hidden,hidden,hidden"_s); // below the heading and below each item
    }

    void feedItemOpensInItsNamedWindowAndReusesIt()
    {
        const auto click = [](int index) {
            return u"document.querySelectorAll('a.lnk')[%1].click(); true"_s.arg(index);
        };
        // Item links point into the feed's folder, each to the window named after its item;
        // whether pages keep a reference to their windows or not.
        for (const bool reference : {true, false}) {
            m_frame->setPolicySwitch(NewWindowPolicy::Switch::AllowWinRef, reference);
            frmBrowser *window = m_frame->CreateBrowser(Kind::MDI);
            window->LoadFeed(url("/feeds/one.xml"));
            VERIFY_SOON(shows(window, "Testfeed"));
            evaluate(window, click(0));
            VERIFY_SOON(windows() == 2);
            frmBrowser *item = m_frame->browsers().last();
            QVERIFY(item->IsPopup);
            VERIFY_SOON(shows(item, "Item eins"));

            // The same item again: its window shows it again and comes forward.
            item->Navigate(url("/a"));
            VERIFY_SOON(shows(item, "A"));
            m_frame->mdiArea()->setActiveSubWindow(
                qobject_cast<QMdiSubWindow *>(window->parentWidget()));
            evaluate(window, click(0));
            VERIFY_SOON(shows(item, "Item eins"));
            if (!reference) // else the engine finds the named window itself
                QCOMPARE(m_frame->activeBrowser(), item);

            // Another item has a window of its own.
            evaluate(window, click(1));
            VERIFY_SOON(windows() == 3 && shows(m_frame->browsers().last(), "Item zwei"));
            QCOMPARE(item->Title, u"Item eins"_s);
            m_frame->CloseAll();
            VERIFY_SOON(windows() == 0);
        }
        m_frame->setPolicySwitch(NewWindowPolicy::Switch::AllowWinRef, false);
    }
};

VANTRELL_ENGINE_TEST_MAIN(BrowserWindowTest)
#include "browserwindow_test.moc"
