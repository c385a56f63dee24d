#include "core/base/appinfo.h"
#include "core/base/clock.h"
#include "core/base/uitexts.h"
#include "core/browsing/roundtrip.h"
#include "core/exchange/netscapeimport.h"
#include "core/model/booktreemodel.h"
#include "core/model/historylistmodel.h"
#include "core/prefs/prefer.h"
#include "engineenvironment.h"
#include "localhttpserver.h"
#include "modaldialogs.h"
#include "ui/browser/frmbrowser.h"
#include "ui/frame/mdiform1.h"
#include "ui/tools/bookmarkexchange.h"
#include "ui/tools/bookmarktool.h"
#include "ui/tools/frmbmproperty.h"
#include "ui/tools/frmrssheader.h"
#include "ui/tools/frmtools.h"
#include "ui/tools/historytool.h"

#include <QAction>
#include <QCheckBox>
#include <QDir>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMimeData>
#include <QProcess>
#include <QPushButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTabBar>
#include <QToolBar>
#include <QToolButton>
#include <QTreeView>

using namespace Qt::StringLiterals;
using EngineTest::waitUntil;

namespace {
QStringList titles(BookTreeModel *model, const QModelIndex &parent)
{
    QStringList names;
    for (int i = 0; i < model->rowCount(parent); ++i)
        names << model->index(i, 0, parent).data().toString();
    return names;
}
} // namespace

class ToolsPaneTest : public QObject
{
    Q_OBJECT

    LocalHttpServer m_server;
    std::unique_ptr<QTemporaryDir> m_data;
    std::unique_ptr<MDIForm1> m_frame;
    frmTools *m_pane = nullptr;

    BookmarkTool *tool() const { return m_pane->bookmarks(); }
    BookTreeModel *model() const { return tool()->model(); }
    QModelIndex folder(int row) const { return model()->index(row, 0, model()->rootIndex()); }
    QString url(const char *path) const { return m_server.url(QLatin1String(path)).toString(); }

private slots:
    void initTestCase()
    {
        // The sample archive lies beside the program, here beside the test.
        const QString samples = AppInfo::programFolder() + u"/vtbooksamples.html"_s;
        QFile::remove(samples);
        QVERIFY(QFile::copy(
            QStringLiteral(VANTRELL_SOURCE_DIR "/resources/vtbooksamples.html"), samples));
        m_server.setPage(u"/one"_s, EngineTest::titled("One"));
        m_server.setPage(u"/two"_s, EngineTest::titled("Two"));
        m_server.setPage(u"/links"_s,
            EngineTest::titled("Links",
                "<a href='/one'>First</a><a href='#top'>t</a><a href='javascript:x()'>s</a>"
                "<a href='mailto:a@b.c'>m</a><a href='/two'> Second </a>"));
    }

    // Every test starts with no archive, which the samples seed.
    void init()
    {
        EngineTest::failOnWarnings();
        m_data = std::make_unique<QTemporaryDir>();
        qputenv("VANTRELL_DATA_DIR", m_data->path().toUtf8());
        prefer().setGroupFile(QString());
        m_frame = std::make_unique<MDIForm1>();
        m_frame->show();
        m_pane = frmTools::attach(m_frame.get());
        m_frame->menuAction(u"mn_Bookmarks"_s)->trigger();
    }

    void cleanup()
    {
        tool()->book().IsEdit = false;
        m_frame.reset();
    }

    void firstRunSeedsTheSampleFolders()
    {
        QVERIFY(m_pane->isVisible());
        QCOMPARE(m_pane->currentTool(), int(frmTools::Bookmarks));
        QCOMPARE(titles(model(), model()->rootIndex()),
            QStringList({u"Nachschlagen"_s, u"Entwicklung"_s, u"Freie Software"_s}));
        QVERIFY(tool()->tree()->isExpanded(model()->rootIndex()));
        tool()->tree()->expand(folder(1));
        QCOMPARE(folder(1).data(BookTreeModel::ImageRole), u"OpenDir"_s);
        const QModelIndex feed = model()->index(4, 0, folder(1));
        QCOMPARE(feed.data().toString(), u"Planet Qt"_s);
        QCOMPARE(feed.data(BookTreeModel::ImageRole), u"xml"_s);
        QVERIFY(QFile::exists(m_data->filePath(u"Book.bkm"_s)));
    }

    void foldersAreAddedRenamedDeletedAndSortedByTheRules()
    {
        tool()->select(model()->rootIndex());
        tool()->AddDirToArchive();
        tool()->AddDirToArchive();
        QCOMPARE(titles(model(), model()->rootIndex()).mid(0, 2),
            QStringList({u"Neuer Ordner (1)"_s, u"Neuer Ordner"_s}));
        // Each refusal is told and the old name stays.
        const QList<std::pair<QString, QString>> refused
            = {{u"Entwicklung"_s,
                   uiText(1042) + u"Entwicklung"_s + uiText(1043) + u'\n' + uiText(1044)},
                {QString(), uiText(1045)}};
        for (const auto &[name, message] : refused) {
            Answerer ok(u"OK"_s);
            QVERIFY(!model()->setData(folder(0), name));
            VERIFY_SOON(ok.text == message);
            QCOMPARE(folder(0).data().toString(), u"Neuer Ordner (1)"_s);
        }
        // The start folder cannot go; a full one only when agreed; an empty one at once.
        prefer().setGroupFile(model()->folderAt(folder(2))->FileName);
        {
            Answerer ok(u"OK"_s);
            tool()->deleteFolder(folder(2));
            QCOMPARE(ok.text, uiText(1039));
        }
        prefer().setGroupFile(QString());
        {
            Answerer cancel(u"Cancel"_s);
            tool()->deleteFolder(folder(2));
            QCOMPARE(cancel.text, uiText(1037));
        }
        QCOMPARE(model()->rowCount(model()->rootIndex()), 5);
        {
            Answerer ok(u"OK"_s);
            tool()->deleteFolder(folder(2));
            tool()->deleteFolder(folder(0));
            QCOMPARE(ok.count, 1);
        }
        QCOMPARE(titles(model(), model()->rootIndex()),
            QStringList({u"Neuer Ordner"_s, u"Entwicklung"_s, u"Freie Software"_s}));
        tool()->select(model()->rootIndex());
        tool()->sortSelected();
        QCOMPARE(titles(model(), model()->rootIndex()),
            QStringList({u"Entwicklung"_s, u"Freie Software"_s, u"Neuer Ordner"_s}));
    }

    void bookmarksFromWindowsAndLinksAskOnceForTheBatch()
    {
        frmBrowser *one = EngineTest::openOn(*m_frame, url("/one"), "One");
        EngineTest::openOn(*m_frame, url("/two"), "Two");
        tool()->select(folder(2));
        model()->fetchMore(folder(2));
        const int before = model()->rowCount(folder(2));
        tool()->addFromAllWindows();
        QCOMPARE(model()->rowCount(folder(2)), before + 2);
        QCOMPARE(titles(model(), folder(2)).mid(before), QStringList({u"One"_s, u"Two"_s}));
        // Both are there already: one answer covers the batch.
        for (const auto &[button, added] : {std::pair {uiText(2213), 0}, {uiText(2212), 2}}) {
            Answerer all(button);
            const int had = model()->rowCount(folder(2));
            tool()->addFromAllWindows();
            QCOMPARE(all.count, 1);
            QCOMPARE(model()->rowCount(folder(2)), had + added);
        }
        // All links: in page order, no in-page, script or mail links, named by their text.
        one->Navigate(url("/links"));
        VERIFY_SOON(EngineTest::shows(one, "Links"));
        m_frame->mdiArea()->setActiveSubWindow(qobject_cast<QMdiSubWindow *>(one->parentWidget()));
        tool()->select(folder(0));
        tool()->addAllLinks();
        VERIFY_SOON(model()->rowCount(folder(0)) == 6);
        QCOMPARE(titles(model(), folder(0)).mid(4), QStringList({u"First"_s, u"Second"_s}));
    }

    void propertyDialogRefusesAnEmptyNameAndKeepsTheFeedMark()
    {
        tool()->select(folder(0));
        whenShown<frmBMProperty>(this, [this](frmBMProperty *dialog) {
            Answerer ok(u"OK"_s);
            dialog->Text2->setText(url("/one"));
            dialog->Ok->click();
            QCOMPARE(ok.text, uiText(2214));
            QVERIFY(dialog->isVisible());
            dialog->Text1->setText(u"Eins"_s);
            dialog->Check3->setChecked(true);
            dialog->Check2->setChecked(false);
            dialog->Ok->click();
        });
        tool()->addWithDialog();
        const QPersistentModelIndex added = tool()->current();
        QCOMPARE(added.data().toString(), u"Eins"_s);
        QCOMPARE(added.data(BookTreeModel::ImageRole), u"xml"_s);
        QCOMPARE(model()->bookmarkAt(added)->Titel, u"<FEED />Eins"_s);
        QCOMPARE(model()->bookmarkAt(added)->Toolbar, 0);
        // The dialog shows the feed mark as its box; a cancelled one changes nothing.
        whenShown<frmBMProperty>(this, [](frmBMProperty *dialog) {
            QVERIFY(dialog->Check3->isChecked());
            dialog->Text1->setText(u"Zwei"_s);
            dialog->Cancel->click();
        });
        tool()->editProperties(added);
        QCOMPARE(model()->bookmarkAt(added)->Titel, u"<FEED />Eins"_s);
    }

    void exportsThroughTheDialogsMatchTheHeadlessTool_data()
    {
        QTest::addColumn<int>("format");
        QTest::addColumn<bool>("oneFolder");
        QTest::addColumn<int>("titleId");
        QTest::addColumn<QStringList>("toolArguments");
        using F = BookmarkExchange::Format;
        QTest::newRow("netscape archive")
            << int(F::Netscape) << false << 1002 << QStringList {u"netscape"_s};
        QTest::newRow("netscape folder")
            << int(F::Netscape) << true << 1006 << QStringList {u"netscape"_s};
        QTest::newRow("xml archive") << int(F::Xml) << false << 1052 << QStringList {u"xml"_s};
        QTest::newRow("text folder") << int(F::Text) << true << 1008 << QStringList {u"text"_s};
        QTest::newRow("html archive") << int(F::Html) << false << 1003 << QStringList {u"html"_s};
        QTest::newRow("rss folder") << int(F::Rss) << true << 1058
                                    << QStringList {u"rss"_s, u"--channel-title"_s, u"Kanal"_s,
                                           u"--channel-link"_s, u"https://example.org/"_s};
    }

    void exportsThroughTheDialogsMatchTheHeadlessTool()
    {
        QFETCH(int, format);
        QFETCH(bool, oneFolder);
        QFETCH(int, titleId);
        QFETCH(QStringList, toolArguments);
        const QDateTime now({2024, 5, 6}, {7, 8, 9});
        Clock::setFixed(now);
        const QString path = m_data->filePath(u"pane.out"_s);
        QString title;
        tool()->exchange()->setSaveChooser([&](const QString &caption, const QString &) {
            title = caption;
            return path;
        });
        // The channel dialog names the first field it refuses and keeps what was typed.
        if (BookmarkExchange::Format(format) == BookmarkExchange::Format::Rss)
            whenShown<frmRSSHeader>(this, [](frmRSSHeader *dialog) {
                Answerer ok(u"OK"_s);
                dialog->Ok->click();
                QCOMPARE(ok.text, uiText(1070) + u"<title>"_s + uiText(1071));
                dialog->Text1->setText(u"Kanal"_s);
                dialog->Text3->setText(u"gopher://x"_s);
                dialog->Ok->click();
                QCOMPARE(ok.text, uiText(1070) + u"<link>"_s + uiText(1071));
                QCOMPARE(dialog->Text1->text(), u"Kanal"_s);
                dialog->Text3->setText(u"https://example.org/"_s);
                dialog->Ok->click();
            });
        {
            Answerer no(u"&No"_s);
            tool()->exchange()->exportTo(
                BookmarkExchange::Format(format), oneFolder ? folder(1) : model()->rootIndex());
            QCOMPARE(no.text, uiText(1040) + path + uiText(1041));
        }
        QCOMPARE(title, uiText(titleId));
        QCOMPARE(m_frame->browsers().size(), 0);

        const QString headless = m_data->filePath(u"tool.out"_s);
        QStringList arguments
            = {u"--data-dir"_s, m_data->path(), u"--now"_s, now.toString(Qt::ISODate),
                u"bookmarks"_s, u"export"_s, toolArguments.takeFirst(), headless};
        if (oneFolder)
            arguments << u"--folder"_s << u"Entwicklung"_s;
        QCOMPARE(
            QProcess::execute(QStringLiteral(VANTRELL_TOOL_PATH), arguments + toolArguments), 0);
        QFile pane(path), tool(headless);
        QVERIFY(pane.open(QIODevice::ReadOnly) && tool.open(QIODevice::ReadOnly));
        QCOMPARE(pane.readAll(), tool.readAll());
    }

    void unsavedChangesAreOfferedWhenLeavingTheArchive_data()
    {
        QTest::addColumn<bool>("quit");
        QTest::addColumn<QString>("button");
        QTest::addColumn<int>("folders");
        QTest::newRow("quit, saved") << true << u"&Yes"_s << 4;
        QTest::newRow("quit, not saved") << true << u"&No"_s << 3;
        QTest::newRow("other tab, saved") << false << u"&Yes"_s << 4;
    }

    void unsavedChangesAreOfferedWhenLeavingTheArchive()
    {
        QFETCH(bool, quit);
        QFETCH(QString, button);
        QFETCH(int, folders);
        tool()->select(model()->rootIndex());
        tool()->AddDirToArchive();
        Answerer answered(button);
        if (quit)
            m_frame->close();
        else
            m_pane->SelectTool(frmTools::History);
        QCOMPARE(answered.text, uiText(1046));
        Book saved(m_data->path());
        saved.LoadAllThema();
        QCOMPARE(saved.colThema.count(), folders);
    }

    void historyListsVisitsAndOpensCheckedAndFilteredEntries()
    {
        EngineTest::openOn(*m_frame, url("/one"), "One");
        EngineTest::openOn(*m_frame, url("/two"), "Two");
        VERIFY_SOON(m_frame->history().size() >= 2);
        m_frame->menuAction(u"mn_Historie"_s)->trigger();
        QCOMPARE(m_pane->currentTool(), int(frmTools::History));
        HistoryTool *history = m_pane->history();
        const int rows = history->model()->rowCount();
        QCOMPARE(rows, m_frame->history().size());
        QVERIFY(!history->button(u"start"_s)->isEnabled());
        history->button(u"check"_s)->trigger();
        QVERIFY(history->button(u"start"_s)->isEnabled());
        history->button(u"start"_s)->trigger();
        QCOMPARE(m_frame->browsers().size(), 2 + rows);
        VERIFY_SOON(m_frame->browsers().last()->LastRequestUrl == m_frame->history().last().URL());
        // The filter leaves the entries of that address; Enter opens what is left.
        history->filterField()->setText(u"TWO"_s);
        QCOMPARE(history->list()->model()->rowCount(), 1);
        QTest::keyClick(history->filterField(), Qt::Key_Return);
        VERIFY_SOON(m_frame->browsers().last()->LastRequestUrl == url("/two"));
        history->refresh();
        QVERIFY(!history->button(u"check"_s)->isChecked());
        QVERIFY(!history->button(u"start"_s)->isEnabled());
    }

    void importRunsBesideTheUiAndCanBeCancelled()
    {
        BookmarkExchange *exchange = tool()->exchange();
        QSignalSpy finished(exchange, &BookmarkExchange::importFinished);
        const QString file
            = QStringLiteral(VANTRELL_CORPUS_DIR "/bookmarks/ddg-bookmarks_chrome.html");
        {
            Answerer yes(u"&Yes"_s);
            exchange->importFile(file);
            QCOMPARE(yes.text, uiText(2211).arg(3));
        }
        QVERIFY(exchange->importRunning());
        QVERIFY(!tool()->tree()->isEnabled() && !tool()->action(u"mn_Speichern"_s)->isEnabled());
        VERIFY_SOON(finished.size() == 1);
        const NetscapeImport::Result expected = NetscapeImport::readFile(file);
        QCOMPARE(model()->rowCount(model()->rootIndex()), expected.folders.size());
        QCOMPARE(folder(0).data().toString(), expected.folders.first().DirName);
        QVERIFY(QDir(m_data->filePath(u"backups"_s)).exists());

        // A large file, cancelled at once, leaves the archive as it was.
        QByteArray big = "<DL><DT><H3>Big</H3><DL>";
        for (int i = 0; i < 40000; ++i)
            big += "<DT><A HREF=\"http://example.org/" + QByteArray::number(i) + "\">x</A>";
        const QString bigFile = m_data->filePath(u"big.html"_s);
        QFile out(bigFile);
        QVERIFY(out.open(QIODevice::WriteOnly) && out.write(big + "</DL></DL>") > 0);
        out.close();
        {
            Answerer yes(u"&Yes"_s);
            exchange->importFile(bigFile);
        }
        m_pane->cancelButton()->click();
        VERIFY_SOON(finished.size() == 2);
        QCOMPARE(finished.last().first().toString(), uiText(2207));
        QCOMPARE(folder(0).data().toString(), expected.folders.first().DirName);
    }

    void scriptAddressesNeverOpenAndLocalFilesOnlyWhenAgreed()
    {
        for (const QString &address : {u"javascript:alert(1)"_s, u"file:///etc/hostname"_s})
            model()->addBookmark(folder(0), address, address, BookEditing::Duplicates::Allow);
        const QModelIndex script = model()->index(4, 0, folder(0));
        const QModelIndex local = model()->index(5, 0, folder(0));
        const QList<std::tuple<QModelIndex, QString, int, int>> cases
            = {{script, u"OK"_s, 2208, 0}, {local, u"&No"_s, 2209, 0}, {local, u"&Yes"_s, 2209, 1}};
        for (const auto &[index, button, textId, windows] : cases) {
            Answerer answered(button);
            tool()->OpenBookmark(index);
            QVERIFY(answered.text.startsWith(uiText(textId).section(u'%', 0, 0)));
            QCOMPARE(m_frame->browsers().size(), windows);
        }
    }

    void folderRoundtripVisitsTheBookmarksInTheFoldersOrder()
    {
        for (const char *page : {"/r/1", "/r/2", "/r/3"})
            m_server.setPage(QLatin1String(page), EngineTest::titled(page));
        const QPersistentModelIndex tour = model()->addFolder(model()->rootIndex());
        for (const char *page : {"/r/3", "javascript:void(0)", "/r/1", "/r/2"}) {
            const QString address = page[0] == '/' ? url(page) : QString(QLatin1String(page));
            model()->addBookmark(tour, address, address, BookEditing::Duplicates::Allow);
        }
        whenShown<QDialog>(this, [](QDialog *dialog) {
            dialog->findChild<QSpinBox *>()->setValue(1);
            dialog->accept();
        });
        m_server.clearRequests();
        const int before = int(m_frame->browsers().size());
        tool()->select(tour);
        tool()->action(u"mn_StartBkmRoundtrip"_s)->trigger();
        QCOMPARE(m_frame->browsers().size(), before + 1);
        frmBrowser *window = m_frame->browsers().last();
        QVERIFY(window->roundtrip());
        QCOMPARE(window->roundtrip()->count(), 3);
        VERIFY_SOON(window->roundtrip()->step() == Roundtrip::Step::Finished);
        QCOMPARE(window->roundtrip()->visited(), 3);
        QStringList pages = m_server.requests();
        pages.removeAll(u"/favicon.ico"_s);
        QCOMPARE(pages, (QStringList {u"/r/3"_s, u"/r/1"_s, u"/r/2"_s}));
    }

    void paneKeepsSideToolAndFoldBetweenRuns()
    {
        m_pane->SelectTool(frmTools::History);
        m_pane->place(frmTools::Corner::UpperRight);
        m_pane->minmax()->findChild<QAction *>(u"min"_s)->trigger();
        QVERIFY(!m_pane->tabStrip()->isVisible());
        m_frame->close();
        m_frame = std::make_unique<MDIForm1>();
        m_frame->show();
        m_pane = frmTools::attach(m_frame.get());
        QCOMPARE(m_frame->dockWidgetArea(m_pane), Qt::RightDockWidgetArea);
        QCOMPARE(m_pane->currentTool(), int(frmTools::History));
        QVERIFY(m_pane->isFolded() && m_pane->isVisible());
    }

    void droppedAddressesAndBookmarksJoinTheFolder()
    {
        QTreeView *tree = tool()->tree();
        const auto dropOn = [tree](const QModelIndex &target, const QMimeData *data) {
            // A drop reaches only the widget that took the drag when it entered.
            const QPoint at = tree->visualRect(target).center();
            QDragEnterEvent enter(at, Qt::MoveAction, data, Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(tree->viewport(), &enter);
            QDropEvent drop(QPointF(at), Qt::MoveAction, data, Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(tree->viewport(), &drop);
        };
        model()->fetchMore(folder(0));
        model()->fetchMore(folder(2));
        QMimeData address;
        address.setText(url("/one"));
        dropOn(folder(2), &address);
        QCOMPARE(titles(model(), folder(2)).last(), url("/one"));
        const QString moved = model()->index(0, 0, folder(0)).data().toString();
        const std::unique_ptr<QMimeData> dragged(
            model()->mimeData({model()->index(0, 0, folder(0))}));
        dropOn(folder(2), dragged.get());
        QCOMPARE(model()->rowCount(folder(0)), 3);
        QCOMPARE(titles(model(), folder(2)).last(), moved);
    }

    void menuEntriesFollowTheSelectedNode_data()
    {
        QTest::addColumn<int>("depth"); // -1 nothing, 0 root, 1 folder, 2 bookmark
        QTest::addColumn<QString>("menu");
        QTest::addColumn<QStringList>("enabled");
        const QStringList adding = {u"mn_SortBkm"_s, u"mn_OpenAllBkm"_s, u"mn_StartBkmRoundtrip"_s,
            u"mn_Hinzuvon"_s, u"mn_HinzuvonAll"_s, u"mn_HinzuvonLinks"_s, u"mn_Hinzuf_gen"_s};
        QTest::newRow("nothing") << -1 << u"mn_Ordner"_s
                                 << QStringList {u"mn_SortOrdner"_s, u"mn_AddOrdner"_s};
        QTest::newRow("root") << 0 << u"mn_Bookmark"_s << QStringList();
        QTest::newRow("folder, folder menu") << 1 << u"mn_Ordner"_s
                                             << QStringList {u"mn_SortOrdner"_s, u"mn_AddOrdner"_s,
                                                    u"mn_DelOrdner"_s, u"mn_AttrOrdner"_s};
        QTest::newRow("folder, bookmark menu") << 1 << u"mn_Bookmark"_s << adding;
        QTest::newRow("bookmark") << 2 << u"mn_Bookmark"_s
                                  << adding
                + QStringList {
                    u"mn_OpenBkm"_s, u"mn_setHome"_s, u"mn_Loeschen"_s, u"mn_Eigenschaften"_s};
    }

    void menuEntriesFollowTheSelectedNode()
    {
        QFETCH(int, depth);
        QFETCH(QString, menu);
        QFETCH(QStringList, enabled);
        QModelIndex node = depth < 0 ? QModelIndex() : model()->rootIndex();
        if (depth >= 1)
            node = folder(0);
        if (depth == 2) {
            model()->fetchMore(node);
            node = model()->index(0, 0, node);
        }
        tool()->select(node);
        QStringList found;
        for (QAction *entry : tool()->menu(menu)->actions()) {
            if (!entry->isSeparator() && !entry->menu() && entry->isEnabled())
                found << entry->objectName();
        }
        found.sort();
        enabled.sort();
        QCOMPARE(found, enabled);
        QCOMPARE(tool()->menuForSelection()->objectName(),
            depth == 2 ? u"mn_Bookmark"_s : u"mn_Ordner"_s);
    }

    void treeKeysDeleteAndExportWhatIsSelected()
    {
        QTreeView *tree = tool()->tree();
        model()->fetchMore(folder(0));
        tool()->select(model()->index(0, 0, folder(0)));
        QTest::keyClick(tree, Qt::Key_Delete);
        QCOMPARE(model()->rowCount(folder(0)), 3);
        QStringList titlesAsked;
        tool()->exchange()->setSaveChooser([&](const QString &title, const QString &) {
            titlesAsked << title;
            return QString(); // cancelled: nothing is written
        });
        tool()->select(folder(0));
        QTest::keyClick(tree, Qt::Key_E, Qt::ControlModifier);
        tool()->select(model()->rootIndex());
        QTest::keyClick(tree, Qt::Key_E, Qt::ControlModifier);
        QCOMPARE(titlesAsked, QStringList({uiText(1006), uiText(1002)}));
        // An empty folder goes at once.
        for (int i = 0; i < 3; ++i)
            model()->removeBookmark(model()->index(0, 0, folder(0)));
        tool()->select(folder(0));
        QTest::keyClick(tree, Qt::Key_Delete);
        QCOMPARE(model()->rowCount(model()->rootIndex()), 2);
    }
};

VANTRELL_ENGINE_TEST_MAIN(ToolsPaneTest)
#include "toolspane_test.moc"
