// A search-form page of any bytes: reading it never crashes or runs away, and what it
// yields is always usable: engines only when read, unique names, each address a web
// address with exactly one place for the term, never more engines than forms.
#include "core/search/searchformfile.h"
#include "parsedhtml.h"
#include "scratchfolder.h"

#include <QSet>

namespace {
qint64 formsIn(const GumboNode *node)
{
    if (node->type != GUMBO_NODE_ELEMENT && node->type != GUMBO_NODE_TEMPLATE)
        return 0;
    qint64 count = node->v.element.tag == GUMBO_TAG_FORM ? 1 : 0;
    const GumboVector &children = node->v.element.children;
    for (unsigned i = 0; i < children.length; ++i)
        count += formsIn(static_cast<const GumboNode *>(children.data[i]));
    return count;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    const SearchFormFile::Result result
        = SearchFormFile::parse(bytes, QUrl(QStringLiteral("https://example.org/search.html")));
    FUZZ_ASSERT((result.status == SearchFormFile::Result::Read) == !result.engines.isEmpty());
    if (result.engines.isEmpty())
        return 0;
    FUZZ_ASSERT(result.engines.size() <= formsIn(ParsedHtml(bytes).root()));
    QSet<QString> names;
    for (const SearchEngine &engine : result.engines) {
        FUZZ_ASSERT(!engine.machine.isEmpty() && !names.contains(engine.machine));
        names.insert(engine.machine);
        FUZZ_ASSERT(engine.address.startsWith(QStringLiteral("http://"))
            || engine.address.startsWith(QStringLiteral("https://")));
        FUZZ_ASSERT(engine.address.count(QStringLiteral("%s")) == 1);
    }
    return 0;
}
