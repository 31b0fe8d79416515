#pragma once

#include "core/api/AuthProvider.h"
#include "core/api/NVError.h"
#include "core/async/Clock.h"
#include "core/async/OneShot.h"
#include "core/async/Sleeper.h"
#include "support/RunTask.h"

#include <QCoroTask>
#include <QList>
#include <chrono>
#include <memory>
#include <optional>
#include <utility>

// What tests of NorvaneClient share: the failure a request ends with, a sleeper that records its
// waits and returns at once, one that holds them, a fixed clock, and a provider without a token.
namespace ClientTesting {

namespace detail {
inline QCoro::Task<> finished() {
    co_return;
}
} // namespace detail

// The NVError the task ends with; absent when it succeeds or fails otherwise.
template <typename T> std::optional<NVError> failureOf(QCoro::Task<T> task) {
    try {
        runTask(std::move(task));
    } catch (const NVError& error) {
        return error;
    } catch (...) {
    }
    return std::nullopt;
}

// Records every wait asked of it and goes on at once.
class RecordingSleeper {
public:
    Sleeper sleeper() const {
        return [waits = m_waits](std::chrono::milliseconds duration) {
            waits->append(duration);
            return detail::finished();
        };
    }
    const QList<std::chrono::milliseconds>& waits() const { return *m_waits; }

private:
    std::shared_ptr<QList<std::chrono::milliseconds>> m_waits = std::make_shared<QList<std::chrono::milliseconds>>();
};

// Holds every wait asked of it until release(): a back-off that lasts as long as the test wants.
class HeldSleeper {
public:
    Sleeper sleeper() const {
        return [state = m_state](std::chrono::milliseconds) { return wait(state); };
    }
    // The waits held now.
    qsizetype held() const { return m_state->waiting.size(); }
    // Ends every wait held now; the tasks that waited go on inside this call until they next wait.
    void release() {
        const QList<OneShot<bool>> waiting = std::exchange(m_state->waiting, {});
        for (const OneShot<bool>& wait : waiting) {
            wait.fulfil(true);
        }
    }

private:
    struct State {
        QList<OneShot<bool>> waiting;
    };
    static QCoro::Task<> wait(std::shared_ptr<State> state) {
        const OneShot<bool> released;
        state->waiting.append(released);
        co_await released;
    }

    std::shared_ptr<State> m_state = std::make_shared<State>();
};

inline Clock fixedClock(QDateTime now) {
    return [now] { return now; };
}

class NoTokenAuth : public AuthProvider {
public:
    std::optional<QString> authorizationValue() const override { return std::nullopt; }
};

} // namespace ClientTesting
