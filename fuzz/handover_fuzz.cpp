// A hand-over from a second start, of any bytes in any pieces: the line is taken
// within its limit, and the address to open is taken from it without crash and holds
// nothing the line did not.
#include "core/base/commandline.h"
#include "core/base/singleinstance.h"
#include "scratchfolder.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    // Qt warns of every file name with a NUL in it that a line asks about; millions of
    // such lines would fill the disk with the warning.
    static const QtMessageHandler quiet
        = qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    Q_UNUSED(quiet);
    if (size < 1)
        return 0;
    // The first byte says how large the pieces are that arrive one after another.
    const qsizetype piece = 1 + data[0] * 97;
    const QByteArray bytes(reinterpret_cast<const char *>(data + 1), qsizetype(size - 1));
    QByteArray buffer;
    QString line;
    SingleInstance::LineState state = SingleInstance::LineState::Incomplete;
    for (qsizetype at = 0; at < bytes.size() && state == SingleInstance::LineState::Incomplete;
         at += piece) {
        buffer.append(bytes.mid(at, piece));
        state = SingleInstance::takeLine(buffer, &line);
        FUZZ_ASSERT(buffer.size() < SingleInstance::MaxMessageBytes + piece);
    }
    if (state != SingleInstance::LineState::Complete)
        return 0;
    FUZZ_ASSERT(buffer.isEmpty());
    FUZZ_ASSERT(!line.contains(u'\n') && line.size() < SingleInstance::MaxMessageBytes);
    const int markers = CommandLine::markerSum(line);
    FUZZ_ASSERT(markers >= 0);
    FUZZ_ASSERT(CommandLine::addressToOpen(line).size() <= line.size());
    FUZZ_ASSERT(CommandLine::FirstArgument(line, markers).size() <= line.size());
    return 0;
}
