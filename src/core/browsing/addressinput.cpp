#include "core/browsing/addressinput.h"

#include <QRegularExpression>
#include <QUrl>

namespace AddressInput {

namespace {
const QString Placeholder = QStringLiteral("%s");

// A scheme is either followed by "//" or one of those that have no authority; anything
// else before a colon ("Hinweis: heute") is part of a query.
bool hasScheme(const QString &text)
{
    static const QRegularExpression withAuthority(QStringLiteral("^[A-Za-z][A-Za-z0-9+.-]*://\\S"));
    static const QRegularExpression withoutAuthority(
        QStringLiteral("^(about|blob|data|file|javascript|mailto|news|tel|view-source):\\S"),
        QRegularExpression::CaseInsensitiveOption);
    return withAuthority.match(text).hasMatch() || withoutAuthority.match(text).hasMatch();
}

// "intranet:8080", "localhost:3000/x", "[::1]:8080": a host and a port, no blanks.
bool hasPort(const QString &text)
{
    static const QRegularExpression hostPort(
        QStringLiteral("^([A-Za-z0-9.-]+|\\[[0-9A-Fa-f:.]+\\]):[0-9]{1,5}([/?#]\\S*)?$"));
    return hostPort.match(text).hasMatch();
}

QString hostPart(const QString &text)
{
    static const QRegularExpression end(QStringLiteral("[/?#]"));
    const qsizetype cut = text.indexOf(end);
    return cut < 0 ? text : text.left(cut);
}
} // namespace

bool isAddress(const QString &typed)
{
    const QString text = typed.trimmed();
    if (text.isEmpty() || hasScheme(text) || text.startsWith(u'/'))
        return true;
    if (text.contains(QRegularExpression(QStringLiteral("\\s"))))
        return false;
    if (hasPort(text) || text.startsWith(u'['))
        return true;
    const QString host = hostPart(text);
    if (host.compare(u"localhost", Qt::CaseInsensitive) == 0)
        return true;
    // "example.org", "www.example.org./x"; not ".profile" nor "...".
    return host.contains(u'.') && !host.startsWith(u'.') && host.count(u'.') < host.size();
}

QString searchUrl(const QString &engine, const QString &query)
{
    const QString encoded = QString::fromLatin1(QUrl::toPercentEncoding(query.trimmed()));
    if (!engine.contains(Placeholder))
        return engine + encoded;
    QString url = engine;
    url.replace(Placeholder, encoded);
    return url;
}

QString searchStartPage(const QString &engine)
{
    QString page = engine;
    page.remove(Placeholder);
    return page;
}

QString resolve(const QString &typed, const QString &engine)
{
    const QString text = typed.trimmed();
    if (isAddress(text) || engine.trimmed().isEmpty())
        return text;
    return searchUrl(engine.trimmed(), text);
}

} // namespace AddressInput
