#pragma once

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <optional>

// A running S3 server that verifies AWS Signature Version 4 (@20minutes/s3rver, from
// tools/s3server, which scripts/setup installs), for a test: one bucket, one key pair made for this
// server alone, objects in a temporary folder. It listens on port 80 of a random private loopback
// address 127.x.y.z, because R2's signature covers the host without a port while Qt sends a port
// other than 80 in the Host header (so binding port 80 needs root, as the tests run). Stopped with
// SIGTERM at the end.
//
//     S3ServerProcess s3;
//     QVERIFY2(s3.start(), qPrintable(s3.errorString()));
//     settings.cloudflareR2EndpointBaseURL = s3.endpointBaseURL();
class S3ServerProcess {
public:
    static constexpr int startTimeoutMs = 15'000;

    S3ServerProcess();
    ~S3ServerProcess();
    S3ServerProcess(const S3ServerProcess&) = delete;
    S3ServerProcess& operator=(const S3ServerProcess&) = delete;

    // Starts it and waits until it listens; false with errorString() when it did not come up.
    bool start();
    // Sends SIGTERM and waits; true when it ended on its own with exit code 0.
    bool stop();
    QString errorString() const { return m_error; }

    // "http://127.x.y.z", to stand for https://<account id>.r2.cloudflarestorage.com.
    QString endpointBaseURL() const { return QStringLiteral("http://") + m_address; }
    QString address() const { return m_address; }
    QString bucket() const { return QStringLiteral("norvanebar-test"); }
    QString accessKeyID() const { return m_accessKeyID; }
    QString secretAccessKey() const { return m_secretAccessKey; }
    // The bucket's folder: each object is "<key>._S3rver_object", its metadata (such as its
    // content-type) "<key>._S3rver_metadata.json".
    QString objectFolder() const { return m_folder.filePath(bucket()); }
    // The keys of the objects in the bucket, sorted.
    QStringList storedKeys() const;
    // The bytes stored under `key`, as the server keeps them on disk; absent when there is none.
    std::optional<QByteArray> storedObject(const QString& key) const;
    qint64 processID() const { return m_process.processId(); }

private:
    bool startOn(const QString& address);

    QProcess m_process;
    QTemporaryDir m_folder;
    QString m_address;
    QString m_accessKeyID;
    QString m_secretAccessKey;
    QString m_error;
};
