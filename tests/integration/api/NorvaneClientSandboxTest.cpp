// NorvaneClient against norvane-sandbox over real HTTP: what goes out (token, path, query, body, as
// the sandbox's request log shows it), how every kind of answer maps to a record or an NVError, and
// the single retry after a 429, with a sleeper that records its waits and returns at once.
#include "core/api/HierarchyRecords.h"
#include "core/api/NorvaneClient.h"
#include "core/api/TaskRecords.h"
#include "core/api/TaskRequests.h"
#include "core/api/UserRecords.h"
#include "core/auth/StaticTokenAuth.h"
#include "support/ClientTesting.h"
#include "support/SandboxDemo.h"
#include "support/SandboxProcess.h"
#include "support/TestMain.h"

#include <QJsonArray>
#include <QNetworkAccessManager>
#include <QTest>

using namespace ClientTesting;
using namespace std::chrono_literals;

namespace {
// The time the client's clock shows, for Retry-After dates.
const QDateTime clockTime(QDate(2024, 6, 11), QTime(9, 30), Qt::UTC);

QJsonValue headerOf(const QJsonObject& entry, const QString& name) {
    for (const QJsonValue& header : entry.value(QStringLiteral("headers")).toArray()) {
        if (header[0].toString().compare(name, Qt::CaseInsensitive) == 0) {
            return header[1];
        }
    }
    return QJsonValue(QJsonValue::Undefined);
}

QList<std::pair<QString, QString>> queryOf(const QJsonObject& entry) {
    QList<std::pair<QString, QString>> items;
    for (const QJsonValue& item : entry.value(QStringLiteral("query")).toArray()) {
        items.append({item[0].toString(), item[1].toString()});
    }
    return items;
}

SandboxFault rateLimit(const QString& path, const std::optional<QString>& retryAfter) {
    SandboxFault fault = SandboxFault::answer(path, 429);
    if (retryAfter) {
        fault.headers.insert(QStringLiteral("Retry-After"), *retryAfter);
    }
    return fault;
}

SandboxFault failure(const QString& path, int status, std::optional<QString> err, std::optional<QString> ecode = {}) {
    SandboxFault fault = SandboxFault::answer(path, status);
    fault.err = std::move(err);
    fault.ecode = std::move(ecode);
    return fault;
}

SandboxFault textAnswer(const QString& path, int status, const QString& text) {
    SandboxFault fault = SandboxFault::answer(path, status);
    fault.bodyText = text;
    return fault;
}

SandboxFault redirect(const QString& path, int status, const QString& location, int times = 1) {
    SandboxFault fault = SandboxFault::answer(path, status, times);
    fault.headers.insert(QStringLiteral("Location"), location);
    return fault;
}

// A session that notes the path of every request it is asked to make.
class RecordingSession : public QNetworkAccessManager {
public:
    QStringList paths;

protected:
    QNetworkReply* createRequest(Operation operation, const QNetworkRequest& request,
                                 QIODevice* outgoingData) override {
        paths.append(request.url().path());
        return QNetworkAccessManager::createRequest(operation, request, outgoingData);
    }
};
} // namespace

class NorvaneClientSandboxTest : public QObject {
    Q_OBJECT

    SandboxProcess m_sandbox;
    RecordingSession m_session;
    std::optional<StaticTokenAuth> m_auth;
    RecordingSleeper m_sleeper;
    std::optional<NorvaneClient> m_client;

    const NorvaneClient& client() const { return *m_client; }

    bool addFault(const SandboxFault& fault) {
        const bool added = m_sandbox.addFault(fault);
        if (!added) {
            qWarning() << m_sandbox.errorString();
        }
        return added;
    }

    QJsonObject lastRequest() { return m_sandbox.requests().last().toObject(); }

    QString createTask(const QString& name) {
        CreateTaskRequest request;
        request.name = name;
        return runTask(client().post<CreatedTask>(
                           QStringLiteral("list/") + SandboxDemo::inboxListID + QStringLiteral("/task"), request))
            .id;
    }

private slots:
    void initTestCase() {
        QVERIFY2(m_sandbox.start(), qPrintable(m_sandbox.errorString()));
        m_auth.emplace(m_sandbox.token());
    }

    void init() {
        QVERIFY2(m_sandbox.reset(), qPrintable(m_sandbox.errorString()));
        m_sleeper = RecordingSleeper();
        m_session.paths.clear();
        m_client.emplace(*m_auth, &m_session, nullptr, m_sandbox.apiUrl(u""), m_sleeper.sleeper(),
                         fixedClock(clockTime));
    }

    void anAbsentTokenSendsNoRequest() {
        NoTokenAuth auth;
        const NorvaneClient client(auth, &m_session, nullptr, m_sandbox.apiUrl(u""), m_sleeper.sleeper());
        const auto get = failureOf(client.get<UserResponse>(QStringLiteral("user")));
        QVERIFY(get && get->is<NVError::NotAuthenticated>());
        CreateTaskRequest task;
        task.name = QStringLiteral("Never sent");
        const auto post = failureOf(client.post<CreatedTask>(
            QStringLiteral("list/") + SandboxDemo::inboxListID + QStringLiteral("/task"), task));
        QVERIFY(post && post->is<NVError::NotAuthenticated>());
        const auto put = failureOf(client.put<NVTaskSummary>(QStringLiteral("task/1"), UpdateTaskRequest()));
        QVERIFY(put && put->is<NVError::NotAuthenticated>());
        QCOMPARE(m_sandbox.requests().size(), 0);
    }

    void theTokenGoesOutBareInTheAuthorizationHeader() {
        const UserResponse answer = runTask(client().get<UserResponse>(QStringLiteral("user")));
        QCOMPARE(answer.user.id, m_sandbox.tokens().first().userID);
        const QJsonArray log = m_sandbox.requests();
        QCOMPARE(log.size(), 1);
        const QJsonObject entry = log.first().toObject();
        QCOMPARE(entry.value(QStringLiteral("method")).toString(), QStringLiteral("GET"));
        QCOMPARE(entry.value(QStringLiteral("path")).toString(), QStringLiteral("/api/v2/user"));
        QCOMPARE(headerOf(entry, QStringLiteral("Authorization")).toString(), m_sandbox.token());
        QVERIFY(headerOf(entry, QStringLiteral("Content-Type")).isUndefined());
        QCOMPARE(entry.value(QStringLiteral("bodySize")).toInteger(), 0);
    }

    void aRejectedTokenShowsTheServicesOwnText() {
        const StaticTokenAuth wrongToken(QStringLiteral("pk_not_a_real_token"));
        const NorvaneClient client(wrongToken, &m_session, nullptr, m_sandbox.apiUrl(u""), m_sleeper.sleeper());
        const auto rejected = failureOf(client.get<UserResponse>(QStringLiteral("user")));
        QVERIFY(rejected && rejected->is<NVError::Unauthorized>());
        QCOMPARE(rejected->errorDescription(), QStringLiteral("Token invalid"));

        QVERIFY(addFault(failure(QStringLiteral("/api/v2/user"), 401, QStringLiteral("Token revoked by an admin"))));
        const auto revoked = failureOf(this->client().get<UserResponse>(QStringLiteral("user")));
        QVERIFY(revoked && revoked->is<NVError::Unauthorized>());
        QCOMPARE(revoked->as<NVError::Unauthorized>()->detail,
                 std::optional(QStringLiteral("Token revoked by an admin")));
        QCOMPARE(revoked->errorDescription(), QStringLiteral("Token revoked by an admin"));
        QCOMPARE(m_sleeper.waits().size(), 0);
    }

    void aRejectedTokenWithAChallengeStillShowsTheServicesText() {
        SandboxFault challenged = failure(QStringLiteral("/api/v2/user"), 401, QStringLiteral("Token expired"));
        challenged.headers.insert(QStringLiteral("WWW-Authenticate"), QStringLiteral("Basic realm=\"norvane\""));
        QVERIFY(addFault(challenged));
        const auto error = failureOf(client().get<UserResponse>(QStringLiteral("user")));
        QVERIFY(error && error->is<NVError::Unauthorized>());
        QCOMPARE(error->errorDescription(), QStringLiteral("Token expired"));
        QCOMPARE(m_sandbox.requests().size(), 1);
    }

    void aRejectedTokenWithAnEmptyErrShowsTheDefaultText() {
        QVERIFY(addFault(failure(QStringLiteral("/api/v2/user"), 401, QString())));
        const auto error = failureOf(client().get<UserResponse>(QStringLiteral("user")));
        QVERIFY(error && error->is<NVError::Unauthorized>());
        QCOMPARE(error->as<NVError::Unauthorized>()->detail, std::optional(QString()));
        QCOMPARE(error->errorDescription(), QStringLiteral("Norvane rejected the API token. Check it in Settings."));
    }

    void aRejectedTokenWithABodyThatIsNotJSONShowsTheDefaultText() {
        QVERIFY(addFault(textAnswer(QStringLiteral("/api/v2/user"), 401, QStringLiteral("Unauthorized"))));
        const auto error = failureOf(client().get<UserResponse>(QStringLiteral("user")));
        QVERIFY(error && error->is<NVError::Unauthorized>());
        QCOMPARE(error->as<NVError::Unauthorized>()->detail, std::optional(NVError::rejectedTokenText()));
        QCOMPARE(error->errorDescription(), QStringLiteral("Norvane rejected the API token. Check it in Settings."));
        QCOMPARE(m_sandbox.requests().size(), 1);
    }

    void aServerFailureWithABodyThatIsNotJSONNamesTheStatus() {
        QVERIFY(addFault(textAnswer(QStringLiteral("/api/v2/team"), 500, QStringLiteral("<html>Bad gateway</html>"))));
        const auto error = failureOf(client().get<TeamsResponse>(QStringLiteral("team")));
        QVERIFY(error && error->is<NVError::Server>());
        QCOMPARE(*error->as<NVError::Server>(),
                 (NVError::Server{std::nullopt, QStringLiteral("Norvane error (HTTP 500)"), 500}));
        QCOMPARE(error->errorDescription(), QStringLiteral("Norvane error (HTTP 500)"));
        QCOMPARE(m_sandbox.requests().size(), 1);
    }

    void aServerFailureWithAnEmptyErrShowsAnEmptyText() {
        QVERIFY(addFault(failure(QStringLiteral("/api/v2/team"), 500, QString())));
        const auto error = failureOf(client().get<TeamsResponse>(QStringLiteral("team")));
        QVERIFY(error && error->is<NVError::Server>());
        QCOMPARE(*error->as<NVError::Server>(), (NVError::Server{std::nullopt, QString(), 500}));
        QCOMPARE(error->errorDescription(), QString());
    }

    void aServerFailureKeepsTheServicesCodeAndMessage() {
        const auto error = failureOf(client().get<NVList>(QStringLiteral("list/901599999999")));
        QVERIFY(error && error->is<NVError::Server>());
        QCOMPARE(*error->as<NVError::Server>(),
                 (NVError::Server{QStringLiteral("LIST_NOT_FOUND"), QStringLiteral("List not found"), 404}));
        QCOMPARE(error->errorDescription(), QStringLiteral("List not found"));
    }

    void theStorageLimitCodeMeansStorageLimitExceeded() {
        QVERIFY(addFault(failure(QStringLiteral("/api/v2/team"), 403, QStringLiteral("Storage used up"),
                                 QStringLiteral("GBUSED_005"))));
        const auto forbidden = failureOf(client().get<TeamsResponse>(QStringLiteral("team")));
        QVERIFY(forbidden && forbidden->is<NVError::StorageLimitExceeded>());
        QCOMPARE(forbidden->errorDescription(),
                 QStringLiteral("Your Norvane workspace storage limit has been reached. Upgrade your plan or free up "
                                "space, then try again."));
        // The code alone decides, whatever the status.
        QVERIFY(addFault(failure(QStringLiteral("/api/v2/team"), 500, std::nullopt, QStringLiteral("GBUSED_005"))));
        const auto internal = failureOf(client().get<TeamsResponse>(QStringLiteral("team")));
        QVERIFY(internal && internal->is<NVError::StorageLimitExceeded>());
        QVERIFY(
            addFault(failure(QStringLiteral("/api/v2/team"), 403, QStringLiteral("No"), QStringLiteral("GBUSED_004"))));
        const auto other = failureOf(client().get<TeamsResponse>(QStringLiteral("team")));
        QVERIFY(other && other->is<NVError::Server>());
        QCOMPARE(other->as<NVError::Server>()->code, std::optional(QStringLiteral("GBUSED_004")));
    }

    void aRateLimitOf300SecondsWaits120AndTriesOnceMore() {
        QVERIFY(addFault(rateLimit(QStringLiteral("/api/v2/user"), QStringLiteral("300"))));
        const UserResponse answer = runTask(client().get<UserResponse>(QStringLiteral("user")));
        QCOMPARE(answer.user.id, m_sandbox.tokens().first().userID);
        QCOMPARE(m_sleeper.waits(), QList<std::chrono::milliseconds>{120s});
        const QJsonArray log = m_sandbox.requests();
        QCOMPARE(log.size(), 2);
        QCOMPARE(log[0].toObject().value(QStringLiteral("status")).toInt(), 429);
        QCOMPARE(log[1].toObject().value(QStringLiteral("status")).toInt(), 200);
    }

    void aRateLimitWithoutAUsableWaitWaitsTwoSeconds_data() {
        QTest::addColumn<std::optional<QString>>("retryAfter");
        QTest::newRow("zero") << std::optional(QStringLiteral("0"));
        QTest::newRow("minus five") << std::optional(QStringLiteral("-5"));
        QTest::newRow("no header") << std::optional<QString>();
        QTest::newRow("rubbish") << std::optional(QStringLiteral("soon, promise"));
        QTest::newRow("date in the past") << std::optional(QStringLiteral("Tue, 11 Jun 2024 09:00:00 GMT"));
    }

    void aRateLimitWithoutAUsableWaitWaitsTwoSeconds() {
        QFETCH(std::optional<QString>, retryAfter);
        QVERIFY(addFault(rateLimit(QStringLiteral("/api/v2/team"), retryAfter)));
        const TeamsResponse answer = runTask(client().get<TeamsResponse>(QStringLiteral("team")));
        QVERIFY(!answer.teams.isEmpty());
        QCOMPARE(m_sleeper.waits(), QList<std::chrono::milliseconds>{2s});
        QCOMPARE(m_sandbox.requests().size(), 2);
    }

    void aRateLimitWaitsAsLongAsItAsks_data() {
        QTest::addColumn<QString>("retryAfter");
        QTest::addColumn<std::chrono::milliseconds>("wait");
        QTest::newRow("seconds with a fraction") << QStringLiteral("1.5") << std::chrono::milliseconds(1500);
        QTest::newRow("just under the cap") << QStringLiteral("119") << std::chrono::milliseconds(119s);
        QTest::newRow("date in half a minute")
            << QStringLiteral("Tue, 11 Jun 2024 09:30:30 GMT") << std::chrono::milliseconds(30s);
        QTest::newRow("date in an hour") << QStringLiteral("Tue, 11 Jun 2024 10:30:00 GMT")
                                         << std::chrono::milliseconds(120s);
    }

    void aRateLimitWaitsAsLongAsItAsks() {
        QFETCH(QString, retryAfter);
        QFETCH(std::chrono::milliseconds, wait);
        QVERIFY(addFault(rateLimit(QStringLiteral("/api/v2/team"), retryAfter)));
        runTask(client().get<TeamsResponse>(QStringLiteral("team")));
        QCOMPARE(m_sleeper.waits(), QList<std::chrono::milliseconds>{wait});
    }

    void aSecondRateLimitFailsWithTheSecondWait() {
        QVERIFY(addFault(rateLimit(QStringLiteral("/api/v2/user"), QStringLiteral("10"))));
        QVERIFY(addFault(rateLimit(QStringLiteral("/api/v2/user"), QStringLiteral("45"))));
        const auto error = failureOf(client().get<UserResponse>(QStringLiteral("user")));
        QVERIFY(error && error->is<NVError::RateLimited>());
        QCOMPARE(error->as<NVError::RateLimited>()->retryAfter, std::optional(45.0));
        QCOMPARE(error->errorDescription(), QStringLiteral("Norvane rate limit reached. Try again in a moment."));
        QCOMPARE(m_sleeper.waits(), QList<std::chrono::milliseconds>{10s});
        QCOMPARE(m_sandbox.requests().size(), 2);
    }

    void aSecondRateLimitWithoutAWaitFailsWithoutOne() {
        QVERIFY(addFault(rateLimit(QStringLiteral("/api/v2/user"), QStringLiteral("10"))));
        QVERIFY(addFault(rateLimit(QStringLiteral("/api/v2/user"), std::nullopt)));
        const auto error = failureOf(client().get<UserResponse>(QStringLiteral("user")));
        QVERIFY(error && error->is<NVError::RateLimited>());
        QCOMPARE(error->as<NVError::RateLimited>()->retryAfter, std::nullopt);
    }

    void aRateLimitThenARejectedTokenIsUnauthorized() {
        QVERIFY(addFault(rateLimit(QStringLiteral("/api/v2/user"), QStringLiteral("1"))));
        QVERIFY(addFault(failure(QStringLiteral("/api/v2/user"), 401, QStringLiteral("Token expired"))));
        const auto error = failureOf(client().get<UserResponse>(QStringLiteral("user")));
        QVERIFY(error && error->is<NVError::Unauthorized>());
        QCOMPARE(error->errorDescription(), QStringLiteral("Token expired"));
        QCOMPARE(m_sleeper.waits(), QList<std::chrono::milliseconds>{1s});
        QCOMPARE(m_sandbox.requests().size(), 2);
    }

    void otherFailuresAreNotRetried() {
        QVERIFY(addFault(failure(QStringLiteral("/api/v2/team"), 503, QStringLiteral("Maintenance"))));
        const auto error = failureOf(client().get<TeamsResponse>(QStringLiteral("team")));
        QVERIFY(error && error->is<NVError::Server>());
        QCOMPARE(error->as<NVError::Server>()->statusCode, std::optional(503));
        QCOMPARE(m_sleeper.waits().size(), 0);
        QCOMPARE(m_sandbox.requests().size(), 1);
    }

    void aTaskIsCreatedWithASortedJSONBody() {
        CreateTaskRequest request;
        request.name = QStringLiteral("Call the printer people");
        request.markdownDescription = QStringLiteral("Toner **and** paper");
        request.tags = QList<QString>{QStringLiteral("bug")};
        request.dueDate = 1718092800000;
        request.dueDateTime = false;
        request.assignees = QList<qint64>{SandboxDemo::firstUserID};
        const CreatedTask created = runTask(client().post<CreatedTask>(
            QStringLiteral("list/") + SandboxDemo::inboxListID + QStringLiteral("/task"), request));
        QCOMPARE(created.name, request.name);
        QVERIFY(!created.id.isEmpty());
        const QJsonObject entry = lastRequest();
        QCOMPARE(entry.value(QStringLiteral("method")).toString(), QStringLiteral("POST"));
        QCOMPARE(entry.value(QStringLiteral("path")).toString(),
                 QStringLiteral("/api/v2/list/") + SandboxDemo::inboxListID + QStringLiteral("/task"));
        QCOMPARE(headerOf(entry, QStringLiteral("Content-Type")).toString(), QStringLiteral("application/json"));
        QCOMPARE(headerOf(entry, QStringLiteral("Authorization")).toString(), m_sandbox.token());
        QCOMPARE(entry.value(QStringLiteral("json")).toObject(), request.toJson());
        const QByteArray expected =
            "{\"assignees\":[4810001],\"due_date\":1718092800000,\"due_date_time\":false,"
            "\"markdown_description\":\"Toner **and** paper\",\"name\":\"Call the printer people\","
            "\"tags\":[\"bug\"]}";
        QCOMPARE(Json::serialize(request.toJson()), expected);
        QCOMPARE(entry.value(QStringLiteral("bodySize")).toInteger(), expected.size());
    }

    void aWriteAsksForAnUncompressedAnswerAndAReadForACompressedOne() {
        runTask(client().get<UserResponse>(QStringLiteral("user")));
        QVERIFY(headerOf(lastRequest(), QStringLiteral("Accept-Encoding")).toString().contains(u"gzip"));
        CreateTaskRequest request;
        request.name = QStringLiteral("Plain answer");
        runTask(client().post<CreatedTask>(QStringLiteral("list/") + SandboxDemo::inboxListID + QStringLiteral("/task"),
                                           request));
        QCOMPARE(headerOf(lastRequest(), QStringLiteral("Accept-Encoding")).toString(), QStringLiteral("identity"));
    }

    void theRetryIsTheVerySameRequest() {
        QVERIFY(addFault(rateLimit(QStringLiteral("/api/v2/task/*/comment"), QStringLiteral("3"))));
        const QString task = createTask(QStringLiteral("Needs a comment"));
        const qint64 before = lastRequest().value(QStringLiteral("seq")).toInteger();
        runTask(client().post<CommentResponse>(QStringLiteral("task/") + task + QStringLiteral("/comment"),
                                               CommentRequest{QStringLiteral("Done, see the log")}));
        const QJsonArray attempts = m_sandbox.requests(before);
        QCOMPARE(attempts.size(), 2);
        const QJsonObject first = attempts[0].toObject();
        const QJsonObject second = attempts[1].toObject();
        QCOMPARE(first.value(QStringLiteral("status")).toInt(), 429);
        QCOMPARE(second.value(QStringLiteral("status")).toInt(), 200);
        for (const QString& key : {QStringLiteral("method"), QStringLiteral("path"), QStringLiteral("query"),
                                   QStringLiteral("json"), QStringLiteral("bodySize")}) {
            QCOMPARE(second.value(key), first.value(key));
        }
        QCOMPARE(headerOf(second, QStringLiteral("Authorization")), headerOf(first, QStringLiteral("Authorization")));
        QCOMPARE(first.value(QStringLiteral("json")).toObject(),
                 QJsonObject({{QStringLiteral("comment_text"), QStringLiteral("Done, see the log")}}));
        QCOMPARE(m_sleeper.waits(), QList<std::chrono::milliseconds>{3s});
    }

    void aChangeIsPutWithOnlyWhatChanges() {
        const QString task = createTask(QStringLiteral("Move me"));
        UpdateTaskRequest change;
        change.dueDate = 1718179200000;
        change.dueDateTime = true;
        const NVTaskSummary changed = runTask(client().put<NVTaskSummary>(QStringLiteral("task/") + task, change));
        QCOMPARE(changed.id, task);
        QCOMPARE(changed.dueDate, std::optional(QStringLiteral("1718179200000")));
        const QJsonObject entry = lastRequest();
        QCOMPARE(entry.value(QStringLiteral("method")).toString(), QStringLiteral("PUT"));
        QCOMPARE(entry.value(QStringLiteral("json")).toObject(),
                 QJsonObject(
                     {{QStringLiteral("due_date"), qint64(1718179200000)}, {QStringLiteral("due_date_time"), true}}));
    }

    void aSuccessWithoutARequiredKeyIsADecodingFailure() {
        QVERIFY(addFault(
            textAnswer(QStringLiteral("/api/v2/user"), 200, QStringLiteral("{\"user\":{\"username\":\"ann\"}}"))));
        const auto error = failureOf(client().get<UserResponse>(QStringLiteral("user")));
        QVERIFY(error && error->is<NVError::Decoding>());
        QCOMPARE(error->as<NVError::Decoding>()->path, QStringLiteral("$.user.id"));
        QCOMPARE(error->errorDescription(), QStringLiteral("Unexpected response from Norvane."));
    }

    void aSuccessWithAnEmptyBodyIsADecodingFailure() {
        const QString task = createTask(QStringLiteral("Empty answer"));
        QVERIFY(addFault(textAnswer(QStringLiteral("/api/v2/task/*/comment"), 200, QString())));
        const auto error = failureOf(client().post<CommentResponse>(
            QStringLiteral("task/") + task + QStringLiteral("/comment"), CommentRequest{QStringLiteral("Hello")}));
        QVERIFY(error && error->is<NVError::Decoding>());
    }

    void queryItemsGoOutInTheGivenOrder() {
        const NorvaneClient::QueryItems query{
            {QStringLiteral("include_closed"), QStringLiteral("false")},
            {QStringLiteral("subtasks"), QStringLiteral("true")},
            {QStringLiteral("order_by"), QStringLiteral("due_date")},
            {QStringLiteral("page"), QStringLiteral("0")},
            {QStringLiteral("assignees[]"), QString::number(SandboxDemo::firstUserID)},
        };
        const TeamTasksResponse page = runTask(client().get<TeamTasksResponse>(
            QStringLiteral("team/") + SandboxDemo::northwindID + QStringLiteral("/task"), query));
        QCOMPARE(page.tasks.size(), 100);
        QCOMPARE(queryOf(lastRequest()), query);
    }

    void pathAndQueryKeepEveryCharacter() {
        QVERIFY(addFault(textAnswer(QStringLiteral("/api/v2/odd**"), 200, QStringLiteral("{}"))));
        const NorvaneClient::QueryItems query{
            {QStringLiteral("list_ids[]"), QStringLiteral("a+b")},
            {QStringLiteral("x"), QStringLiteral("&y=z#w")},
            {QStringLiteral("statuses[]"), QStringLiteral("in review")},
            {QStringLiteral("ü"), QStringLiteral("100% ✓")},
            {QStringLiteral("x"), QString()},
        };
        runTask(client().get<CommentResponse>(QStringLiteral("odd name/with?mark#and%"), query));
        const QJsonObject entry = lastRequest();
        QCOMPARE(entry.value(QStringLiteral("path")).toString(), QStringLiteral("/api/v2/odd name/with?mark#and%"));
        QCOMPARE(queryOf(entry), query);
    }

    void aRedirectIsFollowedWithARequestOfItsOwn() {
        QVERIFY(addFault(redirect(QStringLiteral("/api/v2/me"), 302, QStringLiteral("/api/v2/user"))));
        const UserResponse answer = runTask(client().get<UserResponse>(QStringLiteral("me")));
        QCOMPARE(answer.user.id, m_sandbox.tokens().first().userID);
        // A redirect that the session followed inside one reply would show a single request here.
        QCOMPARE(m_session.paths, QStringList({QStringLiteral("/api/v2/me"), QStringLiteral("/api/v2/user")}));
        // Nothing else went out: no second request for the first hop.
        const QJsonArray log = m_sandbox.requests();
        QCOMPARE(log.size(), 2);
        QCOMPARE(log[0].toObject().value(QStringLiteral("path")).toString(), QStringLiteral("/api/v2/me"));
        QCOMPARE(log[0].toObject().value(QStringLiteral("status")).toInt(), 302);
        QCOMPARE(log[1].toObject().value(QStringLiteral("path")).toString(), QStringLiteral("/api/v2/user"));
        QCOMPARE(log[1].toObject().value(QStringLiteral("status")).toInt(), 200);
        for (const QJsonValue& entry : log) {
            QCOMPARE(entry.toObject().value(QStringLiteral("method")).toString(), QStringLiteral("GET"));
            QCOMPARE(headerOf(entry.toObject(), QStringLiteral("Authorization")).toString(), m_sandbox.token());
        }
    }

    void aRedirectedPostGoesOnAsAGetWithoutItsBody() {
        const QString task = createTask(QStringLiteral("Moved comments"));
        const qint64 before = lastRequest().value(QStringLiteral("seq")).toInteger();
        QVERIFY(addFault(redirect(QStringLiteral("/api/v2/task/*/comment"), 303, QStringLiteral("/api/v2/user"))));
        const UserResponse answer = runTask(client().post<UserResponse>(
            QStringLiteral("task/") + task + QStringLiteral("/comment"), CommentRequest{QStringLiteral("Hi")}));
        QCOMPARE(answer.user.id, m_sandbox.tokens().first().userID);
        const QJsonArray log = m_sandbox.requests(before);
        QCOMPARE(log.size(), 2);
        QCOMPARE(log[0].toObject().value(QStringLiteral("method")).toString(), QStringLiteral("POST"));
        const QJsonObject moved = log[1].toObject();
        QCOMPARE(moved.value(QStringLiteral("method")).toString(), QStringLiteral("GET"));
        QCOMPARE(moved.value(QStringLiteral("path")).toString(), QStringLiteral("/api/v2/user"));
        QCOMPARE(moved.value(QStringLiteral("bodySize")).toInteger(), 0);
        QVERIFY(headerOf(moved, QStringLiteral("Content-Type")).isUndefined());
        QCOMPARE(headerOf(moved, QStringLiteral("Authorization")).toString(), m_sandbox.token());
    }

    void aTemporaryRedirectSendsTheSameMethodAndBodyAgain() {
        const QString path = QStringLiteral("/api/v2/list/") + SandboxDemo::inboxListID + QStringLiteral("/task");
        QVERIFY(addFault(redirect(path, 307, path)));
        const QString id = createTask(QStringLiteral("Sent twice"));
        QVERIFY(!id.isEmpty());
        const QJsonArray log = m_sandbox.requests();
        QCOMPARE(log.size(), 2);
        QCOMPARE(log[0].toObject().value(QStringLiteral("status")).toInt(), 307);
        QCOMPARE(log[1].toObject().value(QStringLiteral("status")).toInt(), 200);
        for (const QJsonValue& entry : log) {
            QCOMPARE(entry.toObject().value(QStringLiteral("method")).toString(), QStringLiteral("POST"));
            QCOMPARE(entry.toObject().value(QStringLiteral("json")).toObject().value(QStringLiteral("name")).toString(),
                     QStringLiteral("Sent twice"));
        }
    }

    void endlessRedirectsFailAfterFifty() {
        QVERIFY(addFault(redirect(QStringLiteral("/api/v2/loop"), 302, QStringLiteral("/api/v2/loop"), -1)));
        const auto error = failureOf(client().get<UserResponse>(QStringLiteral("loop")));
        QVERIFY(error && error->is<NVError::Network>());
        QCOMPARE(error->as<NVError::Network>()->error, QNetworkReply::TooManyRedirectsError);
        QCOMPARE(m_sandbox.requests().size(), 51);
    }

    void aDroppedConnectionIsANetworkFailure() {
        SandboxFault dropped = SandboxFault::dropConnection(QStringLiteral("/api/v2/team"));
        // Qt sends the request again on a new connection once before it gives up.
        dropped.times = -1;
        QVERIFY(addFault(dropped));
        const auto error = failureOf(client().get<TeamsResponse>(QStringLiteral("team")));
        QVERIFY(error && error->is<NVError::Network>());
        QCOMPARE(error->errorDescription(), QStringLiteral("Couldn't reach Norvane. Check your connection."));
        QCOMPARE(m_sleeper.waits().size(), 0);
    }

    void aPostWhoseAnswerIsLostIsSentOnceAndFails() {
        SandboxFault lost = SandboxFault::dropAnswer(QStringLiteral("/api/v2/list/*/task"), 1);
        lost.method = QStringLiteral("POST");
        QVERIFY(addFault(lost));
        CreateTaskRequest request;
        request.name = QStringLiteral("Its answer is lost");
        const auto error = failureOf(client().post<CreatedTask>(
            QStringLiteral("list/") + SandboxDemo::inboxListID + QStringLiteral("/task"), request));
        QVERIFY(error && error->is<NVError::Network>());
        // The whole request went out: the client can't know whether the task exists.
        QVERIFY(error->as<NVError::Network>()->requestSent);
        QVERIFY(error->outcomeUnknown());
        // The service created it; a second send would have created it again.
        qsizetype posts = 0;
        for (const QJsonValue& entry : m_sandbox.requests()) {
            posts += entry[QStringLiteral("method")].toString() == QStringLiteral("POST") ? 1 : 0;
        }
        QCOMPARE(posts, 1);
        QCOMPARE(m_sleeper.waits().size(), 0);
    }

    void aServerErrorAnswersAPostWhoseOutcomeIsKnown() {
        QVERIFY(addFault(SandboxFault::taskCreationAnswer(503)));
        CreateTaskRequest request;
        request.name = QStringLiteral("Refused");
        const auto error = failureOf(client().post<CreatedTask>(
            QStringLiteral("list/") + SandboxDemo::inboxListID + QStringLiteral("/task"), request));
        QVERIFY(error && error->is<NVError::Server>());
        QVERIFY(!error->outcomeUnknown());
    }

    void everyAnswerOfTheSandboxDecodes() {
        const QString space = SandboxDemo::productSpaceID;
        const QString list = SandboxDemo::inboxListID;
        QVERIFY(!runTask(client().get<TeamsResponse>(QStringLiteral("team"))).teams.isEmpty());
        QVERIFY(!runTask(client().get<SpacesResponse>(QStringLiteral("team/") + SandboxDemo::northwindID +
                                                      QStringLiteral("/space")))
                     .spaces.isEmpty());
        QVERIFY(!runTask(client().get<FoldersResponse>(QStringLiteral("space/") + space + QStringLiteral("/folder")))
                     .folders.isEmpty());
        runTask(client().get<ListsResponse>(QStringLiteral("space/") + space + QStringLiteral("/list")));
        QCOMPARE(runTask(client().get<NVList>(QStringLiteral("list/") + list)).id, list);
        QVERIFY(!runTask(client().get<MembersResponse>(QStringLiteral("list/") + list + QStringLiteral("/member")))
                     .members.isEmpty());
        runTask(client().get<TagsResponse>(QStringLiteral("space/") + space + QStringLiteral("/tag")));
        const FieldsResponse fields =
            runTask(client().get<FieldsResponse>(QStringLiteral("list/") + list + QStringLiteral("/field")));
        QVERIFY(std::any_of(fields.fields.begin(), fields.fields.end(),
                            [](const CustomField& field) { return field.typeConfig && field.typeConfig->options; }));
        const TeamTasksResponse tasks = runTask(client().get<TeamTasksResponse>(
            QStringLiteral("team/") + SandboxDemo::fabrikamID + QStringLiteral("/task")));
        QVERIFY(!tasks.tasks.isEmpty());
        QCOMPARE(m_sleeper.waits().size(), 0);
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(NorvaneClientSandboxTest)
#include "NorvaneClientSandboxTest.moc"
