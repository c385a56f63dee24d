#include "core/exchange/utf8writer.h"

#include "core/records/recordcodec.h"

#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

Utf8Writer::Utf8Writer(qsizetype expectedSize)
    : m_bytes(std::max<qsizetype>(expectedSize, 256), Qt::Uninitialized)
{ }

void Utf8Writer::grow(qsizetype count)
{
    m_bytes.resize(std::max(m_bytes.size() * 2, m_size + count));
}

namespace {
// Copies the ASCII at the start of [at, end) to out and advances both; most text of an
// archive is ASCII, and where the processor allows it is taken sixteen units at a time.
void copyAscii(const char16_t *&at, const char16_t *end, char *&out)
{
#if defined(__SSE2__)
    const __m128i high = _mm_set1_epi16(short(0xFF80));
    while (end - at >= 16) {
        const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i *>(at));
        const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i *>(at + 8));
        const __m128i nonAscii = _mm_and_si128(_mm_or_si128(a, b), high);
        if (_mm_movemask_epi8(_mm_cmpeq_epi16(nonAscii, _mm_setzero_si128())) != 0xFFFF)
            break;
        _mm_storeu_si128(reinterpret_cast<__m128i *>(out), _mm_packus_epi16(a, b));
        at += 16;
        out += 16;
    }
#endif
    while (at < end && *at < 0x80)
        *out++ = char(*at++);
}
} // namespace

void Utf8Writer::text(QStringView text)
{
    const char16_t *at = text.utf16();
    const char16_t *const end = at + text.size();
    // At most three bytes for each UTF-16 unit (a pair of them makes four).
    char *out = room(text.size() * 3);
    char *const start = out;
    while (at < end) {
        copyAscii(at, end, out);
        if (at < end)
            RecordCodec::encodeUtf8(at, end, out);
    }
    m_size += out - start;
}

void Utf8Writer::xmlText(QStringView text)
{
    xml(text, Xml::Text);
}

void Utf8Writer::xmlAttribute(QStringView text)
{
    xml(text, Xml::Attribute);
}

void Utf8Writer::xml(QStringView text, Xml mode)
{
    const char16_t *const begin = text.utf16();
    const char16_t *at = begin;
    const char16_t *const end = at + text.size();
    // "&quot;" is the longest replacement: six bytes for one unit.
    char *out = room(text.size() * 6);
    char *const start = out;
    const auto put = [&out](const char *replacement, size_t size) {
        std::memcpy(out, replacement, size);
        out += size;
    };
    const bool attribute = mode == Xml::Attribute;
    while (at < end) {
        const char16_t c = *at;
        if (c >= 0x80) {
            RecordCodec::encodeUtf8(at, end, out);
            continue;
        }
        switch (c) {
        case u'<':
            put("&lt;", 4);
            break;
        case u'&':
            put("&amp;", 5);
            break;
        case u'>':
            if (at - begin >= 2 && at[-1] == u']' && at[-2] == u']')
                put("&gt;", 4);
            else
                *out++ = '>';
            break;
        case u'"':
            if (attribute)
                put("&quot;", 6);
            else
                *out++ = '"';
            break;
        case u'\r':
            put("&#xd;", 5);
            break;
        case u'\n':
            if (attribute)
                put("&#xa;", 5);
            else
                *out++ = '\n';
            break;
        case u'\t':
            if (attribute)
                put("&#x9;", 5);
            else
                *out++ = '\t';
            break;
        default:
            *out++ = char(c);
            break;
        }
        ++at;
    }
    m_size += out - start;
}

QByteArray Utf8Writer::take()
{
    m_bytes.truncate(m_size);
    m_size = 0;
    return std::exchange(m_bytes, QByteArray());
}
