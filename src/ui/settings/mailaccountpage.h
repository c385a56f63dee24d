#pragma once

#include "core/mail/mailboxcheck.h"

#include <QPointer>
#include <QWidget>

class QLabel;
class QLineEdit;
class QPushButton;

// One mailbox in the settings: server, user name, password, whether it is checked, and
// a button that checks it once with what is typed now and says how that went. Its
// editors are named like the preferences they edit ("MailSrv2", "User2", ...).
class MailAccountPage final : public QWidget
{
    Q_OBJECT

public:
    MailAccountPage(int account, QWidget *parent = nullptr);
    ~MailAccountPage() override;

    QLineEdit *server() const { return m_server; }
    // The outcome of the last "test now", for the user to read.
    QString testOutcome() const;
    bool isTesting() const { return m_check; }

    // Time-out of one test, shorter in tests.
    void setTestTimeout(int milliseconds) { m_timeoutMs = milliseconds; }

private:
    void testNow();
    void showOutcome(bool newMail);

    QLineEdit *m_server = nullptr;
    QLineEdit *m_user = nullptr;
    QLineEdit *m_password = nullptr;
    QPushButton *m_test = nullptr;
    QLabel *m_outcome = nullptr;
    QPointer<MailboxCheck> m_check;
    int m_timeoutMs = 15000;
};
