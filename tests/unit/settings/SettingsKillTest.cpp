// A writer killed at any moment of a save leaves the old file or the new one, never half of either.
#include "core/json/JsonEncoding.h"
#include "core/settings/SettingsStore.h"
#include "support/BigSettings.h"
#include "support/TestMain.h"

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

namespace {
constexpr int kills = 100;
constexpr quint32 seed = 20260121;
// Each run of the writer numbers its versions from its own million on.
constexpr qint64 versionsPerRun = 1'000'000;

struct WriterProgress {
    std::optional<qint64> lastBegun;
    std::optional<qint64> lastEnded;
};

// The writer's "begin N" and "end N" lines; a line cut off by the kill is ignored.
WriterProgress progressOf(const QByteArray& output) {
    WriterProgress progress;
    QList<QByteArray> lines = output.split('\n');
    lines.removeLast();
    for (const QByteArray& line : lines) {
        const QList<QByteArray> words = line.split(' ');
        const qint64 version = words.value(1).toLongLong();
        if (words.value(0) == "begin") {
            progress.lastBegun = version;
        } else {
            progress.lastEnded = version;
        }
    }
    return progress;
}

// The version a whole settings file holds, or absent when the file is not exactly one the writer
// saved.
std::optional<qint64> wholeVersionOf(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    const QByteArray bytes = file.readAll();
    const AppSettings settings = SettingsStore(path).settings();
    const QString name = settings.preferredWorkspaceID.value_or(QString());
    if (!name.startsWith(QStringLiteral("version-"))) {
        return std::nullopt;
    }
    const qint64 version = name.mid(8).toLongLong();
    if (settings != bigSettings(version) || bytes != Json::serializeIndented(bigSettings(version).toJson())) {
        return std::nullopt;
    }
    return version;
}
} // namespace

class SettingsKillTest : public QObject {
    Q_OBJECT

private slots:
    void aWriterKilledMidSaveNeverLeavesAHalfFile() {
        QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("NorvaneBar/settings.json"));
        QRandomGenerator random(seed);
        std::optional<qint64> fileVersion;
        int midSave = 0;
        int savesCompleted = 0;
        QElapsedTimer elapsed;
        elapsed.start();
        for (int run = 0; run < kills; ++run) {
            QProcess writer;
            writer.start(QStringLiteral(SETTINGS_WRITER_PATH), {path, QString::number(run * versionsPerRun)});
            QVERIFY(writer.waitForStarted());
            // Kills are timed from the writer's first save, so that a slow start (the sanitizer
            // build starts slowly) doesn't leave them all before any save.
            QByteArray output;
            while (!output.contains("begin") && writer.waitForReadyRead(10'000)) {
                output += writer.readAllStandardOutput();
            }
            QVERIFY2(output.contains("begin"), "the writer never began a save");
            QThread::msleep(random.bounded(0, 100));
            writer.kill();
            QVERIFY(writer.waitForFinished());
            const WriterProgress progress = progressOf(output + writer.readAllStandardOutput());

            // The file is the last one saved whole, or the one whose save was under way.
            QList<std::optional<qint64>> allowed{progress.lastEnded ? progress.lastEnded : fileVersion};
            if (progress.lastBegun != progress.lastEnded) {
                ++midSave;
                allowed.append(progress.lastBegun);
            }
            if (progress.lastEnded) {
                savesCompleted += int(*progress.lastEnded - run * versionsPerRun + 1);
            }
            const bool exists = QFile::exists(path);
            const std::optional<qint64> found = exists ? wholeVersionOf(path) : std::nullopt;
            QVERIFY2(!exists || found, qPrintable(QStringLiteral("run %1: the file is not whole").arg(run)));
            QVERIFY2(allowed.contains(found),
                     qPrintable(QStringLiteral("run %1: found version %2").arg(run).arg(found.value_or(-1))));
            fileVersion = found;
        }
        qInfo("%d kills in %lld ms, %d of them mid-save, %d saves completed", kills,
              static_cast<long long>(elapsed.elapsed()), midSave, savesCompleted);
        // Without kills landing inside a save this test would prove nothing.
        QVERIFY(midSave >= kills / 4);
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(SettingsKillTest)
#include "SettingsKillTest.moc"
