// A feed of any bytes: it is read or refused without crash, and the page made of it
// runs no script but the page's own toggle.
#include "core/feeds/feedpage.h"
#include "core/feeds/feedparser.h"
#include "scratchfolder.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    const FeedParseResult result = FeedParser::parse(bytes);
    const QString page = FeedPage::forResult(
        result, QStringLiteral("https://feed.example/rss"), FeedPage::defaultLinkText());
    // The only script is the page's own, once, in its head; items bring none.
    FUZZ_ASSERT(page.count(QStringLiteral("<script"), Qt::CaseInsensitive) <= 1);
    const qsizetype bodyAt = page.indexOf(QStringLiteral("<body"), 0, Qt::CaseInsensitive);
    FUZZ_ASSERT(bodyAt >= 0);
    FUZZ_ASSERT(!page.mid(bodyAt).contains(QStringLiteral("<script"), Qt::CaseInsensitive));
    return 0;
}
