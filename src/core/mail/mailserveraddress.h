#pragma once

#include <QString>

// Where a mailbox's server is and how the connection is protected. The preference
// holds one of:
//   host, host:port         POP3 (port 110); STLS is used when the server offers it
//   pop3://host[:port]      POP3 in clear, STLS is never tried (port 110)
//   pop3s://host[:port]     TLS from the first byte (port 995)
// IPv6 hosts are written in brackets when a port follows ("[::1]:110").
struct MailServerAddress
{
    enum class Security {
        Opportunistic, // STLS when offered, clear otherwise
        Plain, // clear text only
        Tls, // TLS from the first byte
    };

    QString host;
    quint16 port = 0;
    Security security = Security::Opportunistic;

    bool isValid() const { return port != 0 && !host.isEmpty(); }

    // An invalid (empty) address when `text` is not one of the forms above.
    static MailServerAddress parse(const QString &text);
};
