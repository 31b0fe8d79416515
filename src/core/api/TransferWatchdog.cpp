#include "core/api/TransferWatchdog.h"

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
    connect(reply, &QNetworkReply::uploadProgress, this, [this](qint64 bytesSent, qint64 bytesTotal) {
        m_stall.start();
        // Once whole, always whole: a resend that Qt attempts on the same reply starts from 0 again.
        m_bodySent = m_bodySent || (bytesTotal > 0 && bytesSent == bytesTotal);
    });
    connect(reply, &QNetworkReply::downloadProgress, this, [this] { m_stall.start(); });
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
