#include "core/mail/mailserveraddress.h"

#include <QUrl>

MailServerAddress MailServerAddress::parse(const QString &text)
{
    QString authority = text.trimmed();
    MailServerAddress address;
    quint16 defaultPort = 110;
    const qsizetype schemeEnd = authority.indexOf(QStringLiteral("://"));
    if (schemeEnd >= 0) {
        const QString scheme = authority.left(schemeEnd).toLower();
        if (scheme == QStringLiteral("pop3s")) {
            address.security = Security::Tls;
            defaultPort = 995;
        } else if (scheme == QStringLiteral("pop3")) {
            address.security = Security::Plain;
        } else {
            return {};
        }
        authority = authority.mid(schemeEnd + 3);
        // A trailing slash is what people type after a host; anything more is not a server.
        if (authority.endsWith(u'/'))
            authority.chop(1);
    }
    // A bare IPv6 address has several colons and no brackets: it is all host.
    if (authority.count(u':') > 1 && !authority.startsWith(u'['))
        authority = u'[' + authority + u']';
    if (authority.isEmpty() || authority.contains(u'/') || authority.contains(u'@')
        || authority.contains(u'?') || authority.contains(u'#'))
        return {};
    const QUrl url(QStringLiteral("pop3://") + authority, QUrl::StrictMode);
    if (!url.isValid() || url.host().isEmpty())
        return {};
    const int port = url.port(defaultPort);
    if (port <= 0 || port > 65535)
        return {};
    address.host = url.host();
    address.port = quint16(port);
    return address;
}
