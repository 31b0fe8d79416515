#pragma once

#include "core/api/HttpResponseReader.h"

#include <QNetworkReply>
#include <QPointer>
#include <memory>

class ConnectionPool;
class QTcpSocket;

// One request with a body, sent on a connection of its own making from the thread that asked for
// it, the body written in large pieces as fast as the connection takes them. Qt's session carries a
// body to its network thread 16 KiB at a time, a round trip between the threads for each piece,
// which made an upload three times slower than curl on a fast link.
//
// The answer is read in full and kept for reading; a status is an answer, not an error. A
// connection that fails, closes before the answer is whole or brings a malformed answer ends the
// reply with the error Qt gives it; `abort` ends it with OperationCanceledError. After a whole
// answer on a connection the server keeps open, the connection goes back to `pool`.
class DirectUploadReply : public QNetworkReply {
    Q_OBJECT

public:
    // `body` stays the caller's and is read from its current position; it holds exactly
    // `bodySize` bytes.
    DirectUploadReply(QNetworkAccessManager::Operation operation, const QNetworkRequest& request, QByteArray verb,
                      QIODevice* body, qint64 bodySize, ConnectionPool* pool, QObject* parent);
    ~DirectUploadReply() override;

    void abort() override;
    qint64 bytesAvailable() const override;
    bool isSequential() const override { return true; }

protected:
    qint64 readData(char* data, qint64 maxSize) override;

private:
    void openConnection();
    void sendHead();
    void writeBody();
    void noteWritten(qint64 bytes);
    void readAnswer();
    void connectionEnded();
    void connectionFailed();
    void takeHead();
    void fail(NetworkError error, const QString& text);
    void finishAnswer();
    void end();

    QByteArray m_verb;
    QIODevice* m_body;
    qint64 m_bodySize;
    QPointer<ConnectionPool> m_pool;
    std::unique_ptr<QTcpSocket> m_connection;
    qint64 m_headSize = 0;
    // The piece of the body being written, allocated once.
    QByteArray m_piece;
    qint64 m_bodyQueued = 0;
    qint64 m_written = 0;
    bool m_headTaken = false;
    HttpResponseReader m_answer;
    QByteArray m_answerBody;
    qint64 m_answerRead = 0;
};
