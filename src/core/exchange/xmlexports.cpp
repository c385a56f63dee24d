#include "core/exchange/xmlexports.h"

#include "core/base/appinfo.h"
#include "core/base/uitexts.h"
#include "core/exchange/utf8writer.h"

namespace XmlExports {

namespace {
// The documents are written as QDomDocument::toByteArray(2) writes the same tree, but
// straight into UTF-8: a DOM of a whole archive takes several times longer to build
// and serialise than the file takes to write.
void indent(Utf8Writer &out, int depth)
{
    static constexpr char blanks[] = "                ";
    const qsizetype size = 2 * depth;
    Q_ASSERT(size < qsizetype(sizeof blanks));
    out.raw(blanks, size);
}

void comment(Utf8Writer &out, const QString &text)
{
    out.ascii("<!--");
    out.text(text);
    // A comment must not end in "--->".
    if (text.endsWith(u'-'))
        out.ascii(" ");
    out.ascii("-->\n");
}

void startDocument(Utf8Writer &out, const QString &remark)
{
    out.ascii("<?xml version='1.0'?>\n");
    comment(out, AppInfo::frameCaption());
    comment(out, noticeComment());
    comment(out, remark);
}

// An element holding one text node, on a line of its own.
template<qsizetype N>
void textElement(Utf8Writer &out, int depth, const char (&name)[N], QStringView text)
{
    indent(out, depth);
    out.ascii("<");
    out.raw(name, N - 1);
    out.ascii(">");
    out.xmlText(text);
    out.ascii("</");
    out.raw(name, N - 1);
    out.ascii(">\n");
}

void item(Utf8Writer &out, int depth, const Bookmark &bookmark)
{
    indent(out, depth);
    out.ascii("<item>\n");
    const QStringView title = bookmark.Titel;
    textElement(
        out, depth + 1, "title", FeedMark::isFeedTitle(bookmark.Titel) ? title.mid(8) : title);
    textElement(out, depth + 1, "link", bookmark.URL);
    textElement(out, depth + 1, "description", bookmark.Info);
    indent(out, depth);
    out.ascii("</item>\n");
}

// Room for the items, so that the bytes are not copied while they grow.
qsizetype estimatedSize(const QList<const Thema *> &folders)
{
    qsizetype size = 1024;
    for (const Thema *folder : folders) {
        size += folder->DirName().size() * 2 + 32;
        if (!folder->colBookmark)
            continue;
        for (qsizetype i = 0; i < folder->colBookmark->count(); ++i) {
            const Bookmark &b = folder->colBookmark->at(i);
            size += (b.Titel.size() + b.URL.size() + b.Info.size()) * 5 / 4 + 110;
        }
    }
    return size;
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
    Utf8Writer out(estimatedSize(folders));
    startDocument(out, remark);
    if (folders.isEmpty()) {
        out.ascii("<bookmarks/>\n");
        return out.take();
    }
    out.ascii("<bookmarks>\n");
    for (const Thema *folder : folders) {
        indent(out, 1);
        out.ascii("<folder name=\"");
        out.xmlAttribute(folder->DirName());
        const bool empty = !folder->colBookmark || folder->colBookmark->isEmpty();
        if (empty) {
            out.ascii("\"/>\n");
            continue;
        }
        out.ascii("\">\n");
        for (qsizetype i = 0; i < folder->colBookmark->count(); ++i)
            item(out, 2, folder->colBookmark->at(i));
        indent(out, 1);
        out.ascii("</folder>\n");
    }
    out.ascii("</bookmarks>\n");
    return out.take();
}

QByteArray rssBytes(const QList<const Thema *> &folders, const RssHeader &header,
    const QDateTime &now, const QString &remark)
{
    Utf8Writer out(estimatedSize(folders));
    startDocument(out, remark);
    out.ascii("<rss version=\"2.0\">\n");
    indent(out, 1);
    out.ascii("<channel>\n");
    textElement(out, 2, "title", header.channelTitle);
    textElement(out, 2, "link", header.channelLink);
    textElement(out, 2, "description", header.channelDescription);
    textElement(out, 2, "lastBuildDate", lastBuildDate(now));
    textElement(out, 2, "generator", AppInfo::frameCaption());
    if (!header.imageUrl.isEmpty() && header.withImage) {
        indent(out, 2);
        out.ascii("<image>\n");
        textElement(out, 3, "url", header.imageUrl);
        textElement(out, 3, "title", header.imageTitle);
        textElement(out, 3, "link", header.imageLink);
        indent(out, 2);
        out.ascii("</image>\n");
    }
    for (const Thema *folder : folders) {
        if (!folder->colBookmark)
            continue;
        for (qsizetype i = 0; i < folder->colBookmark->count(); ++i)
            item(out, 2, folder->colBookmark->at(i));
    }
    indent(out, 1);
    out.ascii("</channel>\n");
    out.ascii("</rss>\n");
    return out.take();
}

} // namespace XmlExports
