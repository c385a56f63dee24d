#include "core/base/uitexts.h"
#include "engineenvironment.h"
#include "localhttpserver.h"
#include "ui/browser/frmbrowser.h"
#include "ui/frame/mdiform1.h"

#include <QAction>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace EngineTest;

class PageInspectionTest : public QObject
{
    Q_OBJECT

private:
    LocalHttpServer m_server;
    MDIForm1 *m_frame = nullptr;
    frmBrowser *m_inspected = nullptr;

    // Runs a frame command on the inspected page and returns the window it opens, loaded.
    frmBrowser *inspect(const char *command, int titleId)
    {
        m_frame->mdiArea()->setActiveSubWindow(
            qobject_cast<QMdiSubWindow *>(m_inspected->parentWidget()));
        const int before = int(m_frame->browsers().size());
        m_frame->menuAction(QLatin1String(command))->trigger();
        const QString title = uiText(titleId).arg(u"Inspect"_s);
        frmBrowser *shown = nullptr;
        waitUntil([&] {
            const QList<frmBrowser *> windows = m_frame->browsers();
            shown = windows.size() > before ? windows.last() : nullptr;
            return shown && shown->Title == title && !shown->page()->isLoading();
        });
        return shown;
    }
    QStringList texts(frmBrowser *window, const QString &selector)
    {
        return evaluate(window,
            u"Array.from(document.querySelectorAll(\"%1\")).map(e => e.textContent)"_s.arg(
                selector))
            .toStringList();
    }

private slots:
    void initTestCase()
    {
        EngineTest::failOnWarnings();
        // Hostile texts where a page may put any text: an alt text that closes the
        // attribute, one with a script, and a heading that is a picture of the beacon.
        m_server.setPage(u"/inspect"_s,
            titled("Inspect",
                "<h1>Top</h1><h3>&lt;img src=/beacon.png&gt;</h3><h2>Second</h2>"
                "<img src='/a.png' alt=\"<script>document.title='pwned'</script>\">"
                "<img src='/b.png' alt='\"><img src=\"/beacon.png\" onerror=\"fetch(`/beacon`)\">'>"
                "<img srcset='/c1.png 1x, /c2.png 2x' alt='set'>"
                "<picture><source srcset='/p-wide.png' media='(min-width: 9000px)'>"
                "<img src='/p.png' alt='pic'></picture>"
                "<div style='background-image:url(/bg.png);width:9px;height:9px'></div>"
                "<div style='display:none;background-image:url(/hidden.png)'></div>"
                "<form name='login' action='/go' method='post'><label for='u'>User</label>"
                "<input id='u' name='user'><input type='password' name='pw' value='secret'></form>"
                "<a href='/x'>x</a><iframe src='/inner'></iframe>",
                "<meta name='description' content='About'><link rel='stylesheet' href='/s.css'>"
                "<style>p{}</style><script src='/s.js'></script>"));
        m_server.setPage(u"/inner"_s, titled("Inner", "<img src='/inner.png' alt='inner'>"));
        for (const char *picture : {"/a.png", "/b.png", "/c1.png", "/c2.png", "/p.png",
                 "/p-wide.png", "/bg.png", "/hidden.png", "/inner.png", "/beacon.png"})
            m_server.setPage(QLatin1String(picture), pixelPng(), "image/png");
        m_server.setPage(u"/s.css"_s, "p{}", "text/css");
        m_server.setPage(u"/s.js"_s, "var x = 1;", "text/javascript");
        m_frame = new MDIForm1;
        m_frame->resize(1000, 700);
        m_frame->show();
        m_inspected = openOn(*m_frame, m_server.url(u"/inspect"_s).toString(), "Inspect");
        VERIFY_SOON(
            evaluate(m_inspected, u"document.querySelector('iframe').contentDocument.title"_s)
            == u"Inner"_s);
    }

    void init() { EngineTest::failOnWarnings(); }

    void cleanupTestCase() { delete m_frame; }

    void pictureListShowsEveryPictureOnceSortedAndPageTextAsText()
    {
        m_server.clearRequests();
        frmBrowser *list = inspect("mn_PictureList", 2550);
        QVERIFY(list);
        const QString base = m_server.url(u"/"_s).toString();
        QStringList expected;
        for (const char *path :
            {"a.png", "b.png", "bg.png", "c1.png", "c2.png", "inner.png", "p-wide.png", "p.png"})
            expected.append(base + QLatin1String(path));
        QCOMPARE(texts(list, u"td:nth-child(2)"_s), expected);
        QCOMPARE(texts(list, u"td:nth-child(3)"_s).first(), u"1 × 1"_s);
        // Every address opens in a new window.
        QCOMPARE(evaluate(list, u"Array.from(document.links).every(a => a.target === '_blank')"_s),
            QVariant(true));
        // The hostile alt texts arrive as text: no element, no attribute of theirs.
        QVERIFY(texts(list, u"td:nth-child(4)"_s)
                    .contains(u"<script>document.title='pwned'</script>"_s));
        QCOMPARE(evaluate(list, u"document.querySelectorAll('script, [onerror]').length"_s),
            QVariant(0));
        // The thumbnails were fetched, but never the beacon in the alt text.
        VERIFY_SOON(m_server.requestCount(u"/c2.png"_s) > 0);
        QCOMPARE(m_server.requestCount(u"/beacon.png"_s), 0);
        QCOMPARE(m_server.requestCount(u"/beacon"_s), 0);
    }

    void structureShowsOutlineFramesFormsAndResources()
    {
        m_server.clearRequests();
        frmBrowser *outline = inspect("mn_DocStruct", 2560);
        QVERIFY(outline);
        const QString text = evaluate(outline, u"document.body.innerText"_s).toString();
        // The h3 with the beacon's markup sits under Top, as text; Second too.
        QCOMPARE(evaluate(outline,
                     u"Array.from(document.querySelectorAll('span.lvl'))"
                     ".filter(s => s.nextSibling.textContent.includes('beacon'))"
                     ".map(s => s.parentElement.parentElement.closest('li')"
                     ".querySelector('span.lvl').nextSibling.textContent.trim())"_s)
                     .toStringList(),
            QStringList {u"Top"_s});
        QVERIFY(text.contains(u"<img src=/beacon.png>"_s));
        for (const QString &expected :
            {m_server.url(u"/inner"_s).toString(), u"Inner"_s, u"login"_s, u"password"_s, u"user"_s,
                u"User"_s, m_server.url(u"/s.js"_s).toString(),
                m_server.url(u"/s.css"_s).toString(), u"description"_s, u"About"_s})
            QVERIFY2(text.contains(expected), qPrintable(expected));
        QVERIFY(!text.contains(u"secret"_s));
        QCOMPARE(
            evaluate(outline, u"document.querySelectorAll('script, img').length"_s), QVariant(0));
        QTest::qWait(200);
        QCOMPARE(m_server.requestCount(u"/beacon.png"_s), 0);
    }
};

VANTRELL_ENGINE_TEST_MAIN(PageInspectionTest)
#include "pageinspection_test.moc"
