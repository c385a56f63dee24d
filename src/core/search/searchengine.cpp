#include "core/search/searchengine.h"

#include <QUrl>

QString SearchEngine::addressFor(const QString &term) const
{
    // Percent-encoded bytes never read "%s" ('s' is no hex digit), so only the
    // placeholder is replaced.
    QString result = address;
    return result.replace(
        QStringLiteral("%s"), QString::fromLatin1(QUrl::toPercentEncoding(term.trimmed())));
}
