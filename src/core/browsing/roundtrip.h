#pragma once

#include <QList>
#include <QObject>
#include <QStringList>
#include <QTimer>

// The sequence of a roundtrip: a list of addresses shown one after another in one
// window. It asks the window to load each address (visit) and is told how the load went;
// a loaded page stays for the dwell time, a page that fails or does not load within the
// time-out is counted and skipped. One timer, timRoundtrip, serves both waits.
class Roundtrip final : public QObject
{
    Q_OBJECT

public:
    struct Timing
    {
        int dwellMs = 10'000;
        int loadTimeoutMs = 30'000;
    };
    enum class Step { Waiting, Loading, Dwelling, Finished };

    // The addresses a roundtrip over a page's anchors visits, in page order: each anchor
    // given as {resolved address, href as written, address of its document}; no script,
    // mail or same-document links, only pages (http, https, file), each once.
    static QStringList addressesOf(const QList<QStringList> &anchors);
    // The page addresses (http, https, file) of a list, in its order.
    static QStringList pagesOf(const QStringList &addresses);

    Roundtrip(const QStringList &addresses, Timing timing, QObject *parent = nullptr);

    void start();
    // What the window tells of the page's loads.
    void loadStarted();
    void loadFinished(bool ok);
    void downloadRefused();
    // The user's commands.
    void pause();
    void resume();
    void next();
    void stop();

    Step step() const { return m_step; }
    bool isRunning() const { return m_step == Step::Loading || m_step == Step::Dwelling; }
    bool isPaused() const { return m_paused; }
    bool wasStopped() const { return m_stopped; }
    // From 1; 0 before the start.
    int position() const { return m_index + 1; }
    int count() const { return int(m_addresses.size()); }
    QString current() const { return m_addresses.value(m_index); }
    int visited() const { return m_visited; }
    int failed() const { return m_failed; }
    const Timing &timing() const { return m_timing; }

signals:
    // The window should load this address now.
    void visit(const QString &address);
    // Position or pause state changed.
    void changed();
    void finished();

private:
    void advance();
    void fail();
    void wait();
    void timeUp();
    void finish();

    QStringList m_addresses;
    Timing m_timing;
    QTimer m_timer;
    Step m_step = Step::Waiting;
    int m_index = -1;
    int m_visited = 0;
    int m_failed = 0;
    bool m_paused = false;
    bool m_stopped = false;
    // The current address's own load has started; ends of earlier loads are not its own.
    bool m_loadStarted = false;
    // The current address failed while paused: resume goes on at once.
    bool m_failedHere = false;
};
