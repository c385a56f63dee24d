// A layout's window file read from any bytes: each record becomes a window, and the
// windows written back read again to the same windows and the same bytes.
#include "core/model/layoutitem.h"
#include "scratchfolder.h"

namespace {
LayoutItem loaded(const ScratchFolder &folder)
{
    LayoutItem item(folder.path());
    item.Sequenz = 1;
    item.FileName = LayoutItem::fileNameFor(1);
    FUZZ_ASSERT(item.LoadAllFensterInfos().ok());
    return item;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const ScratchFolder folder;
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    folder.write(QStringLiteral("WL1.nlt"), bytes);
    LayoutItem first = loaded(folder);
    const qsizetype records = bytes.size() % LayoutItem::RecordLength == 0
        ? bytes.size() / LayoutItem::RecordLength
        : 0;
    FUZZ_ASSERT(first.colFensterInfo.size() == records);
    FUZZ_ASSERT(first.SaveAllFensterInfos().ok());
    const QByteArray once = folder.read(QStringLiteral("WL1.nlt"));
    LayoutItem second = loaded(folder);
    FUZZ_ASSERT(second.colFensterInfo.size() == records);
    for (qsizetype i = 0; i < records; ++i) {
        const FensterInfo &a = first.colFensterInfo.at(i), &b = second.colFensterInfo.at(i);
        FUZZ_ASSERT(a.x == b.x && a.y == b.y && a.Breite == b.Breite && a.Hoehe == b.Hoehe);
        FUZZ_ASSERT(a.WindowState == b.WindowState && a.ToolbarVisible == b.ToolbarVisible
            && a.AdressbarVisible == b.AdressbarVisible);
    }
    FUZZ_ASSERT(second.SaveAllFensterInfos().ok());
    FUZZ_ASSERT(folder.read(QStringLiteral("WL1.nlt")) == once);
    return 0;
}
