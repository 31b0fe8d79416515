#include "core/notify/ReminderFile.h"
#include "support/NotifyTesting.h"
#include "support/TestMain.h"

#include <QFile>
#include <QRegularExpression>
#include <QTest>

namespace {
const QString taskURL = QStringLiteral("https://app.norvane.com/t/86b2x9");

QByteArray fileBytes(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
} // namespace

// Reminders: kept in a file until the desktop took them, delivered once by one wall-clock alarm, at
// a jump of the clock, after a restart and when a notification server comes; earliest first.
class RemindersTest : public QObject {
    Q_OBJECT

private slots:
    void aReminderWhoseFireDateHasPassedIsDeliveredAtOnce() {
        SchedulerFixture fixture;
        fixture.scheduler->scheduleReminder(QStringLiteral("Call the bank"), taskURL, fixture.now().addSecs(-3600));
        QCOMPARE(fixture.center.posted().size(), 1);
        const NotificationRequest& posted = fixture.center.posted().constFirst();
        QCOMPARE(posted.title, QStringLiteral("Task reminder"));
        QCOMPARE(posted.body, QStringLiteral("Call the bank"));
        QVERIFY(!posted.category);
        QCOMPARE(posted.userInfo, (NotificationUserInfo{{"taskURL", taskURL}}));
        QVERIFY(fixture.scheduler->reminders().reminders().isEmpty());
        QVERIFY(ReminderFile::read(fixture.remindersPath()).isEmpty());
    }

    void aReminderIsKeptInTheFileAndTheTimerIsSetForIt() {
        SchedulerFixture fixture;
        const QDateTime fireDate = fixture.now().addSecs(3600);
        fixture.scheduler->scheduleReminder(QStringLiteral("Call the bank"), std::nullopt, fireDate);
        QVERIFY(fixture.center.posted().isEmpty());
        const QList<Reminder> kept = ReminderFile::read(fixture.remindersPath());
        QCOMPARE(kept.size(), 1);
        QCOMPARE(kept.constFirst().taskName, QStringLiteral("Call the bank"));
        QCOMPARE(kept.constFirst().taskURL, std::nullopt);
        QCOMPARE(kept.constFirst().fireDate, fireDate);
        const QRegularExpression form(
            QStringLiteral("^norvanebar-reminder-[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}$"));
        QVERIFY2(form.match(kept.constFirst().identifier).hasMatch(), qPrintable(kept.constFirst().identifier));
        QCOMPARE(fixture.scheduler->reminders().armedFor(), std::optional(fireDate));
        QCOMPARE(fixture.time.armed(), QList<QDateTime>{fireDate});
    }

    void aClickOnAReminderOpensItsTask() {
        SchedulerFixture fixture;
        fixture.scheduler->scheduleReminder(QStringLiteral("Call the bank"), taskURL, fixture.now());
        fixture.center.invoke(0, NotificationCenter::defaultActionIdentifier);
        QCOMPARE(fixture.links.opened(), QList<QUrl>{QUrl(taskURL)});
    }

    void theAlarmIsSetForTheEarliestReminderOnlyAndRingsIt() {
        SchedulerFixture fixture;
        const QDateTime later = fixture.now().addSecs(7200);
        const QDateTime sooner = fixture.now().addSecs(60);
        fixture.scheduler->scheduleReminder(QStringLiteral("later"), std::nullopt, later);
        fixture.scheduler->scheduleReminder(QStringLiteral("sooner"), std::nullopt, sooner);
        QCOMPARE(fixture.scheduler->reminders().armedFor(), std::optional(sooner));
        QCOMPARE(fixture.time.armed(), QList<QDateTime>{sooner});

        fixture.advance(59);
        QVERIFY(fixture.center.posted().isEmpty());
        fixture.advance(1);
        QCOMPARE(fixture.center.posted().size(), 1);
        QCOMPARE(fixture.center.posted().constFirst().body, QStringLiteral("sooner"));
        QCOMPARE(fixture.scheduler->reminders().armedFor(), std::optional(later));
        QCOMPARE(fixture.time.armed(), QList<QDateTime>{later});
        QCOMPARE(ReminderFile::read(fixture.remindersPath()).size(), 1);
    }

    void remindersThatFallDueTogetherAreDeliveredEarliestFirst() {
        SchedulerFixture fixture;
        // Kept in the file latest first.
        fixture.scheduler->scheduleReminder(QStringLiteral("third"), std::nullopt, fixture.now().addSecs(180));
        fixture.scheduler->scheduleReminder(QStringLiteral("second"), std::nullopt, fixture.now().addSecs(120));
        fixture.scheduler->scheduleReminder(QStringLiteral("first"), std::nullopt, fixture.now().addSecs(60));
        // Asleep through all three.
        fixture.time.jumpTo(fixture.now().addSecs(3600));
        QStringList bodies;
        for (const NotificationRequest& posted : fixture.center.posted()) {
            bodies.append(posted.body);
        }
        QCOMPARE(bodies, (QStringList{"first", "second", "third"}));
        QVERIFY(ReminderFile::read(fixture.remindersPath()).isEmpty());
    }

    void aJumpOfTheClockPastAReminderDeliversItAtOnce() {
        SchedulerFixture fixture;
        const QDateTime fireDate = fixture.now().addSecs(1800);
        fixture.scheduler->scheduleReminder(QStringLiteral("after the sleep"), taskURL, fireDate);
        // A resume from a sleep of two hours: the alarm doesn't ring, the jump is told.
        fixture.time.jumpTo(fixture.now().addSecs(7200));
        QCOMPARE(fixture.center.posted().size(), 1);
        QCOMPARE(fixture.center.posted().constFirst().body, QStringLiteral("after the sleep"));
        QVERIFY(ReminderFile::read(fixture.remindersPath()).isEmpty());
        QCOMPARE(fixture.time.armed(), QList<QDateTime>{});
    }

    void aClockSetBackKeepsTheReminderArmedForItsInstant() {
        SchedulerFixture fixture;
        const QDateTime fireDate = fixture.now().addSecs(1800);
        fixture.scheduler->scheduleReminder(QStringLiteral("later"), std::nullopt, fireDate);
        fixture.time.jumpTo(fixture.now().addSecs(-86400));
        QVERIFY(fixture.center.posted().isEmpty());
        QCOMPARE(fixture.time.armed(), QList<QDateTime>{fireDate});
        fixture.time.advanceTo(fireDate);
        QCOMPARE(fixture.center.posted().size(), 1);
    }

    void aDueReminderIsDeliveredOnceAndLeavesTheFile() {
        SchedulerFixture fixture;
        fixture.scheduler->scheduleReminder(QStringLiteral("once"), std::nullopt, fixture.now().addSecs(30));
        fixture.advance(31);
        fixture.scheduler->reminders().wakeUp();
        fixture.scheduler->reminders().wakeUp();
        fixture.restart();
        fixture.scheduler->restoreReminders();
        QCOMPARE(fixture.center.posted().size(), 1);
        QVERIFY(ReminderFile::read(fixture.remindersPath()).isEmpty());
        QCOMPARE(fixture.scheduler->reminders().armedFor(), std::nullopt);
    }

    void aWakeUpBeforeTheDateDeliversNothingAndWaitsOn() {
        SchedulerFixture fixture;
        const QDateTime fireDate = fixture.now().addSecs(600);
        fixture.scheduler->scheduleReminder(QStringLiteral("not yet"), std::nullopt, fireDate);
        fixture.advance(599);
        fixture.scheduler->reminders().wakeUp();
        QVERIFY(fixture.center.posted().isEmpty());
        QCOMPARE(fixture.scheduler->reminders().armedFor(), std::optional(fireDate));
    }

    void remindersThatFellDueWhileTheProgramWasNotRunningAreDeliveredAtStart() {
        SchedulerFixture fixture;
        fixture.scheduler->scheduleReminder(QStringLiteral("missed"), taskURL, fixture.now().addSecs(60));
        fixture.scheduler->scheduleReminder(QStringLiteral("tomorrow"), std::nullopt, fixture.now().addDays(1));
        fixture.scheduler.reset();
        fixture.advance(3600);
        fixture.restart();
        QVERIFY(fixture.center.posted().isEmpty());
        fixture.scheduler->restoreReminders();
        QCOMPARE(fixture.center.posted().size(), 1);
        QCOMPARE(fixture.center.posted().constFirst().body, QStringLiteral("missed"));
        QCOMPARE(fixture.scheduler->reminders().armedFor(), std::optional(fixture.now().addSecs(23 * 3600)));
        QCOMPARE(ReminderFile::read(fixture.remindersPath()).size(), 1);
    }

    void withoutLeaveAReminderIsDroppedSilently() {
        SchedulerFixture fixture;
        fixture.center.setPermission(false);
        fixture.scheduler->scheduleReminder(QStringLiteral("dropped"), taskURL, fixture.now().addSecs(60));
        fixture.scheduler->scheduleReminder(QStringLiteral("dropped too"), taskURL, fixture.now().addSecs(-60));
        QVERIFY(fixture.center.posted().isEmpty());
        QVERIFY(fixture.scheduler->reminders().reminders().isEmpty());
        QVERIFY(!QFile::exists(fixture.remindersPath()));
        QCOMPARE(fixture.scheduler->reminders().armedFor(), std::nullopt);
    }

    void remindersDueWithoutAServerStayInTheFileUntilOneAppears() {
        SchedulerFixture fixture;
        fixture.scheduler->scheduleReminder(QStringLiteral("second"), taskURL, fixture.now().addSecs(120));
        fixture.scheduler->scheduleReminder(QStringLiteral("first"), taskURL, fixture.now().addSecs(60));
        fixture.scheduler->scheduleReminder(QStringLiteral("tomorrow"), taskURL, fixture.now().addDays(1));
        fixture.center.setPermission(false);
        fixture.advance(60);
        fixture.advance(60);
        QVERIFY(fixture.center.posted().isEmpty());
        QCOMPARE(ReminderFile::read(fixture.remindersPath()).size(), 3);
        // What is due waits for a server, not for the alarm.
        QCOMPARE(fixture.time.armed(), QList<QDateTime>{fixture.now().addSecs(86400 - 120)});

        fixture.center.appear();
        QCOMPARE(fixture.center.posted().size(), 2);
        QCOMPARE(fixture.center.posted().at(0).body, QStringLiteral("first"));
        QCOMPARE(fixture.center.posted().at(1).body, QStringLiteral("second"));
        const QList<Reminder> kept = ReminderFile::read(fixture.remindersPath());
        QCOMPARE(kept.size(), 1);
        QCOMPARE(kept.constFirst().taskName, QStringLiteral("tomorrow"));
    }

    void aReminderTheServerDidNotTakeStaysInTheFile() {
        SchedulerFixture fixture;
        fixture.scheduler->scheduleReminder(QStringLiteral("r"), taskURL, fixture.now().addSecs(60));
        fixture.center.setTakesPosts(false);
        fixture.advance(60);
        QVERIFY(fixture.center.posted().isEmpty());
        QCOMPARE(ReminderFile::read(fixture.remindersPath()).size(), 1);
        // Kept across a restart too.
        fixture.restart();
        fixture.center.setTakesPosts(true);
        fixture.scheduler->restoreReminders();
        QCOMPARE(fixture.center.posted().size(), 1);
        QVERIFY(ReminderFile::read(fixture.remindersPath()).isEmpty());
    }

    void theFileIsWrittenWithTheKeysOfEachReminder() {
        SchedulerFixture fixture;
        fixture.scheduler->scheduleReminder(QStringLiteral("Call \"the\" bank"), taskURL,
                                            QDateTime(QDate(2026, 3, 15), QTime(8, 0, 0, 250), Qt::UTC));
        const QByteArray bytes = fileBytes(fixture.remindersPath());
        QVERIFY2(bytes.contains("\"fireDate\": 1773561600.25"), bytes.constData());
        QVERIFY(bytes.contains("\"taskName\": \"Call \\\"the\\\" bank\""));
        QVERIFY(bytes.contains("\"taskURL\": \"https://app.norvane.com/t/86b2x9\""));
        QVERIFY(bytes.contains("\"identifier\": \"norvanebar-reminder-"));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(RemindersTest)
#include "RemindersTest.moc"
