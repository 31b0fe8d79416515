// The sandbox's fault rules and request log, as the client's retry and error tests will use them:
// answers with a status, headers and an ECODE, delays, dropped connections, and what was received.
#include "support/SandboxDemo.h"
#include "support/SandboxProcess.h"
#include "support/SyncHttpClient.h"
#include "support/TestMain.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QHttpMultiPart>
#include <QJsonArray>
#include <QNetworkProxy>
#include <QTcpSocket>
#include <QTest>
#include <memory>

class SandboxFaultTest : public QObject {
    Q_OBJECT

    SandboxProcess m_sandbox;
    SyncHttpClient m_http;

    HttpResult getTeams() { return m_http.get(m_sandbox.apiUrl(u"team"), m_sandbox.token()); }

    QString taskID() {
        return SandboxDemo::firstNorthwindTask(m_http, m_sandbox).value(QStringLiteral("id")).toString();
    }

    HttpResult upload(int bytes) {
        const QString task = taskID();
        QHttpMultiPart multipart(QHttpMultiPart::FormDataType);
        QHttpPart part;
        part.setHeader(QNetworkRequest::ContentDispositionHeader,
                       QByteArray("form-data; name=\"attachment\"; filename=\"a.bin\""));
        part.setBody(QByteArray(bytes, 'u'));
        multipart.append(part);
        return m_http.sendMultipart(m_sandbox.apiUrl(QStringLiteral("task/%1/attachment").arg(task)),
                                    SyncHttpClient::authorization(m_sandbox.token()), &multipart);
    }

    int tasksNamed(const QString& name) {
        const QHash<QString, QString> tasks = SandboxDemo::openTaskNames(m_http, m_sandbox, SandboxDemo::supportListID);
        return static_cast<int>(std::count(tasks.cbegin(), tasks.cend(), name));
    }

    HttpResult postRule(const QByteArray& rule) {
        return m_http.send("POST", m_sandbox.webUrl(u"/_sandbox/faults"), {{"Content-Type", "application/json"}}, rule);
    }

private slots:
    void initTestCase() { QVERIFY2(m_sandbox.start(), qPrintable(m_sandbox.errorString())); }

    void init() { QVERIFY(m_sandbox.reset()); }

    void rateLimitWithRetryAfterThenSuccess() {
        SandboxFault fault = SandboxFault::answer(QStringLiteral("/api/v2/team"), 429);
        fault.headers.insert(QStringLiteral("Retry-After"), QStringLiteral("3"));
        QVERIFY2(m_sandbox.addFault(fault), qPrintable(m_sandbox.errorString()));
        const HttpResult limited = getTeams();
        QCOMPARE(limited.status, 429);
        QCOMPARE(limited.header("Retry-After"), QByteArray("3"));
        QVERIFY(!limited.json().value(QStringLiteral("err")).toString().isEmpty());
        QCOMPARE(getTeams().status, 200);
    }

    void serviceUnavailableFiveTimes() {
        QVERIFY(m_sandbox.addFault(SandboxFault::answer(QStringLiteral("/api/v2/task/*/attachment"), 503, 5)));
        for (int attempt = 0; attempt < 5; ++attempt) {
            QCOMPARE(upload(1000).status, 503);
        }
        QCOMPARE(upload(1000).status, 200);
    }

    void droppedConnectionGetsNoAnswer() {
        QVERIFY(m_sandbox.addFault(SandboxFault::dropConnection(QStringLiteral("/api/v2/team"))));
        const HttpResult dropped = getTeams();
        QVERIFY(!dropped.answered());
        QVERIFY(!dropped.timedOut);
        QCOMPARE(dropped.error, QNetworkReply::RemoteHostClosedError);
        // Qt sent the request a second time on a new connection before it gave up.
        const QJsonArray log = m_sandbox.requests();
        QCOMPARE(log.size(), 2);
        QCOMPARE(log[0].toObject().value(QStringLiteral("status")).toInt(), 0);
        QCOMPARE(log[1].toObject().value(QStringLiteral("status")).toInt(), 0);
        QCOMPARE(getTeams().status, 200);
    }

    void droppedUploadGetsNoAnswer() {
        QVERIFY(m_sandbox.addFault(SandboxFault::dropConnection(QStringLiteral("/api/v2/task/*/attachment"))));
        const HttpResult dropped = upload(4 * 1024 * 1024);
        QVERIFY(!dropped.answered());
        QVERIFY(dropped.error != QNetworkReply::NoError);
        QCOMPARE(m_sandbox.requests().last().toObject().value(QStringLiteral("status")).toInt(), 0);
    }

    void aDroppedAnswerComesAfterTheTaskIsCreated() {
        SandboxFault fault = SandboxFault::dropAnswer(QStringLiteral("/api/v2/list/*/task"), 1);
        fault.method = QStringLiteral("POST");
        QVERIFY(m_sandbox.addFault(fault));
        // A plain socket, so that no network stack sends the request a second time.
        const QByteArray body = R"({"name": "Answer lost"})";
        QTcpSocket socket;
        socket.connectToHost(QStringLiteral("127.0.0.1"), static_cast<quint16>(m_sandbox.port()));
        QVERIFY(socket.waitForConnected(5000));
        socket.write("POST /api/v2/list/" + SandboxDemo::supportListID.toLatin1() +
                     "/task HTTP/1.1\r\nHost: 127.0.0.1\r\nAuthorization: " + m_sandbox.token().toLatin1() +
                     "\r\nContent-Type: application/json\r\nContent-Length: " + QByteArray::number(body.size()) +
                     "\r\n\r\n" + body);
        QByteArray received;
        while (socket.state() == QAbstractSocket::ConnectedState && socket.waitForReadyRead(5000)) {
            received += socket.readAll();
        }
        received += socket.readAll();
        QCOMPARE(received, QByteArray());
        QCOMPARE(socket.state(), QAbstractSocket::UnconnectedState);

        QCOMPARE(tasksNamed(QStringLiteral("Answer lost")), 1);
        const QJsonArray log = m_sandbox.requests();
        QCOMPARE(log.size(), 2);
        QCOMPARE(log[0][QStringLiteral("method")].toString(), QStringLiteral("POST"));
        QCOMPARE(log[0][QStringLiteral("status")].toInt(), 0);
        QVERIFY(log[0][QStringLiteral("fault")].isDouble());
        // The rule is spent: the next creation is answered.
        const HttpResult answered =
            m_http.postJson(m_sandbox.apiUrl(QStringLiteral("list/%1/task").arg(SandboxDemo::supportListID)),
                            m_sandbox.token(), QJsonObject{{QStringLiteral("name"), QStringLiteral("Answered")}});
        QCOMPARE(answered.status, 200);
        QCOMPARE(tasksNamed(QStringLiteral("Answered")), 1);
    }

    void anAnswerAfterRuleCreatesTheTaskAndAnswersInItsPlace() {
        QVERIFY(m_sandbox.addFault(
            SandboxFault::garbleAnswer(QStringLiteral("/api/v2/list/*/task")).forMethod(QStringLiteral("POST"))));
        const HttpResult garbled =
            m_http.postJson(m_sandbox.apiUrl(QStringLiteral("list/%1/task").arg(SandboxDemo::supportListID)),
                            m_sandbox.token(), QJsonObject{{QStringLiteral("name"), QStringLiteral("Answer garbled")}});
        QCOMPARE(garbled.status, 200);
        QCOMPARE(garbled.body, QByteArray("<html>Gateway says hello</html>"));
        QCOMPARE(tasksNamed(QStringLiteral("Answer garbled")), 1);
        const QJsonArray log = m_sandbox.requests();
        QCOMPARE(log[0][QStringLiteral("status")].toInt(), 200);
        QVERIFY(log[0][QStringLiteral("fault")].isDouble());
    }

    void anUploadWhoseAnswerIsDroppedIsStored() {
        QVERIFY(m_sandbox.addFault(SandboxFault::dropAnswer(QStringLiteral("/api/v2/task/*/attachment"))));
        const HttpResult dropped = upload(1000);
        QVERIFY(!dropped.answered());
        // Qt sent it once more before it gave up, and each copy was stored.
        int lost = 0;
        for (const QJsonValue entry : m_sandbox.requests()) {
            lost += entry[QStringLiteral("method")].toString() == QStringLiteral("POST") &&
                            entry[QStringLiteral("status")].toInt() == 0
                        ? 1
                        : 0;
        }
        QCOMPARE(lost, 2);
        const QString page = QString::fromUtf8(m_http.get(m_sandbox.webUrl(QStringLiteral("/t/") + taskID())).body);
        QCOMPARE(page.count(QStringLiteral(">a.bin</a>")), 2);
    }

    void delayedAnswer() {
        QVERIFY(m_sandbox.addFault(SandboxFault::delay(QStringLiteral("/api/v2/team"), 200)));
        const HttpResult delayed = getTeams();
        QCOMPARE(delayed.status, 200);
        QVERIFY2(delayed.elapsedMs >= 200, qPrintable(QString::number(delayed.elapsedMs)));
        QCOMPARE(delayed.json().value(QStringLiteral("teams")).toArray().size(), 2);
    }

    void aHeldRequestIsAnsweredOnlyOnceReleased() {
        QVERIFY(m_sandbox.addFault(SandboxFault::hold(QStringLiteral("/api/v2/team"))));
        QNetworkAccessManager manager;
        manager.setProxy(QNetworkProxy::NoProxy);
        QNetworkRequest request(m_sandbox.apiUrl(u"team"));
        request.setRawHeader("Authorization", m_sandbox.token().toUtf8());
        std::unique_ptr<QNetworkReply> held(manager.get(request));
        QTRY_COMPARE(m_sandbox.requests().size(), 1);
        // Another request goes by meanwhile: the rule held one request only.
        QCOMPARE(getTeams().status, 200);
        QVERIFY(!held->isFinished());
        QVERIFY(m_sandbox.releaseHeld());
        QTRY_VERIFY(held->isFinished());
        QCOMPARE(held->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(), 200);
    }

    void storageLimitAnswer() {
        SandboxFault fault = SandboxFault::answer(QStringLiteral("/api/v2/task/*/attachment"), 400);
        fault.ecode = QStringLiteral("GBUSED_005");
        fault.err = QStringLiteral("Storage used up");
        QVERIFY(m_sandbox.addFault(fault));
        const HttpResult full = upload(2 * 1024 * 1024);
        QCOMPARE(full.status, 400);
        QCOMPARE(full.json().value(QStringLiteral("ECODE")).toString(), QStringLiteral("GBUSED_005"));
        QCOMPARE(full.json().value(QStringLiteral("err")).toString(), QStringLiteral("Storage used up"));
        // The upload's body was read to its end, so the next request goes through.
        QCOMPARE(getTeams().status, 200);
    }

    void answerThatIsNoJSON() {
        SandboxFault fault = SandboxFault::answer(QStringLiteral("/api/v2/user"), 500);
        fault.bodyText = QStringLiteral("<html>upstream error</html>");
        QVERIFY(m_sandbox.addFault(fault));
        const HttpResult broken = m_http.get(m_sandbox.apiUrl(u"user"), m_sandbox.token());
        QCOMPARE(broken.status, 500);
        QCOMPARE(broken.body, QByteArray("<html>upstream error</html>"));
    }

    void rulesMatchMethodAndPath() {
        SandboxFault onlyPut = SandboxFault::answer(QStringLiteral("/api/v2/task/*"), 409, -1);
        onlyPut.method = QStringLiteral("PUT");
        QVERIFY(m_sandbox.addFault(onlyPut));
        QVERIFY(m_sandbox.addFault(SandboxFault::answer(QStringLiteral("/api/v2/space/**"), 418, -1)));
        const QString task = taskID();
        QCOMPARE(m_http.putJson(m_sandbox.apiUrl(QStringLiteral("task/") + task), m_sandbox.token(), {}).status, 409);
        QCOMPARE(m_http.putJson(m_sandbox.apiUrl(QStringLiteral("task/") + task), m_sandbox.token(), {}).status, 409);
        // One star stays within a path segment; two cross them.
        QCOMPARE(m_http
                     .postJson(m_sandbox.apiUrl(QStringLiteral("task/%1/comment").arg(task)), m_sandbox.token(),
                               {{QStringLiteral("comment_text"), QStringLiteral("hi")}})
                     .status,
                 200);
        QCOMPARE(m_http
                     .get(m_sandbox.apiUrl(QStringLiteral("space/%1/tag").arg(SandboxDemo::productSpaceID)),
                          m_sandbox.token())
                     .status,
                 418);
        QVERIFY(m_sandbox.clearFaults());
        QCOMPARE(m_http.putJson(m_sandbox.apiUrl(QStringLiteral("task/") + task), m_sandbox.token(), {}).status, 200);
    }

    void invalidRulesAreRefused_data() {
        QTest::addColumn<QByteArray>("rule");
        QTest::newRow("not JSON") << QByteArray("{");
        QTest::newRow("no path") << QByteArray(R"({"status": 500})");
        QTest::newRow("relative path") << QByteArray(R"({"path": "api", "status": 500})");
        QTest::newRow("status out of range") << QByteArray(R"({"path": "/x", "status": 99})");
        QTest::newRow("drop and status") << QByteArray(R"({"path": "/x", "status": 500, "drop": true})");
        QTest::newRow("drop after and status") << QByteArray(R"({"path": "/x", "status": 500, "dropAfter": true})");
        QTest::newRow("drop before and after") << QByteArray(R"({"path": "/x", "drop": true, "dropAfter": true})");
        QTest::newRow("answer after without status") << QByteArray(R"({"path": "/x", "answerAfter": true})");
        QTest::newRow("answer after and drop")
            << QByteArray(R"({"path": "/x", "status": 200, "drop": true, "answerAfter": true})");
        QTest::newRow("nothing to do") << QByteArray(R"({"path": "/x"})");
        QTest::newRow("times zero") << QByteArray(R"({"path": "/x", "status": 500, "times": 0})");
        QTest::newRow("delay too long") << QByteArray(R"({"path": "/x", "delayMs": 999999})");
        QTest::newRow("headers of numbers") << QByteArray(R"({"path": "/x", "status": 500, "headers": {"A": 1}})");
        QTest::newRow("one bad rule of two")
            << QByteArray(R"({"rules": [{"path": "/x", "status": 500}, {"status": 1}]})");
    }

    void invalidRulesAreRefused() {
        QFETCH(QByteArray, rule);
        const HttpResult result = postRule(rule);
        QCOMPARE(result.status, 400);
        QVERIFY(!result.json().value(QStringLiteral("err")).toString().isEmpty());
        QCOMPARE(
            m_http.get(m_sandbox.webUrl(u"/_sandbox/faults")).json().value(QStringLiteral("rules")).toArray().size(),
            0);
    }

    void severalRulesAtOnce() {
        const HttpResult added = postRule(R"({"rules": [{"path": "/api/v2/team", "status": 502},
                                                       {"path": "/api/v2/team", "status": 504}]})");
        QCOMPARE(added.status, 200);
        QCOMPARE(added.json().value(QStringLiteral("rules")).toArray().size(), 2);
        QCOMPARE(getTeams().status, 502);
        QCOMPARE(getTeams().status, 504);
        QCOMPARE(getTeams().status, 200);
    }

    void logHoldsWhatWasReceived() {
        QVERIFY(m_sandbox.addFault(SandboxFault::answer(QStringLiteral("/api/v2/user"), 429)));
        m_http.get(m_sandbox.apiUrl(u"user"), m_sandbox.token());
        const QList<QPair<QString, QString>> query{{QStringLiteral("page"), QStringLiteral("2")},
                                                   {QStringLiteral("assignees[]"), QStringLiteral("5")},
                                                   {QStringLiteral("include_closed"), QStringLiteral("false")},
                                                   {QStringLiteral("assignees[]"), QStringLiteral("4")}};
        m_http.get(m_sandbox.apiUrl(QStringLiteral("team/%1/task").arg(SandboxDemo::northwindID), query),
                   m_sandbox.token());
        const QJsonObject body{{QStringLiteral("name"), QStringLiteral("Logged")}, {QStringLiteral("priority"), 3}};
        m_http.postJson(m_sandbox.apiUrl(QStringLiteral("list/%1/task").arg(SandboxDemo::inboxListID)),
                        m_sandbox.token(), body);

        const QJsonArray log = m_sandbox.requests();
        QCOMPARE(log.size(), 3);
        const QJsonObject faulted = log[0].toObject();
        QCOMPARE(faulted.value(QStringLiteral("status")).toInt(), 429);
        QVERIFY(faulted.value(QStringLiteral("fault")).toInt() > 0);
        QCOMPARE(faulted.value(QStringLiteral("method")).toString(), QStringLiteral("GET"));
        QCOMPARE(faulted.value(QStringLiteral("path")).toString(), QStringLiteral("/api/v2/user"));
        QVERIFY(faulted.value(QStringLiteral("headers"))
                    .toArray()
                    .contains(QJsonArray{QStringLiteral("Authorization"), m_sandbox.token()}));
        QVERIFY(!faulted.value(QStringLiteral("time")).toString().isEmpty());

        const QJsonObject search = log[1].toObject();
        QJsonArray expectedQuery;
        for (const auto& [name, value] : query) {
            expectedQuery.append(QJsonArray{name, value});
        }
        QCOMPARE(search.value(QStringLiteral("query")).toArray(), expectedQuery);
        QCOMPARE(search.value(QStringLiteral("status")).toInt(), 200);
        QVERIFY(search.value(QStringLiteral("fault")).isNull());

        const QJsonObject created = log[2].toObject();
        QCOMPARE(created.value(QStringLiteral("json")).toObject(), body);
        QCOMPARE(created.value(QStringLiteral("bodySize")).toInteger(),
                 QJsonDocument(body).toJson(QJsonDocument::Compact).size());
        QCOMPARE(m_sandbox.requests(log[1].toObject().value(QStringLiteral("seq")).toInteger()).size(), 1);
    }

    void logCountsRequestsInFlight() {
        SandboxFault slow = SandboxFault::delay(QStringLiteral("/api/v2/user"), 300);
        slow.times = -1;
        QVERIFY(m_sandbox.addFault(slow));
        QNetworkAccessManager manager;
        manager.setProxy(QNetworkProxy::NoProxy);
        QEventLoop loop;
        int finished = 0;
        constexpr int parallel = 3;
        for (int index = 0; index < parallel; ++index) {
            QNetworkRequest request(m_sandbox.apiUrl(u"user"));
            request.setRawHeader("Authorization", m_sandbox.token().toUtf8());
            QNetworkReply* reply = manager.get(request);
            connect(reply, &QNetworkReply::finished, &loop, [&, reply] {
                reply->deleteLater();
                if (++finished == parallel) {
                    loop.quit();
                }
            });
        }
        loop.exec();
        int most = 0;
        for (const QJsonValue& entry : m_sandbox.requests()) {
            most = std::max(most, entry.toObject().value(QStringLiteral("inFlight")).toInt());
        }
        // All three are normally in flight together; a slow machine may serve one before the last arrives.
        QVERIFY2(most >= 2 && most <= parallel, qPrintable(QString::number(most)));
    }

    void resetRestoresTheSeed() {
        const HttpResult created =
            m_http.postJson(m_sandbox.apiUrl(QStringLiteral("list/%1/task").arg(SandboxDemo::inboxListID)),
                            m_sandbox.token(), {{QStringLiteral("name"), QStringLiteral("Gone after reset")}});
        const QString id = created.json().value(QStringLiteral("id")).toString();
        QCOMPARE(m_http.get(m_sandbox.webUrl(QStringLiteral("/t/") + id)).status, 200);
        QVERIFY(m_sandbox.addFault(SandboxFault::answer(QStringLiteral("/nothing"), 500)));
        QVERIFY(m_sandbox.reset());
        QCOMPARE(m_http.get(m_sandbox.webUrl(QStringLiteral("/t/") + id)).status, 404);
        QCOMPARE(
            m_http.get(m_sandbox.webUrl(u"/_sandbox/faults")).json().value(QStringLiteral("rules")).toArray().size(),
            0);
        QCOMPARE(m_sandbox.requests().size(), 1);
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(SandboxFaultTest)
#include "SandboxFaultTest.moc"
