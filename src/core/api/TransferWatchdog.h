#pragma once

#include <QDeadlineTimer>
#include <QObject>
#include <QTimer>
#include <chrono>

class QNetworkReply;

// Ends a reply that stalls or runs past its deadline, and remembers doing so. Qt reports a reply
// ended by its own transfer timeout and one aborted on purpose with the same error
// (OperationCanceledError); this tells a timeout, which may pass, from a deliberate abort. It also
// remembers whether the request's body went out whole, which tells a failed write that the service
// never got from one it may have carried out.
class TransferWatchdog : public QObject {
public:
    // Watches `reply`, whose child it becomes: aborts it when it moves no byte for `withoutProgress`,
    // or when `deadline` expires (never, for a deadline that is forever).
    TransferWatchdog(QNetworkReply* reply, std::chrono::milliseconds withoutProgress, QDeadlineTimer deadline);

    // Whether the reply was ended for taking too long.
    bool timedOut() const { return m_timedOut; }
    // Whether the whole body was handed to the connection: the upload progress reached its total.
    // Qt emits the last progress signal unconditionally, so a complete body is always seen.
    bool bodySent() const { return m_bodySent; }

private:
    void timeOut();

    QNetworkReply* m_reply;
    QTimer m_stall;
    QTimer m_deadline;
    bool m_timedOut = false;
    bool m_bodySent = false;
};
