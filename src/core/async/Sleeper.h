#pragma once

#include <QCoroTask>
#include <chrono>
#include <functional>

// How a coroutine waits a while. Code that waits takes a Sleeper, so tests can record the waits and
// go on at once.
using Sleeper = std::function<QCoro::Task<>(std::chrono::milliseconds)>;

namespace Sleepers {
// Waits on the event loop with a timer.
Sleeper real();
} // namespace Sleepers
