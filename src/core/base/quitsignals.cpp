#include "core/base/quitsignals.h"

#include <QSocketNotifier>

#include <csignal>
#include <sys/socket.h>
#include <unistd.h>

namespace {
int signalPipe[2] = {-1, -1};

void onSignal(int)
{
    const char byte = 1;
    // Only write() is safe inside a signal handler.
    [[maybe_unused]] const ssize_t written = ::write(signalPipe[0], &byte, 1);
}
} // namespace

QuitSignals::QuitSignals(QObject *parent)
    : QObject(parent)
{
    if (::socketpair(AF_UNIX, SOCK_STREAM, 0, signalPipe) != 0)
        return;
    m_notifier = new QSocketNotifier(signalPipe[1], QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, [this] {
        char byte;
        [[maybe_unused]] const ssize_t got = ::read(signalPipe[1], &byte, 1);
        emit quitRequested();
    });
    struct sigaction action = {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    sigaction(SIGTERM, &action, nullptr);
    sigaction(SIGINT, &action, nullptr);
}
