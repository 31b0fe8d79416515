#include "core/api/NorvaneClient.h"
#include "core/api/TaskRecords.h"
#include "core/api/TaskRequests.h"
#include "core/api/UserRecords.h"
#include "core/auth/StaticTokenAuth.h"
#include "support/ClientTesting.h"
#include "support/TestMain.h"

#include <QNetworkAccessManager>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>
#include <memory>

using namespace ClientTesting;

namespace {
// A session that keeps every request it is asked to make.
class RecordingSession : public QNetworkAccessManager {
public:
    QList<QNetworkRequest> requests;

protected:
    QNetworkReply* createRequest(Operation operation, const QNetworkRequest& request,
                                 QIODevice* outgoingData) override {
        requests.append(request);
        return QNetworkAccessManager::createRequest(operation, request, outgoingData);
    }
};

// Counts how often it is asked for the token.
class CountingAuth : public AuthProvider {
public:
    mutable int asked = 0;
    std::optional<QString> authorizationValue() const override {
        ++asked;
        return QStringLiteral("pk_1");
    }
};

// A loopback address where nothing listens.
QUrl refusingURL() {
    QTcpServer server;
    server.listen(QHostAddress::LocalHost);
    const quint16 port = server.serverPort();
    server.close();
    return QUrl(QStringLiteral("http://127.0.0.1:%1/api/v2").arg(port));
}
} // namespace

class NorvaneClientTest : public QObject {
    Q_OBJECT

private slots:
    void anAbsentTokenFailsBeforeAnyRequest() {
        NoTokenAuth auth;
        RecordingSession session;
        const NorvaneClient client(auth, &session, nullptr, refusingURL());
        const auto error = failureOf(client.get<UserResponse>(QStringLiteral("user")));
        QVERIFY(error && error->is<NVError::NotAuthenticated>());
        const auto postError = failureOf(client.post<CreatedTask>(QStringLiteral("list/1/task"), CreateTaskRequest()));
        QVERIFY(postError && postError->is<NVError::NotAuthenticated>());
        QCOMPARE(session.requests.size(), 0);
    }

    void anEmptyTokenIsStillSent() {
        StaticTokenAuth auth{QString()};
        RecordingSession session;
        const NorvaneClient client(auth, &session, nullptr, refusingURL());
        const auto error = failureOf(client.get<UserResponse>(QStringLiteral("user")));
        QVERIFY(error && error->is<NVError::Network>());
        QCOMPARE(session.requests.size(), 1);
    }

    void transfersEndAfterAMinuteWithoutProgressAndUploadAttemptsAfterAnHour() {
        StaticTokenAuth auth{QStringLiteral("pk_1")};
        RecordingSession session;
        const NorvaneClient client(auth, &session, nullptr, refusingURL());
        QCOMPARE(client.timeLimits().withoutProgress, std::chrono::milliseconds(60'000));
        QCOMPARE(client.timeLimits().upload, std::chrono::milliseconds(3'600'000));
        const TransferTimeLimits shorter{std::chrono::seconds(5), std::chrono::seconds(7)};
        const NorvaneClient limited(auth, &session, nullptr, refusingURL(), Sleepers::real(), Clocks::system(),
                                    shorter);
        QCOMPARE(limited.withAuth(auth).timeLimits(), shorter);
    }

    void aRequestCarriesTheToken() {
        StaticTokenAuth auth{QStringLiteral("pk_1")};
        RecordingSession session;
        const NorvaneClient client(auth, &session, nullptr, refusingURL());
        failureOf(client.get<UserResponse>(QStringLiteral("user")));
        CreateTaskRequest task;
        task.name = QStringLiteral("n");
        failureOf(client.post<CreatedTask>(QStringLiteral("list/1/task"), task));
        QCOMPARE(session.requests.size(), 2);
        for (const QNetworkRequest& request : session.requests) {
            // The client keeps its own time limits; Qt's would end a transfer as if it were cancelled.
            QCOMPARE(request.transferTimeout(), 0);
            QCOMPARE(request.rawHeader("Authorization"), QByteArray("pk_1"));
        }
        QVERIFY(!session.requests[0].hasRawHeader("Content-Type"));
        QCOMPARE(session.requests[1].rawHeader("Content-Type"), QByteArray("application/json"));
    }

    void aPathIsAppendedAsPathComponents() {
        StaticTokenAuth auth{QStringLiteral("pk_1")};
        RecordingSession session;
        const QUrl base = refusingURL();
        QUrl withSlash = base;
        withSlash.setPath(base.path() + u'/');
        for (const QUrl& baseURL : {base, withSlash}) {
            const NorvaneClient client(auth, &session, nullptr, baseURL);
            failureOf(client.get<UserResponse>(QStringLiteral("team/9015/task"),
                                               {{QStringLiteral("page"), QStringLiteral("0")},
                                                {QStringLiteral("statuses[]"), QStringLiteral("to do")}}));
            QCOMPARE(session.requests.last().url().toString(QUrl::FullyEncoded),
                     base.toString() + QStringLiteral("/team/9015/task?page=0&statuses%5B%5D=to%20do"));
        }
    }

    void aRefusedConnectionIsANetworkFailure() {
        StaticTokenAuth auth{QStringLiteral("pk_1")};
        QNetworkAccessManager session;
        const NorvaneClient client(auth, &session, nullptr, refusingURL());
        const auto error = failureOf(client.get<UserResponse>(QStringLiteral("user")));
        QVERIFY(error && error->is<NVError::Network>());
        QCOMPARE(error->as<NVError::Network>()->error, QNetworkReply::ConnectionRefusedError);
        QCOMPARE(error->errorDescription(), QStringLiteral("Couldn't reach Norvane. Check your connection."));
    }

    void aPostThatNeverConnectedWasNotSentAndLeftNothingBehind() {
        StaticTokenAuth auth{QStringLiteral("pk_1")};
        QNetworkAccessManager session;
        const NorvaneClient client(auth, &session, nullptr, refusingURL());
        CreateTaskRequest request;
        request.name = QStringLiteral("Never sent");
        const auto error = failureOf(client.post<CreatedTask>(QStringLiteral("list/1/task"), request));
        QVERIFY(error && error->is<NVError::Network>());
        QVERIFY(!error->as<NVError::Network>()->requestSent);
        QVERIFY(!error->outcomeUnknown());
    }

    void aClientWhoseSessionsAreGoneSendsNothingAndAsksForNoToken() {
        CountingAuth auth;
        auto session = std::make_unique<RecordingSession>();
        const NorvaneClient client(auth, session.get(), nullptr, refusingURL());
        session.reset();
        for (const auto& error : {failureOf(client.get<UserResponse>(QStringLiteral("user"))),
                                  failureOf(client.upload(QStringLiteral("task/1/attachment"),
                                                          QByteArrayLiteral("bytes"), QStringLiteral("a.txt")))}) {
            QVERIFY(error && error->is<NVError::Network>());
            QCOMPARE(error->as<NVError::Network>()->error, QNetworkReply::OperationCanceledError);
            QVERIFY(!error->outcomeUnknown());
        }
        QCOMPARE(auth.asked, 0);
    }

    void anAnswerThatIsNotHTTPIsAnInvalidResponse() {
        QTemporaryDir root;
        QVERIFY(QDir(root.path()).mkpath(QStringLiteral("api/v2")));
        QFile file(root.filePath(QStringLiteral("api/v2/user")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(R"({"user":{"id":1}})");
        file.close();
        StaticTokenAuth auth{QStringLiteral("pk_1")};
        QNetworkAccessManager session;
        const NorvaneClient client(auth, &session, nullptr,
                                   QUrl::fromLocalFile(root.filePath(QStringLiteral("api/v2"))));
        const auto error = failureOf(client.get<UserResponse>(QStringLiteral("user")));
        QVERIFY(error && error->is<NVError::InvalidResponse>());
    }

    void anAbsentUploadSessionMeansTheSessionCarriesUploads() {
        StaticTokenAuth auth{QStringLiteral("pk_1")};
        QNetworkAccessManager session;
        QNetworkAccessManager uploads;
        const QUrl base(QStringLiteral("https://api.norvane.test/api/v2"));
        QCOMPARE(NorvaneClient(auth, &session, nullptr, base).uploadSession(), &session);
        QCOMPARE(NorvaneClient(auth, &session, &uploads, base).uploadSession(), &uploads);
        QCOMPARE(NorvaneClient(auth, &session, &uploads, base).session(), &session);
    }

    void aStaticTokenIsGivenAsItStands() {
        QCOMPARE(StaticTokenAuth(QStringLiteral(" pk_1 ")).authorizationValue(),
                 std::optional<QString>(QStringLiteral(" pk_1 ")));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(NorvaneClientTest)
#include "NorvaneClientTest.moc"
