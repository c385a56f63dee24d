#pragma once

#include <QByteArray>
#include <QString>

// Turns the bytes of an HTML file into text the way a browser picks the encoding: a
// byte-order mark or a meta charset in the head wins; otherwise UTF-8 when the bytes
// are valid UTF-8, else Windows-1252. A charset that this Qt cannot decode falls back
// to Windows-1252.
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

// An estimate of the deepest element nesting the parser would build: start tags of
// elements that are not void and not closed implicitly, less their end tags. Deep
// nesting makes the HTML tree builder slow and hungry, so files above a bound are
// refused before parsing.
int nestingEstimate(const QByteArray &bytes);

} // namespace HtmlSource
