#pragma once

#include <QCoroFuture>
#include <QCoroTask>
#include <QFuture>
#include <QPromise>
#include <QThreadPool>
#include <exception>
#include <functional>
#include <memory>

// Runs `work` on the global thread pool and resumes the calling coroutine on its own thread with
// the result, or with the exception `work` threw. `work` must own everything it touches.
template <typename T> QCoro::Task<T> runInBackground(std::function<T()> work) {
    auto promise = std::make_shared<QPromise<T>>();
    QFuture<T> future = promise->future();
    promise->start();
    QThreadPool::globalInstance()->start([promise, work = std::move(work)] {
        try {
            promise->addResult(work());
        } catch (...) {
            promise->setException(std::current_exception());
        }
        promise->finish();
    });
    co_await future;
    // Throws again what `work` threw.
    co_return future.result();
}
