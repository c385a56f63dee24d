#include "netscapeexport.h"

#include "app/appinfo.h"
#include "platform/recordfile.h"

namespace NetscapeExport {

namespace {
const QString crlf = QStringLiteral("\r\n");

QString heading(const QDateTime &now)
{
    const QDate date = now.date();
    return QStringLiteral("<H1>Bookmarks (") + QString::number(date.day()) + QStringLiteral(". ")
        + AppInfo::monthNames().value(date.month() - 1) + u' ' + QString::number(date.year())
        + QStringLiteral(", ") + now.time().toString(QStringLiteral("hh:mm:ss"))
        + QStringLiteral(")</H1>");
}

QString head(const QDateTime &now, bool archive)
{
    return QStringLiteral("<!DOCTYPE NETSCAPE-Bookmark-file-1>") + crlf
        + QStringLiteral("<!--This is an automatically generated file.")
        + QStringLiteral("It will be read and overwritten.") + QStringLiteral(" Do Not Edit! -->")
        + crlf + QStringLiteral("<Title>Bookmarks</Title>") + crlf + heading(now)
        + (archive ? QStringLiteral("<DL>") : QString()) + crlf;
}

void appendFolder(QString &out, const Thema &folder, const QString &stamp)
{
    out += QStringLiteral("<DT><H3 FOLDED ADD_DATE=\"") + stamp + QStringLiteral("\">")
        + folder.DirName() + QStringLiteral("</H3><DL><P>") + crlf;
    if (folder.colBookmark) {
        for (qsizetype i = 0; i < folder.colBookmark->count(); ++i) {
            const Bookmark &bookmark = folder.colBookmark->at(i);
            out += QStringLiteral("<DT><A HREF=\"") + bookmark.URL
                + QStringLiteral("\" ADD_DATE=\"") + stamp + QStringLiteral("\" LAST_VISIT=\"")
                + stamp + QStringLiteral("\" LAST_MODIFIED=\"") + stamp + QStringLiteral("\">")
                + bookmark.Titel + QStringLiteral("</A>");
            if (!bookmark.Info.isEmpty())
                out += crlf + QStringLiteral("<DD>") + convertedDescription(bookmark.Info);
            out += crlf;
        }
    }
    out += QStringLiteral("</DL><P>") + crlf;
}

// Room for the whole file up front: a large archive otherwise grows the text many times.
qsizetype estimatedSize(const Thema &folder)
{
    qsizetype size = folder.DirName().size() + 80;
    if (folder.colBookmark) {
        for (qsizetype i = 0; i < folder.colBookmark->count(); ++i) {
            const Bookmark &b = folder.colBookmark->at(i);
            size += b.Titel.size() + b.URL.size() + b.Info.size() * 2 + 140;
        }
    }
    return size;
}

bool write(const QString &path, const QByteArray &bytes, QString *error)
{
    return RecordFile::writeBytes(path, bytes, error);
}
} // namespace

qint64 timestamp(const QDateTime &now)
{
    return QDate(1970, 1, 1).daysTo(now.date()) * 86400 + now.time().msecsSinceStartOfDay() / 1000;
}

QString convertedDescription(const QString &info)
{
    QString text = info;
    text.replace(crlf, QStringLiteral("\r<BR>\r\n"));
    if (text.endsWith(QStringLiteral("<BR>\r\n")))
        text.chop(6);
    return text;
}

QByteArray archiveBytes(const Book &book, const QDateTime &now)
{
    const QString stamp = QString::number(timestamp(now));
    QString out = head(now, true);
    qsizetype size = out.size() + 16;
    for (qsizetype i = 0; i < book.colThema.count(); ++i)
        size += estimatedSize(book.colThema.at(i));
    out.reserve(size);
    for (qsizetype i = 0; i < book.colThema.count(); ++i)
        appendFolder(out, book.colThema.at(i), stamp);
    out += QStringLiteral("</DL>") + crlf;
    return out.toUtf8();
}

QByteArray folderBytes(const Thema &folder, const QDateTime &now)
{
    QString out = head(now, false);
    out.reserve(out.size() + estimatedSize(folder));
    appendFolder(out, folder, QString::number(timestamp(now)));
    return out.toUtf8();
}

bool writeArchive(const QString &path, const Book &book, const QDateTime &now, QString *error)
{
    return write(path, archiveBytes(book, now), error);
}

bool writeFolder(const QString &path, const Thema &folder, const QDateTime &now, QString *error)
{
    return write(path, folderBytes(folder, now), error);
}

} // namespace NetscapeExport
