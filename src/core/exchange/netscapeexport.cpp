#include "core/exchange/netscapeexport.h"

#include "core/base/appinfo.h"
#include "core/exchange/utf8writer.h"
#include "core/records/recordfile.h"

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

void appendFolder(Utf8Writer &out, const Thema &folder, const QByteArray &stamp)
{
    out.ascii("<DT><H3 FOLDED ADD_DATE=\"");
    out.raw(stamp.constData(), stamp.size());
    out.ascii("\">");
    out.text(folder.DirName());
    out.ascii("</H3><DL><P>\r\n");
    if (folder.colBookmark) {
        for (qsizetype i = 0; i < folder.colBookmark->count(); ++i) {
            const Bookmark &bookmark = folder.colBookmark->at(i);
            out.ascii("<DT><A HREF=\"");
            out.text(bookmark.URL);
            out.ascii("\" ADD_DATE=\"");
            out.raw(stamp.constData(), stamp.size());
            out.ascii("\" LAST_VISIT=\"");
            out.raw(stamp.constData(), stamp.size());
            out.ascii("\" LAST_MODIFIED=\"");
            out.raw(stamp.constData(), stamp.size());
            out.ascii("\">");
            out.text(bookmark.Titel);
            out.ascii("</A>");
            if (!bookmark.Info.isEmpty()) {
                out.ascii("\r\n<DD>");
                // Only a description with line breaks changes.
                if (bookmark.Info.contains(crlf))
                    out.text(convertedDescription(bookmark.Info));
                else
                    out.text(bookmark.Info);
            }
            out.ascii("\r\n");
        }
    }
    out.ascii("</DL><P>\r\n");
}

// Room for the whole file up front: a large archive otherwise grows the bytes many times.
qsizetype estimatedSize(const Thema &folder)
{
    qsizetype size = folder.DirName().size() * 3 + 80;
    if (folder.colBookmark) {
        for (qsizetype i = 0; i < folder.colBookmark->count(); ++i) {
            const Bookmark &b = folder.colBookmark->at(i);
            size += (b.Titel.size() + b.URL.size() + b.Info.size() * 2) * 9 / 8 + 140;
        }
    }
    return size;
}

QByteArray stampOf(const QDateTime &now)
{
    return QByteArray::number(timestamp(now));
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
    const QByteArray stamp = stampOf(now);
    qsizetype size = 512;
    for (qsizetype i = 0; i < book.colThema.count(); ++i)
        size += estimatedSize(book.colThema.at(i));
    Utf8Writer out(size);
    out.text(head(now, true));
    for (qsizetype i = 0; i < book.colThema.count(); ++i)
        appendFolder(out, book.colThema.at(i), stamp);
    out.ascii("</DL>\r\n");
    return out.take();
}

QByteArray folderBytes(const Thema &folder, const QDateTime &now)
{
    Utf8Writer out(512 + estimatedSize(folder));
    out.text(head(now, false));
    appendFolder(out, folder, stampOf(now));
    return out.take();
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
