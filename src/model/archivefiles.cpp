#include "archivefiles.h"

#include "platform/recordcodec.h"

#include <cmath>
#include <cstring>
#include <limits>

namespace ArchiveFiles {

QString pathInFolder(const QString &folder, const QString &fileName)
{
    if (fileName.isEmpty() || fileName.contains(u'/') || fileName.contains(u'\\')
        || fileName == u"." || fileName == u"..")
        return {};
    return folder + u'/' + fileName;
}

QString recordText(QByteArrayView record, int offset, int width)
{
    if (record.size() < offset + width)
        return RecordReader(record.toByteArray(), offset + width)
            .text(offset, width, RecordCodec::Trim::Blanks);
    const char *field = record.constData() + offset;
    int used = width;
    // The padding is long (an address field is 2,083 bytes): skip it a block at a time.
    static const QByteArray block(64, ' ');
    while (used >= 64 && std::memcmp(field + used - 64, block.constData(), 64) == 0)
        used -= 64;
    constexpr quint64 blanks = 0x2020202020202020ULL;
    while (used >= 8) {
        quint64 word;
        std::memcpy(&word, field + used - 8, sizeof word);
        if (word != blanks)
            break;
        used -= 8;
    }
    while (used > 0 && field[used - 1] == ' ')
        --used;
    // NUL bytes before the blanks are the codec's business: it sees the whole field.
    if (used > 0 && field[used - 1] == '\0')
        used = width;
    return RecordCodec::decodeText(QByteArrayView(field, used), RecordCodec::Trim::Blanks);
}

qint16 roundTwips(double value)
{
    if (std::isnan(value))
        return 0;
    double rounded = std::floor(value);
    const double fraction = value - rounded;
    if (fraction > 0.5 || (fraction == 0.5 && std::fmod(rounded, 2.0) != 0.0))
        rounded += 1.0;
    if (rounded <= std::numeric_limits<qint16>::min())
        return std::numeric_limits<qint16>::min();
    if (rounded >= std::numeric_limits<qint16>::max())
        return std::numeric_limits<qint16>::max();
    return qint16(rounded);
}

} // namespace ArchiveFiles
