// The sandbox's stand-in for Cloudinary's upload API, driven by hand-made forms: the fields of its
// answer, its refusals of forms that lack the preset or the file, and its delivery of files.
#include "support/SandboxProcess.h"
#include "support/SyncHttpClient.h"
#include "support/TestMain.h"

#include <QDir>
#include <QHttpMultiPart>
#include <QTemporaryDir>
#include <QTest>

namespace {
const QString uploadPath = QStringLiteral("/v1_1/norvanebar-demo/auto/upload");

QHttpPart field(const QByteArray& name, const QByteArray& value) {
    QHttpPart part;
    part.setHeader(QNetworkRequest::ContentDispositionHeader, QByteArray("form-data; name=\"") + name + '"');
    part.setBody(value);
    return part;
}

QHttpPart filePart(const QByteArray& filename, const QByteArray& content) {
    QHttpPart part;
    part.setHeader(QNetworkRequest::ContentDispositionHeader,
                   QByteArray("form-data; name=\"file\"; filename=\"") + filename + '"');
    part.setHeader(QNetworkRequest::ContentTypeHeader, QByteArray("application/octet-stream"));
    part.setBody(content);
    return part;
}

QString messageOf(const HttpResult& result) {
    return result.json().value(QStringLiteral("error")).toObject().value(QStringLiteral("message")).toString();
}
} // namespace

class SandboxCloudinaryTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_dataFolder;
    SandboxProcess m_sandbox;
    SyncHttpClient m_http;

    HttpResult post(const QList<QHttpPart>& parts) {
        QHttpMultiPart form(QHttpMultiPart::FormDataType);
        for (const QHttpPart& part : parts) {
            form.append(part);
        }
        return m_http.sendMultipart(m_sandbox.webUrl(uploadPath), {}, &form);
    }

private slots:
    void initTestCase() {
        SandboxProcess::Options options;
        options.dataFolder = m_dataFolder.path();
        QVERIFY2(m_sandbox.start(options), qPrintable(m_sandbox.errorString()));
    }

    void anUploadIsAnsweredAsCloudinaryDocumentsIt() {
        const QByteArray gif = "GIF89a" + QByteArray(40, '\x01');
        const HttpResult result = post({field("upload_preset", "norvanebar_unsigned"), filePart("Logo.gif", gif)});
        QCOMPARE(result.status, 200);
        const QJsonObject answer = result.json();
        QCOMPARE(answer.value(QStringLiteral("resource_type")).toString(), QStringLiteral("image"));
        QCOMPARE(answer.value(QStringLiteral("format")).toString(), QStringLiteral("gif"));
        QCOMPARE(answer.value(QStringLiteral("type")).toString(), QStringLiteral("upload"));
        QCOMPARE(answer.value(QStringLiteral("bytes")).toInteger(), qint64(gif.size()));
        QCOMPARE(answer.value(QStringLiteral("original_filename")).toString(), QStringLiteral("Logo"));
        const QString publicID = answer.value(QStringLiteral("public_id")).toString();
        QCOMPARE(publicID.size(), 20);
        const qint64 version = answer.value(QStringLiteral("version")).toInteger();
        const QUrl secureURL(answer.value(QStringLiteral("secure_url")).toString());
        QCOMPARE(secureURL.path(),
                 QStringLiteral("/norvanebar-demo/image/upload/v%1/%2.gif").arg(version).arg(publicID));
        QCOMPARE(m_http.get(secureURL).body, gif);
    }

    void theFieldsMayComeInAnyOrder() {
        const HttpResult result = post({filePart("notes.txt", "notes"), field("upload_preset", "norvanebar_unsigned")});
        QCOMPARE(result.status, 200);
        QVERIFY(result.json().value(QStringLiteral("public_id")).toString().endsWith(QStringLiteral(".txt")));
        QCOMPARE(result.json().value(QStringLiteral("resource_type")).toString(), QStringLiteral("raw"));
    }

    void aFormWithoutThePresetIsRefused() {
        const HttpResult result = post({filePart("notes.txt", "notes")});
        QCOMPARE(result.status, 400);
        QCOMPARE(messageOf(result), QStringLiteral("Upload preset must be specified when using unsigned upload"));
    }

    void aFormWithoutTheFileIsRefused() {
        const HttpResult result = post({field("upload_preset", "norvanebar_unsigned")});
        QCOMPARE(result.status, 400);
        QCOMPARE(messageOf(result), QStringLiteral("Missing required parameter - file"));
    }

    void aRefusedFileIsNotKept() {
        const QStringList before = QDir(m_dataFolder.path()).entryList(QDir::Files);
        QCOMPARE(post({field("upload_preset", "unknown"), filePart("notes.txt", "notes")}).status, 400);
        QCOMPARE(QDir(m_dataFolder.path()).entryList(QDir::Files), before);
    }

    void anAddressThatWasNeverAnsweredIsNotFound() {
        const HttpResult result = m_http.get(m_sandbox.webUrl(u"/norvanebar-demo/raw/upload/v1/nothing.txt"));
        QCOMPARE(result.status, 404);
        QCOMPARE(result.header("x-cld-error"), QByteArray("Resource not found - nothing.txt"));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(SandboxCloudinaryTest)
#include "SandboxCloudinaryTest.moc"
