#include "feedhtmlcleaner.h"

#include <gumbo.h>

namespace {

// Elements removed together with everything inside them.
bool isDropped(GumboTag tag)
{
    switch (tag) {
    case GUMBO_TAG_SCRIPT:
    case GUMBO_TAG_STYLE:
    case GUMBO_TAG_IFRAME:
    case GUMBO_TAG_FRAME:
    case GUMBO_TAG_FRAMESET:
    case GUMBO_TAG_NOFRAMES:
    case GUMBO_TAG_OBJECT:
    case GUMBO_TAG_EMBED:
    case GUMBO_TAG_APPLET:
    case GUMBO_TAG_PARAM:
    case GUMBO_TAG_FORM:
    case GUMBO_TAG_INPUT:
    case GUMBO_TAG_BUTTON:
    case GUMBO_TAG_SELECT:
    case GUMBO_TAG_TEXTAREA:
    case GUMBO_TAG_META:
    case GUMBO_TAG_LINK:
    case GUMBO_TAG_BASE:
    case GUMBO_TAG_TITLE:
    case GUMBO_TAG_HEAD:
    case GUMBO_TAG_NOSCRIPT:
    case GUMBO_TAG_NOEMBED:
    case GUMBO_TAG_TEMPLATE:
    case GUMBO_TAG_SVG:
    case GUMBO_TAG_MATH:
    case GUMBO_TAG_XMP:
    case GUMBO_TAG_PLAINTEXT:
    case GUMBO_TAG_CANVAS:
    case GUMBO_TAG_VIDEO:
    case GUMBO_TAG_AUDIO:
        return true;
    default:
        return false;
    }
}

// Elements kept as they are; every other element gives way to its content.
bool isAllowed(GumboTag tag)
{
    switch (tag) {
    case GUMBO_TAG_A:
    case GUMBO_TAG_ABBR:
    case GUMBO_TAG_ACRONYM:
    case GUMBO_TAG_ADDRESS:
    case GUMBO_TAG_B:
    case GUMBO_TAG_BIG:
    case GUMBO_TAG_BLOCKQUOTE:
    case GUMBO_TAG_BR:
    case GUMBO_TAG_CAPTION:
    case GUMBO_TAG_CENTER:
    case GUMBO_TAG_CITE:
    case GUMBO_TAG_CODE:
    case GUMBO_TAG_COL:
    case GUMBO_TAG_COLGROUP:
    case GUMBO_TAG_DD:
    case GUMBO_TAG_DEL:
    case GUMBO_TAG_DFN:
    case GUMBO_TAG_DIV:
    case GUMBO_TAG_DL:
    case GUMBO_TAG_DT:
    case GUMBO_TAG_EM:
    case GUMBO_TAG_FIGCAPTION:
    case GUMBO_TAG_FIGURE:
    case GUMBO_TAG_FONT:
    case GUMBO_TAG_H1:
    case GUMBO_TAG_H2:
    case GUMBO_TAG_H3:
    case GUMBO_TAG_H4:
    case GUMBO_TAG_H5:
    case GUMBO_TAG_H6:
    case GUMBO_TAG_HR:
    case GUMBO_TAG_I:
    case GUMBO_TAG_IMG:
    case GUMBO_TAG_INS:
    case GUMBO_TAG_KBD:
    case GUMBO_TAG_LI:
    case GUMBO_TAG_OL:
    case GUMBO_TAG_P:
    case GUMBO_TAG_PRE:
    case GUMBO_TAG_Q:
    case GUMBO_TAG_S:
    case GUMBO_TAG_SAMP:
    case GUMBO_TAG_SMALL:
    case GUMBO_TAG_SPAN:
    case GUMBO_TAG_STRIKE:
    case GUMBO_TAG_STRONG:
    case GUMBO_TAG_SUB:
    case GUMBO_TAG_SUP:
    case GUMBO_TAG_TABLE:
    case GUMBO_TAG_TBODY:
    case GUMBO_TAG_TD:
    case GUMBO_TAG_TFOOT:
    case GUMBO_TAG_TH:
    case GUMBO_TAG_THEAD:
    case GUMBO_TAG_TR:
    case GUMBO_TAG_TT:
    case GUMBO_TAG_U:
    case GUMBO_TAG_UL:
    case GUMBO_TAG_VAR:
    case GUMBO_TAG_WBR:
        return true;
    default:
        return false;
    }
}

bool isVoid(GumboTag tag)
{
    switch (tag) {
    case GUMBO_TAG_BR:
    case GUMBO_TAG_COL:
    case GUMBO_TAG_HR:
    case GUMBO_TAG_IMG:
    case GUMBO_TAG_WBR:
        return true;
    default:
        return false;
    }
}

bool isUrlAttribute(const QByteArray &name)
{
    return name == "href" || name == "src" || name == "cite" || name == "longdesc"
        || name == "background" || name == "lowsrc" || name == "dynsrc";
}

bool isAllowedAttribute(const QByteArray &name)
{
    static const char *const names[] = {"href", "src", "alt", "title", "width", "height", "align",
        "valign", "border", "cellpadding", "cellspacing", "colspan", "rowspan", "class", "dir",
        "lang", "cite", "datetime", "start", "type", "color", "face", "size", "bgcolor",
        "background", "hspace", "vspace", "nowrap", "summary", "abbr", "scope", "headers", "span",
        "target", "rel", "style", "longdesc", "clear", "reversed", "value", "noshade", "frame",
        "rules", "char", "charoff"};
    for (const char *allowed : names) {
        if (name == allowed)
            return true;
    }
    return false;
}

// A style attribute may colour and size its element, but not lay it over the page or
// load anything.
bool isUnsafeStyle(const QString &style)
{
    QString compact = style.toLower();
    compact.remove(u' ');
    static const char16_t *const words[] = {u"position", u"expression", u"url(", u"javascript:",
        u"behavior", u"binding", u"@import", u"\\"};
    for (const char16_t *word : words) {
        if (compact.contains(QStringView(word)))
            return true;
    }
    return false;
}

// Walks the parsed fragment: decides whether anything must go and writes the cleaned
// markup (or, in text mode, only the text).
class Writer
{
public:
    explicit Writer(bool textOnly)
        : m_textOnly(textOnly)
    { }

    void writeChildren(const GumboVector &children)
    {
        for (unsigned int i = 0; i < children.length; ++i)
            writeNode(static_cast<const GumboNode *>(children.data[i]));
    }

    QString output;
    bool changed = false;

private:
    void writeNode(const GumboNode *node)
    {
        switch (node->type) {
        case GUMBO_NODE_TEXT:
        case GUMBO_NODE_WHITESPACE:
        case GUMBO_NODE_CDATA:
            output += FeedHtmlCleaner::escape(QString::fromUtf8(node->v.text.text));
            return;
        case GUMBO_NODE_COMMENT:
            return;
        case GUMBO_NODE_DOCUMENT:
            return;
        case GUMBO_NODE_ELEMENT:
        case GUMBO_NODE_TEMPLATE:
            writeElement(node->v.element);
            return;
        }
    }

    void writeElement(const GumboElement &element)
    {
        if (element.tag_namespace != GUMBO_NAMESPACE_HTML || isDropped(element.tag)) {
            changed = true;
            return;
        }
        if (m_textOnly || !isAllowed(element.tag)) {
            if (!m_textOnly)
                changed = true;
            writeChildren(element.children);
            return;
        }
        const QString name = QString::fromLatin1(gumbo_normalized_tagname(element.tag));
        output += u'<' + name;
        for (unsigned int i = 0; i < element.attributes.length; ++i) {
            const auto *attribute = static_cast<const GumboAttribute *>(element.attributes.data[i]);
            const QByteArray attributeName = QByteArray(attribute->name).toLower();
            const QString value = QString::fromUtf8(attribute->value);
            if (!isAllowedAttribute(attributeName)
                || (isUrlAttribute(attributeName) && FeedHtmlCleaner::isUnsafeUrl(value))
                || (attributeName == "style" && isUnsafeStyle(value))) {
                changed = true;
                continue;
            }
            output += u' ' + QString::fromLatin1(attributeName) + u"=\""
                + FeedHtmlCleaner::escape(value) + u'"';
        }
        output += u'>';
        if (isVoid(element.tag))
            return;
        writeChildren(element.children);
        output += u"</" + name + u'>';
    }

    bool m_textOnly;
};

template<typename Visit> void parseFragment(const QString &html, Visit visit)
{
    const QByteArray utf8 = html.toUtf8();
    GumboOptions options = kGumboDefaultOptions;
    options.fragment_context = GUMBO_TAG_DIV;
    options.max_errors = 1;
    GumboOutput *parsed = gumbo_parse_with_options(&options, utf8.constData(), size_t(utf8.size()));
    visit(parsed);
    gumbo_destroy_output(&options, parsed);
}

} // namespace

QString FeedHtmlCleaner::clean(const QString &html)
{
    // Text without a tag cannot hold markup of any kind.
    if (!html.contains(u'<'))
        return html;
    QString cleaned;
    parseFragment(html, [&](const GumboOutput *parsed) {
        Writer writer(false);
        writer.writeChildren(parsed->root->v.element.children);
        cleaned = writer.changed || parsed->errors.length > 0 ? writer.output : html;
    });
    return cleaned;
}

QString FeedHtmlCleaner::toPlainText(const QString &html)
{
    if (!html.contains(u'<') && !html.contains(u'&'))
        return html;
    QString text;
    parseFragment(html, [&](const GumboOutput *parsed) {
        Writer writer(true);
        writer.writeChildren(parsed->root->v.element.children);
        text = writer.output;
    });
    return text;
}

QString FeedHtmlCleaner::escape(const QString &text)
{
    qsizetype at = 0;
    const qsizetype size = text.size();
    while (at < size) {
        const QChar c = text.at(at);
        if (c == u'&' || c == u'<' || c == u'>' || c == u'"' || c == u'\'')
            break;
        ++at;
    }
    if (at == size)
        return text;
    QString escaped = text.left(at);
    escaped.reserve(size + 16);
    for (; at < size; ++at) {
        const QChar c = text.at(at);
        if (c == u'&')
            escaped += u"&amp;";
        else if (c == u'<')
            escaped += u"&lt;";
        else if (c == u'>')
            escaped += u"&gt;";
        else if (c == u'"')
            escaped += u"&quot;";
        else if (c == u'\'')
            escaped += u"&#39;";
        else
            escaped += c;
    }
    return escaped;
}

bool FeedHtmlCleaner::isUnsafeUrl(const QString &url)
{
    // Browsers ignore control characters and blanks inside a scheme.
    QString scheme;
    for (const QChar c : url) {
        if (c == u':')
            break;
        if (c.unicode() <= 0x20)
            continue;
        scheme += c.toLower();
        if (scheme.size() > 10)
            return false;
    }
    if (!url.contains(u':'))
        return false;
    return scheme == u"javascript" || scheme == u"vbscript" || scheme == u"data";
}
