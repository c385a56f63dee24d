#include "core/records/archivefiles.h"

#include <QFileInfo>

#include <cmath>
#include <limits>

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
