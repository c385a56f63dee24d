#include "core/feeds/feedhtmlcleaner.h"

#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

class FeedHtmlCleanerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void benignMarkupStaysByteForByte_data();
    void benignMarkupStaysByteForByte();
    void hostileMarkupIsRemoved_data();
    void hostileMarkupIsRemoved();
    void brokenNestingIsClosedInsideTheFragment();
    void plainTextDropsMarkupAndEscapes();
    void unsafeUrlsAreRecognisedHoweverWritten();
};

void FeedHtmlCleanerTest::benignMarkupStaysByteForByte_data()
{
    QTest::addColumn<QString>("html");
    QTest::newRow("text") << u"Just words & more > less"_s;
    QTest::newRow("paragraphs") << u"<P>One</P>\n<p class=x>Two<p>Three"_s;
    QTest::newRow("link") << u"<a href='http://a/?x=1&amp;y=2' title=\"t\">a</a>"_s;
    QTest::newRow("image") << u"<img src=\"http://a/i.png\" alt=\"\" width=10 />"_s;
    QTest::newRow("lists") << u"<ul><li>a<li>b</ul><ol start=3><li>c</li></ol>"_s;
    QTest::newRow("table")
        << u"<table border=1><tr><td colspan=2>x</td></tr><tr><th>h<td>y</table>"_s;
    QTest::newRow("emphasis") << u"<em>e</em> <strong>s</strong> <i>i</i> <b>b</b><br><br/><hr>"_s;
    QTest::newRow("entities") << u"&copy; &#8364; &nbsp;<code>&lt;x&gt;</code>"_s;
    QTest::newRow("comment") << u"a<!-- note -->b"_s;
    QTest::newRow("coloured") << u"<span style=\"color: red\">r</span>"_s;
    QTest::newRow("value-less attribute")
        << u"<table><tr><td nowrap colspan=2>x</td></tr></table>"_s;
    QTest::newRow("upper case") << u"<P ALIGN=center>x</P>"_s;
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
    QTest::newRow("script") << u"a<script>alert(1)</script>b"_s << u"ab"_s;
    QTest::newRow("script upper case") << u"<SCRIPT SRC=http://x/x.js></SCRIPT>ok"_s << u"ok"_s;
    QTest::newRow("handler") << u"<img src=\"http://a/i\" onerror=\"x()\">"_s
                             << u"<img src=\"http://a/i\">"_s;
    QTest::newRow("handler odd spacing") << u"<b/onmouseover=x()>t</b>"_s << u"<b>t</b>"_s;
    QTest::newRow("javascript link")
        << u"<a href=\" java&#09;script:alert(1)\">x</a>"_s << u"<a>x</a>"_s;
    QTest::newRow("data image") << u"<img src='data:image/svg+xml,<svg/>'>"_s << u"<img>"_s;
    QTest::newRow("iframe") << u"<iframe src=\"http://x/\">f</iframe>safe"_s << u"safe"_s;
    QTest::newRow("object and embed")
        << u"<object data=x><param name=a value=b></object><embed src=y>z"_s << u"z"_s;
    QTest::newRow("form") << u"<form action=x><input name=p></form>after"_s << u"after"_s;
    QTest::newRow("meta refresh") << u"<meta http-equiv=\"refresh\" content=\"0;url=http://x/\">m"_s
                                  << u"m"_s;
    QTest::newRow("style element") << u"<style>body{display:none}</style>s"_s << u"s"_s;
    QTest::newRow("overlay style")
        << u"<a href=\"http://a/\" style=\"position: absolute;top:0\">p</a>"_s
        << u"<a href=\"http://a/\">p</a>"_s;
    QTest::newRow("svg with script")
        << u"<svg onload=\"x()\"><script>y()</script></svg>t"_s << u"t"_s;
    QTest::newRow("unknown element unwrapped")
        << u"<section><blink>b</blink></section>"_s << u"b"_s;
    QTest::newRow("base and link")
        << u"<base href=\"http://x/\"><link rel=stylesheet href=y>k"_s << u"k"_s;
    QTest::newRow("glued handler") << u"<img src=\"x\"onerror=\"y()\">"_s << u"<img src=\"x\">"_s;
    QTest::newRow("reference in url") << u"<a href=\"java&#115;cript:x\">l</a>"_s << u"<a>l</a>"_s;
    QTest::newRow("quotes rewritten safely")
        << u"<p title='a\"b' onclick=x>q</p>"_s << u"<p title=\"a&quot;b\">q</p>"_s;
}

void FeedHtmlCleanerTest::hostileMarkupIsRemoved()
{
    QFETCH(QString, html);
    QFETCH(QString, cleaned);
    QCOMPARE(FeedHtmlCleaner::clean(html), cleaned);
}

void FeedHtmlCleanerTest::brokenNestingIsClosedInsideTheFragment()
{
    QCOMPARE(FeedHtmlCleaner::clean(u"<b>open <i>both"_s), u"<b>open <i>both</i></b>"_s);
    QCOMPARE(FeedHtmlCleaner::clean(u"x</td></tr></table></div>y"_s), u"xy"_s);
    QCOMPARE(FeedHtmlCleaner::clean(u"a < b"_s), u"a &lt; b"_s);
}

void FeedHtmlCleanerTest::plainTextDropsMarkupAndEscapes()
{
    QCOMPARE(FeedHtmlCleaner::toPlainText(u"Plain title"_s), u"Plain title"_s);
    QCOMPARE(FeedHtmlCleaner::toPlainText(u"<b>Bold</b> &amp; more"_s), u"Bold &amp; more"_s);
    QCOMPARE(FeedHtmlCleaner::toPlainText(u"T</title><script>alert(1)</script>"_s), u"T"_s);
    QCOMPARE(FeedHtmlCleaner::escape(u"<a href=\"x\">'&'</a>"_s),
        u"&lt;a href=&quot;x&quot;&gt;&#39;&amp;&#39;&lt;/a&gt;"_s);
}

void FeedHtmlCleanerTest::unsafeUrlsAreRecognisedHoweverWritten()
{
    QVERIFY(FeedHtmlCleaner::isUnsafeUrl(u"javascript:alert(1)"_s));
    QVERIFY(FeedHtmlCleaner::isUnsafeUrl(u"  JAVASCRIPT:x"_s));
    QVERIFY(FeedHtmlCleaner::isUnsafeUrl(u"java\nscript:x"_s));
    QVERIFY(FeedHtmlCleaner::isUnsafeUrl(u"\x01vbscript:x"_s));
    QVERIFY(FeedHtmlCleaner::isUnsafeUrl(u"Data:text/html,x"_s));
    QVERIFY(!FeedHtmlCleaner::isUnsafeUrl(u"http://a/javascript:x"_s));
    QVERIFY(!FeedHtmlCleaner::isUnsafeUrl(u"/relative/data:x"_s));
    QVERIFY(!FeedHtmlCleaner::isUnsafeUrl(u"https://a/"_s));
    QVERIFY(!FeedHtmlCleaner::isUnsafeUrl(QString()));
}

QTEST_GUILESS_MAIN(FeedHtmlCleanerTest)
#include "feedhtmlcleaner_test.moc"
