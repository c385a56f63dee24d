#pragma once

#include <QByteArray>
#include <QString>

// Turns the bytes of an HTML file into text the way a browser picks the encoding: a
// byte-order mark or a meta charset in the head wins; otherwise UTF-8 when the bytes
// are valid UTF-8, else Windows-1252. Legacy charsets are decoded by the system's ICU;
// only a charset that is not known at all falls back to Windows-1252.
namespace HtmlSource {

struct Decoded
{
    QString text;
    QString encoding; // the name used, e.g. "UTF-8", "windows-1252"
};

Decoded decode(const QByteArray &bytes);
// The same text as UTF-8 bytes for the HTML parser; UTF-8 input is passed through
// without a detour (only a byte-order mark is dropped).
QByteArray toUtf8(const QByteArray &bytes, QString *encoding);
// The charset named by a meta element near the start of the file, or empty.
QByteArray metaCharset(const QByteArray &bytes);

// What the HTML tree builder would face, estimated by a quick scan: the number of start
// tags, and the deepest nesting (start tags of elements that are not void and not
// closed implicitly, less their end tags). Deep nesting makes the tree builder slow and
// every element costs memory, so files above a bound are refused before parsing.
struct Shape
{
    int deepest = 0;
    qint64 startTags = 0;
};
Shape estimateShape(const QByteArray &bytes);

// Whether a file is small and shallow enough to be parsed at all: its bytes, its start
// tags and its nesting each within their bound.
enum class Fit { Fits, TooLarge, TooDeep };
Fit fits(const QByteArray &bytes, qint64 maxBytes, qint64 maxElements, int maxNesting);

} // namespace HtmlSource
