#pragma once

#include <QByteArrayView>
#include <QString>

// Text in the encodings that files from elsewhere bring along: record fields written by
// the Windows program, bookmark files and feeds that name a legacy charset.
namespace TextCodec {

// Checks without decoding: a whole imported file passes through here.
bool isValidUtf8(QByteArrayView bytes);

// Windows-1252 decoding of arbitrary bytes; every byte gives one character.
QString decodeWindows1252(QByteArrayView bytes);

} // namespace TextCodec
