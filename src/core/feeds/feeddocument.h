#pragma once

#include "core/feeds/feed.h"

#include <QByteArray>
#include <QDomDocument>
#include <QString>

// The XML document of a feed, read from raw bytes as they come from a file or the network.
//
// Reading is tolerant where real feeds commonly stray and strict where a document could
// do harm:
// - the encoding is taken from a byte-order mark, the UTF-16/32 byte pattern, the charset
//   the server named or else the XML declaration; ISO-8859-1, US-ASCII and Windows-1252
//   are read as Windows-1252 (bytes that are valid UTF-8 despite such a label are read as
//   UTF-8); other legacy charsets (KOI8-R, windows-1251, Shift_JIS, ...) are decoded by
//   the system's ICU; a document without a label, or with one that names no known
//   charset, that is not valid UTF-8 is read as Windows-1252;
// - blank lines and spaces before the XML declaration are skipped;
// - a document type that declares entities is refused before parsing, so no entity is
//   ever expanded (entity bombs) or resolved (external files);
// - a document larger than MaxBytes, with elements nested deeper than MaxDepth or with
//   more than MaxElements elements is refused (no feed comes near any of these, and
//   such a document would cost too much time or memory to parse).
class FeedDocument final
{
public:
    static constexpr qint64 MaxBytes = 20 * 1024 * 1024;
    static constexpr int MaxDepth = 1000;
    static constexpr int MaxElements = 250000;

    // True when a feed of this many bytes is not read; a caller receiving bytes from
    // the network stops as soon as this turns true.
    static bool isTooLarge(qint64 byteCount) { return byteCount > MaxBytes; }

    // Decodes, checks and parses the bytes; on failure returns false and fills `error`
    // with the reason and the line of the original bytes.
    // `charset` is the one the server named (the content type's), if any.
    bool setContent(const QByteArray &bytes, FeedError *error, const QByteArray &charset = {});

    const QDomDocument &dom() const { return m_dom; }

    // The bytes as text, decoded by the rules above.
    static QString decode(const QByteArray &bytes, const QByteArray &charset = {});

private:
    QDomDocument m_dom;
};
