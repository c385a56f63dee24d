// Preferences read from any bytes: a record that loads is written back and loads
// again to the same record, so saving never produces a file that loading refuses.
#include "core/prefs/prefer.h"
#include "scratchfolder.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const ScratchFolder folder;
    const QString path = folder.write(QStringLiteral("Pref.vtp"),
        QByteArray(reinterpret_cast<const char *>(data), qsizetype(size)));
    Prefer first;
    if (first.LoadPref(path) != Prefer::LoadResult::Loaded)
        return 0;
    const QByteArray record = first.toRecord();
    FUZZ_ASSERT(record.size() == Prefer::RecordLength);
    FUZZ_ASSERT(first.SavePref(path));
    Prefer second;
    FUZZ_ASSERT(second.LoadPref(path) == Prefer::LoadResult::Loaded);
    if (second.toRecord() != record) {
        for (const Prefer::Field &field : Prefer::fields()) {
            if (first.valueText(field) != second.valueText(field))
                fprintf(stderr, "%s: [%s] became [%s]\n", field.name,
                    qPrintable(first.valueText(field)), qPrintable(second.valueText(field)));
        }
        FUZZ_ASSERT(!"a saved record reads back as it was saved");
    }
    return 0;
}
