#include "core/exchange/bookmarkexport.h"

#include "core/exchange/netscapeexport.h"
#include "core/exchange/textexports.h"

namespace BookmarkExport {

QByteArray bytes(const Book &book, const Request &request, const QDateTime &now)
{
    QList<const Thema *> folders;
    if (request.folder) {
        folders << request.folder;
    } else {
        for (qsizetype i = 0; i < book.colThema.count(); ++i)
            folders << &book.colThema.at(i);
    }
    const bool archive = request.folder == nullptr;
    switch (request.format) {
    case Format::Netscape:
        return archive ? NetscapeExport::archiveBytes(book, now)
                       : NetscapeExport::folderBytes(*request.folder, now);
    case Format::Xml:
        return XmlExports::xmlBytes(folders, QStringLiteral("Lesezeichen"));
    case Format::Rss:
        return XmlExports::rssBytes(folders, request.header, now, QStringLiteral("RSS 2.0"));
    case Format::Text:
        return TextExports::textBytes(folders, archive, request.heading);
    case Format::Html:
        break;
    }
    return TextExports::htmlBytes(folders, archive);
}

} // namespace BookmarkExport
