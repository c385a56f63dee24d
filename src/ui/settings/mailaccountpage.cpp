#include "ui/settings/mailaccountpage.h"

#include "core/base/uitexts.h"
#include "core/mail/mailboxcheck.h"
#include "ui/desktop/mailwatcher.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include <memory>

MailAccountPage::MailAccountPage(int account, QWidget *parent)
    : QWidget(parent)
{
    const QString n = QString::number(account);
    setObjectName(QStringLiteral("mailAccount") + n);
    auto *form = new QFormLayout(this);
    m_server = new QLineEdit(this);
    m_server->setObjectName(QStringLiteral("MailSrv") + n);
    m_server->setPlaceholderText(QStringLiteral("pop3s://mail.example.org"));
    form->addRow(uiText(733), m_server);
    // The dialog shows here what the server form means for the password.
    auto *note = new QLabel(this);
    note->setObjectName(m_server->objectName() + QStringLiteral("Note"));
    note->setWordWrap(true);
    form->addRow(QString(), note);
    m_user = new QLineEdit(this);
    m_user->setObjectName(QStringLiteral("User") + n);
    form->addRow(uiText(734), m_user);
    m_password = new QLineEdit(this);
    m_password->setObjectName(QStringLiteral("Pwd") + n);
    m_password->setEchoMode(QLineEdit::Password);
    form->addRow(uiText(735), m_password);
    auto *enabled = new QCheckBox(uiText(736), this);
    enabled->setObjectName(QStringLiteral("EnableMailCheck") + n);
    form->addRow(QString(), enabled);

    auto *testRow = new QHBoxLayout;
    m_test = new QPushButton(uiText(2340), this);
    m_test->setObjectName(QStringLiteral("testNow") + n);
    m_outcome = new QLabel(this);
    m_outcome->setObjectName(QStringLiteral("testOutcome") + n);
    m_outcome->setWordWrap(true);
    testRow->addWidget(m_test);
    testRow->addWidget(m_outcome, 1);
    form->addRow(QString(), testRow);
    connect(m_test, &QPushButton::clicked, this, &MailAccountPage::testNow);
}

MailAccountPage::~MailAccountPage() = default;

QString MailAccountPage::testOutcome() const
{
    return m_outcome->text();
}

void MailAccountPage::testNow()
{
    if (m_check)
        return;
    MailAccount account;
    account.server = m_server->text().trimmed();
    account.user = m_user->text().trimmed();
    account.password = m_password->text().trimmed();
    account.enabled = true;
    m_check = new MailboxCheck(account, this);
    m_check->setTimeout(m_timeoutMs);
    auto newMail = std::make_shared<bool>(false);
    connect(m_check, &MailboxCheck::newMail, this, [newMail] { *newMail = true; });
    connect(m_check, &MailboxCheck::finished, this, [this, newMail] { showOutcome(*newMail); });
    m_test->setEnabled(false);
    m_outcome->setText(uiText(2341));
    m_check->start();
}

void MailAccountPage::showOutcome(bool newMail)
{
    MailboxCheck *check = m_check.data();
    m_check.clear();
    check->deleteLater();
    m_test->setEnabled(true);
    const QString server = m_server->text().trimmed();
    QString text;
    switch (check->failure()) {
    case MailboxCheck::Failure::None:
        text = uiText(!check->loggedIn() ? 2344 : newMail ? 2342 : 2343);
        break;
    case MailboxCheck::Failure::TimedOut:
        text = uiText(2345);
        break;
    default:
        // The same words the mail check uses in the status bar.
        text = MailWatcher::failureText(server, check->failure(), check->failureDetail());
        break;
    }
    if (check->loggedIn() && check->wasEncrypted())
        text += u' ' + uiText(2349);
    m_outcome->setText(text);
}
