// The two attachment uploads of NorvaneClient against norvane-sandbox: the multipart body as the
// sandbox's own parser reads it back, the stored bytes, and the retry loop under injected faults,
// with a sleeper that records its waits and returns at once.
#include "core/api/DirectUploadSession.h"
#include "core/api/NorvaneClient.h"
#include "core/api/TaskRecords.h"
#include "core/api/TaskRequests.h"
#include "core/auth/StaticTokenAuth.h"
#include "core/support/FileError.h"
#include "support/ClientTesting.h"
#include "support/SandboxDemo.h"
#include "support/SandboxProcess.h"
#include "support/SyncHttpClient.h"
#include "support/TestMain.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QNetworkAccessManager>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using namespace ClientTesting;
using namespace std::chrono_literals;

namespace {
// The time the client's clock shows, for Retry-After dates.
const QDateTime clockTime(QDate(2024, 6, 11), QTime(9, 30), Qt::UTC);
const QString attachmentPath = QStringLiteral("/api/v2/task/*/attachment");

QByteArray randomBytes(qsizetype size) {
    QByteArray bytes(size, Qt::Uninitialized);
    QRandomGenerator generator(7);
    for (char& byte : bytes) {
        byte = static_cast<char>(generator.bounded(256));
    }
    return bytes;
}

QString headerOf(const QJsonObject& entry, const QString& name) {
    for (const QJsonValue& header : entry.value(QStringLiteral("headers")).toArray()) {
        if (header[0].toString().compare(name, Qt::CaseInsensitive) == 0) {
            return header[1].toString();
        }
    }
    return {};
}

SandboxFault failing(int status, int times) {
    SandboxFault fault = SandboxFault::answer(attachmentPath, status, times);
    fault.method = QStringLiteral("POST");
    return fault;
}

// The attachment route keeps every request waiting for `delayMs` before it answers.
SandboxFault stalling(int delayMs) {
    SandboxFault fault = SandboxFault::delay(attachmentPath, delayMs);
    fault.method = QStringLiteral("POST");
    fault.times = -1;
    return fault;
}

SandboxFault rateLimited(const QString& retryAfter) {
    SandboxFault fault = failing(429, 1);
    fault.headers.insert(QStringLiteral("Retry-After"), retryAfter);
    return fault;
}
} // namespace

class NativeUploadSandboxTest : public QObject {
    Q_OBJECT

    SandboxProcess m_sandbox;
    QNetworkAccessManager m_session;
    DirectUploadSession m_uploads;
    std::optional<StaticTokenAuth> m_auth;
    RecordingSleeper m_sleeper;
    std::optional<NorvaneClient> m_client;
    // The client's temporary directory; every test ends with it empty.
    QTemporaryDir m_temporary;
    QByteArray m_previousTemporary;
    // Files to upload, apart from the client's temporary directory.
    QTemporaryDir m_sources;
    int m_sourceCount = 0;

    QString newTask(const QString& listID) {
        CreateTaskRequest request;
        request.name = QStringLiteral("Has an attachment");
        return runTask(m_client->post<CreatedTask>(QStringLiteral("list/%1/task").arg(listID), request)).id;
    }

    static QString attachmentOf(const QString& taskID) { return QStringLiteral("task/%1/attachment").arg(taskID); }

    QUrl sourceFile(const QByteArray& content) {
        const QString path = m_sources.filePath(QStringLiteral("source-%1.bin").arg(++m_sourceCount));
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
            qFatal("can't write %s", qPrintable(path));
        }
        return QUrl::fromLocalFile(path);
    }

    QJsonArray uploadRequests() {
        QJsonArray uploads;
        for (const QJsonValue& entry : m_sandbox.requests()) {
            if (entry[QStringLiteral("method")].toString() == QStringLiteral("POST") &&
                entry[QStringLiteral("path")].toString().endsWith(QStringLiteral("/attachment"))) {
                uploads.append(entry);
            }
        }
        return uploads;
    }

    QByteArray stored(const TaskAttachment& attachment) {
        SyncHttpClient http;
        return http.get(QUrl(attachment.url.value_or(QString())), {}).body;
    }

    void verifyWaits(const QList<std::chrono::milliseconds>& expected) { QCOMPARE(m_sleeper.waits(), expected); }

    // The test's client with time limits short enough to run out here.
    void limitTransfers(TransferTimeLimits limits) {
        m_client.emplace(*m_auth, &m_session, &m_uploads, m_sandbox.apiUrl(u""), m_sleeper.sleeper(),
                         fixedClock(clockTime), limits);
    }

    // An upload whose every attempt the sandbox holds for 600 ms, under `limits` shorter than that:
    // five attempts, each ended well before the answer, and the timeout of the last thrown.
    void verifyEveryAttemptTimesOut(TransferTimeLimits limits, bool fromFile) {
        const QString task = newTask(SandboxDemo::inboxListID);
        limitTransfers(limits);
        QVERIFY(m_sandbox.addFault(stalling(600)));
        QElapsedTimer clock;
        clock.start();
        const auto error = failureOf(
            fromFile ? m_client->uploadFromFile(attachmentOf(task), sourceFile("held"), QStringLiteral("held.txt"))
                     : m_client->upload(attachmentOf(task), "held", QStringLiteral("held.txt")));
        QVERIFY2(clock.elapsed() < 5 * 600, qPrintable(QString::number(clock.elapsed())));
        QVERIFY(error && error->is<NVError::Network>());
        QCOMPARE(error->as<NVError::Network>()->error, QNetworkReply::TimeoutError);
        verifyWaits({2s, 4s, 8s, 16s});
        QTRY_COMPARE(uploadRequests().size(), 5);
    }

private slots:
    void initTestCase() {
        QVERIFY(m_temporary.isValid() && m_sources.isValid());
        m_previousTemporary = qgetenv("TMPDIR");
        qputenv("TMPDIR", QFile::encodeName(m_temporary.path()));
        QVERIFY2(m_sandbox.start(), qPrintable(m_sandbox.errorString()));
        m_auth.emplace(m_sandbox.token());
    }

    void cleanupTestCase() { qputenv("TMPDIR", m_previousTemporary); }

    void init() {
        QVERIFY2(m_sandbox.reset(), qPrintable(m_sandbox.errorString()));
        m_sleeper = RecordingSleeper();
        m_client.emplace(*m_auth, &m_session, &m_uploads, m_sandbox.apiUrl(u""), m_sleeper.sleeper(),
                         fixedClock(clockTime));
    }

    void cleanup() { QCOMPARE(QDir(m_temporary.path()).entryList(QDir::Files | QDir::Hidden), QStringList()); }

    void bothPathsSendOnePartThatTheSandboxStoresByteForByte() {
        const QByteArray content = randomBytes(3 * 1024 * 1024 + 17);
        const QString task = newTask(SandboxDemo::inboxListID);
        const QString name = QStringLiteral("Überblick 2024.bin");
        m_sandbox.clearRequests();

        const TaskAttachment fromMemory = runTask(m_client->upload(attachmentOf(task), content, name));
        const TaskAttachment fromFile =
            runTask(m_client->uploadFromFile(attachmentOf(task), sourceFile(content), name));
        QVERIFY(!fromMemory.id.value_or(QString()).isEmpty());
        QVERIFY(fromFile.id != fromMemory.id);
        QCOMPARE(stored(fromMemory), content);
        QCOMPARE(stored(fromFile), content);

        const QJsonArray uploads = uploadRequests();
        QCOMPARE(uploads.size(), 2);
        const QRegularExpression boundary(
            QStringLiteral("^multipart/form-data; boundary=norvanebar-[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}$"));
        for (const QJsonValue& upload : uploads) {
            QCOMPARE(upload[QStringLiteral("path")].toString(), QStringLiteral("/api/v2/task/%1/attachment").arg(task));
            QCOMPARE(headerOf(upload.toObject(), QStringLiteral("Authorization")), m_sandbox.token());
            QVERIFY(boundary.match(headerOf(upload.toObject(), QStringLiteral("Content-Type"))).hasMatch());
            const QJsonArray parts = upload[QStringLiteral("parts")].toArray();
            QCOMPARE(parts.size(), 1);
            QCOMPARE(parts[0][QStringLiteral("name")].toString(), QStringLiteral("attachment"));
            QCOMPARE(parts[0][QStringLiteral("filename")].toString(), name);
            QCOMPARE(parts[0][QStringLiteral("contentType")].toString(), QStringLiteral("application/octet-stream"));
            QCOMPARE(parts[0][QStringLiteral("size")].toInteger(), content.size());
        }
        QCOMPARE(m_sleeper.waits().size(), 0);
    }

    void aTemporaryRedirectSendsTheWholeBodyAgainOnBothPaths() {
        const QByteArray content = randomBytes(256 * 1024 + 3);
        const QString task = newTask(SandboxDemo::inboxListID);
        const QString target = QStringLiteral("/api/v2/task/%1/attachment").arg(task);
        SandboxFault moved = failing(307, 1);
        moved.headers.insert(QStringLiteral("Location"), target);
        m_sandbox.clearRequests();

        QVERIFY(m_sandbox.addFault(moved));
        const TaskAttachment fromMemory =
            runTask(m_client->upload(attachmentOf(task), content, QStringLiteral("memory.bin")));
        QVERIFY(m_sandbox.addFault(moved));
        const TaskAttachment fromFile =
            runTask(m_client->uploadFromFile(attachmentOf(task), sourceFile(content), QStringLiteral("file.bin")));
        QCOMPARE(stored(fromMemory), content);
        QCOMPARE(stored(fromFile), content);

        // Each upload went out twice, whole: answered with the redirect, then stored.
        const QJsonArray uploads = uploadRequests();
        QCOMPARE(uploads.size(), 4);
        for (int index = 0; index < uploads.size(); ++index) {
            const QJsonObject upload = uploads[index].toObject();
            QCOMPARE(upload[QStringLiteral("path")].toString(), target);
            QCOMPARE(upload[QStringLiteral("status")].toInt(), index % 2 == 0 ? 307 : 200);
            QCOMPARE(headerOf(upload, QStringLiteral("Authorization")), m_sandbox.token());
            QCOMPARE(upload[QStringLiteral("bodySize")].toInteger(),
                     uploads[index - index % 2][QStringLiteral("bodySize")].toInteger());
        }
        QCOMPARE(m_sleeper.waits().size(), 0);
    }

    void aNumericAttachmentIDIsAccepted() {
        const QString task = newTask(SandboxDemo::labNotesListID);
        const TaskAttachment attachment =
            runTask(m_client->upload(attachmentOf(task), "lab notes", QStringLiteral("notes.txt")));
        QVERIFY(!attachment.id.value_or(QString()).isEmpty());
        bool isNumber = false;
        attachment.id->toLongLong(&isNumber);
        QVERIFY(isNumber);
        QCOMPARE(stored(attachment), QByteArray("lab notes"));
    }

    void aServerAnswering503EveryTimeGetsFiveAttemptsWithGrowingWaits() {
        const QString task = newTask(SandboxDemo::inboxListID);
        QVERIFY(m_sandbox.addFault(failing(503, -1)));
        const auto error = failureOf(
            m_client->uploadFromFile(attachmentOf(task), sourceFile("retry me"), QStringLiteral("retry.txt")));
        QVERIFY(error && error->is<NVError::Server>());
        QCOMPARE(error->as<NVError::Server>()->statusCode, std::optional(503));
        verifyWaits({2s, 4s, 8s, 16s});
        const QJsonArray uploads = uploadRequests();
        QCOMPARE(uploads.size(), 5);
        // A new boundary for every attempt.
        QSet<QString> boundaries;
        for (const QJsonValue& upload : uploads) {
            boundaries.insert(headerOf(upload.toObject(), QStringLiteral("Content-Type")));
        }
        QCOMPARE(boundaries.size(), 5);
    }

    void aFailureThatPassesIsRetriedUntilTheUploadSucceeds() {
        const QString task = newTask(SandboxDemo::inboxListID);
        QVERIFY(m_sandbox.addFault(failing(502, 2)));
        const TaskAttachment attachment =
            runTask(m_client->upload(attachmentOf(task), "third time", QStringLiteral("lucky.txt")));
        QCOMPARE(stored(attachment), QByteArray("third time"));
        verifyWaits({2s, 4s});
        QCOMPARE(uploadRequests().size(), 3);
    }

    void aRateLimitAskingFor300SecondsWaits120() {
        const QString task = newTask(SandboxDemo::inboxListID);
        QVERIFY(m_sandbox.addFault(rateLimited(QStringLiteral("300"))));
        runTask(m_client->upload(attachmentOf(task), "x", QStringLiteral("x.txt")));
        verifyWaits({120s});
    }

    void aRateLimitAskingForAFractionWaitsExactlyThat() {
        const QString task = newTask(SandboxDemo::inboxListID);
        QVERIFY(m_sandbox.addFault(rateLimited(QStringLiteral("1.5"))));
        runTask(m_client->upload(attachmentOf(task), "x", QStringLiteral("x.txt")));
        verifyWaits({1500ms});
    }

    void aRateLimitAskingForZeroOrNothingWaitsByTheExponentialRule() {
        const QString task = newTask(SandboxDemo::inboxListID);
        QVERIFY(m_sandbox.addFault(rateLimited(QStringLiteral("0"))));
        QVERIFY(m_sandbox.addFault(failing(429, 1)));
        runTask(m_client->upload(attachmentOf(task), "x", QStringLiteral("x.txt")));
        verifyWaits({2s, 4s});
    }

    void aRateLimitWithADateInThePastWaitsByTheExponentialRule() {
        const QString task = newTask(SandboxDemo::inboxListID);
        QVERIFY(m_sandbox.addFault(rateLimited(QStringLiteral("Tue, 11 Jun 2024 09:29:00 GMT"))));
        runTask(m_client->upload(attachmentOf(task), "x", QStringLiteral("x.txt")));
        verifyWaits({2s});
    }

    void aRateLimitWithADateAheadWaitsUntilThen() {
        const QString task = newTask(SandboxDemo::inboxListID);
        QVERIFY(m_sandbox.addFault(rateLimited(QStringLiteral("Tue, 11 Jun 2024 09:30:45 GMT"))));
        runTask(m_client->upload(attachmentOf(task), "x", QStringLiteral("x.txt")));
        verifyWaits({45s});
    }

    void theStorageLimitIsNotRetried() {
        const QString task = newTask(SandboxDemo::inboxListID);
        QVERIFY(m_sandbox.setStorageQuota(4));
        const auto error = failureOf(m_client->uploadFromFile(attachmentOf(task), sourceFile("too big for the quota"),
                                                              QStringLiteral("big.txt")));
        QVERIFY(error && error->is<NVError::StorageLimitExceeded>());
        QCOMPARE(error->errorDescription(), QStringLiteral("Your Norvane workspace storage limit has been reached. "
                                                           "Upgrade your plan or free up space, then try again."));
        QCOMPARE(uploadRequests().size(), 1);
        QCOMPARE(m_sleeper.waits().size(), 0);
    }

    void aFailureWithAnotherStatusIsNotRetried() {
        const QString task = newTask(SandboxDemo::inboxListID);
        SandboxFault tooLarge = failing(413, 1);
        tooLarge.err = QStringLiteral("File too large");
        tooLarge.ecode = QString();
        QVERIFY(m_sandbox.addFault(tooLarge));
        const auto error = failureOf(m_client->upload(attachmentOf(task), "x", QStringLiteral("x.txt")));
        QVERIFY(error && error->is<NVError::Server>());
        QCOMPARE(*error->as<NVError::Server>(), (NVError::Server{QString(), QStringLiteral("File too large"), 413}));
        QCOMPARE(uploadRequests().size(), 1);
    }

    void aSuccessStatusCarryingAnErrorIsAServerError() {
        const QString task = newTask(SandboxDemo::inboxListID);
        SandboxFault fault = failing(200, 1);
        fault.bodyText = QStringLiteral(R"({"err":"Attachment rejected by a scan","ECODE":"ATTACH_003","url":0})");
        QVERIFY(m_sandbox.addFault(fault));
        const auto error = failureOf(m_client->upload(attachmentOf(task), "x", QStringLiteral("x.txt")));
        QVERIFY(error && error->is<NVError::Server>());
        QCOMPARE(*error->as<NVError::Server>(),
                 (NVError::Server{QStringLiteral("ATTACH_003"), QStringLiteral("Attachment rejected by a scan"), 200}));
        QCOMPARE(uploadRequests().size(), 1);
    }

    void aSuccessStatusWithoutAnAttachmentIDIsNotAnAttachment() {
        const QString task = newTask(SandboxDemo::inboxListID);
        SandboxFault fault = failing(200, 1);
        fault.bodyText = QStringLiteral(R"({"err":"Quota","ECODE":"X"})");
        QVERIFY(m_sandbox.addFault(fault));
        const auto error = failureOf(m_client->upload(attachmentOf(task), "x", QStringLiteral("x.txt")));
        QVERIFY(error && error->is<NVError::Decoding>());
        QCOMPARE(error->as<NVError::Decoding>()->description,
                 QStringLiteral("Upload response was not a valid Norvane attachment"));
    }

    void aRejectedTokenIsNotRetried() {
        const StaticTokenAuth wrongToken(QStringLiteral("pk_not_a_real_token"));
        const NorvaneClient client(wrongToken, &m_session, &m_uploads, m_sandbox.apiUrl(u""), m_sleeper.sleeper());
        const auto error = failureOf(
            client.uploadFromFile(attachmentOf(QStringLiteral("1")), sourceFile("x"), QStringLiteral("x.txt")));
        QVERIFY(error && error->is<NVError::Unauthorized>());
        QCOMPARE(uploadRequests().size(), 1);
        QCOMPARE(m_sleeper.waits().size(), 0);
    }

    void withoutATokenNothingIsSentAndTheBodyFileIsRemoved() {
        const NoTokenAuth noToken;
        const NorvaneClient client(noToken, &m_session, &m_uploads, m_sandbox.apiUrl(u""), m_sleeper.sleeper());
        const auto error = failureOf(
            client.uploadFromFile(attachmentOf(QStringLiteral("1")), sourceFile("x"), QStringLiteral("x.txt")));
        QVERIFY(error && error->is<NVError::NotAuthenticated>());
        QCOMPARE(uploadRequests().size(), 0);
        QCOMPARE(m_sleeper.waits().size(), 0);
    }

    void aDroppedConnectionIsRetried() {
        const QString task = newTask(SandboxDemo::inboxListID);
        // One drop is seen: an upload is never sent again behind the retry rules' back.
        QVERIFY(m_sandbox.addFault(SandboxFault::dropConnection(attachmentPath, 1)));
        const TaskAttachment attachment =
            runTask(m_client->uploadFromFile(attachmentOf(task), sourceFile("after a drop"), QStringLiteral("d.txt")));
        QCOMPARE(stored(attachment), QByteArray("after a drop"));
        const QJsonArray uploads = uploadRequests();
        QCOMPARE(uploads.size(), 2);
        QCOMPARE(uploads[0][QStringLiteral("status")].toInt(), 0);
        verifyWaits({2s});
    }

    void aRefusedConnectionIsRetriedAndTheLastErrorThrown() {
        QUrl closed = m_sandbox.apiUrl(u"");
        closed.setPort(1);
        const NorvaneClient client(*m_auth, &m_session, &m_uploads, closed, m_sleeper.sleeper());
        const auto error = failureOf(client.upload(attachmentOf(QStringLiteral("1")), "x", QStringLiteral("x.txt")));
        QVERIFY(error && error->is<NVError::Network>());
        QCOMPARE(error->as<NVError::Network>()->error, QNetworkReply::ConnectionRefusedError);
        verifyWaits({2s, 4s, 8s, 16s});
    }

    void aStalledTransferIsEndedAndRetried() { verifyEveryAttemptTimesOut({200ms, 60s}, true); }

    void aStallThatPassesIsRetriedUntilTheUploadSucceeds() {
        const QString task = newTask(SandboxDemo::inboxListID);
        limitTransfers({200ms, 60s});
        SandboxFault once = stalling(600);
        once.times = 1;
        QVERIFY(m_sandbox.addFault(once));
        const TaskAttachment attachment =
            runTask(m_client->upload(attachmentOf(task), "after a stall", QStringLiteral("s.txt")));
        QCOMPARE(stored(attachment), QByteArray("after a stall"));
        verifyWaits({2s});
        QTRY_COMPARE(uploadRequests().size(), 2);
    }

    void anUploadPastTheOverallLimitEndsWithATimeoutError() {
        // Never stalled for long enough; too long in all.
        verifyEveryAttemptTimesOut({60s, 200ms}, false);
    }

    void theOverallLimitLeavesOtherRequestsAlone() {
        limitTransfers({60s, 200ms});
        SandboxFault slowTask = SandboxFault::delay(QStringLiteral("/api/v2/list/*/task"), 400);
        slowTask.method = QStringLiteral("POST");
        QVERIFY(m_sandbox.addFault(slowTask));
        QVERIFY(!newTask(SandboxDemo::inboxListID).isEmpty());
    }

    void aDeliberateAbortIsNotRetried() {
        const QString task = newTask(SandboxDemo::inboxListID);
        QVERIFY(m_sandbox.addFault(stalling(600)));
        // Aborted while the sandbox holds the request, as the program does with requests still
        // running when it quits.
        QTimer::singleShot(150ms, &m_uploads, [this] {
            for (QNetworkReply* reply : m_uploads.findChildren<QNetworkReply*>()) {
                reply->abort();
            }
        });
        const auto error = failureOf(m_client->upload(attachmentOf(task), "cancelled", QStringLiteral("c.txt")));
        QVERIFY(error && error->is<NVError::Network>());
        QCOMPARE(error->as<NVError::Network>()->error, QNetworkReply::OperationCanceledError);
        QCOMPARE(m_sleeper.waits().size(), 0);
        QTRY_COMPARE(uploadRequests().size(), 1);
    }

    void consecutiveUploadsGoDownOneConnection() {
        const QString task = newTask(SandboxDemo::inboxListID);
        QCOMPARE(runTask(m_client->upload(attachmentOf(task), "first", QStringLiteral("1.txt"))).id.has_value(), true);
        const QList<QTcpSocket*> afterFirst = m_uploads.findChildren<QTcpSocket*>();
        QCOMPARE(afterFirst.size(), 1);
        const quint16 port = afterFirst.first()->localPort();
        const TaskAttachment second =
            runTask(m_client->uploadFromFile(attachmentOf(task), sourceFile("second"), QStringLiteral("2.txt")));
        QCOMPARE(stored(second), QByteArray("second"));
        const QList<QTcpSocket*> afterSecond = m_uploads.findChildren<QTcpSocket*>();
        QCOMPARE(afterSecond.size(), 1);
        QCOMPARE(afterSecond.first()->localPort(), port);
    }

    void anIdleConnectionThatClosedIsNotUsedAgain() {
        const QString task = newTask(SandboxDemo::inboxListID);
        runTask(m_client->upload(attachmentOf(task), "first", QStringLiteral("1.txt")));
        QTcpSocket* idle = m_uploads.findChild<QTcpSocket*>();
        QVERIFY(idle);
        const quint16 port = idle->localPort();
        idle->disconnectFromHost();
        QTRY_VERIFY(m_uploads.findChildren<QTcpSocket*>().isEmpty());
        const TaskAttachment second = runTask(m_client->upload(attachmentOf(task), "second", QStringLiteral("2.txt")));
        QCOMPARE(stored(second), QByteArray("second"));
        const QList<QTcpSocket*> connections = m_uploads.findChildren<QTcpSocket*>();
        QCOMPARE(connections.size(), 1);
        QVERIFY(connections.first()->localPort() != port);
        QCOMPARE(m_sleeper.waits().size(), 0);
    }

    void aConnectionIdlePastItsLimitIsNotUsedAgain() {
        DirectUploadSession neverReused(0ms);
        const NorvaneClient client(*m_auth, &m_session, &neverReused, m_sandbox.apiUrl(u""), m_sleeper.sleeper());
        const QString task = newTask(SandboxDemo::inboxListID);
        runTask(client.upload(attachmentOf(task), "first", QStringLiteral("1.txt")));
        const quint16 port = neverReused.findChild<QTcpSocket*>()->localPort();
        const TaskAttachment second = runTask(client.upload(attachmentOf(task), "second", QStringLiteral("2.txt")));
        QCOMPARE(stored(second), QByteArray("second"));
        QCOMPARE(neverReused.findChildren<QTcpSocket*>().size(), 1);
        QVERIFY(neverReused.findChild<QTcpSocket*>()->localPort() != port);
    }

    void anEncryptedUploadToAServerWithoutEncryptionFailsItsHandshakeOnce() {
        QUrl plain = m_sandbox.apiUrl(u"");
        plain.setScheme(QStringLiteral("https"));
        const NorvaneClient client(*m_auth, &m_session, &m_uploads, plain, m_sleeper.sleeper());
        const auto error = failureOf(client.upload(attachmentOf(QStringLiteral("1")), "x", QStringLiteral("x.txt")));
        QVERIFY(error && error->is<NVError::Network>());
        QCOMPARE(error->as<NVError::Network>()->error, QNetworkReply::SslHandshakeFailedError);
        QCOMPARE(m_sleeper.waits().size(), 0);
    }

    void aMissingFileFailsAtOnceWithoutARequest() {
        const QString task = newTask(SandboxDemo::inboxListID);
        const QUrl missing = QUrl::fromLocalFile(m_sources.filePath(QStringLiteral("gone.bin")));
        bool threwFileError = false;
        try {
            runTask(m_client->uploadFromFile(attachmentOf(task), missing, QStringLiteral("gone.bin")));
        } catch (const FileError& error) {
            threwFileError = error.path() == missing.toLocalFile();
        }
        QVERIFY(threwFileError);
        QCOMPARE(uploadRequests().size(), 0);
        QCOMPARE(m_sleeper.waits().size(), 0);
        // A body file whose writing failed stays where it is; this test's cleanup expects none.
        const QStringList left = QDir(m_temporary.path()).entryList(QDir::Files);
        QCOMPARE(left.size(), 1);
        QVERIFY(QRegularExpression(QStringLiteral("^norvanebar-upload-[0-9A-F-]{36}\\.multipart$"))
                    .match(left.first())
                    .hasMatch());
        QVERIFY(QFile::remove(m_temporary.filePath(left.first())));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(NativeUploadSandboxTest)
#include "NativeUploadSandboxTest.moc"
