#include "utf8writer.h"

#include <cstring>

Utf8Writer::Utf8Writer(qsizetype expectedSize)
    : m_bytes(std::max<qsizetype>(expectedSize, 256), Qt::Uninitialized)
{ }

void Utf8Writer::grow(qsizetype count)
{
    m_bytes.resize(std::max(m_bytes.size() * 2, m_size + count));
}

void Utf8Writer::raw(const char *bytes, qsizetype size)
{
    std::memcpy(room(size), bytes, size_t(size));
    m_size += size;
}

qsizetype Utf8Writer::encodeNonAscii(const char16_t *at, const char16_t *end, char *&out)
{
    const char16_t c = *at;
    if (c < 0x800) {
        *out++ = char(0xC0 | (c >> 6));
        *out++ = char(0x80 | (c & 0x3F));
        return 1;
    }
    if (c < 0xD800 || c > 0xDFFF) {
        *out++ = char(0xE0 | (c >> 12));
        *out++ = char(0x80 | ((c >> 6) & 0x3F));
        *out++ = char(0x80 | (c & 0x3F));
        return 1;
    }
    if (c < 0xDC00 && at + 1 < end && at[1] >= 0xDC00 && at[1] <= 0xDFFF) {
        const char32_t u = 0x10000 + ((char32_t(c) - 0xD800) << 10) + (char32_t(at[1]) - 0xDC00);
        *out++ = char(0xF0 | (u >> 18));
        *out++ = char(0x80 | ((u >> 12) & 0x3F));
        *out++ = char(0x80 | ((u >> 6) & 0x3F));
        *out++ = char(0x80 | (u & 0x3F));
        return 2;
    }
    *out++ = '?';
    return 1;
}

void Utf8Writer::text(QStringView text)
{
    const char16_t *at = text.utf16();
    const char16_t *const end = at + text.size();
    // At most three bytes for each UTF-16 unit (a pair of them makes four).
    char *out = room(text.size() * 3);
    char *const start = out;
    while (at < end) {
        if (*at < 0x80)
            *out++ = char(*at++);
        else
            at += encodeNonAscii(at, end, out);
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
            at += encodeNonAscii(at, end, out);
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
