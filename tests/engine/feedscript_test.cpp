#include "core/feeds/feedpage.h"
#include "core/feeds/feedparser.h"
#include "engine/pageview.h"
#include "engineenvironment.h"
#include "localhttpserver.h"

#include <QFile>
#include <QSignalSpy>
#include <QTest>

// Feeds that attack: every well-known way of getting script into a page, written as
// feed items, rendered by the real engine. No script of theirs may run, neither behind
// the cleaner alone nor on the feed page as the program shows it, which forbids script
// altogether.
class FeedScriptTest : public QObject
{
    Q_OBJECT

    LocalHttpServer m_server;
    int m_vectors = 0;

    // Script that marks the document and calls the server, written without quotes so
    // that it fits into any attribute.
    QString payload() const
    {
        QStringList codes;
        for (const QChar c : m_server.url(QStringLiteral("/beacon")).toString())
            codes.append(QString::number(c.unicode()));
        return QStringLiteral("document.documentElement.dataset.xss=1;new Image().src=String."
                              "fromCharCode(")
            + codes.join(u',') + u')';
    }

    static QString xmlText(QString text)
    {
        return text.replace(u'&', QStringLiteral("&amp;"))
            .replace(u'<', QStringLiteral("&lt;"))
            .replace(u'>', QStringLiteral("&gt;"));
    }

    QByteArray attackFeed()
    {
        QFile file(QStringLiteral(VANTRELL_CORPUS_DIR "/xss/vectors.txt"));
        if (!file.open(QIODevice::ReadOnly))
            return {};
        QString items;
        const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n');
        for (const QString &line : lines) {
            if (line.trimmed().isEmpty())
                continue;
            const QString vector = QString(line).replace(QStringLiteral("PAYLOAD"), payload());
            // Each vector as the title and as the description of an item.
            items += QStringLiteral("<item><title>%1</title><link>https://example.org/%2</link>"
                                    "<description>%1</description></item>\n")
                         .arg(xmlText(vector))
                         .arg(++m_vectors);
        }
        return (QStringLiteral("<?xml version=\"1.0\" encoding=\"utf-8\"?><rss version=\"2.0\">"
                               "<channel><title>Attacks</title><link>https://example.org/</link>"
                               "<description>x</description>")
            + items + QStringLiteral("</channel></rss>"))
            .toUtf8();
    }

    QVariant evaluate(PageView &view, const QString &script)
    {
        QVariant result;
        bool done = false;
        view.runScript(script, [&](const QVariant &value) {
            result = value;
            done = true;
        });
        if (!QTest::qWaitFor([&] { return done; }, 10000))
            qWarning("the page did not answer");
        return result;
    }

    // After the load, gives the page's own timers, focus and animation events their
    // turn: the page's clock says when, not the test's.
    void settle(PageView &view)
    {
        view.runScript(
            QStringLiteral("setTimeout(() => { document.title = 'settled'; }, 400)"), {});
        QTRY_VERIFY_WITH_TIMEOUT(view.title() == u"settled", 10000);
    }

    void verifyNoScriptRan(PageView &view)
    {
        QCOMPARE(
            evaluate(view, QStringLiteral("document.documentElement.dataset.xss || ''")).toString(),
            QString());
        QCOMPARE(m_server.requestCount(QStringLiteral("/beacon")), 0);
        // Nothing is left that would run at a click either.
        QCOMPARE(evaluate(view,
                     QStringLiteral(
                         "[...document.querySelectorAll('[href],[src],[action],[formaction]')]"
                         ".filter(e => /^\\s*(javascript|vbscript|data):/i.test("
                         "e.getAttribute('href') || e.getAttribute('src') || "
                         "e.getAttribute('action') || e.getAttribute('formaction'))).length"))
                     .toInt(),
            0);
    }

private slots:
    void init() { EngineTest::failOnWarnings(); }

    void initTestCase() { QVERIFY(m_server.isListening()); }

    void attackFeedRunsNoScript_data()
    {
        QTest::addColumn<bool>("asShown");
        QTest::newRow("behind the cleaner alone") << false;
        QTest::newRow("as the program shows it") << true;
    }

    void attackFeedRunsNoScript()
    {
        QFETCH(bool, asShown);
        m_vectors = 0;
        const FeedParseResult parsed = FeedParser::parse(attackFeed());
        QCOMPARE(parsed.status, FeedParseResult::Status::Parsed);
        QVERIFY2(m_vectors >= 120, qPrintable(QString::number(m_vectors)));
        QCOMPARE(parsed.feed.items.size(), m_vectors);
        const QString page = FeedPage::forResult(
            parsed, m_server.url(QStringLiteral("/feed")).toString(), FeedPage::defaultLinkText());

        m_server.clearRequests();
        PageView view;
        view.resize(1000, 800);
        view.show();
        QSignalSpy loaded(&view, &PageView::loadFinished);
        if (asShown)
            view.showGeneratedPage(page.toUtf8());
        else
            view.setHtml(page, m_server.url(QStringLiteral("/feed")));
        QTRY_COMPARE_WITH_TIMEOUT(loaded.size(), 1, 20000);
        settle(view);
        verifyNoScriptRan(view);
    }

    void shownPagesForbidScript()
    {
        // A page of the program's own making with a script of its own: the policy of
        // the shown pages stops even that, so nothing a cleaner missed could run.
        PageView view;
        QSignalSpy loaded(&view, &PageView::loadFinished);
        view.showGeneratedPage("<html><head></head><body><script>" + payload().toUtf8()
            + "</script><p>x</p></body></html>");
        QTRY_COMPARE_WITH_TIMEOUT(loaded.size(), 1, 20000);
        settle(view);
        verifyNoScriptRan(view);
    }
};

VANTRELL_ENGINE_TEST_MAIN(FeedScriptTest)
#include "feedscript_test.moc"
