#include "core/base/uitexts.h"
#include "core/feeds/feeddocument.h"
#include "core/feeds/feedpage.h"
#include "core/feeds/feedparser.h"
#include "recordbytes.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {

QByteArray rss(const QByteArray &declaration, const QByteArray &title)
{
    return declaration + "<rss version=\"2.0\"><channel><title>" + title
        + "</title><item><title>t</title></item></channel></rss>";
}

QByteArray corpusFile(const QString &name)
{
    return RecordBytes::readFile(QStringLiteral(VANTRELL_CORPUS_DIR "/feeds/") + name);
}
} // namespace

class FeedParserTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void readsPrefixedAndNamespacedElements();
    void atomEntryPrefersAlternateLinkAndFallsBackToSummary();
    void valuesAreTrimmedAndMissingOnesEmpty();
    void itemsBeyondTheLimitAreNotRead();
    void decodesDeclaredAndUndeclaredEncodings_data();
    void decodesDeclaredAndUndeclaredEncodings();
    void blankLinesBeforeDeclarationAreSkippedButCounted();
    void entityDeclarationsAreRefused_data();
    void entityDeclarationsAreRefused();
    void documentTypeWithoutEntitiesIsRead();
    void oversizedFeedIsRefusedUnread();
    void deeplyNestedOrCrowdedDocumentIsRefused();
    void everyCorpusFeedGivesSafePage_data();
    void everyCorpusFeedGivesSafePage();
};

void FeedParserTest::readsPrefixedAndNamespacedElements()
{
    const FeedParseResult rdf = FeedParser::parse(
        "<rdf:RDF xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\" "
        "xmlns:rss=\"http://purl.org/rss/1.0/\">"
        "<rss:channel><rss:title>Prefixed</rss:title><rss:image rdf:resource=\"http://a/i.gif\"/>"
        "</rss:channel>"
        "<rss:item><rss:title>One</rss:title><rss:link>http://a/1</rss:link></rss:item>"
        "<rss:item><rss:title>Two</rss:title></rss:item></rdf:RDF>");
    QCOMPARE(rdf.status, FeedParseResult::Status::Parsed);
    QCOMPARE(rdf.feed.format, Feed::Format::Rdf);
    QCOMPARE(rdf.feed.title, u"Prefixed"_s);
    QCOMPARE(rdf.feed.imageUrl, u"http://a/i.gif"_s);
    QCOMPARE(rdf.feed.items.size(), 2);
    QCOMPARE(rdf.feed.items.at(0).link, u"http://a/1"_s);

    const FeedParseResult atom = FeedParser::parse(
        "<atom:feed xmlns:atom=\"http://www.w3.org/2005/Atom\"><atom:title>A</atom:title>"
        "<atom:entry><atom:title>E</atom:title><atom:link href=\"http://a/e\"/></atom:entry>"
        "</atom:feed>");
    QCOMPARE(atom.status, FeedParseResult::Status::Parsed);
    QCOMPARE(atom.feed.format, Feed::Format::Atom);
    QCOMPARE(atom.feed.items.value(0).link, u"http://a/e"_s);

    // A "feed" root of another vocabulary is no Atom feed.
    QCOMPARE(FeedParser::parse("<x:feed xmlns:x=\"urn:other\"/>").status,
        FeedParseResult::Status::UnknownType);

    const FeedParseResult rss = FeedParser::parse(
        "<rss xmlns:content=\"http://purl.org/rss/1.0/modules/content/\" "
        "xmlns:dc=\"http://purl.org/dc/elements/1.1/\"><channel>"
        "<item><title>Full</title><dc:date>2024</dc:date>"
        "<content:encoded><![CDATA[<p>Full text</p>]]></content:encoded></item>"
        "<item><dc:title>Not this</dc:title><title>This</title><description>Short</description>"
        "<content:encoded>Long</content:encoded></item>"
        "</channel></rss>");
    QCOMPARE(rss.status, FeedParseResult::Status::Parsed);
    QCOMPARE(rss.feed.items.at(0).description, u"<p>Full text</p>"_s);
    QCOMPARE(rss.feed.items.at(1).title, u"This"_s);
    QCOMPARE(rss.feed.items.at(1).description, u"Short"_s);

    // A prefix used without declaration is read as part of the name.
    const FeedParseResult undeclared = FeedParser::parse(
        "<rss><channel><item><title>Undeclared</title><itunes:summary>x</itunes:summary>"
        "<content:encoded>Body</content:encoded></item></channel></rss>");
    QCOMPARE(undeclared.status, FeedParseResult::Status::Parsed);
    QCOMPARE(undeclared.feed.items.at(0).title, u"Undeclared"_s);
    QCOMPARE(undeclared.feed.items.at(0).description, u"Body"_s);
}

void FeedParserTest::atomEntryPrefersAlternateLinkAndFallsBackToSummary()
{
    const FeedParseResult result = FeedParser::parse(
        "<feed xmlns=\"http://www.w3.org/2005/Atom\">"
        "<entry><link rel=\"self\" href=\"http://a/self\"/><link href=\"http://a/plain\"/>"
        "<content type=\"html\"></content><summary>Sum</summary></entry>"
        "<entry><link rel=\"enclosure\" href=\"http://a/enc\"/>"
        "<content type=\"xhtml\"><div xmlns=\"http://www.w3.org/1999/xhtml\">A <b>b</b></div>"
        "</content></entry>"
        "<entry><title type=\"html\">&lt;em&gt;Drei&lt;/em&gt;</title>"
        "<link rel=\"edit\" href=\"http://a/edit\"/><link rel=\"alternate\" href=\"http://a/alt\"/>"
        "<summary>nicht</summary><content type=\"html\">&lt;p&gt;Voll&lt;/p&gt;</content></entry>"
        "</feed>");
    QCOMPARE(result.feed.items.size(), 3);
    QCOMPARE(result.feed.items.at(0).link, u"http://a/plain"_s);
    QCOMPARE(result.feed.items.at(0).description, u"Sum"_s);
    QCOMPARE(result.feed.items.at(1).link, u"http://a/enc"_s);
    // The alternate link wins over the others, content over the summary.
    QCOMPARE(result.feed.items.at(2).link, u"http://a/alt"_s);
    QCOMPARE(result.feed.items.at(2).description, u"<p>Voll</p>"_s);
    // Inline XHTML stays markup and reaches the page as such.
    const QString page = FeedPage::render(result.feed, u"L"_s);
    QVERIFY2(page.contains(u"<div>A <b>b</b></div>"), qPrintable(page));
    QVERIFY(page.contains(u"<h3><em>Drei</em></h3>"));
}

void FeedParserTest::valuesAreTrimmedAndMissingOnesEmpty()
{
    const FeedParseResult result = FeedParser::parse(
        "<rss><channel><title>\n   日本語のタイトル \n</title>"
        "<item><link>\n http://a/1 \n</link><description><![CDATA[  <p>x</p>\n]]>"
        "</description></item><item/></channel></rss>");
    QCOMPARE(result.feed.title, u"日本語のタイトル"_s);
    QCOMPARE(result.feed.imageUrl, QString());
    QCOMPARE(result.feed.items.at(0).link, u"http://a/1"_s);
    QCOMPARE(result.feed.items.at(0).description, u"<p>x</p>"_s);
    QCOMPARE(result.feed.items.at(0).title, QString());
    QCOMPARE(result.feed.items.at(1).link, QString());

    // An RSS document without channel still gives a (blank) page rather than failing.
    const FeedParseResult bare = FeedParser::parse("<rss/>");
    QCOMPARE(bare.status, FeedParseResult::Status::Parsed);
    QVERIFY(bare.feed.items.isEmpty());
}

void FeedParserTest::itemsBeyondTheLimitAreNotRead()
{
    QByteArray xml = "<rss><channel>";
    for (int i = 0; i < FeedParser::MaxItems + 5; ++i)
        xml += "<item><title>" + QByteArray::number(i) + "</title></item>";
    xml += "</channel></rss>";
    const FeedParseResult result = FeedParser::parse(xml);
    QCOMPARE(result.feed.items.size(), FeedParser::MaxItems);
    QCOMPARE(result.feed.items.last().title, QString::number(FeedParser::MaxItems - 1));
}

void FeedParserTest::decodesDeclaredAndUndeclaredEncodings_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("title");

    QTest::newRow("iso-8859-1") << rss("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>",
        "Gr\xFC\xDF"
        "e") << u"Grüße"_s;
    QTest::newRow("windows-1252 euro and quotes")
        << rss("<?xml version='1.0' encoding='windows-1252'?>", "\x80 \x93q\x94") << u"€ “q”"_s;
    QTest::newRow("latin-1 label read as windows-1252")
        << rss("<?xml version=\"1.0\" encoding=\"iso-8859-1\"?>", "\x85") << u"…"_s;
    QTest::newRow("undeclared legacy bytes") << rss("", "Caf\xE9") << u"Café"_s;
    QTest::newRow("legacy label on utf-8 bytes")
        << rss("<?xml version=\"1.0\" encoding=\"windows-1252\"?>", "Euro \xE2\x82\xAC")
        << u"Euro €"_s;
    QTest::newRow("utf-8 with byte-order mark")
        << QByteArray("\xEF\xBB\xBF" + rss("<?xml version=\"1.0\"?>", "\xC3\xBC")) << u"ü"_s;
    QTest::newRow("unknown label on ascii")
        << rss("<?xml version=\"1.0\" encoding=\"bogus\"?>", "x") << u"x"_s;
    QTest::newRow("unknown label on legacy bytes")
        << rss("<?xml version=\"1.0\" encoding=\"bogus\"?>", "Caf\xE9") << u"Café"_s;
    QTest::newRow("koi8-r") << rss(
        "<?xml version=\"1.0\" encoding=\"KOI8-R\"?>", "\xF0\xD2\xC9\xD7\xC5\xD4")
                            << u"Привет"_s;

    const QString wide = QString::fromUtf8(
        rss("<?xml version=\"1.0\" encoding=\"UTF-16\"?>", "\xC3\xB6\xE2\x82\xAC"));
    QByteArray le("\xFF\xFE");
    QByteArray be;
    for (const QChar c : wide) {
        le += char(c.unicode() & 0xFF);
        le += char(c.unicode() >> 8);
        be += char(c.unicode() >> 8);
        be += char(c.unicode() & 0xFF);
    }
    QTest::newRow("utf-16le with mark") << le << u"ö€"_s;
    QTest::newRow("utf-16be without mark") << be << u"ö€"_s;
}

void FeedParserTest::decodesDeclaredAndUndeclaredEncodings()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, title);
    const FeedParseResult result = FeedParser::parse(bytes);
    QCOMPARE(result.error.reason, QString());
    QCOMPARE(result.feed.title, title);
}

void FeedParserTest::blankLinesBeforeDeclarationAreSkippedButCounted()
{
    const FeedParseResult spaced = FeedParser::parse(
        "\n\n   \t\n<?xml version=\"1.0\"?>\n<rss><channel><title>ok</title></channel></rss>");
    QCOMPARE(spaced.status, FeedParseResult::Status::Parsed);
    QCOMPARE(spaced.feed.title, u"ok"_s);

    // Lines count from the first line of the file as received.
    const FeedParseResult broken
        = FeedParser::parse("\n\n<?xml version=\"1.0\"?>\n<rss>\n<channel></rss>");
    QCOMPARE(broken.status, FeedParseResult::Status::XmlError);
    QCOMPARE(broken.error.line, 5);

    // A comment before the declaration is not skipped: the document is not well-formed.
    QCOMPARE(FeedParser::parse("<!-- c -->\n<?xml version=\"1.0\"?><rss/>").status,
        FeedParseResult::Status::XmlError);
}

void FeedParserTest::entityDeclarationsAreRefused_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("line");
    QTest::newRow("external file") << corpusFile(u"hazard-rss2-xxe-external-entity.xml"_s) << -1;
    QTest::newRow("billion laughs") << corpusFile(u"hazard-rss2-billion-laughs.xml"_s) << 3;
    QTest::newRow("quadratic under expansion limit")
        << corpusFile(u"hazard-rss2-quadratic-under-4096-entity-limit.xml"_s) << -1;
    QTest::newRow("quadratic") << corpusFile(u"hazard-atom-quadratic-blowup.xml"_s) << -1;
    QTest::newRow("one harmless entity")
        << QByteArray("<!DOCTYPE rss [\n<!ATTLIST rss version CDATA \"2.0\">\n"
                      "<!ENTITY nbsp \"&#160;\">]>\n<rss/>")
        << 3;
    QTest::newRow("after comment and pi")
        << QByteArray("<?xml version=\"1.0\"?><!-- ] > --><?pi ]>?>"
                      "<!DOCTYPE rss SYSTEM \"x]>\" [<!-- ]> --><!ENTITY a \"b\">]><rss/>")
        << 1;
}

void FeedParserTest::entityDeclarationsAreRefused()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, line);
    QVERIFY(!bytes.isEmpty());
    const FeedParseResult result = FeedParser::parse(bytes);
    QCOMPARE(result.status, FeedParseResult::Status::XmlError);
    QCOMPARE(result.error.problem, FeedError::Problem::EntityDeclaration);
    if (line >= 0)
        QCOMPARE(result.error.line, line);
}

void FeedParserTest::documentTypeWithoutEntitiesIsRead()
{
    const FeedParseResult external = FeedParser::parse(
        "<?xml version=\"1.0\"?>\n<!DOCTYPE rss PUBLIC \"-//Netscape Communications//DTD RSS "
        "0.91//EN\" \"http://127.0.0.1:9/rss-0.91.dtd\">\n"
        "<rss version=\"0.91\"><channel><title>Old</title></channel></rss>");
    QCOMPARE(external.status, FeedParseResult::Status::Parsed);
    QCOMPARE(external.feed.title, u"Old"_s);

    const FeedParseResult attlist = FeedParser::parse(
        "<!DOCTYPE rss [<!ATTLIST rss version CDATA \"2.0\"><!-- <!ENTITY> in a comment -->]>"
        "<rss><channel><title>Subset</title></channel></rss>");
    QCOMPARE(attlist.status, FeedParseResult::Status::Parsed);
}

void FeedParserTest::oversizedFeedIsRefusedUnread()
{
    QVERIFY(!FeedDocument::isTooLarge(FeedDocument::MaxBytes));
    QVERIFY(FeedDocument::isTooLarge(FeedDocument::MaxBytes + 1));

    // 50 MB of well-formed items: refused as a whole, not parsed.
    const QByteArray item
        = "<item><title>x</title><description>" + QByteArray(400, 'y') + "</description></item>";
    QByteArray xml = "<rss><channel>";
    xml.reserve(50 * 1024 * 1024 + 1024);
    while (xml.size() < 50 * 1024 * 1024)
        xml += item;
    xml += "</channel></rss>";
    const FeedParseResult result = FeedParser::parse(xml);
    QCOMPARE(result.status, FeedParseResult::Status::XmlError);
    QCOMPARE(result.error.problem, FeedError::Problem::TooLarge);
    QCOMPARE(result.error.reason, uiText(2091).arg(20));
    QCOMPARE(result.error.line, 0);
}

void FeedParserTest::deeplyNestedOrCrowdedDocumentIsRefused()
{
    auto nested = [](int depth) -> QByteArray {
        QByteArray xml = "<rss><channel>\n<item><description>";
        for (int i = 0; i < depth; ++i)
            xml += "<x a='>' b=\"/>\">";
        for (int i = 0; i < depth; ++i)
            xml += "<y/></x>";
        return xml + "</description></item></channel></rss>";
    };
    const int allowed = FeedDocument::MaxDepth - 5;
    QCOMPARE(FeedParser::parse(nested(allowed)).status, FeedParseResult::Status::Parsed);

    // Parsing time grows with the square of the depth: 200,000 levels would take hours.
    const FeedParseResult deep = FeedParser::parse(nested(200000));
    QCOMPARE(deep.status, FeedParseResult::Status::XmlError);
    QCOMPARE(deep.error.line, 2);
    QCOMPARE(deep.error.problem, FeedError::Problem::TooDeep);

    // A few hundred bytes of memory per element: millions of tiny ones are refused.
    QByteArray crowded = "<rss><channel><item>";
    crowded += QByteArray("<x/>").repeated(FeedDocument::MaxElements);
    crowded += "</item></channel></rss>";
    const FeedParseResult many = FeedParser::parse(crowded);
    QCOMPARE(many.status, FeedParseResult::Status::XmlError);
    QCOMPARE(many.error.problem, FeedError::Problem::TooMany);
}

void FeedParserTest::everyCorpusFeedGivesSafePage_data()
{
    // Files that are not well-formed (or not readable) and must give the error page.
    const QStringList broken = {
        u"fj-ITunesWithSingleQuotedAttributes.xml"_s, // element never closed
        u"fj-InvalidDateFormat.xml"_s,
        u"fp-malformed-empty-document.xml"_s,
        u"fp-malformed-incomplete-cdata.xml"_s,
        u"fp-malformed-unclosed-root.xml"_s,
        u"fp-rss-undefined-html-entity.xml"_s,
        u"fp-rss10-doctype-external-param-entity.xml"_s,
        u"fp-rss10-empty-textinput-malformed.xml"_s,
        u"fp-rss2-double-encoded.xml"_s, // undefined entity
        u"fp-rss2-link-ampersands-unclosed.xml"_s,
        u"hazard-atom-quadratic-blowup.xml"_s,
        u"hazard-rss2-billion-laughs.xml"_s,
        u"hazard-rss2-quadratic-under-4096-entity-limit.xml"_s,
        u"hazard-rss2-xxe-external-entity.xml"_s,
        u"rome-rss2-comment-before-xmldecl.xml"_s,
    };
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("wellFormed");
    const QDir dir(QStringLiteral(VANTRELL_CORPUS_DIR "/feeds"));
    const QStringList names = dir.entryList(QDir::Files, QDir::Name);
    QCOMPARE(names.size(), 78);
    for (const QString &name : names)
        QTest::newRow(qPrintable(name)) << dir.filePath(name) << !broken.contains(name);
}

void FeedParserTest::everyCorpusFeedGivesSafePage()
{
    QFETCH(QString, path);
    QFETCH(bool, wellFormed);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const FeedParseResult result = FeedParser::parse(file.readAll());
    QCOMPARE(result.status == FeedParseResult::Status::Parsed, wellFormed);
    if (!wellFormed)
        QCOMPARE(result.status, FeedParseResult::Status::XmlError);

    const QString page = FeedPage::forResult(result, path, u"L"_s);
    QVERIFY(page.endsWith(u"</body></html>"));
    // Nothing the feed wrote can run: the only script is the page's own toggle, the only
    // event handlers are those of the toggle signs.
    QCOMPARE(page.count(u"<script", Qt::CaseInsensitive), wellFormed ? 1 : 0);
    static const QRegularExpression handler(
        u"\\son[a-z]+\\s*="_s, QRegularExpression::CaseInsensitiveOption);
    QCOMPARE(page.count(handler), 2 * int(result.feed.items.size()));
    static const QRegularExpression embedded(
        u"<(iframe|object|embed|form|svg|link|base)\\b|javascript:(?! togglediv)"
        "|=\\s*[\"']?\\s*data:"_s,
        QRegularExpression::CaseInsensitiveOption);
    QVERIFY2(!page.contains(embedded), qPrintable(page.mid(page.indexOf(embedded), 80)));
    QCOMPARE(page.count(u"<meta", Qt::CaseInsensitive), 1);
    QCOMPARE(page.count(u"<style", Qt::CaseInsensitive), wellFormed ? 1 : 0);
}

QTEST_GUILESS_MAIN(FeedParserTest)
#include "feedparser_test.moc"
