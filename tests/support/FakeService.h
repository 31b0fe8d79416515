#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QNetworkAccessManager>
#include <QQueue>
#include <QString>
#include <QStringList>
#include <QUrl>

class FakeReply;

// A session that answers from a table instead of the network, for unit tests of what runs on
// NorvaneClient. Each request gets the next answer queued for its path (the last one repeats) when
// the event loop next turns, or, for a held path, when the test releases it. It counts the requests
// in flight and notes every abort.
class FakeService : public QNetworkAccessManager {
public:
    struct Answer {
        int status = 200;
        QByteArray body;
    };

    // The API base of a client on this session.
    static QUrl baseURL() { return QUrl(QStringLiteral("http://norvane.invalid/api/v2")); }

    // From now on `path` (relative to the base, without query) gets this answer.
    void answer(const QString& path, int status, const QByteArray& body);
    void answer(const QString& path, const QByteArray& body) { answer(path, 200, body); }
    // Queues a further answer, given after those before it; the last one repeats.
    void answerNext(const QString& path, int status, const QByteArray& body);
    void answerNext(const QString& path, const QByteArray& body) { answerNext(path, 200, body); }
    // Requests of `path` wait until release().
    void hold(const QString& path) { m_held.append(path); }
    void release(const QString& path);

    // Every request in order: its path relative to the base, its query as sent, its body, and the
    // file the body was read from (empty for a body sent from memory).
    QStringList paths;
    QStringList queries;
    QList<QByteArray> bodies;
    QStringList bodyFiles;
    QStringList aborted;
    int inFlight = 0;
    int maxInFlight = 0;

protected:
    QNetworkReply* createRequest(Operation operation, const QNetworkRequest& request, QIODevice* outgoingData) override;

private:
    friend class FakeReply;
    void ended(FakeReply* reply, bool wasAborted);
    void deliverLater(FakeReply* reply);
    Answer nextAnswer(const QString& path);

    QHash<QString, QQueue<Answer>> m_answers;
    QStringList m_held;
    QList<FakeReply*> m_waiting;
};
