// A bookmark file of any bytes: the import never crashes or runs away, never yields
// more folders than headings, nor a folder with more bookmarks than the document has
// anchors once parsed as a browser parses it (the parser's repair of misnested anchors
// may clone one, and a nested folder's anchors count for every folder around it).
#include "core/exchange/netscapeimport.h"
#include "parsedhtml.h"
#include "scratchfolder.h"

namespace {
qint64 elementsOf(const GumboNode *node, GumboTag tag)
{
    if (node->type != GUMBO_NODE_ELEMENT && node->type != GUMBO_NODE_TEMPLATE)
        return 0;
    qint64 count = node->v.element.tag == tag ? 1 : 0;
    const GumboVector &children = node->v.element.children;
    for (unsigned i = 0; i < children.length; ++i)
        count += elementsOf(static_cast<const GumboNode *>(children.data[i]), tag);
    return count;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    NetscapeImport::Limits limits;
    limits.maxFileBytes = 1 << 20;
    const NetscapeImport::Result result = NetscapeImport::parse(bytes, limits);
    if (result.status != NetscapeImport::Result::Imported) {
        FUZZ_ASSERT(result.folders.isEmpty());
        return 0;
    }
    const ParsedHtml parsed(bytes);
    const qint64 anchors = elementsOf(parsed.root(), GUMBO_TAG_A);
    const qint64 headings = elementsOf(parsed.root(), GUMBO_TAG_H3);
    FUZZ_ASSERT(result.folders.size() <= headings);
    FUZZ_ASSERT(result.anchorsOutsideFolders <= anchors);
    for (const NetscapeImport::ImportedFolder &folder : result.folders)
        FUZZ_ASSERT(folder.bookmarks.size() <= anchors);
    return 0;
}
