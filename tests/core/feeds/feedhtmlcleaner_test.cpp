#include "core/feeds/feedhtmlcleaner.h"
#include "core/feeds/feedparser.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTest>

class FeedHtmlCleanerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral("."))); }
    void benignMarkupStaysByteForByte_data();
    void benignMarkupStaysByteForByte();
    void hostileMarkupIsRemoved_data();
    void hostileMarkupIsRemoved();
    void brokenNestingIsClosedInsideTheFragment();
    void corpusMarkupCleansToAFixedPoint();
    void plainTextDropsMarkupAndEscapes();
    void unsafeUrlsAreRecognisedHoweverWritten();
};

void FeedHtmlCleanerTest::benignMarkupStaysByteForByte_data()
{
    QTest::addColumn<QString>("html");
    QTest::newRow("text") << QStringLiteral("Just words & more > less");
    QTest::newRow("paragraphs") << QStringLiteral("<P>One</P>\n<p class=x>Two<p>Three");
    QTest::newRow("link") << QStringLiteral("<a href='http://a/?x=1&amp;y=2' title=\"t\">a</a>");
    QTest::newRow("image") << QStringLiteral("<img src=\"http://a/i.png\" alt=\"\" width=10 />");
    QTest::newRow("lists") << QStringLiteral("<ul><li>a<li>b</ul><ol start=3><li>c</li></ol>");
    QTest::newRow("table") << QStringLiteral(
        "<table border=1><tr><td colspan=2>x</td></tr><tr><th>h<td>y</table>");
    QTest::newRow("emphasis") << QStringLiteral(
        "<em>e</em> <strong>s</strong> <i>i</i> <b>b</b><br><br/><hr>");
    QTest::newRow("entities") << QStringLiteral("&copy; &#8364; &nbsp;<code>&lt;x&gt;</code>");
    QTest::newRow("comment") << QStringLiteral("a<!-- note -->b");
    QTest::newRow("coloured") << QStringLiteral("<span style=\"color: red\">r</span>");
    QTest::newRow("value-less attribute")
        << u"<table><tr><td nowrap colspan=2>x</td></tr></table>"_qs;
    QTest::newRow("upper case") << u"<P ALIGN=center>x</P>"_qs;
}

void FeedHtmlCleanerTest::benignMarkupStaysByteForByte()
{
    QFETCH(QString, html);
    QCOMPARE(FeedHtmlCleaner::clean(html), html);
}

void FeedHtmlCleanerTest::hostileMarkupIsRemoved_data()
{
    QTest::addColumn<QString>("html");
    QTest::addColumn<QString>("cleaned");
    QTest::newRow("script") << QStringLiteral("a<script>alert(1)</script>b") << u"ab"_qs;
    QTest::newRow("script upper case")
        << QStringLiteral("<SCRIPT SRC=http://x/x.js></SCRIPT>ok") << u"ok"_qs;
    QTest::newRow("handler") << QStringLiteral("<img src=\"http://a/i\" onerror=\"x()\">")
                             << u"<img src=\"http://a/i\">"_qs;
    QTest::newRow("handler odd spacing")
        << QStringLiteral("<b/onmouseover=x()>t</b>") << u"<b>t</b>"_qs;
    QTest::newRow("javascript link")
        << QStringLiteral("<a href=\" java&#09;script:alert(1)\">x</a>") << u"<a>x</a>"_qs;
    QTest::newRow("data image") << QStringLiteral("<img src='data:image/svg+xml,<svg/>'>")
                                << u"<img>"_qs;
    QTest::newRow("iframe") << QStringLiteral("<iframe src=\"http://x/\">f</iframe>safe")
                            << u"safe"_qs;
    QTest::newRow("object and embed")
        << QStringLiteral("<object data=x><param name=a value=b></object><embed src=y>z")
        << u"z"_qs;
    QTest::newRow("form") << QStringLiteral("<form action=x><input name=p></form>after")
                          << u"after"_qs;
    QTest::newRow("meta refresh") << QStringLiteral(
        "<meta http-equiv=\"refresh\" content=\"0;url=http://x/\">m")
                                  << u"m"_qs;
    QTest::newRow("style element")
        << QStringLiteral("<style>body{display:none}</style>s") << u"s"_qs;
    QTest::newRow("overlay style")
        << QStringLiteral("<a href=\"http://a/\" style=\"position: absolute;top:0\">p</a>")
        << u"<a href=\"http://a/\">p</a>"_qs;
    QTest::newRow("svg with script")
        << QStringLiteral("<svg onload=\"x()\"><script>y()</script></svg>t") << u"t"_qs;
    QTest::newRow("unknown element unwrapped")
        << QStringLiteral("<section><blink>b</blink></section>") << u"b"_qs;
    QTest::newRow("base and link")
        << QStringLiteral("<base href=\"http://x/\"><link rel=stylesheet href=y>k") << u"k"_qs;
    QTest::newRow("glued handler") << u"<img src=\"x\"onerror=\"y()\">"_qs << u"<img src=\"x\">"_qs;
    QTest::newRow("reference in url")
        << u"<a href=\"java&#115;cript:x\">l</a>"_qs << u"<a>l</a>"_qs;
    QTest::newRow("quotes rewritten safely")
        << QStringLiteral("<p title='a\"b' onclick=x>q</p>") << u"<p title=\"a&quot;b\">q</p>"_qs;
}

void FeedHtmlCleanerTest::hostileMarkupIsRemoved()
{
    QFETCH(QString, html);
    QFETCH(QString, cleaned);
    QCOMPARE(FeedHtmlCleaner::clean(html), cleaned);
}

void FeedHtmlCleanerTest::brokenNestingIsClosedInsideTheFragment()
{
    QCOMPARE(FeedHtmlCleaner::clean(u"<b>open <i>both"_qs), u"<b>open <i>both</i></b>"_qs);
    QCOMPARE(FeedHtmlCleaner::clean(u"x</td></tr></table></div>y"_qs), u"xy"_qs);
    QCOMPARE(FeedHtmlCleaner::clean(u"a < b"_qs), u"a &lt; b"_qs);
}

void FeedHtmlCleanerTest::corpusMarkupCleansToAFixedPoint()
{
    // Cleaned markup is kept as it is when cleaned again, and nothing that runs script
    // survives, whatever the feeds of the corpus bring.
    const QDir dir(QStringLiteral(VANTRELL_CORPUS_DIR "/feeds"));
    const QRegularExpression active(QStringLiteral("<script|<iframe|\\son\\w+=|javascript:"),
        QRegularExpression::CaseInsensitiveOption);
    int markup = 0;
    for (const QString &name : dir.entryList(QDir::Files)) {
        QFile file(dir.filePath(name));
        QVERIFY(file.open(QIODevice::ReadOnly));
        for (const FeedItem &item : FeedParser::parse(file.readAll()).feed.items) {
            if (!item.description.contains(u'<'))
                continue;
            ++markup;
            const QString cleaned = FeedHtmlCleaner::clean(item.description);
            QVERIFY2(!cleaned.contains(active), qPrintable(name));
            QVERIFY2(FeedHtmlCleaner::clean(cleaned) == cleaned, qPrintable(name));
        }
    }
    QVERIFY(markup > 100);
}

void FeedHtmlCleanerTest::plainTextDropsMarkupAndEscapes()
{
    QCOMPARE(FeedHtmlCleaner::toPlainText(u"Plain title"_qs), u"Plain title"_qs);
    QCOMPARE(FeedHtmlCleaner::toPlainText(u"<b>Bold</b> &amp; more"_qs), u"Bold &amp; more"_qs);
    QCOMPARE(FeedHtmlCleaner::toPlainText(u"T</title><script>alert(1)</script>"_qs), u"T"_qs);
    QCOMPARE(FeedHtmlCleaner::escape(u"<a href=\"x\">'&'</a>"_qs),
        u"&lt;a href=&quot;x&quot;&gt;&#39;&amp;&#39;&lt;/a&gt;"_qs);
}

void FeedHtmlCleanerTest::unsafeUrlsAreRecognisedHoweverWritten()
{
    QVERIFY(FeedHtmlCleaner::isUnsafeUrl(u"javascript:alert(1)"_qs));
    QVERIFY(FeedHtmlCleaner::isUnsafeUrl(u"  JAVASCRIPT:x"_qs));
    QVERIFY(FeedHtmlCleaner::isUnsafeUrl(u"java\nscript:x"_qs));
    QVERIFY(FeedHtmlCleaner::isUnsafeUrl(u"\x01vbscript:x"_qs));
    QVERIFY(FeedHtmlCleaner::isUnsafeUrl(u"Data:text/html,x"_qs));
    QVERIFY(!FeedHtmlCleaner::isUnsafeUrl(u"http://a/javascript:x"_qs));
    QVERIFY(!FeedHtmlCleaner::isUnsafeUrl(u"/relative/data:x"_qs));
    QVERIFY(!FeedHtmlCleaner::isUnsafeUrl(u"https://a/"_qs));
    QVERIFY(!FeedHtmlCleaner::isUnsafeUrl(QString()));
}

QTEST_GUILESS_MAIN(FeedHtmlCleanerTest)
#include "feedhtmlcleaner_test.moc"
