// The XML and RSS exports are written directly; these tests hold them to the bytes that
// QDomDocument writes for the same tree.
#include "core/base/appinfo.h"
#include "core/base/uitexts.h"
#include "core/exchange/xmlexports.h"
#include "core/model/bookediting.h"

#include <QDomDocument>
#include <QTemporaryDir>
#include <QtTest>

using namespace XmlExports;

namespace {
QDomDocument domStart(const QString &remark)
{
    QDomDocument document;
    document.appendChild(document.createProcessingInstruction(
        QStringLiteral("xml"), QStringLiteral("version='1.0'")));
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
    QDomElement item = document.createElement(QStringLiteral("item"));
    domText(document, item, QStringLiteral("title"), FeedMark::displayTitle(bookmark.Titel));
    domText(document, item, QStringLiteral("link"), bookmark.URL);
    domText(document, item, QStringLiteral("description"), bookmark.Info);
    parent.appendChild(item);
}

QByteArray domXml(const QList<const Thema *> &folders, const QString &remark)
{
    QDomDocument document = domStart(remark);
    QDomElement bookmarks = document.createElement(QStringLiteral("bookmarks"));
    document.appendChild(bookmarks);
    for (const Thema *folder : folders) {
        QDomElement element = document.createElement(QStringLiteral("folder"));
        element.setAttribute(QStringLiteral("name"), folder->DirName());
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
    QDomElement rss = document.createElement(QStringLiteral("rss"));
    rss.setAttribute(QStringLiteral("version"), QStringLiteral("2.0"));
    document.appendChild(rss);
    QDomElement channel = document.createElement(QStringLiteral("channel"));
    rss.appendChild(channel);
    domText(document, channel, QStringLiteral("title"), header.channelTitle);
    domText(document, channel, QStringLiteral("link"), header.channelLink);
    domText(document, channel, QStringLiteral("description"), header.channelDescription);
    domText(document, channel, QStringLiteral("lastBuildDate"), lastBuildDate(now));
    domText(document, channel, QStringLiteral("generator"), AppInfo::frameCaption());
    if (!header.imageUrl.isEmpty() && header.withImage) {
        QDomElement image = document.createElement(QStringLiteral("image"));
        domText(document, image, QStringLiteral("url"), header.imageUrl);
        domText(document, image, QStringLiteral("title"), header.imageTitle);
        domText(document, image, QStringLiteral("link"), header.imageLink);
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
        + QStringLiteral(" & <b>bold</b> \"quoted\" 'single' ]]> ]> ] ]]]>\r\nline\ttab\n"
                         "Müller – € \U0001F600 end");
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

private slots:
    void initTestCase()
    {
        UiTexts::load(UiTexts::Language::German);
        m_book = std::make_unique<Book>(m_dir.path());
        Thema *first = BookEditing::addFolder(*m_book, awkward(QStringLiteral("Ordner")), 0);
        const QStringList titles = {QStringLiteral("<FEED />Heise & Co"),
            QStringLiteral("<FEED />"), awkward(QStringLiteral("Titel")), QString(),
            QStringLiteral("]]"), QStringLiteral(">]]")};
        for (const QString &title : titles) {
            Bookmark *bookmark = BookEditing::addBookmark(*m_book, *first, title,
                QStringLiteral("https://x.example/?a=1&b=<2>&c=\"3\"#")
                    + QString::number(first->colBookmark->count()),
                BookEditing::Duplicates::Allow)
                                     .bookmark;
            bookmark->Info = awkward(QStringLiteral("Info"));
        }
        first->colBookmark->at(3).Info.clear();
        Thema *unloaded = BookEditing::addFolder(*m_book, QStringLiteral("Ungeladen"), 1);
        unloaded->colBookmark.reset();
        BookEditing::addFolder(*m_book, QStringLiteral("Leer \t\"\r"), 2);
        Thema *plain = BookEditing::addFolder(*m_book, QStringLiteral("Einfach-"), 3);
        BookEditing::addBookmark(*m_book, *plain, QStringLiteral("Seite"),
            QStringLiteral("https://www.example.org/"), BookEditing::Duplicates::Allow);
        for (qsizetype i = 0; i < m_book->colThema.count(); ++i)
            m_all << &m_book->colThema.at(i);
    }

    void xmlMatchesTheDomDocument()
    {
        for (const QString &remark : {QStringLiteral("Lesezeichen"), QStringLiteral("ends-"),
                 awkward(QStringLiteral("remark")), QString()}) {
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
        QCOMPARE(rssBytes(m_all, header, now, QStringLiteral("RSS")),
            domRss(m_all, header, now, QStringLiteral("RSS")));
        header.channelTitle = awkward(QStringLiteral("Kanal"));
        header.channelLink = QStringLiteral("https://x.example/?a&b");
        header.channelDescription = awkward(QStringLiteral("Beschreibung"));
        header.imageUrl = QStringLiteral("https://x.example/bild.png?<>");
        header.imageTitle = awkward(QStringLiteral("Bild"));
        for (const bool withImage : {false, true}) {
            header.withImage = withImage;
            QCOMPARE(rssBytes(m_all, header, now, QStringLiteral("ends-")),
                domRss(m_all, header, now, QStringLiteral("ends-")));
            for (const Thema *folder : m_all)
                QCOMPARE(rssBytes({folder}, header, now, QStringLiteral("RSS")),
                    domRss({folder}, header, now, QStringLiteral("RSS")));
        }
        header.imageUrl.clear();
        QCOMPARE(rssBytes(m_all, header, now, QString()), domRss(m_all, header, now, QString()));
    }
};

QTEST_GUILESS_MAIN(XmlExportsTest)
#include "xmlexports_test.moc"
