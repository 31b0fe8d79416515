#include "support/FakeService.h"

#include <QFile>
#include <QNetworkReply>
#include <QPointer>
#include <QTimer>
#include <cstring>

// One answer delivered as a finished reply.
class FakeReply : public QNetworkReply {
public:
    FakeReply(FakeService* service, const QNetworkRequest& request, QString path)
        : QNetworkReply(service)
        , m_service(service)
        , m_path(std::move(path)) {
        setRequest(request);
        setUrl(request.url());
        setOperation(QNetworkAccessManager::GetOperation);
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    const QString& path() const { return m_path; }

    void deliver(const FakeService::Answer& answer) {
        if (isFinished()) {
            return;
        }
        m_body = answer.body;
        setAttribute(QNetworkRequest::HttpStatusCodeAttribute, answer.status);
        end(false);
    }

    void abort() override {
        if (isFinished()) {
            return;
        }
        setError(OperationCanceledError, QStringLiteral("Operation canceled"));
        emit errorOccurred(OperationCanceledError);
        end(true);
    }

    qint64 bytesAvailable() const override { return m_body.size() - m_offset + QIODevice::bytesAvailable(); }
    bool isSequential() const override { return true; }

protected:
    qint64 readData(char* data, qint64 maxSize) override {
        const qint64 count = std::min<qint64>(maxSize, m_body.size() - m_offset);
        std::memcpy(data, m_body.constData() + m_offset, static_cast<size_t>(count));
        m_offset += count;
        return count;
    }

private:
    void end(bool wasAborted) {
        setFinished(true);
        if (m_service) {
            m_service->ended(this, wasAborted);
        }
        emit finished();
    }

    QPointer<FakeService> m_service;
    QString m_path;
    QByteArray m_body;
    qint64 m_offset = 0;
};

void FakeService::answer(const QString& path, int status, const QByteArray& body) {
    m_answers[path] = QQueue<Answer>({Answer{status, body}});
}

void FakeService::answerNext(const QString& path, int status, const QByteArray& body) {
    m_answers[path].enqueue({status, body});
}

void FakeService::release(const QString& path) {
    m_held.removeAll(path);
    const QList<FakeReply*> waiting = m_waiting;
    for (FakeReply* reply : waiting) {
        if (reply->path() == path) {
            m_waiting.removeAll(reply);
            deliverLater(reply);
        }
    }
}

void FakeService::deliverLater(FakeReply* reply) {
    QPointer<FakeReply> guarded(reply);
    QTimer::singleShot(0, this, [this, guarded] {
        if (guarded) {
            guarded->deliver(nextAnswer(guarded->path()));
        }
    });
}

FakeService::Answer FakeService::nextAnswer(const QString& path) {
    QQueue<Answer>& queue = m_answers[path];
    if (queue.isEmpty()) {
        return {404, R"({"err":"Not found","ECODE":"FAKE_404"})"};
    }
    return queue.size() > 1 ? queue.dequeue() : queue.head();
}

QNetworkReply* FakeService::createRequest(Operation, const QNetworkRequest& request, QIODevice* outgoingData) {
    const QString path = request.url().path().mid(baseURL().path().size() + 1);
    paths.append(path);
    queries.append(request.url().query(QUrl::FullyDecoded));
    bodies.append(outgoingData ? outgoingData->readAll() : QByteArray());
    const auto* file = qobject_cast<QFile*>(outgoingData);
    bodyFiles.append(file ? file->fileName() : QString());
    inFlight += 1;
    maxInFlight = std::max(maxInFlight, inFlight);
    auto* reply = new FakeReply(this, request, path);
    if (m_held.contains(path)) {
        m_waiting.append(reply);
    } else {
        deliverLater(reply);
    }
    return reply;
}

void FakeService::ended(FakeReply* reply, bool wasAborted) {
    inFlight -= 1;
    if (wasAborted) {
        aborted.append(reply->path());
        m_waiting.removeAll(reply);
    }
}
