// Feed HTML of any bytes: what the cleaner lets through, parsed again as a browser
// would, holds nothing that can run script, and cleaning it again changes nothing.
#include "core/feeds/feedhtmlcleaner.h"
#include "parsedhtml.h"
#include "scratchfolder.h"

namespace {
bool isScriptCapable(GumboTag tag)
{
    switch (tag) {
    case GUMBO_TAG_SCRIPT:
    case GUMBO_TAG_STYLE:
    case GUMBO_TAG_IFRAME:
    case GUMBO_TAG_FRAME:
    case GUMBO_TAG_FRAMESET:
    case GUMBO_TAG_OBJECT:
    case GUMBO_TAG_EMBED:
    case GUMBO_TAG_APPLET:
    case GUMBO_TAG_FORM:
    case GUMBO_TAG_INPUT:
    case GUMBO_TAG_BUTTON:
    case GUMBO_TAG_META:
    case GUMBO_TAG_LINK:
    case GUMBO_TAG_BASE:
    case GUMBO_TAG_SVG:
    case GUMBO_TAG_MATH:
    case GUMBO_TAG_TEMPLATE:
    case GUMBO_TAG_NOSCRIPT:
        return true;
    default:
        return false;
    }
}

// The value as a browser reads a URL: ASCII blanks and controls ignored, any case.
QByteArray urlScheme(const char *value)
{
    QByteArray kept;
    for (const char *c = value; *c; ++c) {
        if (uchar(*c) > 0x20 && *c != 0x7f)
            kept.append(char(*c | (*c >= 'A' && *c <= 'Z' ? 0x20 : 0)));
        if (*c == ':')
            break;
    }
    return kept;
}

bool isScriptUrl(const char *value)
{
    const QByteArray scheme = urlScheme(value);
    return scheme.startsWith("javascript:") || scheme.startsWith("vbscript:")
        || scheme.startsWith("data:");
}

void checkElement(const GumboNode *node)
{
    if (node->type != GUMBO_NODE_ELEMENT && node->type != GUMBO_NODE_TEMPLATE)
        return;
    const GumboElement &element = node->v.element;
    const bool isPageFrame = element.tag == GUMBO_TAG_HTML || element.tag == GUMBO_TAG_HEAD
        || element.tag == GUMBO_TAG_BODY;
    FUZZ_ASSERT(isPageFrame || element.tag_namespace == GUMBO_NAMESPACE_HTML);
    FUZZ_ASSERT(!isScriptCapable(element.tag));
    for (unsigned i = 0; i < element.attributes.length; ++i) {
        const auto *attribute = static_cast<const GumboAttribute *>(element.attributes.data[i]);
        const QByteArray name = QByteArray(attribute->name).toLower();
        FUZZ_ASSERT(!name.startsWith("on"));
        FUZZ_ASSERT(name != "srcdoc" && name != "formaction" && name != "xlink:href");
        if (name == "href" || name == "src" || name == "action" || name == "background"
            || name == "poster" || name == "lowsrc" || name == "dynsrc" || name == "cite"
            || name == "longdesc" || name == "usemap" || name == "data")
            FUZZ_ASSERT(!isScriptUrl(attribute->value));
        if (name == "srcset") {
            for (const QByteArray &candidate : QByteArray(attribute->value).split(','))
                FUZZ_ASSERT(!isScriptUrl(candidate.trimmed().constData()));
        }
        if (name == "style") {
            const QByteArray style = QByteArray(attribute->value).toLower();
            FUZZ_ASSERT(!style.contains("expression") && !style.contains("url(")
                && !style.contains("javascript:") && !style.contains("behavior")
                && !style.contains("binding"));
        }
    }
    for (unsigned i = 0; i < element.children.length; ++i)
        checkElement(static_cast<const GumboNode *>(element.children.data[i]));
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString html = QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size));
    const QString cleaned = FeedHtmlCleaner::clean(html);
    const QString again = FeedHtmlCleaner::clean(cleaned);
    if (again != cleaned) {
        qsizetype at = 0;
        while (at < again.size() && at < cleaned.size() && again.at(at) == cleaned.at(at))
            ++at;
        fprintf(stderr, "first clean:  ...%s\nsecond clean: ...%s\n",
            qPrintable(cleaned.mid(std::max<qsizetype>(0, at - 80), 160)),
            qPrintable(again.mid(std::max<qsizetype>(0, at - 80), 160)));
    }
    FUZZ_ASSERT(again == cleaned);
    // The page puts an item's markup into a div of its body.
    const QByteArray page = "<!DOCTYPE html><html><head></head><body><div>" + cleaned.toUtf8()
        + "</div></body></html>";
    checkElement(ParsedHtml(page).root());
    return 0;
}
