#pragma once

#include "core/async/StartTask.h"

#include <QCoroTask>
#include <QEventLoop>
#include <QPointer>
#include <QTimer>
#include <chrono>
#include <exception>
#include <memory>
#include <optional>
#include <stdexcept>

// Running a task to its end in a test.
namespace RunTaskDetail {
struct Ending {
    std::exception_ptr error;
    bool done = false;
    // The loop that waits for the end, while one does.
    QPointer<QEventLoop> waiting;

    void finish() {
        done = true;
        if (waiting) {
            waiting->quit();
        }
    }
};
template <typename T> struct Outcome : Ending { std::optional<T> value; };
template <> struct Outcome<void> : Ending {};

// Shares the outcome, so a task that outlives a timed-out runTask writes into live memory.
template <typename T> QCoro::Task<> capture(QCoro::Task<T> task, std::shared_ptr<Outcome<T>> outcome) {
    try {
        if constexpr (std::is_void_v<T>) {
            co_await std::move(task);
        } else {
            outcome->value = co_await std::move(task);
        }
    } catch (...) {
        outcome->error = std::current_exception();
    }
    outcome->finish();
}
} // namespace RunTaskDetail

// Runs a task to its end on a nested event loop and gives its value, or throws what it threw.
// A task still running after `timeout` fails with std::runtime_error. (QCoro::waitFor of QCoro 0.8
// never returns when the task throws, and has no time limit.)
template <typename T> T runTask(QCoro::Task<T> task, std::chrono::milliseconds timeout = std::chrono::seconds(60)) {
    auto outcome = std::make_shared<RunTaskDetail::Outcome<T>>();
    QCoro::Task<> capturing = RunTaskDetail::capture(std::move(task), outcome);
    if (!outcome->done) {
        QEventLoop loop;
        QTimer deadline;
        deadline.setSingleShot(true);
        QObject::connect(&deadline, &QTimer::timeout, &loop, &QEventLoop::quit);
        deadline.start(timeout);
        outcome->waiting = &loop;
        loop.exec();
    }
    if (!outcome->done) {
        throw std::runtime_error("the task did not finish in time");
    }
    if (outcome->error) {
        std::rethrow_exception(outcome->error);
    }
    if constexpr (!std::is_void_v<T>) {
        return std::move(*outcome->value);
    }
}
