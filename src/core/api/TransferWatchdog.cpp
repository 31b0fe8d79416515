#include "api/TransferWatchdog.h"

#include <QNetworkReply>

TransferWatchdog::TransferWatchdog(QNetworkReply* reply, std::chrono::milliseconds withoutProgress,
                                   QDeadlineTimer deadline)
    : QObject(reply)
    , m_reply(reply) {
    for (QTimer* timer : {&m_stall, &m_deadline}) {
        timer->setSingleShot(true);
        connect(timer, &QTimer::timeout, this, &TransferWatchdog::timeOut);
    }
    m_stall.setInterval(withoutProgress);
    m_stall.start();
    if (!deadline.isForever()) {
        m_deadline.start(std::chrono::duration_cast<std::chrono::milliseconds>(deadline.remainingTimeAsDuration()));
    }
    // Any byte moved either way starts the stall limit anew.
    const auto progressed = [this] { m_stall.start(); };
    connect(reply, &QNetworkReply::uploadProgress, this, progressed);
    connect(reply, &QNetworkReply::downloadProgress, this, progressed);
    connect(reply, &QNetworkReply::finished, this, [this] {
        m_stall.stop();
        m_deadline.stop();
    });
}

void TransferWatchdog::timeOut() {
    if (m_reply->isFinished()) {
        return;
    }
    m_timedOut = true;
    m_reply->abort();
}
