#include "core/browsing/savename.h"

#include <QFileInfo>

namespace SaveName {

QString withSuffix(const QString &path, Kind kind)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    if (kind == Kind::Archive)
        return suffix == u"mhtml" || suffix == u"mht" ? path : path + QStringLiteral(".mhtml");
    return suffix == u"html" || suffix == u"htm" ? path : path + QStringLiteral(".html");
}

} // namespace SaveName
