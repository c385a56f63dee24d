// A command line handed over by a second start, of any text: the address to open is
// taken from the line without crash and holds nothing the line did not.
#include "core/base/commandline.h"
#include "scratchfolder.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString line = QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size));
    const int markers = CommandLine::markerSum(line);
    FUZZ_ASSERT(markers >= 0);
    const QString address = CommandLine::addressToOpen(line);
    FUZZ_ASSERT(address.size() <= line.size());
    const QString first = CommandLine::FirstArgument(line, markers);
    FUZZ_ASSERT(first.size() <= line.size());
    return 0;
}
