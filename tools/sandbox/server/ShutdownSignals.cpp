#include "sandbox/server/ShutdownSignals.h"

#include <pthread.h>

#include <csignal>

namespace {
// Sent by the destructor to end the wait when no shutdown signal came.
constexpr int wakeUp = SIGUSR1;

sigset_t shutdownSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, wakeUp);
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
        if (received != wakeUp) {
            onSignal();
        }
    });
}

ShutdownSignals::~ShutdownSignals() {
    // Wakes the waiter when the server ended without a signal; after a signal it has ended already.
    pthread_kill(m_waiter.native_handle(), wakeUp);
    m_waiter.join();
}
