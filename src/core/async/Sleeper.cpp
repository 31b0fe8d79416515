#include "core/async/Sleeper.h"

#include <QCoroTimer>
#include <QTimer>

namespace {
QCoro::Task<> sleepOnTimer(std::chrono::milliseconds duration) {
    QTimer timer;
    // To the millisecond: a coarse timer may end a twentieth of its wait early or late, which a
    // countdown of seconds would show.
    timer.setTimerType(Qt::PreciseTimer);
    timer.setSingleShot(true);
    timer.setInterval(duration);
    timer.start();
    co_await qCoro(timer).waitForTimeout();
}
} // namespace

Sleeper Sleepers::real() {
    return sleepOnTimer;
}
