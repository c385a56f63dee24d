#pragma once

#include "core/exchange/xmlexports.h"
#include "core/model/book.h"

#include <QDateTime>

// The five export formats behind one call, so that the tools pane and the headless
// tool write the same bytes for the same archive.
namespace BookmarkExport {

enum class Format { Netscape, Xml, Rss, Text, Html };

struct Request
{
    Format format = Format::Netscape;
    const Thema *folder = nullptr; // one folder, or the whole archive when null
    QString heading; // the text export's heading, archive only
    XmlExports::RssHeader header; // the RSS channel
};

// The folders must be loaded (Book::ensureLoaded).
QByteArray bytes(const Book &book, const Request &request, const QDateTime &now);

} // namespace BookmarkExport
