#include "textexports.h"

#include "app/uitexts.h"

namespace TextExports {

namespace {
const QString crlf = QStringLiteral("\r\n");
}

QByteArray textBytes(const QList<const Thema *> &folders, bool archive, const QString &heading)
{
    QString out;
    if (archive && !heading.isEmpty())
        out += heading + QStringLiteral("\n\n");
    const QString topic = uiText(1056) + u' ';
    const QString name = uiText(1301) + u' ';
    const QString url = uiText(1302) + u' '; // the label ends in a blank already
    const QString info = uiText(1303) + u' ';
    for (const Thema *folder : folders) {
        out += topic + folder->DirName() + crlf + crlf;
        if (folder->colBookmark) {
            for (qsizetype i = 0; i < folder->colBookmark->count(); ++i) {
                const Bookmark &bookmark = folder->colBookmark->at(i);
                if (i > 0)
                    out += crlf;
                out += name + FeedMark::displayTitle(bookmark.Titel) + crlf + url + bookmark.URL
                    + crlf + info + bookmark.Info + crlf;
            }
        }
        out += crlf + crlf;
    }
    return out.toUtf8();
}

QByteArray htmlBytes(const QList<const Thema *> &folders, bool archive)
{
    QString out
        = archive ? QStringLiteral("<HTML><TITLE></TITLE><BODY>") : QStringLiteral("<HTML><BODY>");
    out += crlf;
    for (const Thema *folder : folders) {
        out += QStringLiteral("<H1>") + folder->DirName() + QStringLiteral("</H1>") + crlf;
        if (!folder->colBookmark)
            continue;
        for (qsizetype i = 0; i < folder->colBookmark->count(); ++i) {
            const Bookmark &bookmark = folder->colBookmark->at(i);
            out += QStringLiteral("<A HREF='") + bookmark.URL + QStringLiteral("'>")
                + FeedMark::displayTitle(bookmark.Titel) + QStringLiteral("</A><BR>");
            if (!bookmark.Info.isEmpty())
                out += bookmark.Info + QStringLiteral("<BR>");
            out += crlf;
        }
    }
    out += QStringLiteral("</BODY></HTML>") + crlf;
    return out.toUtf8();
}

} // namespace TextExports
