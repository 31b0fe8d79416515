#include "support/SandboxProcess.h"

#include "support/ProcessEnding.h"
#include "support/SyncHttpClient.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QJsonDocument>
#include <QUrlQuery>

#include <csignal>
#include <sys/prctl.h>

SandboxProcess::~SandboxProcess() {
    if (m_process.state() != QProcess::NotRunning) {
        stop();
    }
}

QString SandboxProcess::executablePath() {
    const QString fromEnvironment = qEnvironmentVariable("NORVANEBAR_SANDBOX");
    return fromEnvironment.isEmpty() ? QStringLiteral(NORVANEBAR_SANDBOX_PATH) : fromEnvironment;
}

bool SandboxProcess::start(const Options& options) {
    QStringList arguments{QStringLiteral("--port"), QStringLiteral("0"), QStringLiteral("--seed"), options.seed};
    if (options.admin) {
        arguments.append(QStringLiteral("--admin"));
    }
    if (!options.dataFolder.isEmpty()) {
        arguments << QStringLiteral("--data") << options.dataFolder;
    }
    if (options.storageQuota) {
        arguments << QStringLiteral("--storage-quota") << QString::number(*options.storageQuota);
    }
    arguments.append(options.extraArguments);
    m_process.setProcessChannelMode(QProcess::SeparateChannels);
    // The sandbox ends with the test, also when the test crashes or is killed.
    m_process.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGTERM); });
    m_process.start(executablePath(), arguments);
    if (!m_process.waitForStarted(startTimeoutMs)) {
        m_error = QStringLiteral("norvane-sandbox did not start: ") + m_process.errorString();
        return false;
    }
    return readStartup();
}

bool SandboxProcess::startSeeded(const QJsonObject& seed, Options options) {
    options.seed = m_seedFolder.filePath(QStringLiteral("seed.json"));
    QFile file(options.seed);
    if (!m_seedFolder.isValid() || !file.open(QIODevice::WriteOnly) ||
        file.write(QJsonDocument(seed).toJson(QJsonDocument::Compact)) < 0) {
        m_error = QStringLiteral("the seed could not be written: ") + file.errorString();
        return false;
    }
    file.close();
    return start(options);
}

bool SandboxProcess::readStartup() {
    const QDeadlineTimer deadline(startTimeoutMs);
    while (!deadline.hasExpired()) {
        while (m_process.canReadLine()) {
            const QString line = QString::fromUtf8(m_process.readLine()).trimmed();
            m_lines.append(line);
            const QStringList words = line.split(QLatin1Char(' '));
            if (words.value(0) == QLatin1String("listening")) {
                m_baseUrl = QUrl(words.value(1));
            } else if (words.value(0) == QLatin1String("data")) {
                m_dataFolder = line.mid(5);
            } else if (words.value(0) == QLatin1String("token")) {
                m_tokens.append(
                    Token{words.value(1), words.value(3).toLongLong(), words.mid(4).join(QLatin1Char(' '))});
            } else if (line == QLatin1String("ready")) {
                return true;
            }
        }
        if (m_process.state() == QProcess::NotRunning) {
            break;
        }
        m_process.waitForReadyRead(static_cast<int>(std::max<qint64>(1, deadline.remainingTime())));
    }
    m_error =
        QStringLiteral("norvane-sandbox did not get ready: ") + QString::fromUtf8(m_process.readAllStandardError());
    return false;
}

bool SandboxProcess::stop() {
    return terminateProcess(m_process, startTimeoutMs);
}

QUrl SandboxProcess::apiUrl(QStringView path, const QList<QPair<QString, QString>>& query) const {
    QUrl url = m_baseUrl;
    url.setPath(QStringLiteral("/api/v2/") + path.toString());
    if (!query.isEmpty()) {
        QUrlQuery items;
        items.setQueryItems(query);
        url.setQuery(items);
    }
    return url;
}

QUrl SandboxProcess::webUrl(QStringView path) const {
    QUrl url = m_baseUrl;
    url.setPath(path.toString());
    return url;
}

std::optional<QJsonObject> SandboxProcess::admin(const QByteArray& method, QStringView path, const QJsonObject& body,
                                                 const QString& query) {
    QUrl url = webUrl(QStringLiteral("/_sandbox/") + path.toString());
    url.setQuery(query);
    SyncHttpClient client;
    const HttpResult result = client.send(method, url, {{"Content-Type", "application/json"}},
                                          QJsonDocument(body).toJson(QJsonDocument::Compact));
    if (result.status != 200) {
        m_error = QStringLiteral("/_sandbox/%1 answered %2: %3")
                      .arg(path.toString())
                      .arg(result.status)
                      .arg(QString::fromUtf8(result.body));
        return std::nullopt;
    }
    return result.json();
}

bool SandboxProcess::addFault(const SandboxFault& fault) {
    return admin("POST", u"faults", fault.toJson()).has_value();
}

bool SandboxProcess::clearFaults() {
    return admin("DELETE", u"faults").has_value();
}

bool SandboxProcess::releaseHeld() {
    return admin("POST", u"faults/release").has_value();
}

QJsonArray SandboxProcess::requests(qint64 since) {
    return admin("GET", u"requests", {}, QStringLiteral("since=%1").arg(since))
        .value_or(QJsonObject())
        .value(QStringLiteral("requests"))
        .toArray();
}

bool SandboxProcess::clearRequests() {
    return admin("DELETE", u"requests").has_value();
}

bool SandboxProcess::reset() {
    return admin("POST", u"reset").has_value();
}

bool SandboxProcess::setStorageQuota(std::optional<qint64> bytes) {
    const QJsonObject body{{QStringLiteral("storageQuotaBytes"), bytes ? QJsonValue(*bytes) : QJsonValue()}};
    return admin("POST", u"config", body).has_value();
}
