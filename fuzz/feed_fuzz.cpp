// A feed of any bytes: it is read or refused without crash, and the page made of it
// runs no script but the page's own toggle.
#include "core/feeds/feedpage.h"
#include "core/feeds/feedparser.h"
#include "parsedhtml.h"
#include "scratchfolder.h"

namespace {
// Script elements as a browser finds them: text such as "<script" inside a quoted
// attribute value is no element and runs nothing.
void countScripts(const GumboNode *node, bool inBody, int *all, int *body)
{
    if (node->type != GUMBO_NODE_ELEMENT)
        return;
    const GumboElement &element = node->v.element;
    inBody = inBody || element.tag == GUMBO_TAG_BODY;
    if (element.tag == GUMBO_TAG_SCRIPT) {
        ++*all;
        *body += inBody ? 1 : 0;
    }
    for (unsigned int i = 0; i < element.children.length; ++i)
        countScripts(static_cast<const GumboNode *>(element.children.data[i]), inBody, all, body);
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    const FeedParseResult result = FeedParser::parse(bytes);
    const QString page = FeedPage::forResult(
        result, QStringLiteral("https://feed.example/rss"), FeedPage::defaultLinkText());
    // The only script is the page's own, once, in its head; items bring none.
    int scripts = 0, inBody = 0;
    countScripts(ParsedHtml(page.toUtf8()).root(), false, &scripts, &inBody);
    FUZZ_ASSERT(scripts <= 1);
    FUZZ_ASSERT(inBody == 0);
    return 0;
}
