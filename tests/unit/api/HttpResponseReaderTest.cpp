#include "core/api/HttpResponseReader.h"
#include "support/TestMain.h"

#include <QTest>

namespace {
// Feeds `bytes` one at a time, the worst split a connection can give; returns the body read.
QByteArray feedByteByByte(HttpResponseReader& reader, QByteArrayView bytes) {
    QByteArray body;
    for (const char byte : bytes) {
        body += reader.feed(QByteArrayView(&byte, 1));
    }
    return body;
}
} // namespace

class HttpResponseReaderTest : public QObject {
    Q_OBJECT

private slots:
    void aBodyWithALengthIsReadWholeWhateverTheSplit() {
        const QByteArray answer = "HTTP/1.1 200 OK\r\nContent-Type: application/json\r\nContent-Length: 11\r\n\r\n"
                                  "{\"id\":\"a1\"}";
        HttpResponseReader whole;
        QCOMPARE(whole.feed(answer), QByteArray("{\"id\":\"a1\"}"));
        HttpResponseReader split;
        QCOMPARE(feedByteByByte(split, answer), QByteArray("{\"id\":\"a1\"}"));
        for (const HttpResponseReader* reader : {&whole, &split}) {
            QVERIFY(reader->complete());
            QCOMPARE(reader->status(), 200);
            QCOMPARE(reader->reasonPhrase(), QByteArray("OK"));
            QCOMPARE(reader->contentLength(), std::optional<qint64>(11));
            QCOMPARE(reader->headers().first(), HttpResponseReader::Header("Content-Type", "application/json"));
            QVERIFY(reader->keepsConnection());
        }
    }

    void bytesAfterTheBodyAreNotPartOfIt() {
        HttpResponseReader reader;
        QCOMPARE(reader.feed("HTTP/1.1 201 Created\r\nContent-Length: 2\r\n\r\nokEXTRA"), QByteArray("ok"));
        QVERIFY(reader.complete());
        QCOMPARE(reader.feed("more"), QByteArray());
    }

    void aChunkedBodyIsJoinedAndItsExtensionsAndTrailersPassedOver() {
        const QByteArray answer = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n"
                                  "5;name=value\r\nhello\r\n"
                                  "7\r\n, world\r\n"
                                  "0\r\nExpires: never\r\n\r\n";
        HttpResponseReader reader;
        QCOMPARE(feedByteByByte(reader, answer), QByteArray("hello, world"));
        QVERIFY(reader.complete());
        QVERIFY(reader.keepsConnection());
        QCOMPARE(reader.contentLength(), std::nullopt);
    }

    void aBodyWithoutLengthRunsToTheEndOfTheConnection() {
        HttpResponseReader reader;
        QCOMPARE(reader.feed("HTTP/1.1 200 OK\r\n\r\nall of"), QByteArray("all of"));
        QCOMPARE(reader.feed(" it"), QByteArray(" it"));
        QVERIFY(!reader.complete());
        reader.endOfStream();
        QVERIFY(reader.complete());
        QVERIFY(!reader.keepsConnection());
    }

    void aConnectionThatEndsMidBodyFails() {
        HttpResponseReader reader;
        reader.feed("HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\nhalf");
        reader.endOfStream();
        QVERIFY(reader.failed());
        QVERIFY(!reader.complete());
    }

    void anInterimAnswerIsPassedOverForTheRealOne() {
        HttpResponseReader reader;
        QCOMPARE(
            reader.feed("HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 413 Payload Too Large\r\nContent-Length: 4\r\n\r\nbig!"),
            QByteArray("big!"));
        QVERIFY(reader.complete());
        QCOMPARE(reader.status(), 413);
        QCOMPARE(reader.headers().size(), 1);
    }

    void noContentHasNoBody() {
        HttpResponseReader reader;
        reader.feed("HTTP/1.1 204 No Content\r\n\r\n");
        QVERIFY(reader.complete());
        QVERIFY(reader.keepsConnection() == false);
    }

    void aStatusLineWithoutAReasonIsRead() {
        HttpResponseReader reader;
        reader.feed("HTTP/1.1 503\nContent-Length: 0\n\n");
        QVERIFY(reader.complete());
        QCOMPARE(reader.status(), 503);
        QCOMPARE(reader.reasonPhrase(), QByteArray());
    }

    void headersOfTheSameNameAreAllKept() {
        HttpResponseReader reader;
        reader.feed("HTTP/1.1 200 OK\r\nVary: a\r\nvary: b\r\nContent-Length: 0\r\n\r\n");
        QCOMPARE(reader.headers(),
                 QList<HttpResponseReader::Header>({{"Vary", "a"}, {"vary", "b"}, {"Content-Length", "0"}}));
    }

    void theServerClosingOrHttp10EndsTheConnection() {
        HttpResponseReader closing;
        closing.feed("HTTP/1.1 200 OK\r\nConnection: keep-alive, Close\r\nContent-Length: 0\r\n\r\n");
        QVERIFY(closing.complete());
        QVERIFY(!closing.keepsConnection());
        HttpResponseReader old;
        old.feed("HTTP/1.0 200 OK\r\nContent-Length: 0\r\n\r\n");
        QVERIFY(old.complete());
        QVERIFY(!old.keepsConnection());
    }

    void malformedAnswersFail_data() {
        QTest::addColumn<QByteArray>("answer");
        QTest::newRow("not HTTP") << QByteArray("SSH-2.0-OpenSSH\r\n");
        QTest::newRow("unknown version") << QByteArray("HTTP/2 200 OK\r\n\r\n");
        QTest::newRow("status of two digits") << QByteArray("HTTP/1.1 20 OK\r\n\r\n");
        QTest::newRow("status not a number") << QByteArray("HTTP/1.1 2x0 OK\r\n\r\n");
        QTest::newRow("header without a colon") << QByteArray("HTTP/1.1 200 OK\r\nnonsense\r\n\r\n");
        QTest::newRow("folded header") << QByteArray("HTTP/1.1 200 OK\r\nA: b\r\n c\r\n\r\n");
        QTest::newRow("negative length") << QByteArray("HTTP/1.1 200 OK\r\nContent-Length: -1\r\n\r\n");
        QTest::newRow("length with a sign") << QByteArray("HTTP/1.1 200 OK\r\nContent-Length: +5\r\n\r\nhello");
        QTest::newRow("two different lengths")
            << QByteArray("HTTP/1.1 200 OK\r\nContent-Length: 1\r\nContent-Length: 2\r\n\r\nab");
        QTest::newRow("chunk size not hexadecimal")
            << QByteArray("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nzz\r\n");
        QTest::newRow("chunk without its line end")
            << QByteArray("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n2\r\nokX\r\n");
    }

    void malformedAnswersFail() {
        QFETCH(QByteArray, answer);
        HttpResponseReader reader;
        reader.feed(answer);
        QVERIFY(reader.failed());
        QVERIFY(!reader.complete());
        QCOMPARE(reader.feed("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n"), QByteArray());
        QVERIFY(reader.failed());
    }

    void aHeadPastItsLimitFailsWithoutWaitingForItsEnd() {
        HttpResponseReader reader;
        reader.feed("HTTP/1.1 200 OK\r\n");
        const QByteArray line = "X-Filler: " + QByteArray(1000, 'x') + "\r\n";
        for (int count = 0; count < 70 && !reader.failed(); ++count) {
            reader.feed(line);
        }
        QVERIFY(reader.failed());
        HttpResponseReader endless;
        endless.feed("HTTP/1.1 200 OK\r\nX-Endless: ");
        endless.feed(QByteArray(qsizetype{70} * 1024, 'y'));
        QVERIFY(endless.failed());
    }
};

NORVANEBAR_TEST_APPLESS_MAIN(HttpResponseReaderTest)
#include "HttpResponseReaderTest.moc"
