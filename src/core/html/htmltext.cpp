#include "core/html/htmltext.h"

#include <gumbo.h>
#include <string>
#include <vector>

namespace HtmlText {

namespace {
bool isElement(const GumboNode *node)
{
    return node->type == GUMBO_NODE_ELEMENT || node->type == GUMBO_NODE_TEMPLATE;
}

bool isHtmlSpace(QChar c)
{
    return c == u' ' || c == u'\t' || c == u'\n' || c == u'\r' || c == u'\f';
}

// Line breaks an element asks for before and after itself.
int breaksAround(GumboTag tag)
{
    switch (tag) {
    case GUMBO_TAG_P:
        return 2;
    case GUMBO_TAG_ADDRESS:
    case GUMBO_TAG_ARTICLE:
    case GUMBO_TAG_ASIDE:
    case GUMBO_TAG_BLOCKQUOTE:
    case GUMBO_TAG_BODY:
    case GUMBO_TAG_CENTER:
    case GUMBO_TAG_DD:
    case GUMBO_TAG_DETAILS:

    case GUMBO_TAG_DIR:
    case GUMBO_TAG_DIV:
    case GUMBO_TAG_DL:
    case GUMBO_TAG_DT:
    case GUMBO_TAG_FIELDSET:
    case GUMBO_TAG_FIGCAPTION:
    case GUMBO_TAG_FIGURE:
    case GUMBO_TAG_FOOTER:
    case GUMBO_TAG_FORM:
    case GUMBO_TAG_H1:
    case GUMBO_TAG_H2:
    case GUMBO_TAG_H3:
    case GUMBO_TAG_H4:
    case GUMBO_TAG_H5:
    case GUMBO_TAG_H6:
    case GUMBO_TAG_HEADER:
    case GUMBO_TAG_HGROUP:
    case GUMBO_TAG_HR:
    case GUMBO_TAG_HTML:
    case GUMBO_TAG_LEGEND:
    case GUMBO_TAG_LI:
    case GUMBO_TAG_LISTING:
    case GUMBO_TAG_MAIN:
    case GUMBO_TAG_MENU:
    case GUMBO_TAG_NAV:
    case GUMBO_TAG_OL:
    case GUMBO_TAG_PRE:
    case GUMBO_TAG_SECTION:
    case GUMBO_TAG_SUMMARY:
    case GUMBO_TAG_TABLE:
    case GUMBO_TAG_TR:
    case GUMBO_TAG_UL:
    case GUMBO_TAG_PLAINTEXT:
    case GUMBO_TAG_XMP:
    case GUMBO_TAG_CAPTION:
        return 1;
    default:
        return 0;
    }
}

bool isHidden(GumboTag tag)
{
    switch (tag) {
    case GUMBO_TAG_SCRIPT:
    case GUMBO_TAG_STYLE:
    case GUMBO_TAG_HEAD:
    case GUMBO_TAG_TITLE:
    case GUMBO_TAG_TEMPLATE:
    case GUMBO_TAG_NOSCRIPT:
    case GUMBO_TAG_NOFRAMES:
    case GUMBO_TAG_IFRAME:
    case GUMBO_TAG_NOEMBED:
        return true;
    default:
        return false;
    }
}

bool keepsWhiteSpace(GumboTag tag)
{
    return tag == GUMBO_TAG_PRE || tag == GUMBO_TAG_TEXTAREA || tag == GUMBO_TAG_LISTING
        || tag == GUMBO_TAG_PLAINTEXT || tag == GUMBO_TAG_XMP;
}

class TextBuilder
{
public:
    void text(QStringView text, bool preserve)
    {
        for (const QChar c : text) {
            if (preserve) {
                if (c == u'\r')
                    continue;
                if (c == u'\n') {
                    forcedBreak();
                    continue;
                }
                put(c);
            } else if (isHtmlSpace(c)) {
                if (!atLineStart())
                    m_space = true;
            } else {
                put(c);
            }
        }
    }
    void requireBreaks(int count)
    {
        m_breaks = std::max(m_breaks, count);
        m_space = false;
    }
    void forcedBreak()
    {
        flushBreaks();
        m_space = false;
        m_out.append(u"\r\n");
        m_written = true;
    }
    // A line break at the very end (a trailing <br>) shows nothing and is dropped.
    QString finish()
    {
        while (endsWithLineBreak())
            m_out.resize(m_out.size() - 2);
        if (!m_written) // nothing at all is a null text, something chopped away an empty one
            return QString();
        return QString(reinterpret_cast<const QChar *>(m_out.data()), qsizetype(m_out.size()));
    }

private:
    bool endsWithLineBreak() const
    {
        const size_t size = m_out.size();
        return size >= 2 && m_out[size - 2] == u'\r' && m_out[size - 1] == u'\n';
    }
    bool atLineStart() const { return m_out.empty() || m_out.back() == u'\n' || m_breaks > 0; }
    void flushBreaks()
    {
        if (m_breaks > 0 && !m_out.empty()) {
            for (int i = 0; i < m_breaks; ++i)
                m_out.append(u"\r\n");
            m_written = true;
        }
        m_breaks = 0;
    }
    void put(QChar c)
    {
        flushBreaks();
        if (m_space && !atLineStart())
            m_out.push_back(u' ');
        m_space = false;
        m_out.push_back(c.unicode());
        m_written = true;
    }

    // A plain buffer: the text grows one character at a time.
    std::u16string m_out;
    bool m_written = false;
    int m_breaks = 0;
    bool m_space = false;
};
} // namespace

QString elementName(const GumboNode *element)
{
    if (!isElement(element))
        return {};
    const GumboElement &el = element->v.element;
    if (el.tag != GUMBO_TAG_UNKNOWN)
        return QString::fromLatin1(gumbo_normalized_tagname(el.tag));
    GumboStringPiece piece = el.original_tag;
    if (piece.data == nullptr || piece.length < 2 || piece.data[0] != '<'
        || piece.data[piece.length - 1] != '>')
        return {};
    gumbo_tag_from_original_text(&piece);
    return QString::fromUtf8(piece.data, qsizetype(piece.length)).toLower();
}

QString innerText(const GumboNode *element)
{
    TextBuilder builder;
    struct Frame
    {
        const GumboNode *node;
        unsigned int next;
        int breaks;
        bool preserve;
    };
    std::vector<Frame> stack;
    const bool rootPreserve = isElement(element) && keepsWhiteSpace(element->v.element.tag);
    stack.push_back({element, 0, 0, rootPreserve});
    while (!stack.empty()) {
        Frame &frame = stack.back();
        const GumboVector &children = frame.node->v.element.children;
        if (frame.next >= children.length) {
            if (frame.breaks > 0)
                builder.requireBreaks(frame.breaks);
            stack.pop_back();
            continue;
        }
        const auto *child = static_cast<const GumboNode *>(children.data[frame.next++]);
        const bool preserve = frame.preserve;
        switch (child->type) {
        case GUMBO_NODE_TEXT:
        case GUMBO_NODE_WHITESPACE:
        case GUMBO_NODE_CDATA:
            builder.text(QString::fromUtf8(child->v.text.text), preserve);
            break;
        case GUMBO_NODE_ELEMENT:
        case GUMBO_NODE_TEMPLATE: {
            const GumboTag tag = child->v.element.tag;
            if (tag == GUMBO_TAG_BR) {
                builder.forcedBreak();
                break;
            }
            if (isHidden(tag))
                break;
            const int breaks = breaksAround(tag);
            if (breaks > 0)
                builder.requireBreaks(breaks);
            stack.push_back({child, 0, breaks, preserve || keepsWhiteSpace(tag)});
            break;
        }
        default:
            break;
        }
    }
    return builder.finish();
}

} // namespace HtmlText
