#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <exception>
#include <functional>
#include <qcoro/qcorotask.h>
#include <type_traits>

// Starting a task nobody awaits. The task runs to its end even when its context goes; what it
// gives is handed on only while the context lives. An exception that escapes the task is a bug:
// it is reported, never swallowed.

// Receives the description of an exception that escaped a started task.
using EscapedExceptionHandler = void (*)(const QString& description);
// The program writes such an exception to standard error; the test kit makes it fail the test.
// Returns the handler it replaces.
EscapedExceptionHandler setEscapedExceptionHandler(EscapedExceptionHandler handler);
void reportEscapedException(std::exception_ptr exception);

namespace StartTaskDetail {
template <typename T, typename Then> QCoro::Task<> guarded(QPointer<QObject> context, QCoro::Task<T> task, Then then) {
    try {
        if constexpr (std::is_void_v<T>) {
            co_await std::move(task);
            if (context) {
                then();
            }
        } else {
            T value = co_await std::move(task);
            if (context) {
                then(std::move(value));
            }
        }
    } catch (...) {
        reportEscapedException(std::current_exception());
    }
}
} // namespace StartTaskDetail

// Starts `task`, tied to `context`.
inline void startTask(QObject* context, QCoro::Task<> task) {
    StartTaskDetail::guarded(QPointer<QObject>(context), std::move(task), [] {});
}

// Starts `task` and calls `then` with its result, on the context's thread, if the context still
// lives when the task ends.
template <typename T, typename Then> void startTask(QObject* context, QCoro::Task<T> task, Then then) {
    StartTaskDetail::guarded(QPointer<QObject>(context), std::move(task), std::move(then));
}
