#pragma once

#include "core/model/thema.h"

#include <QDateTime>
#include <QList>

// The XML bookmark document and the RSS 2.0 channel, written as QDomDocument writes
// them with an indent of 2. Titles are display titles (no feed mark).
// A folder whose bookmarks were never loaded is written without bookmarks: load
// them first (Book::ensureLoaded).
namespace XmlExports {

struct RssHeader
{
    QString channelTitle;
    QString channelLink = QStringLiteral("http://");
    QString channelDescription;
    bool withImage = false;
    QString imageUrl = QStringLiteral("http://");
    QString imageTitle;
    QString imageLink = QStringLiteral("http://");
};

struct RssHeaderCheck
{
    enum Field { None, ChannelTitle, ChannelLink, ImageUrl, ImageTitle, ImageLink };
    Field field = None; // the first field refused
    QString message; // e.g. Feld "<link>" ist ungültig oder leer.
    bool ok() const { return field == None; }
};

// Checks the channel fields in the dialog's order: channel title (not empty), channel
// link, then, with the image switched on, image url, title and link. A link or url
// must begin with http://, https://, ftp://, news:// or mailto:.
RssHeaderCheck checkRssHeader(const RssHeader &header);
bool isAcceptedLink(const QString &link);

// "05 Oct  2004 14:03:22 GMT": the local clock, no weekday, two blanks before the year
// and the GMT label as the format has always had them.
QString lastBuildDate(const QDateTime &now);

// `remark` is the third comment before the document element.
QByteArray xmlBytes(const QList<const Thema *> &folders, const QString &remark);
QByteArray rssBytes(const QList<const Thema *> &folders, const RssHeader &header,
    const QDateTime &now, const QString &remark);

QString noticeComment();

} // namespace XmlExports
