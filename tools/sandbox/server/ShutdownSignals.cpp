#include "server/ShutdownSignals.h"

#include <pthread.h>
#include <signal.h>

namespace {
sigset_t shutdownSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    return signals;
}
} // namespace

ShutdownSignals::ShutdownSignals(std::function<void()> onSignal) {
    const sigset_t signals = shutdownSignals();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    // A client that goes away mid-answer must not end the process.
    signal(SIGPIPE, SIG_IGN);
    m_waiter = std::thread([signals, onSignal = std::move(onSignal)] {
        int received = 0;
        sigwait(&signals, &received);
        onSignal();
    });
}

ShutdownSignals::~ShutdownSignals() {
    // Wakes the waiter when the server ended without a signal; a signal already taken is harmless.
    pthread_kill(m_waiter.native_handle(), SIGTERM);
    m_waiter.join();
}
