// The exports of the archive. The XML and RSS exports are written directly; these tests
// hold them to the bytes that QDomDocument writes for the same tree.
#include "core/base/appinfo.h"
#include "core/base/uitexts.h"
#include "core/exchange/textexports.h"
#include "core/exchange/xmlexports.h"
#include "core/model/bookediting.h"

#include <QDomDocument>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

using namespace Qt::StringLiterals;

using namespace XmlExports;

namespace {
QDomDocument domStart(const QString &remark)
{
    QDomDocument document;
    document.appendChild(document.createProcessingInstruction(u"xml"_s, u"version='1.0'"_s));
    document.appendChild(document.createComment(AppInfo::frameCaption()));
    document.appendChild(document.createComment(noticeComment()));
    document.appendChild(document.createComment(remark));
    return document;
}

void domText(QDomDocument &document, QDomElement &parent, const QString &name, const QString &text)
{
    QDomElement element = document.createElement(name);
    element.appendChild(document.createTextNode(text));
    parent.appendChild(element);
}

void domItem(QDomDocument &document, QDomElement &parent, const Bookmark &bookmark)
{
    QDomElement item = document.createElement(u"item"_s);
    domText(document, item, u"title"_s, FeedMark::displayTitle(bookmark.Titel));
    domText(document, item, u"link"_s, bookmark.URL);
    domText(document, item, u"description"_s, bookmark.Info);
    parent.appendChild(item);
}

QByteArray domXml(const QList<const Thema *> &folders, const QString &remark)
{
    QDomDocument document = domStart(remark);
    QDomElement bookmarks = document.createElement(u"bookmarks"_s);
    document.appendChild(bookmarks);
    for (const Thema *folder : folders) {
        QDomElement element = document.createElement(u"folder"_s);
        element.setAttribute(u"name"_s, folder->DirName());
        bookmarks.appendChild(element);
        if (!folder->colBookmark)
            continue;
        for (qsizetype i = 0; i < folder->colBookmark->count(); ++i)
            domItem(document, element, folder->colBookmark->at(i));
    }
    return document.toByteArray(2);
}

QByteArray domRss(const QList<const Thema *> &folders, const RssHeader &header,
    const QDateTime &now, const QString &remark)
{
    QDomDocument document = domStart(remark);
    QDomElement rss = document.createElement(u"rss"_s);
    rss.setAttribute(u"version"_s, u"2.0"_s);
    document.appendChild(rss);
    QDomElement channel = document.createElement(u"channel"_s);
    rss.appendChild(channel);
    domText(document, channel, u"title"_s, header.channelTitle);
    domText(document, channel, u"link"_s, header.channelLink);
    domText(document, channel, u"description"_s, header.channelDescription);
    domText(document, channel, u"lastBuildDate"_s, lastBuildDate(now));
    domText(document, channel, u"generator"_s, AppInfo::frameCaption());
    if (!header.imageUrl.isEmpty() && header.withImage) {
        QDomElement image = document.createElement(u"image"_s);
        domText(document, image, u"url"_s, header.imageUrl);
        domText(document, image, u"title"_s, header.imageTitle);
        domText(document, image, u"link"_s, header.imageLink);
        channel.appendChild(image);
    }
    for (const Thema *folder : folders) {
        if (!folder->colBookmark)
            continue;
        for (qsizetype i = 0; i < folder->colBookmark->count(); ++i)
            domItem(document, channel, folder->colBookmark->at(i));
    }
    return document.toByteArray(2);
}

// Text that needs every kind of escaping, and characters of one to four UTF-8 bytes.
QString awkward(const QString &prefix)
{
    QString text = prefix
        + u" & <b>bold</b> \"quoted\" 'single' ]]> ]> ] ]]]>\r\nline\ttab\n"
          "Müller – € \U0001F600 end"_s;
    // Lone surrogates, which UTF-8 cannot hold, also at either end.
    text.prepend(QChar(0xDC00));
    text.insert(5, QChar(0xD800));
    text.append(QChar(0xD83D));
    return text;
}
} // namespace

class XmlExportsTest : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    std::unique_ptr<Book> m_book;
    QList<const Thema *> m_all;
    QList<const Thema *> m_news; // a plain folder and one that was never loaded

private slots:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void initTestCase()
    {
        UiTexts::load(UiTexts::Language::German);
        m_book = std::make_unique<Book>(m_dir.path());
        Thema *first = BookEditing::addFolder(*m_book, awkward(u"Ordner"_s), 0);
        const QStringList titles = {u"<FEED />Heise & Co"_s, u"<FEED />"_s, awkward(u"Titel"_s),
            QString(), u"]]"_s, u">]]"_s};
        for (const QString &title : titles) {
            Bookmark *bookmark = BookEditing::addBookmark(*m_book, *first, title,
                u"https://x.example/?a=1&b=<2>&c=\"3\"#"_s
                    + QString::number(first->colBookmark->count()),
                BookEditing::Duplicates::Allow)
                                     .bookmark;
            bookmark->Info = awkward(u"Info"_s);
        }
        first->colBookmark->at(3).Info.clear();
        Thema *unloaded = BookEditing::addFolder(*m_book, u"Ungeladen"_s, 1);
        unloaded->colBookmark.reset();
        BookEditing::addFolder(*m_book, u"Leer \t\"\r"_s, 2);
        Thema *plain = BookEditing::addFolder(*m_book, u"Einfach-"_s, 3);
        BookEditing::addBookmark(*m_book, *plain, u"Seite"_s, u"https://www.example.org/"_s,
            BookEditing::Duplicates::Allow);
        Thema *news = BookEditing::addFolder(*m_book, u"News"_s, 4);
        BookEditing::addBookmark(*m_book, *news, u"<FEED />Heise"_s, u"https://heise.de/rss"_s,
            BookEditing::Duplicates::Ask)
            .bookmark->Info
            = u"IT <b>&</b>"_s;
        BookEditing::addBookmark(
            *m_book, *news, u"<FEED />"_s, u"https://x.example/"_s, BookEditing::Duplicates::Ask);
        m_news = {news, unloaded};
        for (qsizetype i = 0; i < m_book->colThema.count(); ++i)
            m_all << &m_book->colThema.at(i);
    }

    void xmlMatchesTheDomDocument()
    {
        for (const QString &remark :
            {u"Lesezeichen"_s, u"ends-"_s, awkward(u"remark"_s), QString()}) {
            QCOMPARE(xmlBytes(m_all, remark), domXml(m_all, remark));
            for (const Thema *folder : m_all)
                QCOMPARE(xmlBytes({folder}, remark), domXml({folder}, remark));
            QCOMPARE(xmlBytes({}, remark), domXml({}, remark));
        }
    }

    void rssMatchesTheDomDocument()
    {
        const QDateTime now(QDate(2024, 10, 5), QTime(14, 3, 22));
        RssHeader header;
        QCOMPARE(rssBytes(m_all, header, now, u"RSS"_s), domRss(m_all, header, now, u"RSS"_s));
        header.channelTitle = awkward(u"Kanal"_s);
        header.channelLink = u"https://x.example/?a&b"_s;
        header.channelDescription = awkward(u"Beschreibung"_s);
        header.imageUrl = u"https://x.example/bild.png?<>"_s;
        header.imageTitle = awkward(u"Bild"_s);
        for (const bool withImage : {false, true}) {
            header.withImage = withImage;
            QCOMPARE(
                rssBytes(m_all, header, now, u"ends-"_s), domRss(m_all, header, now, u"ends-"_s));
            for (const Thema *folder : m_all)
                QCOMPARE(rssBytes({folder}, header, now, u"RSS"_s),
                    domRss({folder}, header, now, u"RSS"_s));
        }
        header.imageUrl.clear();
        QCOMPARE(rssBytes(m_all, header, now, QString()), domRss(m_all, header, now, QString()));
    }

    void textListingKeepsItsBlankLines()
    {
        QCOMPARE(TextExports::textBytes(m_news, true, u"Meine Links"_s),
            QByteArray("Meine Links\n\n"
                       "Thema: News\r\n\r\n"
                       "Name: Heise\r\nURL:  https://heise.de/rss\r\nBeschreibung: IT <b>&</b>\r\n"
                       "\r\n"
                       "Name: <FEED />\r\nURL:  https://x.example/\r\nBeschreibung: \r\n"
                       "\r\n\r\n"
                       "Thema: Ungeladen\r\n\r\n\r\n\r\n"));
        // A folder listing has no heading even when one is given.
        QCOMPARE(TextExports::textBytes({m_news.at(1)}, false, u"Kopf"_s),
            QByteArray("Thema: Ungeladen\r\n\r\n\r\n\r\n"));
    }

    void htmlListingUsesDisplayTitlesAndRawText()
    {
        QCOMPARE(TextExports::htmlBytes(m_news, true),
            QByteArray("<HTML><TITLE></TITLE><BODY>\r\n<H1>News</H1>\r\n"
                       "<A HREF='https://heise.de/rss'>Heise</A><BR>IT <b>&</b><BR>\r\n"
                       "<A HREF='https://x.example/'><FEED /></A><BR>\r\n"
                       "<H1>Ungeladen</H1>\r\n</BODY></HTML>\r\n"));
        QCOMPARE(TextExports::htmlBytes({m_news.at(1)}, false),
            QByteArray("<HTML><BODY>\r\n<H1>Ungeladen</H1>\r\n</BODY></HTML>\r\n"));
    }

    void rssDateAndHeaderChecksFollowTheDialog()
    {
        QCOMPARE(lastBuildDate(QDateTime(QDate(2004, 10, 5), QTime(14, 3, 22))),
            u"05 Oct  2004 14:03:22 GMT"_s);
        QCOMPARE(lastBuildDate(QDateTime(QDate(2021, 12, 15), QTime(0, 0))),
            u"15 Dec  2021 00:00:00 GMT"_s);
        RssHeader header;
        QCOMPARE(checkRssHeader(header).field, RssHeaderCheck::ChannelTitle);
        QVERIFY(checkRssHeader(header).message.contains(u"\"<title>\""));
        header.channelTitle = u"T"_s;
        header.channelLink = u"gopher://x"_s;
        QCOMPARE(checkRssHeader(header).field, RssHeaderCheck::ChannelLink);
        for (const char *link : {"http://a", "https://a", "ftp://a", "news://a", "mailto:a@b"}) {
            header.channelLink = QString::fromLatin1(link);
            QVERIFY(checkRssHeader(header).ok());
        }
        header.withImage = true;
        header.imageUrl = u"logo.png"_s;
        QCOMPARE(checkRssHeader(header).field, RssHeaderCheck::ImageUrl);
        QVERIFY(checkRssHeader(header).message.contains(u"\"<url>\""));
        header.imageUrl = u"http://a/logo.png"_s;
        QCOMPARE(checkRssHeader(header).field, RssHeaderCheck::ImageTitle);
        header.imageTitle = u"Logo"_s;
        header.imageLink = QString();
        QCOMPARE(checkRssHeader(header).field, RssHeaderCheck::ImageLink);
    }
};

QTEST_GUILESS_MAIN(XmlExportsTest)
#include "xmlexports_test.moc"
