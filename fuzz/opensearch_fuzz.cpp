// An OpenSearch description of any bytes: reading it never crashes, and an engine it
// yields is a named web address with a place for the term, or there is a reason.
#include "core/search/opensearch.h"
#include "scratchfolder.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    QString error;
    const std::optional<SearchEngine> engine = OpenSearch::parse(bytes, &error);
    if (!engine) {
        FUZZ_ASSERT(!error.isEmpty());
        return 0;
    }
    FUZZ_ASSERT(!engine->machine.isEmpty() && engine->added);
    FUZZ_ASSERT(engine->address.startsWith(QStringLiteral("http://"))
        || engine->address.startsWith(QStringLiteral("https://")));
    FUZZ_ASSERT(engine->address.contains(QStringLiteral("%s")));
    return 0;
}
