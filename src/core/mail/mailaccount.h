#pragma once

#include <QString>

// One mailbox the mail check watches, as the preferences describe it.
struct MailAccount
{
    QString server; // "host", "host:port", "pop3://host[:port]" or "pop3s://host[:port]"
    QString user;
    QString password;
    bool enabled = false;
};
