#include "core/records/archivefiles.h"

#include <cmath>
#include <limits>

namespace ArchiveFiles {

QString pathInFolder(const QString &folder, const QString &fileName)
{
    if (fileName.isEmpty() || fileName.contains(u'/') || fileName.contains(u'\\')
        || fileName == u"." || fileName == u"..")
        return {};
    return folder + u'/' + fileName;
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
