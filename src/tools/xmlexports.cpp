#include "xmlexports.h"

#include "app/appinfo.h"
#include "app/uitexts.h"

#include <QDomDocument>

namespace XmlExports {

namespace {
QDomDocument startDocument(const QString &remark)
{
    QDomDocument document;
    document.appendChild(document.createProcessingInstruction(
        QStringLiteral("xml"), QStringLiteral("version='1.0'")));
    document.appendChild(document.createComment(AppInfo::frameCaption()));
    document.appendChild(document.createComment(noticeComment()));
    document.appendChild(document.createComment(remark));
    return document;
}

void appendText(
    QDomDocument &document, QDomElement &parent, const QString &name, const QString &text)
{
    QDomElement element = document.createElement(name);
    element.appendChild(document.createTextNode(text));
    parent.appendChild(element);
}

void appendItem(QDomDocument &document, QDomElement &parent, const Bookmark &bookmark)
{
    QDomElement item = document.createElement(QStringLiteral("item"));
    appendText(document, item, QStringLiteral("title"), FeedMark::displayTitle(bookmark.Titel));
    appendText(document, item, QStringLiteral("link"), bookmark.URL);
    appendText(document, item, QStringLiteral("description"), bookmark.Info);
    parent.appendChild(item);
}

RssHeaderCheck refuse(RssHeaderCheck::Field field, const QString &label)
{
    RssHeaderCheck check;
    check.field = field;
    check.message = uiText(1070) + label + uiText(1071);
    return check;
}
} // namespace

QString noticeComment()
{
    return AppInfo::applicationTitle() + QStringLiteral(" - Copyright ") + QChar(169) + u' '
        + AppInfo::applicationTitle();
}

bool isAcceptedLink(const QString &link)
{
    for (const char *prefix : {"http://", "https://", "ftp://", "news://", "mailto:"}) {
        if (link.startsWith(QLatin1String(prefix), Qt::CaseInsensitive))
            return true;
    }
    return false;
}

RssHeaderCheck checkRssHeader(const RssHeader &header)
{
    const QString title = QStringLiteral("<title>");
    const QString link = QStringLiteral("<link>");
    if (header.channelTitle.isEmpty())
        return refuse(RssHeaderCheck::ChannelTitle, title);
    if (!isAcceptedLink(header.channelLink))
        return refuse(RssHeaderCheck::ChannelLink, link);
    if (header.withImage) {
        if (!isAcceptedLink(header.imageUrl))
            return refuse(RssHeaderCheck::ImageUrl, QStringLiteral("<url>"));
        if (header.imageTitle.isEmpty())
            return refuse(RssHeaderCheck::ImageTitle, title);
        if (!isAcceptedLink(header.imageLink))
            return refuse(RssHeaderCheck::ImageLink, link);
    }
    return {};
}

QString lastBuildDate(const QDateTime &now)
{
    const QDate date = now.date();
    const QString day = QString(u' ' + QString::number(date.day())).replace(u' ', u'0').right(2);
    return day + u' ' + AppInfo::monthNames().value(date.month() - 1) + u' ' + u' '
        + QString::number(date.year()) + u' ' + now.time().toString(QStringLiteral("hh:mm:ss"))
        + QStringLiteral(" GMT");
}

QByteArray xmlBytes(const QList<const Thema *> &folders, const QString &remark)
{
    QDomDocument document = startDocument(remark);
    QDomElement bookmarks = document.createElement(QStringLiteral("bookmarks"));
    document.appendChild(bookmarks);
    for (const Thema *folder : folders) {
        QDomElement element = document.createElement(QStringLiteral("folder"));
        element.setAttribute(QStringLiteral("name"), folder->DirName());
        bookmarks.appendChild(element);
        if (!folder->colBookmark)
            continue;
        for (qsizetype i = 0; i < folder->colBookmark->count(); ++i)
            appendItem(document, element, folder->colBookmark->at(i));
    }
    return document.toByteArray(2);
}

QByteArray rssBytes(const QList<const Thema *> &folders, const RssHeader &header,
    const QDateTime &now, const QString &remark)
{
    QDomDocument document = startDocument(remark);
    QDomElement rss = document.createElement(QStringLiteral("rss"));
    rss.setAttribute(QStringLiteral("version"), QStringLiteral("2.0"));
    document.appendChild(rss);
    QDomElement channel = document.createElement(QStringLiteral("channel"));
    rss.appendChild(channel);
    appendText(document, channel, QStringLiteral("title"), header.channelTitle);
    appendText(document, channel, QStringLiteral("link"), header.channelLink);
    appendText(document, channel, QStringLiteral("description"), header.channelDescription);
    appendText(document, channel, QStringLiteral("lastBuildDate"), lastBuildDate(now));
    appendText(document, channel, QStringLiteral("generator"), AppInfo::frameCaption());
    if (!header.imageUrl.isEmpty() && header.withImage) {
        QDomElement image = document.createElement(QStringLiteral("image"));
        appendText(document, image, QStringLiteral("url"), header.imageUrl);
        appendText(document, image, QStringLiteral("title"), header.imageTitle);
        appendText(document, image, QStringLiteral("link"), header.imageLink);
        channel.appendChild(image);
    }
    for (const Thema *folder : folders) {
        if (!folder->colBookmark)
            continue;
        for (qsizetype i = 0; i < folder->colBookmark->count(); ++i)
            appendItem(document, channel, folder->colBookmark->at(i));
    }
    return document.toByteArray(2);
}

} // namespace XmlExports
