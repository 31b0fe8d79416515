#pragma once

#include <QCoroTask>
#include <exception>
#include <optional>

// Runs a task to its end on a nested event loop and gives its value, or throws what it threw.
// QCoro::waitFor of QCoro 0.8 never returns when the task throws.
namespace RunTaskDetail {
template <typename T> struct Outcome {
    std::optional<T> value;
    std::exception_ptr error;
};
template <> struct Outcome<void> { std::exception_ptr error; };

template <typename T> QCoro::Task<> capture(QCoro::Task<T> task, Outcome<T>* outcome) {
    try {
        if constexpr (std::is_void_v<T>) {
            co_await task;
        } else {
            outcome->value = co_await task;
        }
    } catch (...) {
        outcome->error = std::current_exception();
    }
}
} // namespace RunTaskDetail

template <typename T> T runTask(QCoro::Task<T> task) {
    RunTaskDetail::Outcome<T> outcome;
    QCoro::waitFor(RunTaskDetail::capture(std::move(task), &outcome));
    if (outcome.error) {
        std::rethrow_exception(outcome.error);
    }
    if constexpr (!std::is_void_v<T>) {
        return std::move(*outcome.value);
    }
}
