#include "core/base/uitexts.h"
#include "core/prefs/prefer.h"
#include "core/search/searchenginelist.h"
#include "engine/pageview.h"
#include "engineenvironment.h"
#include "localhttpserver.h"
#include "ui/browser/frmbrowser.h"
#include "ui/frame/mdiform1.h"
#include "ui/tools/frmtools.h"
#include "ui/tools/searchtool.h"

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QSaveFile>
#include <QToolBar>
#include <QTreeView>

using namespace Qt::StringLiterals;

class SearchToolTest : public QObject
{
    Q_OBJECT

    LocalHttpServer m_server;
    std::unique_ptr<QTemporaryDir> m_data;
    std::unique_ptr<MDIForm1> m_frame;
    frmTools *m_pane = nullptr;

    SearchTool *tool() const { return m_pane->search(); }
    QString pagePath() const { return m_data->filePath(u"engines/search.html"_s); }
    QString at(const char *path) const { return m_server.url(QLatin1String(path)).toString(); }

    // A search-form page of engines on the local server.
    void writePage(const QByteArray &forms)
    {
        QSaveFile file(pagePath());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("<html><head><title>Engines</title><base target=_blank></head><body>" + forms
            + "</body></html>");
        QVERIFY(file.commit());
    }
    QByteArray form(const char *title, const char *path, const char *field, bool checked = false)
    {
        return "<form title='" + QByteArray(title) + "' action='" + at(path).toUtf8() + "'"
            + (checked ? " data-checked" : "") + "><input type=hidden name=src value=vt>"
            + "<input name=" + field + "><button>Go</button></form>";
    }
    void openFrame()
    {
        m_frame = std::make_unique<MDIForm1>();
        m_frame->show();
        m_pane = frmTools::attach(m_frame.get());
        m_pane->SelectTool(frmTools::Search);
    }
    QStringList shownEngines() const
    {
        QStringList names;
        const QAbstractItemModel *model = tool()->list()->model();
        for (int row = 0; row < model->rowCount(); ++row)
            names << model->index(row, SearchEngineList::Machine).data().toString();
        return names;
    }
    // The addresses asked for by the windows opened since `before`, once each has asked.
    QStringList requestedSince(int before) const
    {
        const QList<frmBrowser *> opened = m_frame->browsers().mid(before);
        QStringList addresses;
        EngineTest::waitUntil([&] {
            addresses.clear();
            for (const frmBrowser *window : opened)
                addresses << QUrl(window->LastRequestUrl).toString(QUrl::FullyEncoded);
            return !addresses.contains(QString());
        });
        return addresses;
    }
    void search(const QString &term)
    {
        tool()->termField()->setText(term);
        QTest::keyClick(tool()->termField(), Qt::Key_Return);
    }
    QString status() const { return m_pane->statusPanel()->text(); }

private slots:
    void initTestCase()
    {
        for (const char *path : {"/web1", "/web2", "/code"})
            m_server.setPage(QLatin1String(path), EngineTest::titled(path + 1));
    }

    void init()
    {
        EngineTest::failOnWarnings();
        m_data = std::make_unique<QTemporaryDir>();
        qputenv("VANTRELL_DATA_DIR", m_data->path().toUtf8());
        QVERIFY(QDir(m_data->path()).mkpath(u"engines"_s));
        writePage("<fieldset><legend>Web</legend>" + form("Web One", "/web1", "q", true)
            + form("Web Two", "/web2", "s") + "</fieldset><fieldset><legend>Code</legend>"
            + form("Code", "/code", "k") + "</fieldset>");
        prefer().setSearchEngineFile(pagePath());
        openFrame();
    }

    void cleanup() { m_frame.reset(); }

    void checkedEnginesOfTheGroupFilterOpenOneWindowEach()
    {
        QCOMPARE(shownEngines(), QStringList({u"Web One"_s, u"Web Two"_s, u"Code"_s}));

        int before = int(m_frame->browsers().size());
        search(u"  "_s);
        QCOMPARE(status(), uiText(1508));
        QCOMPARE(m_frame->browsers().size(), before);

        // The user ticks the second engine in the list.
        QAbstractItemModel *shown = tool()->list()->model();
        QVERIFY(shown->setData(
            shown->index(1, SearchEngineList::Check), Qt::Checked, Qt::CheckStateRole));
        search(u"Grüße & mehr"_s);
        const QString term = u"Gr%C3%BC%C3%9Fe%20%26%20mehr"_s;
        QCOMPARE(requestedSince(before),
            QStringList(
                {at("/web1") + u"?src=vt&q="_s + term, at("/web2") + u"?src=vt&s="_s + term}));
        QCOMPARE(status(), uiText(2608).arg(2).arg(u"Grüße & mehr"_s));

        // Only the group chosen: nothing is checked there yet, then one engine is.
        tool()->groupFilter()->setCurrentIndex(tool()->groupFilter()->findText(u"Code"_s));
        QCOMPARE(shownEngines(), QStringList({u"Code"_s}));
        before = int(m_frame->browsers().size());
        search(u"x"_s);
        QCOMPARE(status(), uiText(2609).arg(u"Code"_s));
        QCOMPARE(m_frame->browsers().size(), before);
        QVERIFY(shown->setData(
            shown->index(0, SearchEngineList::Check), Qt::Checked, Qt::CheckStateRole));
        m_pane->findChild<QToolBar *>(u"search"_s)->findChild<QAction *>(u"start"_s)->trigger();
        QCOMPARE(requestedSince(before), QStringList({at("/code") + u"?src=vt&k=x"_s}));
    }

    void editedPageIsReadAgainAndChoicesOutliveTheRun()
    {
        tool()->engines()->setChecked(2, true);
        tool()->groupFilter()->setCurrentIndex(tool()->groupFilter()->findText(u"Code"_s));
        writePage("<fieldset><legend>Code</legend>" + form("Code", "/code", "k")
            + "</fieldset><fieldset><legend>News</legend>" + form("News", "/web2", "n", true)
            + "</fieldset>");
        VERIFY_SOON(tool()->engines()->rowCount() == 2);
        QCOMPARE(tool()->groupFilter()->currentText(), u"Code"_s);
        QCOMPARE(shownEngines(), QStringList({u"Code"_s}));

        // A page that holds nothing usable is told; the list stays.
        writePage("<p>no forms</p>");
        VERIFY_SOON(status().startsWith(uiText(2603).arg(pagePath())));
        QVERIFY(status().endsWith(uiText(2607)));
        QCOMPARE(tool()->engines()->rowCount(), 2);

        // The next run, without the page, shows the kept list filtered as it was left.
        m_frame.reset();
        QVERIFY(QFile::remove(pagePath()));
        openFrame();
        QCOMPARE(tool()->groupFilter()->currentText(), u"Code"_s);
        QCOMPARE(shownEngines(), QStringList({u"Code"_s}));
    }

    void engineAPageAnnouncesIsAddedAndABrokenOneRefused()
    {
        QAction *add = m_pane->findChild<QToolBar *>(u"search"_s)->findChild<QAction *>(u"add"_s);
        add->trigger();
        QCOMPARE(status(), uiText(2615));
        EngineTest::openOn(*m_frame, at("/web1"), "web1");
        add->trigger();
        VERIFY_SOON(status() == uiText(2616).arg(at("/web1")));

        m_server.setPage(u"/announcing"_s,
            EngineTest::titled("Announcing", {},
                "<link rel=search type='application/opensearchdescription+xml' title=Local "
                "href='/osd.xml'>"));
        m_server.setPage(u"/osd.xml"_s,
            "<OpenSearchDescription xmlns='http://a9.com/-/spec/opensearch/1.1/'>"
            "<ShortName>Local</ShortName><Url type='text/html' template='"
                + at("/code").toUtf8() + "?find={searchTerms}&amp;p={startPage?}'/>"
                + "</OpenSearchDescription>",
            "application/opensearchdescription+xml");
        EngineTest::openOn(*m_frame, at("/announcing"), "Announcing");
        add->trigger();
        VERIFY_SOON(status() == uiText(2618).arg(u"Local"_s, uiText(2612)));
        QVERIFY(tool()->groupFilter()->findText(uiText(2612)) > 0);
        QCOMPARE(shownEngines().last(), u"Local"_s);

        // A broken description is told; the list stays.
        m_server.setPage(u"/osd.xml"_s, "<OpenSearchDescription><ShortName>x", "text/xml");
        add->trigger();
        VERIFY_SOON(status().startsWith(uiText(2617).arg(at("/announcing"), QString())));
        QCOMPARE(tool()->engines()->rowCount(), 4);
    }

    void formPageIsShownAndItsSearchesOpenWindows()
    {
        PageView *page = tool()->page();
        QVERIFY(page);
        VERIFY_SOON(page->title() == u"Engines"_s && !page->isLoading());
        QCOMPARE(page->url(), QUrl::fromLocalFile(pagePath()));
        // A search sent from the page goes to a browser window of the frame.
        const int before = int(m_frame->browsers().size());
        bool sent = false;
        page->runScript(u"var f = document.forms[1]; f.s.value = 'p q'; f.requestSubmit(); 1"_s,
            [&sent](const QVariant &) { sent = true; });
        VERIFY_SOON(sent && m_frame->browsers().size() == before + 1);
        QCOMPARE(requestedSince(before), QStringList({at("/web2") + u"?src=vt&s=p+q"_s}));
        QCOMPARE(page->url(), QUrl::fromLocalFile(pagePath()));
    }
};

VANTRELL_ENGINE_TEST_MAIN(SearchToolTest)
#include "searchtool_test.moc"
