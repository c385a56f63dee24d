#include "core/feeds/feeddocument.h"
#include "core/feeds/feedpage.h"
#include "core/feeds/feedparser.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

namespace {

QByteArray rss(const QByteArray &declaration, const QByteArray &title)
{
    return declaration + "<rss version=\"2.0\"><channel><title>" + title
        + "</title><item><title>t</title></item></channel></rss>";
}

QByteArray corpusFile(const QString &name)
{
    QFile file(QStringLiteral(VANTRELL_CORPUS_DIR "/feeds/") + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class FeedParserTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral("."))); }
    void readsPrefixedAndNamespacedElements();
    void atomEntryPrefersAlternateLinkAndFallsBackToSummary();
    void valuesAreTrimmedAndMissingOnesEmpty();
    void itemsBeyondTheLimitAreNotRead();
    void decodesDeclaredAndUndeclaredEncodings_data();
    void decodesDeclaredAndUndeclaredEncodings();
    void unsupportedEncodingIsAnError();
    void blankLinesBeforeDeclarationAreSkippedButCounted();
    void entityDeclarationsAreRefused_data();
    void entityDeclarationsAreRefused();
    void documentTypeWithoutEntitiesIsRead();
    void externalEntityNeverReadsLocalFile();
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
        "<rss:channel><rss:title>Prefixed</rss:title></rss:channel>"
        "<rss:item><rss:title>One</rss:title><rss:link>http://a/1</rss:link></rss:item>"
        "<rss:item><rss:title>Two</rss:title></rss:item></rdf:RDF>");
    QCOMPARE(rdf.status, FeedParseResult::Status::Parsed);
    QCOMPARE(rdf.feed.format, Feed::Format::Rdf);
    QCOMPARE(rdf.feed.title, QStringLiteral("Prefixed"));
    QCOMPARE(rdf.feed.items.size(), 2);
    QCOMPARE(rdf.feed.items.at(0).link, QStringLiteral("http://a/1"));

    const FeedParseResult atom = FeedParser::parse(
        "<atom:feed xmlns:atom=\"http://www.w3.org/2005/Atom\"><atom:title>A</atom:title>"
        "<atom:entry><atom:title>E</atom:title><atom:link href=\"http://a/e\"/></atom:entry>"
        "</atom:feed>");
    QCOMPARE(atom.status, FeedParseResult::Status::Parsed);
    QCOMPARE(atom.feed.format, Feed::Format::Atom);
    QCOMPARE(atom.feed.items.value(0).link, QStringLiteral("http://a/e"));

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
    QCOMPARE(rss.feed.items.at(0).description, QStringLiteral("<p>Full text</p>"));
    QCOMPARE(rss.feed.items.at(1).title, QStringLiteral("This"));
    QCOMPARE(rss.feed.items.at(1).description, QStringLiteral("Short"));

    // A prefix used without declaration is read as part of the name.
    const FeedParseResult undeclared = FeedParser::parse(
        "<rss><channel><item><title>Undeclared</title><itunes:summary>x</itunes:summary>"
        "<content:encoded>Body</content:encoded></item></channel></rss>");
    QCOMPARE(undeclared.status, FeedParseResult::Status::Parsed);
    QCOMPARE(undeclared.feed.items.at(0).title, QStringLiteral("Undeclared"));
    QCOMPARE(undeclared.feed.items.at(0).description, QStringLiteral("Body"));
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
        "</feed>");
    QCOMPARE(result.feed.items.size(), 2);
    QCOMPARE(result.feed.items.at(0).link, QStringLiteral("http://a/plain"));
    QCOMPARE(result.feed.items.at(0).description, QStringLiteral("Sum"));
    QCOMPARE(result.feed.items.at(1).link, QStringLiteral("http://a/enc"));
    // Inline XHTML stays markup and reaches the page as such.
    const QString page = FeedPage::render(result.feed, QStringLiteral("L"));
    QVERIFY2(page.contains(u"<div>A <b>b</b></div>"), qPrintable(page));
}

void FeedParserTest::valuesAreTrimmedAndMissingOnesEmpty()
{
    const FeedParseResult result = FeedParser::parse(
        "<rss><channel><title>\n   日本語のタイトル \n</title>"
        "<item><link>\n http://a/1 \n</link><description><![CDATA[  <p>x</p>\n]]>"
        "</description></item><item/></channel></rss>");
    QCOMPARE(result.feed.title, QStringLiteral("日本語のタイトル"));
    QCOMPARE(result.feed.imageUrl, QString());
    QCOMPARE(result.feed.items.at(0).link, QStringLiteral("http://a/1"));
    QCOMPARE(result.feed.items.at(0).description, QStringLiteral("<p>x</p>"));
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
        "e") << u"Grüße"_qs;
    QTest::newRow("windows-1252 euro and quotes")
        << rss("<?xml version='1.0' encoding='windows-1252'?>", "\x80 \x93q\x94") << u"€ “q”"_qs;
    QTest::newRow("latin-1 label read as windows-1252")
        << rss("<?xml version=\"1.0\" encoding=\"iso-8859-1\"?>", "\x85") << u"…"_qs;
    QTest::newRow("undeclared legacy bytes") << rss("", "Caf\xE9") << u"Café"_qs;
    QTest::newRow("legacy label on utf-8 bytes")
        << rss("<?xml version=\"1.0\" encoding=\"windows-1252\"?>", "Euro \xE2\x82\xAC")
        << u"Euro €"_qs;
    QTest::newRow("utf-8 with byte-order mark")
        << QByteArray("\xEF\xBB\xBF" + rss("<?xml version=\"1.0\"?>", "\xC3\xBC")) << u"ü"_qs;
    QTest::newRow("unknown label on ascii")
        << rss("<?xml version=\"1.0\" encoding=\"bogus\"?>", "x") << u"x"_qs;

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
    QTest::newRow("utf-16le with mark") << le << u"ö€"_qs;
    QTest::newRow("utf-16be without mark") << be << u"ö€"_qs;
}

void FeedParserTest::decodesDeclaredAndUndeclaredEncodings()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, title);
    const FeedParseResult result = FeedParser::parse(bytes);
    QCOMPARE(result.error.reason, QString());
    QCOMPARE(result.feed.title, title);
}

void FeedParserTest::unsupportedEncodingIsAnError()
{
    const FeedParseResult result
        = FeedParser::parse(rss("<?xml version=\"1.0\" encoding=\"koi8-r\"?>", "\xF0\xD2"));
    QCOMPARE(result.status, FeedParseResult::Status::XmlError);
    QVERIFY2(result.error.reason.contains(u"koi8-r"), qPrintable(result.error.reason));
}

void FeedParserTest::blankLinesBeforeDeclarationAreSkippedButCounted()
{
    const FeedParseResult spaced = FeedParser::parse(
        "\n\n   \t\n<?xml version=\"1.0\"?>\n<rss><channel><title>ok</title></channel></rss>");
    QCOMPARE(spaced.status, FeedParseResult::Status::Parsed);
    QCOMPARE(spaced.feed.title, QStringLiteral("ok"));

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
    QTest::newRow("billion laughs")
        << corpusFile(QStringLiteral("hazard-rss2-billion-laughs.xml")) << 3;
    QTest::newRow("quadratic under expansion limit")
        << corpusFile(QStringLiteral("hazard-rss2-quadratic-under-4096-entity-limit.xml")) << -1;
    QTest::newRow("quadratic") << corpusFile(QStringLiteral("hazard-atom-quadratic-blowup.xml"))
                               << -1;
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
    QVERIFY2(result.error.reason.contains(u"Entity"), qPrintable(result.error.reason));
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
    QCOMPARE(external.feed.title, QStringLiteral("Old"));

    const FeedParseResult attlist = FeedParser::parse(
        "<!DOCTYPE rss [<!ATTLIST rss version CDATA \"2.0\"><!-- <!ENTITY> in a comment -->]>"
        "<rss><channel><title>Subset</title></channel></rss>");
    QCOMPARE(attlist.status, FeedParseResult::Status::Parsed);
}

void FeedParserTest::externalEntityNeverReadsLocalFile()
{
    QTemporaryDir dir;
    QFile secret(dir.filePath(QStringLiteral("secret.txt")));
    QVERIFY(secret.open(QIODevice::WriteOnly));
    secret.write("TOP-SECRET-CONTENT");
    secret.close();
    const QByteArray url = QUrl::fromLocalFile(secret.fileName()).toEncoded();
    const QByteArray xml = "<?xml version=\"1.0\"?>\n<!DOCTYPE rss [<!ENTITY xxe SYSTEM \"" + url
        + "\">]>\n<rss><channel><title>&xxe;</title><item><description>&xxe;</description>"
          "</item></channel></rss>";
    const FeedParseResult result = FeedParser::parse(xml);
    QCOMPARE(result.status, FeedParseResult::Status::XmlError);
    const QString page = FeedPage::forResult(result, QStringLiteral("x"), QStringLiteral("L"));
    QVERIFY(!page.contains(u"TOP-SECRET"));
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
    QVERIFY2(result.error.reason.contains(u"20 MB"), qPrintable(result.error.reason));
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
    QVERIFY2(deep.error.reason.contains(u"nested"), qPrintable(deep.error.reason));

    // A few hundred bytes of memory per element: millions of tiny ones are refused.
    QByteArray crowded = "<rss><channel><item>";
    crowded += QByteArray("<x/>").repeated(FeedDocument::MaxElements);
    crowded += "</item></channel></rss>";
    const FeedParseResult many = FeedParser::parse(crowded);
    QCOMPARE(many.status, FeedParseResult::Status::XmlError);
    QVERIFY2(many.error.reason.contains(u"elements"), qPrintable(many.error.reason));
}

void FeedParserTest::everyCorpusFeedGivesSafePage_data()
{
    // Files that are not well-formed (or not readable) and must give the error page.
    const QStringList broken = {
        QStringLiteral("fj-ITunesWithSingleQuotedAttributes.xml"), // element never closed
        QStringLiteral("fj-InvalidDateFormat.xml"),
        QStringLiteral("fp-malformed-empty-document.xml"),
        QStringLiteral("fp-malformed-incomplete-cdata.xml"),
        QStringLiteral("fp-malformed-unclosed-root.xml"),
        QStringLiteral("fp-rss-undefined-html-entity.xml"),
        QStringLiteral("fp-rss10-doctype-external-param-entity.xml"),
        QStringLiteral("fp-rss10-empty-textinput-malformed.xml"),
        QStringLiteral("fp-rss2-double-encoded.xml"), // undefined entity
        QStringLiteral("fp-rss2-link-ampersands-unclosed.xml"),
        QStringLiteral("hazard-atom-quadratic-blowup.xml"),
        QStringLiteral("hazard-rss2-billion-laughs.xml"),
        QStringLiteral("hazard-rss2-quadratic-under-4096-entity-limit.xml"),
        QStringLiteral("hazard-rss2-xxe-external-entity.xml"),
        QStringLiteral("miniflux-koi8r.xml"),
        QStringLiteral("miniflux-rss2-windows-1251.xml"),
        QStringLiteral("rome-rss2-comment-before-xmldecl.xml"),
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

    const QString page = FeedPage::forResult(result, path, QStringLiteral("L"));
    QVERIFY(page.endsWith(u"</body></html>"));
    // Nothing the feed wrote can run: the only script is the page's own toggle, the only
    // event handlers are those of the toggle signs.
    QCOMPARE(page.count(u"<script", Qt::CaseInsensitive), wellFormed ? 1 : 0);
    static const QRegularExpression handler(
        QStringLiteral("\\son[a-z]+\\s*="), QRegularExpression::CaseInsensitiveOption);
    QCOMPARE(page.count(handler), 2 * int(result.feed.items.size()));
    static const QRegularExpression embedded(
        QStringLiteral("<(iframe|object|embed|form|svg|link|base)\\b|javascript:(?! togglediv)"
                       "|=\\s*[\"']?\\s*data:"),
        QRegularExpression::CaseInsensitiveOption);
    QVERIFY2(!page.contains(embedded), qPrintable(page.mid(page.indexOf(embedded), 80)));
    QCOMPARE(page.count(u"<meta", Qt::CaseInsensitive), 1);
    QCOMPARE(page.count(u"<style", Qt::CaseInsensitive), wellFormed ? 1 : 0);
}

QTEST_GUILESS_MAIN(FeedParserTest)
#include "feedparser_test.moc"
