// Malformed requests sent as raw bytes over TCP: the sandbox answers them or closes the connection,
// never with a server error, and keeps serving afterwards.
#include "support/SandboxDemo.h"
#include "support/SandboxProcess.h"
#include "support/SyncHttpClient.h"
#include "support/TestMain.h"

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QTcpSocket>
#include <QTest>

class SandboxRobustnessTest : public QObject {
    Q_OBJECT

    SandboxProcess m_sandbox;
    SyncHttpClient m_http;

    // Sends the bytes, half-closes nothing, and reads until the server closes or goes quiet.
    QByteArray exchange(const QByteArray& bytes) {
        QTcpSocket socket;
        socket.connectToHost(QHostAddress::LocalHost, static_cast<quint16>(m_sandbox.port()));
        if (!socket.waitForConnected(5000)) {
            return "not connected";
        }
        socket.write(bytes);
        socket.waitForBytesWritten(5000);
        QByteArray answer;
        QElapsedTimer clock;
        clock.start();
        while (socket.state() == QAbstractSocket::ConnectedState && clock.elapsed() < 3000) {
            if (socket.waitForReadyRead(300)) {
                answer += socket.readAll();
            } else if (!answer.isEmpty()) {
                break;
            }
        }
        return answer + socket.readAll();
    }

    QByteArray authorized(const QByteArray& requestLine, const QByteArray& headers, const QByteArray& body) {
        return requestLine + "\r\nHost: 127.0.0.1\r\nAuthorization: " + m_sandbox.token().toUtf8() + "\r\n" + headers +
               "Content-Length: " + QByteArray::number(body.size()) + "\r\nConnection: close\r\n\r\n" + body;
    }

private slots:
    void initTestCase() { QVERIFY2(m_sandbox.start(), qPrintable(m_sandbox.errorString())); }

    void malformedRequestsDoNotHurtTheServer_data() {
        QTest::addColumn<QByteArray>("request");
        QTest::addColumn<QByteArray>("expectedStatus");
        const QByteArray inbox = "POST /api/v2/list/" + SandboxDemo::inboxListID.toLatin1() + "/task HTTP/1.1";
        const QByteArray upload = "POST /api/v2/task/nosuchtask/attachment HTTP/1.1";
        QTest::newRow("garbage line") << QByteArray("GARBAGE\r\n\r\n") << QByteArray("400");
        QTest::newRow("method alone") << QByteArray("GET\r\n\r\n") << QByteArray("400");
        QTest::newRow("unknown method") << QByteArray("BREW /pot HTTP/1.1\r\nHost: x\r\n\r\n") << QByteArray();
        QTest::newRow("unknown version") << QByteArray("GET / HTTP/9.9\r\n\r\n") << QByteArray();
        QTest::newRow("NUL bytes") << QByteArray("GET /\0\0 HTTP/1.1\r\n\r\n", 21) << QByteArray();
        QTest::newRow("huge target") << "GET /" + QByteArray(100'000, 'a') + " HTTP/1.1\r\n\r\n" << QByteArray("414");
        QTest::newRow("huge header") << "GET /api/v2/user HTTP/1.1\r\nX-Big: " + QByteArray(1'000'000, 'h') + "\r\n\r\n"
                                     << QByteArray();
        QByteArray manyHeaders = "GET / HTTP/1.1\r\n";
        for (int index = 0; index < 20'000; ++index) {
            manyHeaders += "X-" + QByteArray::number(index) + ": v\r\n";
        }
        QTest::newRow("many headers") << manyHeaders + "\r\n" << QByteArray();
        QTest::newRow("header without colon") << QByteArray("GET / HTTP/1.1\r\nno colon here\r\n\r\n") << QByteArray();
        QTest::newRow("invalid UTF-8 in the path")
            << authorized("GET /api/v2/list/\xff\xfe\xfd HTTP/1.1", {}, {}) << QByteArray("404");
        QTest::newRow("broken percent-encoding")
            << authorized("GET /api/v2/list/%zz%4 HTTP/1.1", {}, {}) << QByteArray("404");
        QTest::newRow("broken query") << authorized("GET /api/v2/team/9015000001/task?page=%ff&&=&a[=]] HTTP/1.1", {},
                                                    {})
                                      << QByteArray("400");
        QTest::newRow("bad JSON") << authorized(inbox, "Content-Type: application/json\r\n", "{\"name\": ")
                                  << QByteArray("400");
        QTest::newRow("invalid UTF-8 in JSON")
            << authorized(inbox, "Content-Type: application/json\r\n", "{\"name\": \"\xc3\x28\"}") << QByteArray("400");
        QTest::newRow("wrong types") << authorized(inbox, {}, "{\"name\": [], \"assignees\": {}, \"due_date\": true}")
                                     << QByteArray("400");
        QTest::newRow("deep nesting") << authorized(inbox, {}, QByteArray(100'000, '[') + QByteArray(100'000, ']'))
                                      << QByteArray("400");
        QTest::newRow("body too large") << authorized(inbox, {}, QByteArray(17 * 1024 * 1024, ' '))
                                        << QByteArray("413");
        QTest::newRow("body shorter than its length")
            << inbox + "\r\nHost: x\r\nContent-Length: 1000\r\n\r\n{\"name\"" << QByteArray();
        QTest::newRow("negative length") << inbox + "\r\nHost: x\r\nContent-Length: -5\r\n\r\n{}" << QByteArray();
        QTest::newRow("length of letters") << inbox + "\r\nHost: x\r\nContent-Length: ten\r\n\r\n{}" << QByteArray();
        QTest::newRow("broken chunks") << inbox +
                                              "\r\nHost: x\r\nTransfer-Encoding: chunked\r\n\r\nzz\r\n{}\r\n0\r\n\r\n"
                                       << QByteArray();
        QTest::newRow("multipart without boundary")
            << authorized(upload, "Content-Type: multipart/form-data\r\n", "--x\r\n\r\n") << QByteArray();
        QTest::newRow("multipart with a bad boundary")
            << authorized(upload, "Content-Type: multipart/form-data; boundary=\"\x01\x02\"\r\n", "--\x01\x02\r\n")
            << QByteArray();
        const QByteArray attachmentTarget =
            "POST /api/v2/task/" +
            SandboxDemo::firstNorthwindTask(m_http, m_sandbox).value(QStringLiteral("id")).toString().toLatin1() +
            "/attachment HTTP/1.1";
        const QByteArray multipart = "Content-Type: multipart/form-data; boundary=b0undary\r\n";
        QTest::newRow("multipart cut short")
            << authorized(
                   attachmentTarget, multipart,
                   "--b0undary\r\nContent-Disposition: form-data; name=\"attachment\"; filename=\"a\"\r\n\r\nabc")
            << QByteArray("400");
        QTest::newRow("part without disposition")
            << authorized(attachmentTarget, multipart,
                          "--b0undary\r\nContent-Type: text/plain\r\n\r\nabc\r\n--b0undary--\r\n")
            << QByteArray("400");
        QTest::newRow("part headers never end")
            << authorized(attachmentTarget, multipart,
                          "--b0undary\r\nContent-Disposition: form-data; name=\"attachment\"")
            << QByteArray("400");
        QByteArray noise(64 * 1024, Qt::Uninitialized);
        QRandomGenerator random(7);
        random.fillRange(reinterpret_cast<quint32*>(noise.data()), noise.size() / 4);
        QTest::newRow("random bytes") << noise << QByteArray();
        QTest::newRow("random multipart body") << authorized(attachmentTarget, multipart, noise) << QByteArray("400");
    }

    void malformedRequestsDoNotHurtTheServer() {
        QFETCH(QByteArray, request);
        QFETCH(QByteArray, expectedStatus);
        const QByteArray answer = exchange(request);
        QVERIFY2(!answer.startsWith("HTTP/1.1 5"), answer.left(200).constData());
        if (!expectedStatus.isEmpty()) {
            QVERIFY2(answer.startsWith("HTTP/1.1 " + expectedStatus), answer.left(200).constData());
        }
        QCOMPARE(m_sandbox.process().state(), QProcess::Running);
        QCOMPARE(m_http.get(m_sandbox.apiUrl(u"user"), m_sandbox.token()).status, 200);
    }

    void theServerStillEndsCleanly() { QVERIFY(m_sandbox.stop()); }
};

NORVANEBAR_TEST_GUILESS_MAIN(SandboxRobustnessTest)
#include "SandboxRobustnessTest.moc"
