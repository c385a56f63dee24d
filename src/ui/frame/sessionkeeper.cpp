#include "ui/frame/sessionkeeper.h"

#include "core/base/uitexts.h"
#include "ui/browser/frmbrowser.h"
#include "ui/browser/infobar.h"
#include "ui/frame/mdiform1.h"
#include "ui/frame/windowsets.h"

#include <QEvent>
#include <QMdiSubWindow>
#include <QTimer>

SessionKeeper::SessionKeeper(MDIForm1 &frame, const QString &path)
    : QObject(&frame)
    , m_frame(frame)
    , m_file(path)
    , m_delay(new QTimer(this))
{
    m_delay->setSingleShot(true);
    m_delay->setInterval(WriteDelayMs);
    connect(m_delay, &QTimer::timeout, this, &SessionKeeper::write);
    connect(&m_frame, &MDIForm1::windowsChanged, this, [this] {
        watchNewWindows();
        changed();
    });
}

int SessionKeeper::offerRestore()
{
    const Layout::ReadResult read = m_file.leftBehind();
    if (!read.outcome.message().isEmpty())
        m_frame.setStatusText(read.outcome.message());
    // A file that could not be read is neither offered nor written over.
    if (!read.outcome.ok())
        return 0;
    if (read.outcome.wasMovedAside() || read.windows.isEmpty()) {
        start();
        return 0;
    }
    const int count = int(read.windows.size());
    m_asking = true;
    m_frame.infoBar()->offer(count == 1 ? uiText(2501) : uiText(2500).arg(count), uiText(2502),
        uiText(2503), [this, windows = read.windows](int choice) {
            m_asking = false;
            // Added to the windows open now, never in their place.
            if (choice == 1) {
                for (const WindowDescription &window : windows)
                    WindowSets::OpenLayoutItem(m_frame, window);
            }
            m_file.discard();
            start();
        });
    return count;
}

void SessionKeeper::finish()
{
    m_delay->stop();
    if (m_keeping)
        m_file.discard();
    m_keeping = false;
}

void SessionKeeper::start()
{
    m_keeping = true;
    watchNewWindows();
    changed();
}

void SessionKeeper::watchNewWindows()
{
    for (frmBrowser *window : m_frame.browsers()) {
        QWidget *sub = window->parentWidget();
        if (!sub || m_normal.contains(sub))
            continue;
        m_normal.insert(sub, sub->geometry());
        sub->installEventFilter(this);
        connect(sub, &QObject::destroyed, this, [this, sub] { m_normal.remove(sub); });
        connect(window, &frmBrowser::tabRefreshRequested, this, &SessionKeeper::changed);
        connect(window, &frmBrowser::barsChanged, this, &SessionKeeper::changed);
    }
}

bool SessionKeeper::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::Move:
    case QEvent::Resize:
        if (auto *sub = qobject_cast<QMdiSubWindow *>(watched);
            sub && WindowSets::windowStateOf(*sub) == 0)
            m_normal.insert(sub, sub->geometry());
        changed();
        break;
    case QEvent::WindowStateChange:
        changed();
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void SessionKeeper::changed()
{
    // Later changes ride along with the first: one write per delay at most.
    if (m_keeping && !m_delay->isActive())
        m_delay->start();
}

QList<WindowDescription> SessionKeeper::describeWindows() const
{
    QList<WindowDescription> windows;
    for (frmBrowser *window : m_frame.browsers()) {
        auto *sub = qobject_cast<QMdiSubWindow *>(window->parentWidget());
        if (!sub)
            continue;
        const qint16 state = WindowSets::windowStateOf(*sub);
        const QRect normal = state == 0 ? sub->geometry() : m_normal.value(sub, sub->geometry());
        windows.append(WindowSets::describeWindow(m_frame, *window, normal, state));
    }
    return windows;
}

void SessionKeeper::write()
{
    if (!m_keeping)
        return;
    QString problem;
    m_file.store(describeWindows(), &problem);
    // A failing disk is told once, not every few seconds.
    if (!problem.isEmpty() && problem != m_lastProblem)
        m_frame.setStatusText(
            FileOutcome::failed(m_file.path(), FileOutcome::Problem::CannotWrite, problem)
                .message());
    m_lastProblem = problem;
}
