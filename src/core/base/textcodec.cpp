#include "core/base/textcodec.h"

#include <QStringDecoder>

namespace TextCodec {

bool isValidUtf8(QByteArrayView bytes)
{
    return bytes.isValidUtf8();
}

QString decodeWindows1252(QByteArrayView bytes)
{
    // 0x80..0x9F are the only bytes where Windows-1252 differs from Latin-1.
    static const char16_t high[32]
        = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
            0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
            0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};
    QString out(bytes.size(), Qt::Uninitialized);
    QChar *at = out.data();
    for (const char c : bytes) {
        const auto b = static_cast<quint8>(c);
        *at++ = b >= 0x80 && b < 0xA0 ? QChar(high[b - 0x80]) : QChar(char16_t(b));
    }
    return out;
}

std::optional<QString> decodeNamed(QByteArrayView bytes, const QByteArray &name, QString *usedName)
{
    const QByteArray lower = name.trimmed().toLower();
    // "System" and "Locale" are names of this machine's setting, not of a charset.
    const auto builtIn = QStringConverter::encodingForName(lower.constData());
    if (lower.isEmpty() || (builtIn && *builtIn == QStringConverter::System))
        return std::nullopt;
    // UTF-7 turns plain ASCII such as "+ADw-" into markup; browsers refuse to decode it,
    // and so does the program.
    if (lower.contains("utf-7") || lower.contains("utf7"))
        return std::nullopt;
    QStringDecoder decoder(lower.constData());
    if (!decoder.isValid())
        return std::nullopt;
    if (usedName)
        *usedName = QString::fromLatin1(lower);
    return decoder.decode(bytes);
}

} // namespace TextCodec
