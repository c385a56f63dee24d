#include "core/records/archivefiles.h"

#include "core/records/recordcodec.h"

#include <QFileInfo>

#include <cmath>
#include <cstring>
#include <limits>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace ArchiveFiles {

bool isOwnFileName(const QString &fileName, FileKind kind)
{
    const QStringView prefix = kind == FileKind::Folder ? QStringView() : QStringView(u"WL");
    const QStringView suffix
        = kind == FileKind::Folder ? QStringView(u".bkm") : QStringView(u".nlt");
    const QStringView name(fileName);
    // Ten digits hold every 32-bit sequence number.
    const qsizetype digits = name.size() - prefix.size() - suffix.size();
    if (digits < 1 || digits > 10 || !name.startsWith(prefix) || !name.endsWith(suffix))
        return false;
    for (const QChar c : name.mid(prefix.size(), digits)) {
        if (c < u'0' || c > u'9')
            return false;
    }
    return true;
}

QString ownFilePath(const QString &folder, const QString &fileName, FileKind kind)
{
    if (!isOwnFileName(fileName, kind))
        return {};
    const QString path = folder + u'/' + fileName;
    // A link could lead anywhere; a folder file that is not there yet is made anew.
    const QFileInfo info(path);
    if (info.isSymLink() || (info.exists() && !info.isFile()))
        return {};
    return path;
}

QString recordText(QByteArrayView record, int offset, int width)
{
    if (record.size() < offset + width)
        return RecordReader(record.toByteArray(), offset + width)
            .text(offset, width, RecordCodec::Trim::Blanks);
    const char *field = record.constData() + offset;
    int used = width;
    // The padding is long (an address field is 2,083 bytes): skip it a block at a time.
#if defined(__SSE2__)
    const __m128i blank = _mm_set1_epi8(' ');
    while (used >= 64) {
        const auto *at = reinterpret_cast<const __m128i *>(field + used - 64);
        const __m128i same = _mm_and_si128(_mm_and_si128(_mm_cmpeq_epi8(_mm_loadu_si128(at), blank),
                                               _mm_cmpeq_epi8(_mm_loadu_si128(at + 1), blank)),
            _mm_and_si128(_mm_cmpeq_epi8(_mm_loadu_si128(at + 2), blank),
                _mm_cmpeq_epi8(_mm_loadu_si128(at + 3), blank)));
        if (_mm_movemask_epi8(same) != 0xFFFF)
            break;
        used -= 64;
    }
#endif
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
