#include "core/base/appinfo.h"
#include "core/base/uitexts.h"
#include "core/exchange/textexports.h"
#include "core/exchange/xmlexports.h"
#include "core/model/bookediting.h"

#include <QDomDocument>
#include <QTemporaryDir>
#include <QtTest>

using namespace XmlExports;

class ArchiveExportsTest : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    std::unique_ptr<Book> m_book;
    QList<const Thema *> m_all;

private slots:
    void initTestCase()
    {
        UiTexts::load(UiTexts::Language::German);
        m_book = std::make_unique<Book>(m_dir.path());
        Thema *news = BookEditing::addFolder(*m_book, QStringLiteral("News"), 0);
        BookEditing::addBookmark(*m_book, *news, QStringLiteral("<FEED />Heise"),
            QStringLiteral("https://heise.de/rss"), BookEditing::Duplicates::Ask)
            .bookmark->Info
            = QStringLiteral("IT <b>&</b>");
        BookEditing::addBookmark(*m_book, *news, QStringLiteral("<FEED />"),
            QStringLiteral("https://x.example/"), BookEditing::Duplicates::Ask);
        Thema *empty = BookEditing::addFolder(*m_book, QStringLiteral("Ohne"), 1);
        empty->colBookmark.reset();
        m_all = {news, empty};
    }

    void textListingKeepsItsBlankLines()
    {
        const QByteArray expected
            = "Meine Links\n\n"
              "Thema: News\r\n\r\n"
              "Name: Heise\r\nURL:  https://heise.de/rss\r\nBeschreibung: IT <b>&</b>\r\n"
              "\r\n"
              "Name: <FEED />\r\nURL:  https://x.example/\r\nBeschreibung: \r\n"
              "\r\n\r\n"
              "Thema: Ohne\r\n\r\n\r\n\r\n";
        QCOMPARE(TextExports::textBytes(m_all, true, QStringLiteral("Meine Links")), expected);
        // A folder listing has no heading even when one is given.
        QCOMPARE(TextExports::textBytes({m_all.at(1)}, false, QStringLiteral("Kopf")),
            QByteArray("Thema: Ohne\r\n\r\n\r\n\r\n"));
    }

    void htmlListingUsesDisplayTitlesAndRawText()
    {
        QCOMPARE(TextExports::htmlBytes(m_all, true),
            QByteArray("<HTML><TITLE></TITLE><BODY>\r\n<H1>News</H1>\r\n"
                       "<A HREF='https://heise.de/rss'>Heise</A><BR>IT <b>&</b><BR>\r\n"
                       "<A HREF='https://x.example/'><FEED /></A><BR>\r\n"
                       "<H1>Ohne</H1>\r\n</BODY></HTML>\r\n"));
        QCOMPARE(TextExports::htmlBytes({m_all.at(1)}, false),
            QByteArray("<HTML><BODY>\r\n<H1>Ohne</H1>\r\n</BODY></HTML>\r\n"));
    }

    void xmlDocumentHoldsFoldersAndItemsInOrder()
    {
        const QByteArray bytes = xmlBytes(m_all, QStringLiteral("Archiv"));
        QVERIFY(bytes.startsWith(
            QByteArray("<?xml version='1.0'?>\n<!--" + AppInfo::frameCaption().toUtf8())));
        QDomDocument document;
        QVERIFY(document.setContent(bytes));
        QCOMPARE(document.childNodes().at(2).toComment().data(), noticeComment());
        QVERIFY(noticeComment().contains(QChar(169)));
        QCOMPARE(document.childNodes().at(3).toComment().data(), QStringLiteral("Archiv"));
        const QDomElement root = document.documentElement();
        QCOMPARE(root.tagName(), QStringLiteral("bookmarks"));
        const QDomElement news = root.firstChildElement();
        QCOMPARE(news.attribute(QStringLiteral("name")), QStringLiteral("News"));
        const QDomElement item = news.firstChildElement(QStringLiteral("item"));
        QStringList children;
        for (QDomElement e = item.firstChildElement(); !e.isNull(); e = e.nextSiblingElement())
            children << e.tagName() + u'=' + e.text();
        QCOMPARE(children,
            QStringList({QStringLiteral("title=Heise"), QStringLiteral("link=https://heise.de/rss"),
                QStringLiteral("description=IT <b>&</b>")}));
        QVERIFY(news.nextSiblingElement().firstChild().isNull());
    }

    void rssChannelHasHeaderDateAndOptionalImage()
    {
        RssHeader header;
        header.channelTitle = QStringLiteral("Meine Links");
        header.channelLink = QStringLiteral("https://example.org/");
        header.channelDescription = QStringLiteral("Alles");
        const QDateTime moment(QDate(2004, 10, 5), QTime(14, 3, 22));
        QDomDocument document;
        QVERIFY(document.setContent(rssBytes(m_all, header, moment, QStringLiteral("RSS"))));
        const QDomElement rss = document.documentElement();
        QCOMPARE(rss.attribute(QStringLiteral("version")), QStringLiteral("2.0"));
        const QDomElement channel = rss.firstChildElement(QStringLiteral("channel"));
        QStringList names;
        for (QDomElement e = channel.firstChildElement(); !e.isNull(); e = e.nextSiblingElement())
            names << e.tagName();
        QCOMPARE(names,
            QStringList({QStringLiteral("title"), QStringLiteral("link"),
                QStringLiteral("description"), QStringLiteral("lastBuildDate"),
                QStringLiteral("generator"), QStringLiteral("item"), QStringLiteral("item")}));
        QCOMPARE(channel.firstChildElement(QStringLiteral("lastBuildDate")).text(),
            QStringLiteral("05 Oct  2004 14:03:22 GMT"));
        QCOMPARE(channel.firstChildElement(QStringLiteral("item")).firstChildElement().text(),
            QStringLiteral("Heise"));

        header.withImage = true;
        header.imageUrl = QStringLiteral("https://example.org/logo.png");
        header.imageTitle = QStringLiteral("Logo");
        QVERIFY(document.setContent(rssBytes(m_all, header, moment, QStringLiteral("RSS"))));
        const QDomElement image = document.documentElement().firstChildElement().firstChildElement(
            QStringLiteral("image"));
        QCOMPARE(image.firstChildElement(QStringLiteral("url")).text(), header.imageUrl);
        QCOMPARE(image.previousSiblingElement().tagName(), QStringLiteral("generator"));
        QCOMPARE(lastBuildDate(QDateTime(QDate(2021, 12, 15), QTime(0, 0))),
            QStringLiteral("15 Dec  2021 00:00:00 GMT"));
    }

    void rssHeaderFieldsAreCheckedInDialogOrder()
    {
        RssHeader header;
        QCOMPARE(checkRssHeader(header).field, RssHeaderCheck::ChannelTitle);
        QCOMPARE(checkRssHeader(header).message,
            QStringLiteral("Feld \"<title>\" ist ungültig oder leer."));
        header.channelTitle = QStringLiteral("T");
        header.channelLink = QStringLiteral("gopher://x");
        QCOMPARE(checkRssHeader(header).message,
            QStringLiteral("Feld \"<link>\" ist ungültig oder leer."));
        for (const char *link : {"http://a", "https://a", "ftp://a", "news://a", "mailto:a@b"}) {
            header.channelLink = QString::fromLatin1(link);
            QVERIFY(checkRssHeader(header).ok());
        }
        header.withImage = true;
        header.imageUrl = QStringLiteral("logo.png");
        QCOMPARE(checkRssHeader(header).field, RssHeaderCheck::ImageUrl);
        QCOMPARE(checkRssHeader(header).message,
            QStringLiteral("Feld \"<url>\" ist ungültig oder leer."));
        header.imageUrl = QStringLiteral("http://a/logo.png");
        QCOMPARE(checkRssHeader(header).field, RssHeaderCheck::ImageTitle);
        header.imageTitle = QStringLiteral("Logo");
        header.imageLink = QString();
        QCOMPARE(checkRssHeader(header).field, RssHeaderCheck::ImageLink);
    }
};

QTEST_GUILESS_MAIN(ArchiveExportsTest)
#include "archiveexports_test.moc"
