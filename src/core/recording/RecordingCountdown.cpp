#include "core/recording/RecordingCountdown.h"

#include "core/async/LoadGuard.h"
#include "core/async/StartTask.h"

using namespace std::chrono_literals;

RecordingCountdown::RecordingCountdown(int seconds, Sleeper sleeper, QObject* parent)
    : QObject(parent)
    , m_seconds(seconds)
    , m_remaining(seconds)
    , m_sleeper(std::move(sleeper)) {}

void RecordingCountdown::start(std::function<void()> onComplete) {
    startTask(this, tick(std::move(onComplete)));
}

QCoro::Task<> RecordingCountdown::tick(std::function<void()> onComplete) {
    const LoadGuard guard(this);
    while (m_remaining > 0) {
        QCoro::Task<bool> waiting = awaitGuarded(guard, m_sleeper(1s));
        if (!co_await std::move(waiting)) {
            co_return;
        }
        --m_remaining;
        emit remainingChanged();
    }
    onComplete();
}
