#include "core/feeds/feedhtmlscan.h"

#include "core/feeds/feedhtmlcleaner.h"
#include "core/feeds/feedhtmlrules.h"

#include <QList>
#include <QString>
#include <QVarLengthArray>

namespace {

using namespace FeedHtmlRules;

bool isNameChar(QChar c)
{
    const char16_t u = c.unicode();
    return (u >= u'a' && u <= u'z') || (u >= u'A' && u <= u'Z') || (u >= u'0' && u <= u'9')
        || u == u'-' || u == u'_' || u == u':';
}

bool isBlank(QChar c)
{
    const char16_t u = c.unicode();
    return u == u' ' || u == u'\t' || u == u'\n' || u == u'\r' || u == u'\f';
}

// Characters an HTML parser reports as errors: control characters other than blanks,
// and noncharacters.
bool isFlaggedCharacter(char16_t u)
{
    if (u < 0x20)
        return u != u'\t' && u != u'\n' && u != u'\r' && u != u'\f';
    return (u >= 0x7F && u <= 0x9F) || (u >= 0xFDD0 && u <= 0xFDEF) || u == 0xFFFE || u == 0xFFFF;
}

bool isTableContainer(GumboTag tag)
{
    return tag == GUMBO_TAG_TABLE || tag == GUMBO_TAG_TBODY || tag == GUMBO_TAG_THEAD
        || tag == GUMBO_TAG_TFOOT || tag == GUMBO_TAG_TR || tag == GUMBO_TAG_COLGROUP;
}

// Elements whose start tag closes an open paragraph.
bool closesParagraph(GumboTag tag)
{
    switch (tag) {
    case GUMBO_TAG_ADDRESS:
    case GUMBO_TAG_BLOCKQUOTE:
    case GUMBO_TAG_CENTER:
    case GUMBO_TAG_DIV:
    case GUMBO_TAG_DL:
    case GUMBO_TAG_DD:
    case GUMBO_TAG_DT:
    case GUMBO_TAG_FIGURE:
    case GUMBO_TAG_FIGCAPTION:
    case GUMBO_TAG_H1:
    case GUMBO_TAG_H2:
    case GUMBO_TAG_H3:
    case GUMBO_TAG_H4:
    case GUMBO_TAG_H5:
    case GUMBO_TAG_H6:
    case GUMBO_TAG_HR:
    case GUMBO_TAG_LI:
    case GUMBO_TAG_OL:
    case GUMBO_TAG_P:
    case GUMBO_TAG_PRE:
    case GUMBO_TAG_TABLE:
    case GUMBO_TAG_UL:
        return true;
    default:
        return false;
    }
}

bool isHeading(GumboTag tag)
{
    return tag >= GUMBO_TAG_H1 && tag <= GUMBO_TAG_H6;
}

// Open elements that constrain what may follow.
enum OpenCount { OpenParagraphs, OpenLinks, OpenHeadings, OpenCountSize };

int openCountOf(GumboTag tag)
{
    if (tag == GUMBO_TAG_P)
        return OpenParagraphs;
    if (tag == GUMBO_TAG_A)
        return OpenLinks;
    return isHeading(tag) ? OpenHeadings : OpenCountSize;
}

// Whether `tag` may open inside `parent` without the parser moving or closing anything.
bool fitsInto(GumboTag tag, GumboTag parent, const int *openCounts)
{
    switch (tag) {
    case GUMBO_TAG_TR:
        return parent == GUMBO_TAG_TABLE || parent == GUMBO_TAG_TBODY || parent == GUMBO_TAG_THEAD
            || parent == GUMBO_TAG_TFOOT;
    case GUMBO_TAG_TD:
    case GUMBO_TAG_TH:
        return parent == GUMBO_TAG_TR;
    case GUMBO_TAG_TBODY:
    case GUMBO_TAG_THEAD:
    case GUMBO_TAG_TFOOT:
    case GUMBO_TAG_CAPTION:
    case GUMBO_TAG_COLGROUP:
        return parent == GUMBO_TAG_TABLE;
    case GUMBO_TAG_COL:
        return parent == GUMBO_TAG_TABLE || parent == GUMBO_TAG_COLGROUP;
    case GUMBO_TAG_LI:
        return parent == GUMBO_TAG_UL || parent == GUMBO_TAG_OL;
    case GUMBO_TAG_DD:
    case GUMBO_TAG_DT:
        return parent == GUMBO_TAG_DL;
    default:
        break;
    }
    if (isTableContainer(parent))
        return false;
    if (openCounts[OpenParagraphs] > 0 && closesParagraph(tag))
        return false;
    if (openCounts[OpenLinks] > 0 && tag == GUMBO_TAG_A)
        return false;
    return openCounts[OpenHeadings] == 0 || !isHeading(tag);
}

// An attribute value with "&amp;" as its only character reference, decoded; false for
// any other reference.
bool decodeValue(QStringView raw, QString *value)
{
    value->clear();
    qsizetype at = 0;
    while (true) {
        const qsizetype amp = raw.indexOf(u'&', at);
        if (amp < 0) {
            value->append(raw.mid(at));
            return true;
        }
        if (!raw.mid(amp).startsWith(u"&amp;"))
            return false;
        value->append(raw.mid(at, amp - at));
        value->append(u'&');
        at = amp + 5;
    }
}

class Scanner
{
public:
    explicit Scanner(QStringView html)
        : m_html(html)
    { }

    bool run()
    {
        for (const QChar c : m_html) {
            if (isFlaggedCharacter(c.unicode()))
                return false;
        }
        const qsizetype size = m_html.size();
        while (m_at < size) {
            const QChar c = m_html.at(m_at);
            if (c == u'<') {
                if (!(m_at + 1 < size && m_html.at(m_at + 1) == u'/' ? endTag() : startTag()))
                    return false;
                continue;
            }
            // Text directly in a table would be moved out of it.
            if (!m_open.isEmpty() && isTableContainer(m_open.last()) && !isBlank(c))
                return false;
            ++m_at;
        }
        return m_open.isEmpty();
    }

private:
    GumboTag readTagName()
    {
        const qsizetype start = m_at;
        while (m_at < m_html.size() && isNameChar(m_html.at(m_at)))
            ++m_at;
        const qsizetype length = m_at - start;
        if (length == 0 || length > 16 || !m_html.at(start).isLetter())
            return GUMBO_TAG_UNKNOWN;
        char name[17];
        for (qsizetype i = 0; i < length; ++i)
            name[i] = char(m_html.at(start + i).toLower().unicode());
        return gumbo_tagn_enum(name, unsigned(length));
    }

    void skipBlanks()
    {
        while (m_at < m_html.size() && isBlank(m_html.at(m_at)))
            ++m_at;
    }

    bool endTag()
    {
        m_at += 2;
        const GumboTag tag = readTagName();
        skipBlanks();
        if (m_at >= m_html.size() || m_html.at(m_at) != u'>')
            return false;
        ++m_at;
        if (m_open.isEmpty() || m_open.last() != tag)
            return false;
        m_open.removeLast();
        --m_counts[openCountOf(tag)];
        return true;
    }

    bool startTag()
    {
        ++m_at;
        const GumboTag tag = readTagName();
        if (tag == GUMBO_TAG_UNKNOWN || !isAllowed(tag))
            return false;
        const GumboTag parent = m_open.isEmpty() ? GUMBO_TAG_DIV : m_open.last();
        if (m_open.size() >= FeedHtmlCleaner::Budget::MaxDepth || !fitsInto(tag, parent, m_counts))
            return false;

        QVarLengthArray<QByteArray, 4> seen;
        QString value;
        while (true) {
            const qsizetype before = m_at;
            skipBlanks();
            if (m_at >= m_html.size())
                return false;
            const QChar c = m_html.at(m_at);
            if (c == u'>') {
                ++m_at;
                break;
            }
            if (c == u'/') {
                // Self-closing syntax is only meaningful on void elements.
                if (!isVoid(tag) || m_at + 1 >= m_html.size() || m_html.at(m_at + 1) != u'>')
                    return false;
                m_at += 2;
                break;
            }
            if (m_at == before) // attributes are separated by blanks
                return false;
            const qsizetype nameStart = m_at;
            while (m_at < m_html.size() && isNameChar(m_html.at(m_at)))
                ++m_at;
            if (m_at == nameStart)
                return false;
            const QByteArray name = m_html.mid(nameStart, m_at - nameStart).toLatin1().toLower();
            if (!isAllowedAttribute(name) || seen.contains(name))
                return false;
            seen.append(name);
            const qsizetype afterName = m_at;
            skipBlanks();
            QStringView raw;
            if (m_at < m_html.size() && m_html.at(m_at) == u'=') {
                ++m_at;
                skipBlanks();
                if (!readValue(&raw))
                    return false;
            } else {
                m_at = afterName; // a name without value; blanks separate what follows
            }
            if (!decodeValue(raw, &value))
                return false;
            if ((isUrlAttribute(name) && FeedHtmlCleaner::isUnsafeUrl(value))
                || (name == "style" && isUnsafeStyle(value)))
                return false;
        }
        if (!isVoid(tag)) {
            m_open.append(tag);
            ++m_counts[openCountOf(tag)];
        }
        return true;
    }

    bool readValue(QStringView *raw)
    {
        if (m_at >= m_html.size())
            return false;
        const QChar quote = m_html.at(m_at);
        if (quote == u'"' || quote == u'\'') {
            const qsizetype end = m_html.indexOf(quote, m_at + 1);
            if (end < 0)
                return false;
            *raw = m_html.mid(m_at + 1, end - m_at - 1);
            m_at = end + 1;
            // The next attribute or the end of the tag must follow a blank or the tag end.
            return m_at < m_html.size()
                && (isBlank(m_html.at(m_at)) || m_html.at(m_at) == u'>' || m_html.at(m_at) == u'/');
        }
        const qsizetype start = m_at;
        while (m_at < m_html.size()) {
            const QChar c = m_html.at(m_at);
            if (isBlank(c) || c == u'>')
                break;
            if (c == u'"' || c == u'\'' || c == u'<' || c == u'=' || c == u'`')
                return false;
            ++m_at;
        }
        *raw = m_html.mid(start, m_at - start);
        return !raw->isEmpty();
    }

    QStringView m_html;
    qsizetype m_at = 0;
    QVarLengthArray<GumboTag, 16> m_open;
    int m_counts[OpenCountSize + 1] = {};
};

} // namespace

bool FeedHtmlScan::isSafeAsWritten(QStringView html)
{
    return Scanner(html).run();
}

int FeedHtmlScan::nestingEstimate(QStringView html)
{
    static const char16_t *const voidNames[] = {u"area", u"base", u"br", u"col", u"embed", u"hr",
        u"img", u"input", u"keygen", u"link", u"meta", u"param", u"source", u"track", u"wbr",
        u"basefont", u"bgsound", u"frame", u"image", u"isindex"};
    QList<QString> open;
    int deepest = 0;
    const qsizetype size = html.size();
    qsizetype at = 0;
    while ((at = html.indexOf(u'<', at)) >= 0) {
        ++at;
        if (html.mid(at).startsWith(u"!--")) {
            const qsizetype end = html.indexOf(u"-->", at);
            at = end < 0 ? size : end + 3;
            continue;
        }
        const bool closing = at < size && html.at(at) == u'/';
        if (closing)
            ++at;
        const qsizetype nameStart = at;
        while (at < size && isNameChar(html.at(at)))
            ++at;
        if (at == nameStart || !html.at(nameStart).isLetter())
            continue;
        const QString name = html.mid(nameStart, at - nameStart).toString().toLower();
        if (closing) {
            if (!open.isEmpty() && open.constLast() == name)
                open.removeLast();
            continue;
        }
        bool isVoidName = false;
        for (const char16_t *voidName : voidNames)
            isVoidName = isVoidName || name == QStringView(voidName);
        if (!isVoidName) {
            open.append(name);
            deepest = qMax(deepest, int(open.size()));
            if (deepest > FeedHtmlCleaner::Budget::MaxDepth)
                return deepest; // too deep already; no need to know how deep
        }
    }
    return deepest;
}
