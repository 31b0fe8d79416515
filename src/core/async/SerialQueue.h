#pragma once

#include <QObject>
#include <QString>
#include <QThread>
#include <functional>
#include <memory>

// Runs jobs one after another, in the order they were posted, on one thread. Any thread may post.
// Jobs still waiting when the queue stops or goes are dropped; the one running is finished first.
class SerialQueue {
public:
    // A thread of the queue's own, named `name`.
    static std::unique_ptr<SerialQueue> onOwnThread(const QString& name);
    // The event loop of the thread that makes the queue: jobs run when that loop next runs.
    static std::unique_ptr<SerialQueue> onCurrentThread();

    ~SerialQueue();
    SerialQueue(const SerialQueue&) = delete;
    SerialQueue& operator=(const SerialQueue&) = delete;

    void post(std::function<void()> job);
    // Ends the queue's work: once this returns no job runs, and later posts are dropped.
    void stop();

private:
    explicit SerialQueue(std::unique_ptr<QThread> thread);

    std::unique_ptr<QThread> m_thread;
    QObject* m_context;
    bool m_stopped = false;
};
