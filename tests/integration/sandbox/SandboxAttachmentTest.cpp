// Attachment uploads to the sandbox: multipart/form-data with a part named "attachment", streamed to
// disk, answered with an attachment whose id is a string or a number, and the storage limit.
#include "support/SandboxDemo.h"
#include "support/SandboxProcess.h"
#include "support/SyncHttpClient.h"
#include "support/TestMain.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QHttpMultiPart>
#include <QJsonArray>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>
#include <QUuid>

class SandboxAttachmentTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_dataFolder;
    SandboxProcess m_sandbox;
    SyncHttpClient m_http;

    QString newTask(const QString& listID) {
        return m_http
            .postJson(m_sandbox.apiUrl(QStringLiteral("list/%1/task").arg(listID)), m_sandbox.token(),
                      {{QStringLiteral("name"), QStringLiteral("Has attachments")}})
            .json()
            .value(QStringLiteral("id"))
            .toString();
    }

    QUrl attachmentUrl(const QString& taskID) const {
        return m_sandbox.apiUrl(QStringLiteral("task/%1/attachment").arg(taskID));
    }

    static QHttpPart part(const QByteArray& name, const QByteArray& filename) {
        QHttpPart part;
        part.setHeader(QNetworkRequest::ContentDispositionHeader,
                       QByteArray("form-data; name=\"") + name + "\"; filename=\"" + filename + "\"");
        part.setHeader(QNetworkRequest::ContentTypeHeader, QByteArray("application/octet-stream"));
        return part;
    }

    HttpResult upload(const QString& taskID, const QByteArray& content, const QByteArray& partName = "attachment",
                      qsizetype token = 0) {
        auto* multipart = new QHttpMultiPart(QHttpMultiPart::FormDataType);
        QHttpPart filePart = part(partName, "notes.txt");
        filePart.setBody(content);
        multipart->append(filePart);
        const HttpResult result = m_http.sendMultipart(
            attachmentUrl(taskID), SyncHttpClient::authorization(m_sandbox.token(token)), multipart);
        delete multipart;
        return result;
    }

    QStringList storedFiles() const { return QDir(m_dataFolder.path()).entryList(QDir::Files); }

    static void verifyStorageLimit(const HttpResult& result) {
        QCOMPARE(result.status, 403);
        QCOMPARE(result.json().value(QStringLiteral("ECODE")).toString(), QStringLiteral("GBUSED_005"));
        QVERIFY(!result.json().value(QStringLiteral("err")).toString().isEmpty());
    }

private slots:
    void initTestCase() {
        SandboxProcess::Options options;
        options.dataFolder = m_dataFolder.path();
        QVERIFY2(m_sandbox.start(options), qPrintable(m_sandbox.errorString()));
    }

    void init() { QVERIFY(m_sandbox.setStorageQuota(std::nullopt)); }

    void firstWorkspaceAnswersWithAStringID() {
        const HttpResult result = upload(newTask(SandboxDemo::inboxListID), "hello");
        QCOMPARE(result.status, 200);
        const QJsonObject attachment = result.json();
        QVERIFY(attachment.value(QStringLiteral("id")).isString());
        QVERIFY(!attachment.value(QStringLiteral("id")).toString().isEmpty());
        QVERIFY(attachment.value(QStringLiteral("date")).isDouble());
        QCOMPARE(attachment.value(QStringLiteral("version")), QJsonValue(QStringLiteral("0")));
        QCOMPARE(attachment.value(QStringLiteral("title")).toString(), QStringLiteral("notes.txt"));
        QCOMPARE(attachment.value(QStringLiteral("extension")).toString(), QStringLiteral("txt"));
        QCOMPARE(m_http.get(QUrl(attachment.value(QStringLiteral("url")).toString())).body, QByteArray("hello"));
    }

    void secondWorkspaceAnswersWithANumericID() {
        const HttpResult result = upload(newTask(SandboxDemo::labNotesListID), "numbers");
        QCOMPARE(result.status, 200);
        const QJsonObject attachment = result.json();
        QVERIFY(attachment.value(QStringLiteral("id")).isDouble());
        QVERIFY(attachment.value(QStringLiteral("id")).toInteger() > 0);
        bool digits = false;
        attachment.value(QStringLiteral("date")).toString().toLongLong(&digits);
        QVERIFY(digits);
        QVERIFY(attachment.value(QStringLiteral("version")).isDouble());
    }

    void theClientsOwnMultipartBodyIsTaken() {
        const QByteArray boundary =
            "norvanebar-" + QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper().toLatin1();
        const QByteArray filename = QStringLiteral("Bildschirmfoto – März.png").toUtf8();
        const QByteArray body = "--" + boundary +
                                "\r\nContent-Disposition: form-data; name=\"attachment\"; filename=\"" + filename +
                                "\"\r\nContent-Type: application/octet-stream\r\n\r\n" + QByteArray(3000, 'x') +
                                "\r\n--" + boundary + "--\r\n";
        SyncHttpClient::Headers headers = SyncHttpClient::authorization(m_sandbox.token());
        headers.append(qMakePair(QByteArray("Content-Type"), "multipart/form-data; boundary=" + boundary));
        const HttpResult result = m_http.send("POST", attachmentUrl(newTask(SandboxDemo::inboxListID)), headers, body);
        QCOMPARE(result.status, 200);
        QCOMPARE(result.json().value(QStringLiteral("title")).toString(), QString::fromUtf8(filename));
        QCOMPARE(result.json().value(QStringLiteral("extension")).toString(), QStringLiteral("png"));
        const QJsonObject logged = m_sandbox.requests().last().toObject();
        QCOMPARE(logged.value(QStringLiteral("bodySize")).toInteger(), body.size());
        const QJsonObject part = logged.value(QStringLiteral("parts")).toArray().first().toObject();
        QCOMPARE(part.value(QStringLiteral("name")).toString(), QStringLiteral("attachment"));
        QCOMPARE(part.value(QStringLiteral("filename")).toString(), QString::fromUtf8(filename));
        QCOMPARE(part.value(QStringLiteral("size")).toInteger(), 3000);
    }

    void aLargeFileIsStreamedToDiskWhole() {
        constexpr qint64 size = 64LL * 1024 * 1024;
        QTemporaryDir sourceFolder;
        QFile source(sourceFolder.filePath(QStringLiteral("big.bin")));
        QVERIFY(source.open(QIODevice::WriteOnly));
        QCryptographicHash sent(QCryptographicHash::Sha256);
        QRandomGenerator random(64);
        QByteArray chunk(1024 * 1024, Qt::Uninitialized);
        for (qint64 written = 0; written < size; written += chunk.size()) {
            random.fillRange(reinterpret_cast<quint32*>(chunk.data()), chunk.size() / 4);
            sent.addData(chunk);
            QCOMPARE(source.write(chunk), chunk.size());
        }
        source.close();
        QVERIFY(source.open(QIODevice::ReadOnly));
        const QStringList before = storedFiles();

        auto* multipart = new QHttpMultiPart(QHttpMultiPart::FormDataType);
        QHttpPart filePart = part("attachment", "big.bin");
        filePart.setBodyDevice(&source);
        multipart->append(filePart);
        const HttpResult result =
            m_http.sendMultipart(attachmentUrl(newTask(SandboxDemo::inboxListID)),
                                 SyncHttpClient::authorization(m_sandbox.token()), multipart, 240'000);
        delete multipart;
        QCOMPARE(result.status, 200);

        QStringList added = storedFiles();
        for (const QString& file : before) {
            added.removeAll(file);
        }
        QCOMPARE(added.size(), 1);
        QFile stored(QDir(m_dataFolder.path()).filePath(added.first()));
        QCOMPARE(stored.size(), size);
        QVERIFY(stored.open(QIODevice::ReadOnly));
        QCryptographicHash kept(QCryptographicHash::Sha256);
        QVERIFY(kept.addData(&stored));
        QCOMPARE(kept.result().toHex(), sent.result().toHex());
        QCOMPARE(m_sandbox.requests()
                     .last()
                     .toObject()
                     .value(QStringLiteral("parts"))
                     .toArray()
                     .first()
                     .toObject()
                     .value(QStringLiteral("size")),
                 QJsonValue(size));
    }

    void theStorageLimitAnswersWithItsCode() {
        const QString task = newTask(SandboxDemo::labNotesListID);
        QVERIFY(m_sandbox.setStorageQuota(4000));
        QCOMPARE(upload(task, QByteArray(1000, 'a')).status, 200);
        const QStringList before = storedFiles();
        verifyStorageLimit(upload(task, QByteArray(5000, 'b')));
        QCOMPARE(storedFiles(), before);
        // The connection stays usable after the refused upload.
        QCOMPARE(m_http.get(m_sandbox.apiUrl(u"user"), m_sandbox.token()).status, 200);
        QVERIFY(m_sandbox.setStorageQuota(std::nullopt));
        QCOMPARE(upload(task, QByteArray(5000, 'b')).status, 200);
    }

    void theStorageLimitCanBeSetAtStart() {
        SandboxProcess limited;
        SandboxProcess::Options options;
        options.storageQuota = 10;
        QVERIFY2(limited.start(options), qPrintable(limited.errorString()));
        const QString task = m_http
                                 .postJson(limited.apiUrl(QStringLiteral("list/%1/task").arg(SandboxDemo::inboxListID)),
                                           limited.token(), {{QStringLiteral("name"), QStringLiteral("t")}})
                                 .json()
                                 .value(QStringLiteral("id"))
                                 .toString();
        auto* multipart = new QHttpMultiPart(QHttpMultiPart::FormDataType);
        QHttpPart filePart = part("attachment", "a.bin");
        filePart.setBody(QByteArray(100, 'c'));
        multipart->append(filePart);
        verifyStorageLimit(m_http.sendMultipart(limited.apiUrl(QStringLiteral("task/%1/attachment").arg(task)),
                                                SyncHttpClient::authorization(limited.token()), multipart));
        delete multipart;
    }

    void otherPartsAreLoggedAndSkipped() {
        auto* multipart = new QHttpMultiPart(QHttpMultiPart::FormDataType);
        QHttpPart note = part("note", "note.txt");
        note.setBody("first");
        multipart->append(note);
        QHttpPart filePart = part("attachment", "second.txt");
        filePart.setBody("second");
        multipart->append(filePart);
        const HttpResult result = m_http.sendMultipart(attachmentUrl(newTask(SandboxDemo::inboxListID)),
                                                       SyncHttpClient::authorization(m_sandbox.token()), multipart);
        delete multipart;
        QCOMPARE(result.status, 200);
        const QJsonArray parts = m_sandbox.requests().last().toObject().value(QStringLiteral("parts")).toArray();
        QCOMPARE(m_http.get(QUrl(result.json().value(QStringLiteral("url")).toString())).body, QByteArray("second"));
        QCOMPARE(parts.size(), 2);
        QCOMPARE(parts[0].toObject().value(QStringLiteral("name")).toString(), QStringLiteral("note"));
        QCOMPARE(parts[1].toObject().value(QStringLiteral("filename")).toString(), QStringLiteral("second.txt"));
    }

    void uploadsThatAreNotAttachmentsAreRefused() {
        const QString task = newTask(SandboxDemo::inboxListID);
        const HttpResult noPart = upload(task, "data", "file");
        QCOMPARE(noPart.status, 400);
        QCOMPARE(noPart.json().value(QStringLiteral("ECODE")).toString(), QStringLiteral("UPLOAD_002"));
        SyncHttpClient::Headers headers = SyncHttpClient::authorization(m_sandbox.token());
        headers.append(qMakePair(QByteArray("Content-Type"), QByteArray("application/octet-stream")));
        const HttpResult raw = m_http.send("POST", attachmentUrl(task), headers, QByteArray(100, 'r'));
        QCOMPARE(raw.status, 400);
        QCOMPARE(raw.json().value(QStringLiteral("ECODE")).toString(), QStringLiteral("UPLOAD_001"));
        QCOMPARE(m_http.send("POST", attachmentUrl(task), SyncHttpClient::authorization(m_sandbox.token())).status,
                 400);
    }

    void uploadsToUnknownOrForeignTasksAreNotFound() {
        QCOMPARE(upload(QStringLiteral("nosuchtask"), "x").status, 404);
        QCOMPARE(upload(newTask(SandboxDemo::labNotesListID), "x", "attachment", 1).status, 404);
        QHttpMultiPart empty(QHttpMultiPart::FormDataType);
        QCOMPARE(m_http.sendMultipart(attachmentUrl(newTask(SandboxDemo::inboxListID)), {}, &empty).status, 401);
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(SandboxAttachmentTest)
#include "SandboxAttachmentTest.moc"
