#include "core/feeds/feedpage.h"
#include "core/feeds/feedparser.h"

#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

// Everything up to the feed title, and from the title to the header box, as the page
// writes it for every feed.
const QString pageStart = u"<html><head><title>"_s;
const QString afterTitle
    = u"</title>"
      "<meta http-equiv='Content-Type' content='text/html; charset=utf-8'>"
      "<style><!--"
      "body,b,td,font,p,a{font-family: Verdana,Arial,Helvetica,sans-serif,'MS sans serif'; "
      "color: #000000; FONT-SIZE: 8pt}"
      "a,a:link{color:#3183FF; text-Decoration: none; FONT-WEIGHT: bold; FONT-SIZE: 8pt}"
      "a:visited{color:#3183FF; text-Decoration: none; FONT-WEIGHT: bold; FONT-SIZE: 8pt}"
      "a:active{color:#3183FF; text-Decoration: none; FONT-WEIGHT: bold; FONT-SIZE: 8pt}"
      "a:hover{color: black; text-Decoration: none; FONT-WEIGHT: bold; FONT-SIZE: 8pt}"
      "h1{font-family: Verdana,Arial,Helvetica,sans-serif; FONT-WEIGHT: bold; margin-top: 0px; "
      "margin-bottom: 5px; FONT-SIZE: 11pt}"
      "h2{font-family: Verdana,Arial,Helvetica,sans-serif; FONT-WEIGHT: bold; margin-top: 0px; "
      "margin-bottom: 5px; FONT-SIZE: 9pt}"
      "h3{font-family: Verdana,Arial,Helvetica,sans-serif; FONT-WEIGHT: bold; margin-top: 0px; "
      "margin-bottom: 5px; FONT-SIZE: 10pt}"
      "h4{font-family: Verdana,Arial,Helvetica,sans-serif; FONT-WEIGHT: bold; margin-top: 0px; "
      "margin-bottom: 5px; FONT-SIZE: 8pt}"
      ".toggle{border: 1px solid #000000; font-family: 'Courier New',Courier,monospace; "
      "FONT-WEIGHT: bold; FONT-SIZE: 12px; color: #000000; background-color: #FFFFFF}"
      ".itemborder{width: 318px; border-top: 1px solid #C1C1C1; border-left: 1px solid #C1C1C1; "
      "border-bottom: 1px solid #000000; border-right: 1px solid #000000}"
      ".hdborder{width: 318px; border-top: 1px solid #C1C1C1; border-left: 1px solid #C1C1C1; "
      "border-bottom: 1px solid #000000; border-right: 1px solid #000000}"
      ".smallbr{margin-height: 3px}"
      ".dfont{font-size:9pt}"
      "body{margin-left: 10px; margin-right: 10px; margin-top: 16px; margin-bottom: 16px; "
      "background-color: #FFFFFF; scrollbar-face-color: #E0E0E0; "
      "scrollbar-highlight-color: #FFFFFF; scrollbar-shadow-color: #C1C1C1; "
      "scrollbar-arrow-color: #808080; scrollbar-track-color: #F0F0F0}"
      "//--></style>"
      "<script language='JavaScript'>function togglediv(oDiv, oDest, oT){if(oDiv.innerText == "
      "'-'){oDiv.innerText = '+'; eval(\"oDest.style.display = 'none'\")} else {oDiv.innerText "
      "= '-'; eval(\"oDest.style.display = 'inline'\")} }</script></head><body><center>"_s;
const QString spacer = u"<table style='visibility: none; border-style: none' "
                       "border=1 cellspacing='2px' cellpadding='2px'><tr><td>"
                       "</td></tr></table>"_s;
const QString pageEnd = u"</center></body></html>"_s;

} // namespace

class FeedPageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void rssFeedGivesExactPage();
    void toggleSignAndLinkTextAreTheCallersChoice();
    void titleCannotEscapeItsElements();
    void linksAndImagesAreEscapedAndNeverScript();
    void deeplyNestedMarkupIsShownAsText();
    void errorPageNamesReasonSourceAndLine();
    void documentOfAnotherKindGivesUnknownTypePage();
};

void FeedPageTest::rssFeedGivesExactPage()
{
    const FeedParseResult result = FeedParser::parse(
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<rss version=\"2.0\" xmlns:content=\"http://purl.org/rss/1.0/modules/content/\">\n"
        "<channel>\n"
        "  <title>Kleine Nachrichten</title>\n"
        "  <link>http://example.org/</link>\n"
        "  <image><url>http://example.org/logo.png</url><title>Logo</title></image>\n"
        "  <item>\n"
        "    <title>Erste Meldung</title>\n"
        "    <link>http://example.org/1</link>\n"
        "    <description><![CDATA[<p>Ein <b>kurzer</b> Text mit <a "
        "href=\"http://example.org/mehr\">Link</a>.</p><ul><li>eins<li>zwei</ul><img "
        "src=\"http://example.org/a.png\" alt=a><br>]]></description>\n"
        "  </item>\n"
        "  <item>\n"
        "    <title>Zweite Meldung</title>\n"
        "    <link>http://example.org/2</link>\n"
        "  </item>\n"
        "  <item>\n"
        "    <title>Dritte &amp; letzte</title>\n"
        "    <description>Nur Text &lt;i&gt;kursiv&lt;/i&gt;</description>\n"
        "    <link>http://example.org/3</link>\n"
        "  </item>\n"
        "</channel>\n"
        "</rss>\n");
    QCOMPARE(result.status, FeedParseResult::Status::Parsed);
    QCOMPARE(Feed::formatTag(result.feed.format), u"[RSS]"_s);

    const QString expected = pageStart + u"Kleine Nachrichten" + afterTitle
        + u"<div class='hdborder'><table border='0' width='318px' cellspacing='0px' "
          u"cellpadding='5px'><tr><td><h1>Kleine Nachrichten</h1></td><td valign=top "
          u"align=right><img src='http://example.org/logo.png'></td></tr></table></div>"
        + spacer
        + u"<div class='itemborder'><table border=0 width='318px' cellspacing='0px' "
          u"cellpadding='5px'><tr><td align=left width='283px'><h3>Erste Meldung</h3></td>"
          u"<td align=center valign=top width='15px'><div "
          u"onmouseover=\"{this.style.cursor='hand'}\" onclick =\"javascript: togglediv(this, "
          u"dr1, 't1');\" class='toggle'>-</div></td></tr><tr id='dr1'><td class='dfont' "
          u"width='298' colspan=2><p>Ein <b>kurzer</b> Text mit <a "
          u"href=\"http://example.org/mehr\">Link</a>.</p><ul><li>eins<li>zwei</ul><img "
          u"src=\"http://example.org/a.png\" alt=a><br> \r\n<a class='lnk' "
          u"href=\"http://example.org/1\" target=\"frm1\">Weiter</a></td></tr></table></div>"
        + spacer
        + u"<div class='itemborder'><table border=0 width='318px' cellspacing='0px' "
          u"cellpadding='5px'><tr><td align=left width='283px'><h3>Zweite Meldung</h3></td>"
          u"<td align=center valign=top width='15px'><div "
          u"onmouseover=\"{this.style.cursor='hand'}\" onclick =\"javascript: togglediv(this, "
          u"dr2, 't2');\" class='toggle'>-</div></td></tr><tr id='dr2'><td class='dfont' "
          u"width='298' colspan=2>\r\n<a class='lnk' href=\"http://example.org/2\" "
          u"target=\"frm2\">Weiter</a></td></tr></table></div>"
        + spacer
        + u"<div class='itemborder'><table border=0 width='318px' cellspacing='0px' "
          u"cellpadding='5px'><tr><td align=left width='283px'><h3>Dritte & letzte</h3></td>"
          u"<td align=center valign=top width='15px'><div "
          u"onmouseover=\"{this.style.cursor='hand'}\" onclick =\"javascript: togglediv(this, "
          u"dr3, 't3');\" class='toggle'>-</div></td></tr><tr id='dr3'><td class='dfont' "
          u"width='298' colspan=2>Nur Text <i>kursiv</i> \r\n<a class='lnk' "
          u"href=\"http://example.org/3\" target=\"frm3\">Weiter</a></td></tr></table></div>"
        + spacer + pageEnd;
    QCOMPARE(FeedPage::render(result.feed, u"Weiter"_s), expected);
}

void FeedPageTest::toggleSignAndLinkTextAreTheCallersChoice()
{
    Feed feed;
    feed.items = {{u"A"_s, QString(), u"http://a/"_s}};
    const QString collapsed = FeedPage::render(feed, u"Öffnen"_s, u"+"_s);
    QVERIFY(collapsed.contains(u"class='toggle'>+</div>"));
    QVERIFY(collapsed.contains(u"target=\"frm1\">Öffnen</a>"));
    // The script keeps its fixed signs whatever the items start with.
    QVERIFY(collapsed.contains(u"if(oDiv.innerText == '-'){oDiv.innerText = '+';"));

    QCOMPARE(FeedPage::expandedSign(), u"-"_s);
    QVERIFY(FeedPage::render(feed, FeedPage::defaultLinkText())
                .contains(u"target=\"frm1\">Weiterlesen...</a>"));
}

void FeedPageTest::titleCannotEscapeItsElements()
{
    Feed feed;
    feed.title = u"Evil</title><script>alert(1)</script>"_s;
    feed.items
        = {{u"</h3></td></tr></table><script>alert(2)</script>x"_s, u"<b>offen"_s, u"http://a/"_s}};
    const QString page = FeedPage::render(feed, u"L"_s);
    QCOMPARE(page.count(u"<script"), 1); // only the page's own toggle script
    QVERIFY(page.startsWith(u"<html><head><title>Evil</title><meta"));
    QVERIFY(page.contains(u"<h1>Evil</h1>"));
    QVERIFY(page.contains(u"<h3>x</h3></td>"));
    // An element left open in a description is closed inside its box.
    QVERIFY(page.contains(u"<b>offen</b> \r\n<a class='lnk'"));
}

void FeedPageTest::linksAndImagesAreEscapedAndNeverScript()
{
    Feed feed;
    feed.imageUrl = u"javascript:alert(1)"_s;
    feed.items = {
        {u"a"_s, QString(), u"http://x/?a=1&b=\"2\"><script>"_s},
        {u"b"_s, QString(), u" JaVa\tScRiPt:alert(1)"_s},
        {u"c"_s, QString(), u"data:text/html,<script>x</script>"_s},
    };
    const QString page = FeedPage::render(feed, u"L"_s);
    QVERIFY(page.contains(u"align=right>&nbsp;</td>"));
    QVERIFY(page.contains(
        u"href=\"http://x/?a=1&amp;b=&quot;2&quot;&gt;&lt;script&gt;\" target=\"frm1\""));
    QVERIFY(page.contains(u"href=\"\" target=\"frm2\""));
    QVERIFY(page.contains(u"href=\"\" target=\"frm3\""));
    QCOMPARE(page.count(u"<script"), 1);

    feed.imageUrl = u"http://x/a'b.png"_s;
    QVERIFY(FeedPage::render(feed, u"L"_s).contains(u"<img src='http://x/a&#39;b.png'>"));
}

void FeedPageTest::deeplyNestedMarkupIsShownAsText()
{
    // Markup nested this deep would take minutes to parse; it is shown as text instead,
    // item after item, and the page is still built in moments.
    QString deep = u"<div>"_s.repeated(100000) + u"Tief <script>alert(1)</script><b>fett"_s;
    Feed feed;
    for (int i = 0; i < 50; ++i)
        feed.items.append({u"T"_s, deep, u"http://a/"_s});
    feed.items.append({u"T"_s, u"<b>offen"_s, QString()});
    const QString page = FeedPage::render(feed, u"L"_s);
    QCOMPARE(page.count(u"colspan=2>Tief alert(1)fett \r\n"), 50);
    QCOMPARE(page.count(u"<script"), 1);
    QCOMPARE(page.count(u"<div>"), 0);
    // Ordinary markup after them is still cleaned as usual.
    QVERIFY(page.contains(u"colspan=2><b>offen</b> \r\n"));
}

void FeedPageTest::errorPageNamesReasonSourceAndLine()
{
    const FeedParseResult result
        = FeedParser::parse("<?xml version=\"1.0\"?>\n<rss>\n<channel>\n</rss>\n");
    QCOMPARE(result.status, FeedParseResult::Status::XmlError);
    QCOMPARE(result.error.line, 4);
    const QString page = FeedPage::forResult(result, u"http://example.org/feed?a=<b>"_s, u"L"_s);
    QCOMPARE(page,
        u"<html><head><meta http-equiv='Content-Type' content='text/html; charset=utf-8'>"
        u"</head><body><h1>Die XML Seite kann nicht angezeigt werden.</h1><b>Fehler:</b> "
            + result.error.reason
            + u"<br><br><b>Quelle:</b> http://example.org/feed?a=&lt;b&gt;<br><br><b>Zeile:</b> "
              u"4</body></html>");
    QVERIFY(!result.error.reason.isEmpty());

    // Markup in a reason is shown, not interpreted.
    const QString escaped
        = FeedPage::errorPage(FeedError {u"Unexpected '<script>'"_s, 7}, u"f.xml"_s);
    QVERIFY(escaped.contains(u"<b>Fehler:</b> Unexpected &#39;&lt;script&gt;&#39;<br><br>"));
    QVERIFY(escaped.endsWith(u"<b>Zeile:</b> 7</body></html>"));
}

void FeedPageTest::documentOfAnotherKindGivesUnknownTypePage()
{
    const FeedParseResult result = FeedParser::parse("<?xml version=\"1.0\"?><html><body/></html>");
    QCOMPARE(result.status, FeedParseResult::Status::UnknownType);
    QCOMPARE(FeedPage::forResult(result, u"x"_s, u"L"_s),
        u"<html><head><meta http-equiv='Content-Type' content='text/html; "
        "charset=utf-8'></head><body><p style='font-family: Verdana; FONT-SIZE: "
        "8pt'><b>Feed-Type unbekannt.</b></p></body></html>"_s);
}

QTEST_GUILESS_MAIN(FeedPageTest)
#include "feedpage_test.moc"
