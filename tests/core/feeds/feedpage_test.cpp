#include "core/feeds/feedpage.h"
#include "core/feeds/feedparser.h"

#include <QRegularExpression>
#include <QTest>

namespace {

// Everything up to the feed title, and from the title to the header box, as the page
// writes it for every feed.
const QString pageStart = QStringLiteral("<html><head><title>");
const QString afterTitle = QStringLiteral(
    "</title>"
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
    "= '-'; eval(\"oDest.style.display = 'inline'\")} }</script></head><body><center>");
const QString spacer = QStringLiteral("<table style='visibility: none; border-style: none' "
                                      "border=1 cellspacing='2px' cellpadding='2px'><tr><td>"
                                      "</td></tr></table>");
const QString pageEnd = QStringLiteral("</center></body></html>");

FeedParseResult parse(const char *xml)
{
    return FeedParser::parse(QByteArray(xml));
}

} // namespace

class FeedPageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral("."))); }
    void rssFeedGivesExactPage();
    void rdfFeedGivesExactPage();
    void atomFeedGivesExactPage();
    void toggleSignAndLinkTextAreTheCallersChoice();
    void titleCannotEscapeItsElements();
    void linksAndImagesAreEscapedAndNeverScript();
    void deeplyNestedMarkupIsShownAsText();
    void errorPageNamesReasonSourceAndLine();
    void documentOfAnotherKindGivesUnknownTypePage();
};

void FeedPageTest::rssFeedGivesExactPage()
{
    const FeedParseResult result
        = parse("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
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
    QCOMPARE(Feed::formatTag(result.feed.format), QStringLiteral("[RSS]"));

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
    QCOMPARE(FeedPage::render(result.feed, QStringLiteral("Weiter")), expected);
}

void FeedPageTest::rdfFeedGivesExactPage()
{
    const FeedParseResult result = parse(
        "<?xml version=\"1.0\"?>\n"
        "<rdf:RDF xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\"\n"
        "         xmlns=\"http://purl.org/rss/1.0/\" "
        "xmlns:dc=\"http://purl.org/dc/elements/1.1/\">\n"
        "  <channel rdf:about=\"http://example.org/rdf\">\n"
        "    <title>RDF Kanal</title>\n"
        "    <image rdf:resource=\"http://example.org/rdf.gif\" />\n"
        "    <items><rdf:Seq><rdf:li resource=\"http://example.org/r1\" /></rdf:Seq></items>\n"
        "  </channel>\n"
        "  <image "
        "rdf:about=\"http://example.org/rdf.gif\"><url>http://example.org/rdf.gif</url></image>\n"
        "  <item rdf:about=\"http://example.org/r1\">\n"
        "    <title>Punkt eins</title>\n"
        "    <link>http://example.org/r1</link>\n"
        "    <description>Beschreibung eins</description>\n"
        "    <dc:date>2024-01-02</dc:date>\n"
        "  </item>\n"
        "</rdf:RDF>\n");
    QCOMPARE(result.status, FeedParseResult::Status::Parsed);
    QCOMPARE(Feed::formatTag(result.feed.format), QStringLiteral("[RDF]"));

    const QString expected = pageStart + u"RDF Kanal" + afterTitle
        + u"<div class='hdborder'><table border='0' width='318px' cellspacing='0px' "
          u"cellpadding='5px'><tr><td><h1>RDF Kanal</h1></td><td valign=top "
          u"align=right><img src='http://example.org/rdf.gif'></td></tr></table></div>"
        + spacer
        + u"<div class='itemborder'><table border=0 width='318px' cellspacing='0px' "
          u"cellpadding='5px'><tr><td align=left width='283px'><h3>Punkt eins</h3></td>"
          u"<td align=center valign=top width='15px'><div "
          u"onmouseover=\"{this.style.cursor='hand'}\" onclick =\"javascript: togglediv(this, "
          u"dr1, 't1');\" class='toggle'>-</div></td></tr><tr id='dr1'><td class='dfont' "
          u"width='298' colspan=2>Beschreibung eins \r\n<a class='lnk' "
          u"href=\"http://example.org/r1\" target=\"frm1\">mehr</a></td></tr></table></div>"
        + spacer + pageEnd;
    QCOMPARE(FeedPage::render(result.feed, QStringLiteral("mehr")), expected);
}

void FeedPageTest::atomFeedGivesExactPage()
{
    // The entry's link is the alternate one, not the first; without content the
    // summary is shown.
    const FeedParseResult result
        = parse("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
                "<feed xmlns=\"http://www.w3.org/2005/Atom\">\n"
                "  <title>Atom Blog</title>\n"
                "  <link rel=\"self\" href=\"http://example.org/atom.xml\"/>\n"
                "  <entry>\n"
                "    <title>Eintrag</title>\n"
                "    <link rel=\"edit\" href=\"http://example.org/edit/1\"/>\n"
                "    <link rel=\"alternate\" type=\"text/html\" href=\"http://example.org/e1\"/>\n"
                "    <summary>Kurzfassung</summary>\n"
                "  </entry>\n"
                "  <entry>\n"
                "    <title type=\"html\">&lt;em&gt;Zweiter&lt;/em&gt;</title>\n"
                "    <link href=\"http://example.org/e2\"/>\n"
                "    <summary>nicht gezeigt</summary>\n"
                "    <content type=\"html\">&lt;p&gt;Voller Text&lt;/p&gt;</content>\n"
                "  </entry>\n"
                "</feed>\n");
    QCOMPARE(result.status, FeedParseResult::Status::Parsed);
    QCOMPARE(Feed::formatTag(result.feed.format), QStringLiteral("[ATOM]"));

    const QString expected = pageStart + u"Atom Blog" + afterTitle
        + u"<div class='hdborder'><table border='0' width='318px' cellspacing='0px' "
          u"cellpadding='5px'><tr><td><h1>Atom Blog</h1></td><td valign=top "
          u"align=right>&nbsp;</td></tr></table></div>"
        + spacer
        + u"<div class='itemborder'><table border=0 width='318px' cellspacing='0px' "
          u"cellpadding='5px'><tr><td align=left width='283px'><h3>Eintrag</h3></td>"
          u"<td align=center valign=top width='15px'><div "
          u"onmouseover=\"{this.style.cursor='hand'}\" onclick =\"javascript: togglediv(this, "
          u"dr1, 't1');\" class='toggle'>-</div></td></tr><tr id='dr1'><td class='dfont' "
          u"width='298' colspan=2>Kurzfassung \r\n<a class='lnk' "
          u"href=\"http://example.org/e1\" target=\"frm1\">Link</a></td></tr></table></div>"
        + spacer
        + u"<div class='itemborder'><table border=0 width='318px' cellspacing='0px' "
          u"cellpadding='5px'><tr><td align=left width='283px'><h3><em>Zweiter</em></h3></td>"
          u"<td align=center valign=top width='15px'><div "
          u"onmouseover=\"{this.style.cursor='hand'}\" onclick =\"javascript: togglediv(this, "
          u"dr2, 't2');\" class='toggle'>-</div></td></tr><tr id='dr2'><td class='dfont' "
          u"width='298' colspan=2><p>Voller Text</p> \r\n<a class='lnk' "
          u"href=\"http://example.org/e2\" target=\"frm2\">Link</a></td></tr></table></div>"
        + spacer + pageEnd;
    QCOMPARE(FeedPage::render(result.feed, QStringLiteral("Link")), expected);
}

void FeedPageTest::toggleSignAndLinkTextAreTheCallersChoice()
{
    Feed feed;
    feed.items = {{QStringLiteral("A"), QString(), QStringLiteral("http://a/")}};
    const QString collapsed = FeedPage::render(feed, QStringLiteral("Öffnen"), QStringLiteral("+"));
    QVERIFY(collapsed.contains(u"class='toggle'>+</div>"));
    QVERIFY(collapsed.contains(u"target=\"frm1\">Öffnen</a>"));
    // The script keeps its fixed signs whatever the items start with.
    QVERIFY(collapsed.contains(u"if(oDiv.innerText == '-'){oDiv.innerText = '+';"));

    QCOMPARE(FeedPage::expandedSign(), QStringLiteral("-"));
    QCOMPARE(FeedPage::defaultLinkText(), QStringLiteral("Weiterlesen..."));
    QVERIFY(FeedPage::render(feed, FeedPage::defaultLinkText())
                .contains(u"target=\"frm1\">Weiterlesen...</a>"));
}

void FeedPageTest::titleCannotEscapeItsElements()
{
    Feed feed;
    feed.title = QStringLiteral("Evil</title><script>alert(1)</script>");
    feed.items = {{QStringLiteral("</h3></td></tr></table><script>alert(2)</script>x"),
        QStringLiteral("<b>offen"), QStringLiteral("http://a/")}};
    const QString page = FeedPage::render(feed, QStringLiteral("L"));
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
    feed.imageUrl = QStringLiteral("javascript:alert(1)");
    feed.items = {
        {QStringLiteral("a"), QString(), QStringLiteral("http://x/?a=1&b=\"2\"><script>")},
        {QStringLiteral("b"), QString(), QStringLiteral(" JaVa\tScRiPt:alert(1)")},
        {QStringLiteral("c"), QString(), QStringLiteral("data:text/html,<script>x</script>")},
    };
    const QString page = FeedPage::render(feed, QStringLiteral("L"));
    QVERIFY(page.contains(u"align=right>&nbsp;</td>"));
    QVERIFY(page.contains(
        u"href=\"http://x/?a=1&amp;b=&quot;2&quot;&gt;&lt;script&gt;\" target=\"frm1\""));
    QVERIFY(page.contains(u"href=\"\" target=\"frm2\""));
    QVERIFY(page.contains(u"href=\"\" target=\"frm3\""));
    QCOMPARE(page.count(u"<script"), 1);

    feed.imageUrl = QStringLiteral("http://x/a'b.png");
    QVERIFY(
        FeedPage::render(feed, QStringLiteral("L")).contains(u"<img src='http://x/a&#39;b.png'>"));
}

void FeedPageTest::deeplyNestedMarkupIsShownAsText()
{
    // Markup nested this deep would take minutes to parse; it is shown as text instead,
    // item after item, and the page is still built in moments.
    QString deep = QStringLiteral("<div>").repeated(100000)
        + QStringLiteral("Tief <script>alert(1)</script><b>fett");
    Feed feed;
    for (int i = 0; i < 50; ++i)
        feed.items.append({QStringLiteral("T"), deep, QStringLiteral("http://a/")});
    feed.items.append({QStringLiteral("T"), QStringLiteral("<b>offen"), QString()});
    const QString page = FeedPage::render(feed, QStringLiteral("L"));
    QCOMPARE(page.count(u"colspan=2>Tief alert(1)fett \r\n"), 50);
    QCOMPARE(page.count(u"<script"), 1);
    QCOMPARE(page.count(u"<div>"), 0);
    // Ordinary markup after them is still cleaned as usual.
    QVERIFY(page.contains(u"colspan=2><b>offen</b> \r\n"));
}

void FeedPageTest::errorPageNamesReasonSourceAndLine()
{
    const FeedParseResult result = parse("<?xml version=\"1.0\"?>\n<rss>\n<channel>\n</rss>\n");
    QCOMPARE(result.status, FeedParseResult::Status::XmlError);
    QCOMPARE(result.error.line, 4);
    const QString page = FeedPage::forResult(
        result, QStringLiteral("http://example.org/feed?a=<b>"), QStringLiteral("L"));
    QCOMPARE(page,
        u"<html><head><meta http-equiv='Content-Type' content='text/html; charset=utf-8'>"
        u"</head><body><h1>Die XML Seite kann nicht angezeigt werden.</h1><b>Fehler:</b> "
            + result.error.reason
            + u"<br><br><b>Quelle:</b> http://example.org/feed?a=&lt;b&gt;<br><br><b>Zeile:</b> "
              u"4</body></html>");
    QVERIFY(!result.error.reason.isEmpty());

    // Markup in a reason is shown, not interpreted.
    const QString escaped = FeedPage::errorPage(
        FeedError {QStringLiteral("Unexpected '<script>'"), 7}, QStringLiteral("f.xml"));
    QVERIFY(escaped.contains(u"<b>Fehler:</b> Unexpected &#39;&lt;script&gt;&#39;<br><br>"));
    QVERIFY(escaped.endsWith(u"<b>Zeile:</b> 7</body></html>"));
}

void FeedPageTest::documentOfAnotherKindGivesUnknownTypePage()
{
    const FeedParseResult result = parse("<?xml version=\"1.0\"?><html><body/></html>");
    QCOMPARE(result.status, FeedParseResult::Status::UnknownType);
    QCOMPARE(FeedPage::forResult(result, QStringLiteral("x"), QStringLiteral("L")),
        QStringLiteral("<html><head><meta http-equiv='Content-Type' content='text/html; "
                       "charset=utf-8'></head><body><p style='font-family: Verdana; FONT-SIZE: "
                       "8pt'><b>Feed-Type unbekannt.</b></p></body></html>"));
}

QTEST_GUILESS_MAIN(FeedPageTest)
#include "feedpage_test.moc"
