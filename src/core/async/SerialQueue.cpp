#include "core/async/SerialQueue.h"

std::unique_ptr<SerialQueue> SerialQueue::onOwnThread(const QString& name) {
    auto thread = std::make_unique<QThread>();
    thread->setObjectName(name);
    auto queue = std::unique_ptr<SerialQueue>(new SerialQueue(std::move(thread)));
    queue->m_thread->start();
    return queue;
}

std::unique_ptr<SerialQueue> SerialQueue::onCurrentThread() {
    return std::unique_ptr<SerialQueue>(new SerialQueue(nullptr));
}

SerialQueue::SerialQueue(std::unique_ptr<QThread> thread)
    : m_thread(std::move(thread))
    , m_context(new QObject) {
    if (m_thread) {
        m_context->moveToThread(m_thread.get());
    }
}

SerialQueue::~SerialQueue() {
    stop();
    // No job runs while the context goes, and the waiting ones go with it.
    delete m_context;
}

void SerialQueue::post(std::function<void()> job) {
    QMetaObject::invokeMethod(m_context, std::move(job), Qt::QueuedConnection);
}

void SerialQueue::stop() {
    if (m_thread) {
        m_thread->quit();
        m_thread->wait();
    } else if (!m_stopped) {
        // A queue on a running thread can't end that thread: its context leaves for none instead.
        m_context->moveToThread(nullptr);
    }
    m_stopped = true;
}
