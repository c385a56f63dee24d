// A bookmark file of any bytes: the import never crashes or runs away, never yields a
// folder with more bookmarks than the file has anchor tags (a nested folder's anchors
// also count for every folder around it) nor more folders than headings.
#include "core/exchange/netscapeimport.h"
#include "scratchfolder.h"

namespace {
// Start tags "<NAME" followed by a blank, "/" or ">": the most elements of that name
// the file can hold.
qint64 startTags(const QByteArray &bytes, const QByteArray &name)
{
    qint64 count = 0;
    for (qsizetype at = 0; (at = bytes.indexOf('<', at)) >= 0; ++at) {
        const qsizetype after = at + 1 + name.size();
        if (after >= bytes.size() || bytes.mid(at + 1, name.size()).toLower() != name)
            continue;
        const char next = bytes[after];
        if (next == '>' || next == '/' || next == ' ' || next == '\t' || next == '\n'
            || next == '\r' || next == '\f')
            ++count;
    }
    return count;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    NetscapeImport::Limits limits;
    limits.maxFileBytes = 1 << 20;
    const NetscapeImport::Result result = NetscapeImport::parse(bytes, limits);
    const qint64 anchors = startTags(bytes, "a");
    FUZZ_ASSERT(result.folders.size() <= startTags(bytes, "h3"));
    FUZZ_ASSERT(result.anchorsOutsideFolders <= anchors);
    for (const NetscapeImport::ImportedFolder &folder : result.folders)
        FUZZ_ASSERT(folder.bookmarks.size() <= anchors);
    if (result.status != NetscapeImport::Result::Imported)
        FUZZ_ASSERT(result.folders.isEmpty());
    return 0;
}
