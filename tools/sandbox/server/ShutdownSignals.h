#pragma once

#include <functional>
#include <thread>

// Turns SIGINT and SIGTERM into a call of `onSignal` on a thread of its own, where it may do what
// a signal handler may not. Must be made before any other thread, which then inherits the blocked
// signals.
class ShutdownSignals {
public:
    explicit ShutdownSignals(std::function<void()> onSignal);
    ~ShutdownSignals();
    ShutdownSignals(const ShutdownSignals&) = delete;
    ShutdownSignals& operator=(const ShutdownSignals&) = delete;

private:
    std::thread m_waiter;
};
