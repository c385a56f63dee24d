#include "core/feeds/feedhtmlcleaner.h"

#include "core/feeds/feedhtmlrules.h"
#include "core/feeds/feedhtmlscan.h"
#include "core/html/parsearena.h"

#include <algorithm>
#include <gumbo.h>

namespace {

using namespace FeedHtmlRules;

// The attribute's name, lower-cased (the parser already lower-cases HTML attributes,
// so this rarely copies).
QByteArray attributeName(const GumboAttribute *attribute)
{
    const QByteArray name = QByteArray::fromRawData(attribute->name, qstrlen(attribute->name));
    return std::any_of(name.cbegin(), name.cend(), [](char c) { return c >= 'A' && c <= 'Z'; })
        ? name.toLower()
        : name;
}

bool keepsAttribute(const QByteArray &name, const char *value)
{
    if (!isAllowedAttribute(name))
        return false;
    if (isUrlAttribute(name))
        return !FeedHtmlCleaner::isUnsafeUrl(QString::fromUtf8(value));
    return name != "style" || !isUnsafeStyle(QString::fromUtf8(value));
}

// True when the cleaner would leave out or replace anything in the parsed fragment.
bool needsCleaning(const GumboVector &children)
{
    for (unsigned int i = 0; i < children.length; ++i) {
        const auto *node = static_cast<const GumboNode *>(children.data[i]);
        if (node->type != GUMBO_NODE_ELEMENT && node->type != GUMBO_NODE_TEMPLATE)
            continue;
        const GumboElement &element = node->v.element;
        if (element.tag_namespace != GUMBO_NAMESPACE_HTML || isDropped(element.tag)
            || !isAllowed(element.tag))
            return true;
        for (unsigned int a = 0; a < element.attributes.length; ++a) {
            const auto *attribute = static_cast<const GumboAttribute *>(element.attributes.data[a]);
            if (!keepsAttribute(attributeName(attribute), attribute->value))
                return true;
        }
        if (needsCleaning(element.children))
            return true;
    }
    return false;
}

// Writes the cleaned markup of a parsed fragment (or, in text mode, only its text).
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
        if (element.tag_namespace != GUMBO_NAMESPACE_HTML || isDropped(element.tag))
            return;
        if (m_textOnly || !isAllowed(element.tag)) {
            writeChildren(element.children);
            return;
        }
        const QString name = QString::fromLatin1(gumbo_normalized_tagname(element.tag));
        output += u'<' + name;
        for (unsigned int i = 0; i < element.attributes.length; ++i) {
            const auto *attribute = static_cast<const GumboAttribute *>(element.attributes.data[i]);
            const QByteArray name = attributeName(attribute);
            if (!keepsAttribute(name, attribute->value))
                continue;
            output += u' ' + QString::fromLatin1(name) + u"=\""
                + FeedHtmlCleaner::escape(QString::fromUtf8(attribute->value)) + u'"';
        }
        output += u'>';
        if (isVoid(element.tag))
            return;
        writeChildren(element.children);
        output += u"</" + name + u'>';
    }

    bool m_textOnly;
};

// The markup (or, in text mode, only the text) written anew from a parsed fragment.
QString written(const GumboOutput *parsed, bool textOnly)
{
    Writer writer(textOnly);
    writer.writeChildren(parsed->root->v.element.children);
    return writer.output;
}

// Markup too costly to parse: everything from "<" to ">" goes, the rest is escaped
// as text.
QString withoutTags(const QString &html)
{
    QString text;
    text.reserve(html.size());
    bool inTag = false;
    for (const QChar c : html) {
        if (inTag)
            inTag = c != u'>';
        else if (c == u'<')
            inTag = true;
        else
            text += c;
    }
    return FeedHtmlCleaner::escape(text);
}

template<typename Visit> void parseFragment(const QString &html, ParseArena &arena, Visit visit)
{
    const QByteArray utf8 = html.toUtf8();
    GumboOptions options = kGumboDefaultOptions;
    options.allocator = &ParseArena::allocateIn;
    options.deallocator = &ParseArena::deallocateIn;
    options.userdata = &arena;
    options.fragment_context = GUMBO_TAG_DIV;
    options.max_errors = 1;
    GumboOutput *parsed = gumbo_parse_with_options(&options, utf8.constData(), size_t(utf8.size()));
    visit(parsed);
    gumbo_destroy_output(&options, parsed);
}

} // namespace

FeedHtmlCleaner::Budget::Budget() = default;
FeedHtmlCleaner::Budget::~Budget() = default;

ParseArena &FeedHtmlCleaner::Budget::arena()
{
    if (!m_arena)
        m_arena = std::make_unique<ParseArena>();
    return *m_arena;
}

bool FeedHtmlCleaner::Budget::take(int depth)
{
    if (depth > MaxDepth || m_left <= 0)
        return false;
    m_left -= qint64(depth) * depth;
    return true;
}

QString FeedHtmlCleaner::clean(const QString &html, Budget *budget)
{
    // Text without a tag cannot hold markup of any kind.
    if (!html.contains(u'<'))
        return html;
    Budget single;
    Budget &spent = budget ? *budget : single;
    if (!spent.take(FeedHtmlScan::nestingEstimate(html)))
        return withoutTags(html);
    QString cleaned;
    bool rewritten = false;
    parseFragment(html, spent.arena(), [&](const GumboOutput *parsed) {
        const GumboVector &children = parsed->root->v.element.children;
        // Well-formed markup with nothing to leave out stays as the feed wrote it.
        if (parsed->errors.length == 0 && !needsCleaning(children)) {
            cleaned = html;
            return;
        }
        cleaned = written(parsed, false);
        rewritten = true;
    });
    if (!rewritten)
        return cleaned;
    // The parser repairs broken markup into trees that do not read back as themselves
    // once written (a heading it left inside another heading, text a table pushes out):
    // such markup is written again from its own tree until it does, so that the page
    // shows the tree that was cleaned and cleaning never changes clean markup.
    for (int round = 0; round < 3; ++round) {
        QString again;
        parseFragment(cleaned, spent.arena(),
            [&](const GumboOutput *parsed) { again = written(parsed, false); });
        if (again == cleaned)
            return cleaned;
        cleaned = again;
    }
    return withoutTags(html);
}

QString FeedHtmlCleaner::toPlainText(const QString &html, Budget *budget)
{
    if (!html.contains(u'<') && !html.contains(u'&'))
        return html;
    Budget single;
    Budget &spent = budget ? *budget : single;
    if (!spent.take(FeedHtmlScan::nestingEstimate(html)))
        return withoutTags(html);
    QString text;
    parseFragment(
        html, spent.arena(), [&](const GumboOutput *parsed) { text = written(parsed, true); });
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
