#pragma once

#include "support/SandboxFault.h"

#include <QJsonArray>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>
#include <QUrl>

#include <optional>

// A running norvane-sandbox for a test: started on a free loopback port, read for its address and
// tokens, driven through its /_sandbox test endpoints, and stopped with SIGTERM at the end.
//
//     SandboxProcess sandbox;
//     QVERIFY2(sandbox.start(), qPrintable(sandbox.errorString()));
//     client.get(sandbox.apiUrl(u"team"), sandbox.token());
class SandboxProcess {
public:
    struct Options {
        QString seed = QStringLiteral("demo");
        bool admin = true;
        QString dataFolder;
        std::optional<qint64> storageQuota;
        QStringList extraArguments;
    };

    struct Token {
        QString token;
        qint64 userID = 0;
        QString name;
    };

    static constexpr int startTimeoutMs = 15'000;

    SandboxProcess() = default;
    ~SandboxProcess();
    SandboxProcess(const SandboxProcess&) = delete;
    SandboxProcess& operator=(const SandboxProcess&) = delete;

    // The sandbox binary: $NORVANEBAR_SANDBOX if set, else the one this build made.
    static QString executablePath();

    // Starts it and waits for its "ready" line; false with errorString() when it did not come up.
    bool start(const Options& options);
    bool start() { return start(Options()); }
    // Starts it on `seed` (the form of a seed file), written to a file that lives as long as this
    // object; `options.seed` is ignored.
    bool startSeeded(const QJsonObject& seed, Options options);
    bool startSeeded(const QJsonObject& seed) { return startSeeded(seed, Options()); }
    // Sends SIGTERM and waits; true when it ended on its own with exit code 0.
    bool stop();
    QString errorString() const { return m_error; }

    QProcess& process() { return m_process; }
    QStringList startupLines() const { return m_lines; }
    QList<Token> tokens() const { return m_tokens; }
    // The token of the nth demo user; the first owns the big demo task list.
    QString token(qsizetype index = 0) const { return m_tokens.value(index).token; }
    QString dataFolder() const { return m_dataFolder; }
    int port() const { return m_baseUrl.port(); }

    QUrl baseUrl() const { return m_baseUrl; }
    // A URL of the REST API: path relative to /api/v2, such as "team/1/task".
    QUrl apiUrl(QStringView path, const QList<QPair<QString, QString>>& query = {}) const;
    // A URL of the web base, such as "/settings/apps".
    QUrl webUrl(QStringView path) const;

    // The test endpoints; each is false, or empty, when the sandbox did not take the call.
    bool addFault(const SandboxFault& fault);
    bool clearFaults();
    // Lets the requests that fault rules hold go on.
    bool releaseHeld();
    QJsonArray requests(qint64 since = 0);
    bool clearRequests();
    bool reset();
    bool setStorageQuota(std::optional<qint64> bytes);

private:
    bool readStartup();
    // The answer of a test endpoint, or nothing with errorString() set.
    std::optional<QJsonObject> admin(const QByteArray& method, QStringView path, const QJsonObject& body = {},
                                     const QString& query = {});

    QProcess m_process;
    QStringList m_lines;
    QList<Token> m_tokens;
    QUrl m_baseUrl;
    QString m_dataFolder;
    QString m_error;
    QTemporaryDir m_seedFolder;
};
