#include "core/records/recordcodec.h"

#include "core/base/textcodec.h"

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

// True when `words` eight-byte words at `at` are all blanks; the words are combined
// before the test, so that a run of padding costs one branch for several words.
bool allBlanks(const char *at, int words)
{
    constexpr quint64 blanks = 0x2020202020202020ULL;
    quint64 differs = 0;
    for (int i = 0; i < words; ++i) {
        quint64 word;
        std::memcpy(&word, at + 8 * i, sizeof word);
        differs |= word ^ blanks;
    }
    return differs == 0;
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
    QByteArray bytes(width, Qt::Uninitialized);
    encodeTextTo(bytes.data(), text, width);
    return bytes;
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

QString decodeText(QByteArrayView field, Trim trim)
{
    // Padding is cut off before decoding: most of a field is usually blanks (an address
    // field is 2,083 bytes), so it is skipped eight bytes at a time.
    const char *const data = field.constData();
    qsizetype begin = 0;
    qsizetype end = field.size();
    while (end > 0 && data[end - 1] == '\0')
        --end;
    if (trim == Trim::Blanks) {
        while (end >= 64 && allBlanks(data + end - 64, 8))
            end -= 64;
        while (end >= 8 && allBlanks(data + end - 8, 1))
            end -= 8;
        while (end > 0 && (data[end - 1] == ' ' || data[end - 1] == '\0'))
            --end;
        while (begin < end && (data[begin] == ' ' || data[begin] == '\0'))
            ++begin;
    }
    QByteArrayView bytes(data + begin, end - begin);
    // No text holds a NUL: fields never written were left full of them, and one left
    // among the blanks would make a value read differently once saved again.
    QByteArray withoutNul;
    if (std::memchr(bytes.data(), 0, size_t(bytes.size()))) {
        withoutNul = bytes.toByteArray();
        withoutNul.removeIf([](char c) { return c == '\0'; });
        bytes = withoutNul;
    }
    // ASCII reads the same in UTF-8 and Latin-1, and its blanks are already trimmed.
    if (isAscii(bytes))
        return QString::fromLatin1(bytes);
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = decoder.decode(bytes);
    if (decoder.hasError())
        text = TextCodec::decodeWindows1252(bytes);
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

RecordReader::RecordReader(QByteArrayView record, int length)
    : m_data(record.constData())
{
    if (record.size() < length) {
        m_padded = record.toByteArray();
        m_padded.append(length - record.size(), '\0');
        m_data = m_padded.constData();
    }
}

RecordReader::RecordReader(QByteArray record, int length)
    : m_padded(std::move(record))
{
    if (m_padded.size() < length)
        m_padded.append(length - m_padded.size(), '\0');
    m_data = m_padded.constData();
}

qint16 RecordReader::int16(int offset) const
{
    return qFromLittleEndian<qint16>(m_data + offset);
}

qint32 RecordReader::int32(int offset) const
{
    return qFromLittleEndian<qint32>(m_data + offset);
}

double RecordReader::float64(int offset) const
{
    const auto raw = qFromLittleEndian<quint64>(m_data + offset);
    double value;
    std::memcpy(&value, &raw, sizeof value);
    return value;
}

QString RecordReader::text(int offset, int width, RecordCodec::Trim trim) const
{
    return RecordCodec::decodeText(QByteArrayView(m_data + offset, width), trim);
}

quint8 RecordReader::byteAt(int offset) const
{
    return static_cast<quint8>(m_data[offset]);
}
