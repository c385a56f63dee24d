#include "ui/desktop/mailwatcher.h"

#include "core/base/appinfo.h"
#include "core/base/uitexts.h"
#include "core/mail/mailchecker.h"
#include "core/prefs/prefer.h"
#include "ui/desktop/desktopnotification.h"

#include <QAudioDevice>
#include <QFileInfo>
#include <QMediaDevices>
#include <QSoundEffect>
#include <QUrl>

static void initSoundResources()
{
    Q_INIT_RESOURCE(sounds);
}

namespace {
// Qt's sound output on Linux speaks to a PulseAudio (or PipeWire) server; where none
// runs, asking it for devices only produces a warning.
bool soundServerRuns()
{
    if (!qEnvironmentVariableIsEmpty("PULSE_SERVER"))
        return true;
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return (!runtime.isEmpty() && QFileInfo::exists(runtime + QStringLiteral("/pulse/native")))
        || QFileInfo::exists(QStringLiteral("/run/pulse/native"));
}
} // namespace

MailWatcher::MailWatcher(QObject *parent)
    : QObject(parent)
    , m_checker(new MailChecker(this))
{
    initSoundResources();
    connect(m_checker, &MailChecker::mailboxStarted, this,
        [this](const QString &server) { emit statusText(server + u' ' + uiText(1131)); });
    connect(m_checker, &MailChecker::newMail, this, &MailWatcher::announce);
    connect(m_checker, &MailChecker::mailboxFailed, this,
        [this](const QString &server, MailboxCheck::Failure failure, const QString &detail) {
            const QString text = failureText(server, failure, detail);
            if (!text.isEmpty())
                m_pollProblem = text;
        });
    // The progress text goes when the mailbox is done; a problem stays for the user.
    connect(m_checker, &MailChecker::mailboxEnded, this,
        [this](const QString &) { emit statusText(m_pollProblem); });
    connect(m_checker, &MailChecker::pollFinished, this, [this] { m_pollProblem.clear(); });
}

MailWatcher::~MailWatcher() = default;

void MailWatcher::start()
{
    m_checker->InitForPOP3(MailChecker::anyEnabled(prefer()), prefer());
}

void MailWatcher::mailProgramStarted()
{
    if (!m_noticeShown)
        return;
    m_noticeShown = false;
    emit mailNotice(false, QString());
}

QString MailWatcher::failureText(
    const QString &server, MailboxCheck::Failure failure, const QString &detail)
{
    using Failure = MailboxCheck::Failure;
    QString reason;
    switch (failure) {
    case Failure::None:
    case Failure::TimedOut:
        return QString();
    case Failure::SocketError:
        reason = uiText(2110).arg(server, detail);
        break;
    case Failure::Certificate:
        reason = uiText(2111).arg(server, detail);
        break;
    case Failure::LineTooLong:
        reason = uiText(2112).arg(server);
        break;
    case Failure::TooMuchData:
        reason = uiText(2113).arg(server);
        break;
    case Failure::StartTlsRefused:
        reason = uiText(2114).arg(server);
        break;
    case Failure::BadAddress:
        reason = uiText(2115).arg(server);
        break;
    case Failure::BadAccount:
        reason = uiText(2116).arg(server);
        break;
    }
    return uiText(1132) + u' ' + reason;
}

void MailWatcher::announce(const QString &server)
{
    const bool chime = !m_noticeShown;
    const QString toolTip = uiText(1130) + QStringLiteral(" (") + server + u')';
    if (chime) {
        playChime();
        DesktopNotification::show(uiText(1130), server, QStringLiteral("mail-unread"));
    }
    m_noticeShown = true;
    emit mailNotice(true, toolTip);
    emit announced(server, chime);
}

void MailWatcher::playChime()
{
    // A machine without sound output plays nothing and says nothing about it.
    static const bool canPlay = soundServerRuns() && !QMediaDevices::audioOutputs().isEmpty();
    if (!canPlay)
        return;
    if (!m_chime) {
        m_chime = new QSoundEffect(this);
        // An installed chime may be replaced by the system's owner; the built-in one
        // serves when there is none.
        const QString installed = AppInfo::sharedFile(QStringLiteral("notify.wav"));
        m_chime->setSource(QFileInfo::exists(installed)
                ? QUrl::fromLocalFile(installed)
                : QUrl(QStringLiteral("qrc:/sounds/notify.wav")));
    }
    m_chime->play();
}
