#pragma once

#include <QNetworkAccessManager>
#include <chrono>

class ConnectionPool;

// The session uploads go through: a request with a body of known length to an http or https
// address is a DirectUploadReply, written from this thread in large pieces; anything else is
// Qt's own. An idle connection is kept for the next upload to the same host, for up to `idleLimit`.
class DirectUploadSession : public QNetworkAccessManager {
    Q_OBJECT

public:
    explicit DirectUploadSession(std::chrono::milliseconds idleLimit = std::chrono::milliseconds(4000),
                                 QObject* parent = nullptr);

protected:
    QNetworkReply* createRequest(Operation operation, const QNetworkRequest& request, QIODevice* body) override;

private:
    ConnectionPool* m_pool;
};
