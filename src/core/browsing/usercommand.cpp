#include "core/browsing/usercommand.h"

#include <QElapsedTimer>

namespace {
qint64 markedAt = 0;
} // namespace

namespace UserCommand {

qint64 now()
{
    static QElapsedTimer clock = [] {
        QElapsedTimer started;
        started.start();
        return started;
    }();
    // Never 0, so that a mark set at the clock's start is told from none.
    return clock.elapsed() + 1;
}

void mark(qint64 atMs)
{
    UserCommandPending = -1;
    markedAt = atMs;
}

bool pending(qint64 atMs)
{
    if (UserCommandPending && (atMs < markedAt || atMs - markedAt >= LifetimeMs))
        clear();
    return UserCommandPending != 0;
}

void clear()
{
    UserCommandPending = 0;
    markedAt = 0;
}

void navigationDone()
{
    clear();
}

} // namespace UserCommand
