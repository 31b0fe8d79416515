#include "core/async/Sleeper.h"

#include <QCoroTimer>

namespace {
QCoro::Task<> sleepOnTimer(std::chrono::milliseconds duration) {
    co_await QCoro::sleepFor(duration);
}
} // namespace

Sleeper Sleepers::real() {
    return sleepOnTimer;
}
