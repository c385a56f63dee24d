// A layout export file read from any bytes: each record becomes a window, and the
// windows written back read again to the same windows and the same bytes.
#include "core/model/layout.h"
#include "scratchfolder.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const ScratchFolder folder;
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    const QString path = folder.write(QStringLiteral("Windows.wlt"), bytes);
    const Layout::ReadResult first = Layout::LoadLayout(path);
    const qsizetype records
        = bytes.size() % Layout::RecordLength == 0 ? bytes.size() / Layout::RecordLength : 0;
    FUZZ_ASSERT(first.windows.size() == records);
    if (records == 0)
        return 0;
    FUZZ_ASSERT(Layout::SaveLayout(path, first.windows).ok());
    const QByteArray once = folder.read(QStringLiteral("Windows.wlt"));
    const Layout::ReadResult second = Layout::LoadLayout(path);
    FUZZ_ASSERT(second.windows.size() == records);
    for (qsizetype i = 0; i < records; ++i) {
        const WindowDescription &a = first.windows.at(i), &b = second.windows.at(i);
        FUZZ_ASSERT(a.left == b.left && a.top == b.top && a.width == b.width && a.height == b.height
            && a.windowState == b.windowState && a.addressBarVisible == b.addressBarVisible
            && a.toolbarVisible == b.toolbarVisible);
    }
    FUZZ_ASSERT(Layout::SaveLayout(path, second.windows).ok());
    FUZZ_ASSERT(folder.read(QStringLiteral("Windows.wlt")) == once);
    return 0;
}
