#pragma once

#include "core/mail/mailboxcheck.h"

#include <QObject>
#include <QString>

class MailChecker;
class QSoundEffect;

// The mail check as the user meets it: progress and problems in the status text, the
// "email" notice with the server's name when a mailbox holds mail, a chime and a
// desktop notification when the notice appears. The notice stays until the user starts
// the mail program; while it shows, later announcements are silent.
class MailWatcher final : public QObject
{
    Q_OBJECT

public:
    explicit MailWatcher(QObject *parent = nullptr);
    ~MailWatcher() override;

    MailChecker *checker() const { return m_checker; }
    bool isNoticeShown() const { return m_noticeShown; }

    // Watches when any mailbox is enabled in the preferences.
    void start();
    // The user has started the mail program: the notice goes.
    void mailProgramStarted();

    // The words for a failed mailbox, or nothing when the user is not told.
    static QString failureText(
        const QString &server, MailboxCheck::Failure failure, const QString &detail);

Q_SIGNALS:
    void statusText(const QString &text);
    void mailNotice(bool visible, const QString &toolTip);
    // Each announcement; `chime` says whether it was heard (the notice was hidden).
    void announced(const QString &server, bool chime);

private:
    void announce(const QString &server);
    void playChime();

    MailChecker *m_checker;
    QSoundEffect *m_chime = nullptr;
    QString m_pollProblem;
    bool m_noticeShown = false;
};
