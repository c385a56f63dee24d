#pragma once

#include <QByteArray>
#include <QStringView>

#include <cstring>

// Builds an export file as UTF-8 bytes directly. The exports are large (one line per
// bookmark of the whole archive); building them in a QString first and converting it
// at the end costs a second pass and a second copy of everything.
//
// Text is encoded as QString::toUtf8 encodes it: a lone surrogate becomes '?'.
class Utf8Writer final
{
public:
    explicit Utf8Writer(qsizetype expectedSize = 0);

    // Plain ASCII, written as it is.
    template<qsizetype N> void ascii(const char (&literal)[N]) { raw(literal, N - 1); }
    // Inline: most pieces are a few bytes of markup.
    void raw(const char *bytes, qsizetype size)
    {
        std::memcpy(room(size), bytes, size_t(size));
        m_size += size;
    }
    void text(QStringView text);

    // XML character data as QDomDocument writes it: & and < always escaped, > only
    // after "]]", a carriage return as a character reference.
    void xmlText(QStringView text);
    // An XML attribute value as QDomDocument writes it: as character data, and also
    // quotes, line feeds and tabs escaped.
    void xmlAttribute(QStringView text);

    qsizetype size() const { return m_size; }
    // The bytes written; the writer is empty afterwards.
    QByteArray take();

private:
    enum class Xml { Text, Attribute };
    void xml(QStringView text, Xml mode);
    // Room for `count` more bytes at m_size.
    char *room(qsizetype count)
    {
        if (m_size + count > m_bytes.size())
            grow(count);
        return m_bytes.data() + m_size;
    }
    void grow(qsizetype count);

    QByteArray m_bytes; // its size is the room; m_size the bytes written
    qsizetype m_size = 0;
};
