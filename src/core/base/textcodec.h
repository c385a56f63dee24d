#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <optional>

// Text in the encodings that files from elsewhere bring along: record fields written by
// the Windows program, bookmark files and feeds that name a legacy charset.
namespace TextCodec {

// Checks without decoding: a whole imported file passes through here.
bool isValidUtf8(QByteArrayView bytes);

// Windows-1252 decoding of arbitrary bytes; every byte gives one character.
QString decodeWindows1252(QByteArrayView bytes);

// Decodes bytes in the charset of a name as files and servers give it (a meta element,
// an XML declaration, a content type). Qt's own decoders serve the Unicode forms; the
// system's ICU serves the legacy charsets (Shift_JIS, EUC-JP, Big5, GBK, KOI8-R,
// windows-1251, the ISO-8859 family, ...). Nothing for a name neither knows. `usedName`
// receives the name as given, in lower case.
std::optional<QString> decodeNamed(QByteArrayView bytes, const QByteArray &name, QString *usedName);

} // namespace TextCodec
