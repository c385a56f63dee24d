#include "core/base/appinfo.h"
#include "core/base/clock.h"
#include "core/base/uitexts.h"
#include "core/model/booktreemodel.h"
#include "core/model/historylistmodel.h"
#include "core/prefs/prefer.h"
#include "engineenvironment.h"
#include "localhttpserver.h"
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
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QProcess>
#include <QPushButton>
#include <QSignalSpy>
#include <QTreeView>

using namespace Qt::StringLiterals;
using EngineTest::waitUntil;

namespace {
// Runs `act` on the next modal dialog of type T once it shows.
template<typename T> void whenShown(QObject *context, std::function<void(T *)> act)
{
    auto *poll = new QTimer(context);
    QObject::connect(poll, &QTimer::timeout, poll, [poll, act] {
        if (auto *dialog = qobject_cast<T *>(QApplication::activeModalWidget())) {
            poll->stop();
            poll->deleteLater();
            act(dialog);
        }
    });
    poll->start(10);
}
// While it lives, answers every message box with the button of that text, and keeps
// how many there were and the last one's text.
struct Answerer
{
    explicit Answerer(const QString &button)
    {
        QObject::connect(&poll, &QTimer::timeout, &poll, [this, button] {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            if (!box || !box->isVisible())
                return;
            ++count;
            text = box->text();
            for (QAbstractButton *candidate : box->buttons()) {
                if (candidate->text() == button)
                    return candidate->click();
            }
            box->reject();
        });
        poll.start(10);
    }
    QTimer poll;
    int count = 0;
    QString text;
};
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
};

VANTRELL_ENGINE_TEST_MAIN(ToolsPaneTest)
#include "toolspane_test.moc"
