#pragma once

#include "api/NVError.h"
#include "async/Clock.h"
#include "async/Sleeper.h"
#include "auth/AuthProvider.h"

#include <QCoroTask>
#include <QList>
#include <chrono>
#include <exception>
#include <memory>
#include <optional>

// What tests of NorvaneClient share: running a request to its end, a sleeper that records its waits
// and returns at once, a fixed clock, and a provider without a token.
namespace ClientTesting {

namespace detail {
// The references point into awaitTask's frame, which blocks until this coroutine has ended.
template <typename T> QCoro::Task<> capture(QCoro::Task<T> task, std::optional<T>& value, std::exception_ptr& failure) {
    try {
        value = co_await std::move(task);
    } catch (...) {
        failure = std::current_exception();
    }
}

inline QCoro::Task<> finished() {
    co_return;
}
} // namespace detail

// Runs the task in a nested event loop; its result, or its exception thrown again.
template <typename T> T awaitTask(QCoro::Task<T> task) {
    std::optional<T> value;
    std::exception_ptr failure;
    QCoro::waitFor(detail::capture(std::move(task), value, failure));
    if (failure) {
        std::rethrow_exception(failure);
    }
    return std::move(*value);
}

// The NVError the task ends with; absent when it succeeds or fails otherwise.
template <typename T> std::optional<NVError> failureOf(QCoro::Task<T> task) {
    try {
        awaitTask(std::move(task));
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

inline Clock fixedClock(QDateTime now) {
    return [now] { return now; };
}

class NoTokenAuth : public AuthProvider {
public:
    std::optional<QString> authorizationValue() const override { return std::nullopt; }
};

} // namespace ClientTesting
