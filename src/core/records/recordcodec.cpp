#include "core/records/recordcodec.h"

#include <QStringDecoder>
#include <QtEndian>

#include <cstring>

namespace RecordCodec {

namespace {
bool isAscii(QByteArrayView bytes)
{
    const char *at = bytes.constData();
    const char *const end = at + bytes.size();
    constexpr quint64 highBits = 0x8080808080808080ULL;
    for (; end - at >= 8; at += 8) {
        quint64 word;
        std::memcpy(&word, at, sizeof word);
        if (word & highBits)
            return false;
    }
    for (; at < end; ++at) {
        if (static_cast<quint8>(*at) & 0x80)
            return false;
    }
    return true;
}
} // namespace

void encodeUtf8(const char16_t *&at, const char16_t *end, char *&out)
{
    const char16_t c = *at++;
    if (c < 0x800) {
        *out++ = char(0xC0 | (c >> 6));
        *out++ = char(0x80 | (c & 0x3F));
    } else if (c < 0xD800 || c > 0xDFFF) {
        *out++ = char(0xE0 | (c >> 12));
        *out++ = char(0x80 | ((c >> 6) & 0x3F));
        *out++ = char(0x80 | (c & 0x3F));
    } else if (c < 0xDC00 && at < end && *at >= 0xDC00 && *at <= 0xDFFF) {
        const char32_t u = 0x10000 + ((char32_t(c) - 0xD800) << 10) + (char32_t(*at++) - 0xDC00);
        *out++ = char(0xF0 | (u >> 18));
        *out++ = char(0x80 | ((u >> 12) & 0x3F));
        *out++ = char(0x80 | ((u >> 6) & 0x3F));
        *out++ = char(0x80 | (u & 0x3F));
    } else {
        *out++ = '?';
    }
}

void encodeTextTo(char *out, QStringView text, int width)
{
    // Written straight into the record: whole characters while they fit, which is
    // where encodeText cuts, then the blank padding.
    const char16_t *at = text.utf16();
    const char16_t *const end = at + text.size();
    char *const limit = out + width;
    while (at < end && out < limit) {
        if (*at < 0x80) {
            *out++ = char(*at++);
            continue;
        }
        char character[4];
        char *last = character;
        const char16_t *next = at;
        encodeUtf8(next, end, last);
        if (last - character > limit - out)
            break;
        std::memcpy(out, character, size_t(last - character));
        out += last - character;
        at = next;
    }
    std::memset(out, ' ', size_t(limit - out));
}

QByteArray encodeText(const QString &text, int width)
{
    QByteArray bytes = text.toUtf8();
    if (bytes.size() > width) {
        int cut = width;
        // Step back over continuation bytes so that no character is split.
        while (cut > 0 && (static_cast<quint8>(bytes.at(cut)) & 0xC0) == 0x80)
            --cut;
        bytes.truncate(cut);
    }
    if (bytes.size() < width)
        bytes.append(width - bytes.size(), ' ');
    return bytes;
}

bool isValidUtf8(const QByteArray &bytes)
{
    // Checks without decoding: a whole imported file passes through here.
    return QByteArrayView(bytes).isValidUtf8();
}

QString decodeWindows1252(const QByteArray &bytes)
{
    // 0x80..0x9F are the only bytes where Windows-1252 differs from Latin-1.
    static const char16_t high[32]
        = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
            0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
            0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};
    QString out;
    out.reserve(bytes.size());
    for (const char c : bytes) {
        const auto b = static_cast<quint8>(c);
        out.append(b >= 0x80 && b < 0xA0 ? QChar(high[b - 0x80]) : QChar(char16_t(b)));
    }
    return out;
}

QString trimBlanks(const QString &text)
{
    qsizetype begin = 0;
    qsizetype end = text.size();
    while (begin < end && text.at(begin) == u' ')
        ++begin;
    while (end > begin && text.at(end - 1) == u' ')
        --end;
    return text.mid(begin, end - begin);
}

QString decodeText(const QByteArray &field, Trim trim)
{
    return decodeText(QByteArrayView(field), trim);
}

QString decodeText(QByteArrayView field, Trim trim)
{
    // No text holds a NUL: fields never written were left full of them, and one left
    // among the blanks would make a value read differently once saved again.
    if (field.contains('\0')) {
        QByteArray kept = field.toByteArray();
        kept.removeIf([](char c) { return c == '\0'; });
        return decodeText(QByteArrayView(kept), trim);
    }
    // Padding is cut off before decoding: most of a field is usually blanks.
    qsizetype begin = 0;
    qsizetype end = field.size();
    if (trim == Trim::Blanks) {
        while (end > 0 && field.at(end - 1) == ' ')
            --end;
        while (begin < end && field.at(begin) == ' ')
            ++begin;
    }
    const QByteArrayView bytes(field.constData() + begin, end - begin);
    // ASCII reads the same in UTF-8 and Latin-1, and its blanks are already trimmed.
    if (isAscii(bytes))
        return QString::fromLatin1(bytes);
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = decoder.decode(bytes);
    if (decoder.hasError())
        text = decodeWindows1252(bytes.toByteArray());
    return trim == Trim::Blanks ? trimBlanks(text) : text;
}

} // namespace RecordCodec

RecordWriter::RecordWriter(int length)
    : m_bytes(length, '\0')
    , m_data(m_bytes.data())
{ }

RecordWriter::RecordWriter(char *target, int length)
    : m_data(target)
{
    std::memset(m_data, 0, size_t(length));
}

void RecordWriter::putInt16(int offset, qint16 value)
{
    qToLittleEndian(value, m_data + offset);
}

void RecordWriter::putInt32(int offset, qint32 value)
{
    qToLittleEndian(value, m_data + offset);
}

void RecordWriter::putDouble(int offset, double value)
{
    quint64 raw;
    std::memcpy(&raw, &value, sizeof raw);
    qToLittleEndian(raw, m_data + offset);
}

void RecordWriter::putText(int offset, int width, const QString &text)
{
    RecordCodec::encodeTextTo(m_data + offset, text, width);
}

RecordReader::RecordReader(QByteArray record, int length)
    : m_bytes(std::move(record))
{
    if (m_bytes.size() < length)
        m_bytes.append(length - m_bytes.size(), '\0');
}

qint16 RecordReader::int16(int offset) const
{
    return qFromLittleEndian<qint16>(m_bytes.constData() + offset);
}

qint32 RecordReader::int32(int offset) const
{
    return qFromLittleEndian<qint32>(m_bytes.constData() + offset);
}

double RecordReader::float64(int offset) const
{
    const auto raw = qFromLittleEndian<quint64>(m_bytes.constData() + offset);
    double value;
    std::memcpy(&value, &raw, sizeof value);
    return value;
}

QString RecordReader::text(int offset, int width, RecordCodec::Trim trim) const
{
    return RecordCodec::decodeText(QByteArrayView(m_bytes).sliced(offset, width), trim);
}

quint8 RecordReader::byteAt(int offset) const
{
    return static_cast<quint8>(m_bytes.at(offset));
}
