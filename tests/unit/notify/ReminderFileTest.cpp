#include "core/notify/ReminderFile.h"
#include "support/NotifyTesting.h"
#include "support/TestMain.h"

#include <QFile>
#include <QTest>

namespace {
const QByteArray goodEntry =
    R"({"identifier": "norvanebar-reminder-1", "taskName": "good", "taskURL": "https://x.test/t/1", "fireDate": 1773561600.25})";

Reminder goodReminder() {
    return {
        .identifier = QStringLiteral("norvanebar-reminder-1"),
        .taskName = QStringLiteral("good"),
        .taskURL = QStringLiteral("https://x.test/t/1"),
        .fireDate = QDateTime(QDate(2026, 3, 15), QTime(8, 0, 0, 250), Qt::UTC),
    };
}

QByteArray fileOf(const QByteArray& entries) {
    return R"({"reminders": [)" + entries + "]}";
}

void writeFile(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}
} // namespace

// The reminders file is read as untrusted input: whatever it holds, reading never fails, and only
// the entries that can't be read are lost.
class ReminderFileTest : public QObject {
    Q_OBJECT

private slots:
    void aWrittenFileReadsBackTheSame() {
        QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("NorvaneBar/reminders.json"));
        Reminder withoutURL = goodReminder();
        withoutURL.taskURL.reset();
        withoutURL.taskName = QStringLiteral("ünïcode ✓ \"quoted\"");
        const QList<Reminder> reminders{goodReminder(), withoutURL};
        ReminderFile::write(path, reminders);
        QCOMPARE(ReminderFile::read(path), reminders);
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QVERIFY(!file.readAll().contains("null"));
    }

    void aMissingFileHoldsNoReminders() {
        QTemporaryDir folder;
        QVERIFY(ReminderFile::read(folder.filePath(QStringLiteral("absent.json"))).isEmpty());
    }

    void entriesThatCantBeReadAreDroppedAndTheOthersKept_data() {
        QTest::addColumn<QByteArray>("bad");
        QTest::newRow("not an object") << QByteArray("42");
        QTest::newRow("name missing") << QByteArray(R"({"identifier": "i", "fireDate": 1})");
        QTest::newRow("name a number") << QByteArray(R"({"identifier": "i", "taskName": 7, "fireDate": 1})");
        QTest::newRow("identifier missing") << QByteArray(R"({"taskName": "t", "fireDate": 1})");
        QTest::newRow("url an array") << QByteArray(
            R"({"identifier": "i", "taskName": "t", "taskURL": [], "fireDate": 1})");
        QTest::newRow("date a string") << QByteArray(R"({"identifier": "i", "taskName": "t", "fireDate": "tomorrow"})");
        QTest::newRow("date missing") << QByteArray(R"({"identifier": "i", "taskName": "t"})");
        QTest::newRow("date huge") << QByteArray(R"({"identifier": "i", "taskName": "t", "fireDate": 1e300})");
        QTest::newRow("date beyond 64 bits")
            << QByteArray(R"({"identifier": "i", "taskName": "t", "fireDate": 123456789012345678901234567890})");
        QTest::newRow("date hugely negative")
            << QByteArray(R"({"identifier": "i", "taskName": "t", "fireDate": -1e13})");
    }
    void entriesThatCantBeReadAreDroppedAndTheOthersKept() {
        QFETCH(QByteArray, bad);
        QCOMPARE(ReminderFile::decode(fileOf(bad + ", " + goodEntry + ", " + bad)), QList<Reminder>{goodReminder()});
    }

    void aNullURLReadsAsNone() {
        const QList<Reminder> read = ReminderFile::decode(
            fileOf(R"({"identifier": "i", "taskName": "t", "taskURL": null, "fireDate": 0, "extra": true})"));
        QCOMPARE(read.size(), 1);
        QCOMPARE(read.constFirst().taskURL, std::nullopt);
        QCOMPARE(read.constFirst().fireDate, QDateTime::fromMSecsSinceEpoch(0, Qt::UTC));
    }

    void aFileThatIsNotSuchADocumentHoldsNoReminders_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("not JSON") << QByteArray("reminders: none\n\x00\xff", 17);
        QTest::newRow("truncated") << fileOf(goodEntry).chopped(9);
        QTest::newRow("an array") << "[" + goodEntry + "]";
        QTest::newRow("reminders an object") << R"({"reminders": )" + goodEntry + "}";
        QTest::newRow("reminders a number") << QByteArray(R"({"reminders": 1e999})");
        QTest::newRow("no reminders key") << QByteArray(R"({"other": []})");
    }
    void aFileThatIsNotSuchADocumentHoldsNoReminders() {
        QFETCH(QByteArray, bytes);
        QVERIFY(ReminderFile::decode(bytes).isEmpty());
    }

    void aDamagedFileNeitherStopsTheSchedulerNorLosesWhatCanBeRead() {
        SchedulerFixture fixture;
        Reminder due = goodReminder();
        due.fireDate = fixture.now().addSecs(-1);
        QByteArray bytes = ReminderFile::encode({due});
        bytes.replace("\"reminders\": [", R"("reminders": [{"taskName": 1}, "broken", )");
        writeFile(fixture.remindersPath(), bytes);
        fixture.restart();
        fixture.scheduler->restoreReminders();
        QCOMPARE(fixture.center.posted().size(), 1);
        QCOMPARE(fixture.center.posted().constFirst().body, QStringLiteral("good"));
        QCOMPARE(ReminderFile::read(fixture.remindersPath()), QList<Reminder>{});
    }

    void aFileOfRubbishIsReplacedAtTheNextReminder() {
        SchedulerFixture fixture;
        writeFile(fixture.remindersPath(), QByteArray("\x7f"
                                                      "ELF rubbish",
                                                      12));
        fixture.restart();
        fixture.scheduler->restoreReminders();
        QVERIFY(fixture.center.posted().isEmpty());
        fixture.scheduler->scheduleReminder(QStringLiteral("new"), std::nullopt, fixture.now().addSecs(60));
        const QList<Reminder> kept = ReminderFile::read(fixture.remindersPath());
        QCOMPARE(kept.size(), 1);
        QCOMPARE(kept.constFirst().taskName, QStringLiteral("new"));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(ReminderFileTest)
#include "ReminderFileTest.moc"
