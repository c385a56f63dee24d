#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QObject>

#include <chrono>

class QTimer;

// A window's auto-refresh: its timer (timRefresh), what the last reload gave, and
// whether the page's text changed. The window reloads when `due` is emitted and
// reports back through reloaded(); the next interval counts from then.
class AutoRefresh final : public QObject
{
    Q_OBJECT

public:
    explicit AutoRefresh(QObject *parent = nullptr);

    // Any interval above zero starts it (the dialog keeps to RefreshInterval's bounds;
    // tests use shorter ones); zero ends it.
    void start(std::chrono::milliseconds interval);
    void stop();
    bool isActive() const { return m_interval.count() > 0; }
    std::chrono::milliseconds interval() const { return m_interval; }
    QTimer *timer() const { return m_timer; }

    void setMarkChanges(bool on) { m_markChanges = on; }
    bool marksChanges() const { return m_markChanges; }

    // Whether the page is being reloaded by this refresh (not by the user).
    bool reloading() const { return m_reloading; }
    // The page was busy when the interval had passed: the next try is one interval on.
    void postpone();
    // A reload ended; a failed one is tried again after the interval.
    void reloaded(bool ok);
    bool lastFailed() const { return m_failedAt.isValid(); }
    QDateTime failedAt() const { return m_failedAt; }
    int attempts() const { return m_attempts; }
    int failures() const { return m_failures; }

    // Takes the text of the loaded page; tells whether it differs from the text of the
    // load before (the first text only sets what is compared with).
    bool textChanged(const QString &text);
    QDateTime changedAt() const { return m_changedAt; }
    void clearChange() { m_changedAt = QDateTime(); }

signals:
    void due();

private:
    void fire();

    QTimer *m_timer;
    std::chrono::milliseconds m_interval {0};
    bool m_markChanges = false;
    bool m_reloading = false;
    bool m_hasText = false;
    QByteArray m_textHash;
    QDateTime m_failedAt;
    QDateTime m_changedAt;
    int m_attempts = 0;
    int m_failures = 0;
};
