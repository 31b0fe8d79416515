#include "support/S3ServerProcess.h"

#include "support/ProcessEnding.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QStandardPaths>

#include <algorithm>
#include <csignal>
#include <sys/prctl.h>

namespace {
const QString objectSuffix = QStringLiteral("._S3rver_object");
// A few addresses are tried, in case another test's server holds one.
constexpr int addressAttempts = 4;

QString randomText(int bytes) {
    QByteArray random(bytes, Qt::Uninitialized);
    QRandomGenerator::global()->fillRange(reinterpret_cast<quint32*>(random.data()), bytes / 4);
    return QString::fromLatin1(random.toHex());
}

// Outside 127.0.0.x, where other programs listen.
QString randomLoopbackAddress() {
    QRandomGenerator* random = QRandomGenerator::global();
    return QStringLiteral("127.%1.%2.%3")
        .arg(random->bounded(16, 255))
        .arg(random->bounded(1, 255))
        .arg(random->bounded(1, 255));
}
} // namespace

S3ServerProcess::S3ServerProcess()
    : m_accessKeyID(QStringLiteral("NVTEST") + randomText(8).toUpper())
    , m_secretAccessKey(randomText(20)) {}

S3ServerProcess::~S3ServerProcess() {
    if (m_process.state() != QProcess::NotRunning) {
        stop();
    }
}

bool S3ServerProcess::start() {
    if (!m_folder.isValid()) {
        m_error = QStringLiteral("no temporary folder for the objects");
        return false;
    }
    if (!QFile::exists(QStringLiteral(NORVANEBAR_S3SERVER_DIR "/node_modules/@20minutes/s3rver/package.json"))) {
        m_error = QStringLiteral("the S3 server is not installed in " NORVANEBAR_S3SERVER_DIR ": run scripts/setup");
        return false;
    }
    for (int attempt = 0; attempt < addressAttempts; ++attempt) {
        if (startOn(randomLoopbackAddress())) {
            return true;
        }
    }
    return false;
}

bool S3ServerProcess::startOn(const QString& address) {
    const QString node = QStandardPaths::findExecutable(QStringLiteral("node"));
    if (node.isEmpty()) {
        m_error = QStringLiteral("node is not installed: run scripts/setup");
        return false;
    }
    m_process.setProcessChannelMode(QProcess::SeparateChannels);
    // The server ends with the test, also when the test crashes or is killed.
    m_process.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGTERM); });
    m_process.start(node, {QStringLiteral(NORVANEBAR_S3SERVER_DIR "/s3server.js"), address, QStringLiteral("80"),
                           m_folder.path(), bucket(), m_accessKeyID, m_secretAccessKey});
    const QDeadlineTimer deadline(startTimeoutMs);
    while (!deadline.hasExpired()) {
        while (m_process.canReadLine()) {
            if (QString::fromUtf8(m_process.readLine()).startsWith(QLatin1String("ready "))) {
                m_address = address;
                return true;
            }
        }
        if (m_process.state() == QProcess::NotRunning) {
            break;
        }
        m_process.waitForReadyRead(static_cast<int>(std::max<qint64>(1, deadline.remainingTime())));
    }
    m_error = QStringLiteral("the S3 server did not get ready on %1: %2")
                  .arg(address, QString::fromUtf8(m_process.readAllStandardError()));
    if (m_process.state() != QProcess::NotRunning) {
        m_process.kill();
        m_process.waitForFinished();
    }
    return false;
}

bool S3ServerProcess::stop() {
    return terminateProcess(m_process, startTimeoutMs);
}

QStringList S3ServerProcess::storedKeys() const {
    QStringList keys;
    const QDir folder(objectFolder());
    for (const QString& name : folder.entryList({QStringLiteral("*") + objectSuffix}, QDir::Files, QDir::Name)) {
        keys.append(name.chopped(objectSuffix.size()));
    }
    return keys;
}

std::optional<QByteArray> S3ServerProcess::storedObject(const QString& key) const {
    QFile file(objectFolder() + QLatin1Char('/') + key + objectSuffix);
    if (!file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    return file.readAll();
}
