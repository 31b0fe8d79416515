#include "core/notify/NotificationScheduler.h"
#include "core/notify/ReminderFile.h"
#include "platform/linux/FreedesktopNotificationCenter.h"
#include "platform/linux/TimerFdAlarm.h"
#include "support/NotificationServerLog.h"
#include "support/RecordingLinkActions.h"
#include "support/TestMain.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

// A session whose notification server comes only later: a reminder that fell due meanwhile waits in
// the file and is shown once the server is there. Runs in a desktop session of its own, without a
// notification server until the test starts the harness's.
class NotificationServerAppearsTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;
    QProcess m_server;

    static QDBusConnectionInterface* bus() { return QDBusConnection::sessionBus().interface(); }

private slots:
    void initTestCase() {
        QVERIFY(!bus()->isServiceRegistered(QStringLiteral("org.freedesktop.Notifications")));
        qputenv("NORVANEBAR_NOTIFICATIONS_LOG", m_folder.filePath(QStringLiteral("notifications.jsonl")).toUtf8());
    }

    void cleanupTestCase() {
        m_server.terminate();
        m_server.waitForFinished(3000);
    }

    void aReminderDueWithoutAServerIsShownWhenOneAppearsAndLeavesTheFile() {
        const QString path = m_folder.filePath(QStringLiteral("reminders.json"));
        const QDateTime now = QDateTime::currentDateTimeUtc();
        const Reminder missed{QStringLiteral("norvanebar-reminder-missed"), QStringLiteral("Call the bank"),
                              QStringLiteral("https://app.norvane.com/t/86b2x9"), now.addSecs(-60)};
        const Reminder tomorrow{QStringLiteral("norvanebar-reminder-tomorrow"), QStringLiteral("Tomorrow"),
                                std::nullopt, now.addDays(1)};
        ReminderFile::write(path, {missed, tomorrow});

        FreedesktopNotificationCenter center;
        RecordingLinkActions links;
        NotificationScheduler scheduler(center, links, path, Clocks::system(), std::make_unique<TimerFdAlarm>());
        scheduler.registerCategories();
        scheduler.restoreReminders();
        // The round has ended once the alarm is set for tomorrow's.
        QTRY_COMPARE_WITH_TIMEOUT(scheduler.reminders().armedFor(), std::optional(tomorrow.fireDate), 5000);
        QCOMPARE(ReminderFile::read(path), (QList<Reminder>{missed, tomorrow}));

        m_server.start(QStringLiteral("/usr/bin/python3"), {QStringLiteral(NORVANEBAR_NOTIFICATION_SERVER_SCRIPT),
                                                            qEnvironmentVariable("NORVANEBAR_NOTIFICATIONS_LOG")});
        QTRY_COMPARE_WITH_TIMEOUT(ReminderFile::read(path), QList<Reminder>{tomorrow}, 10'000);
        const QList<QJsonObject> shown = NotificationServerLog::notifications(QStringLiteral("body"), missed.taskName);
        QCOMPARE(shown.size(), 1);
        QCOMPARE(shown.constFirst().value(QStringLiteral("summary")).toString(), QStringLiteral("Task reminder"));
        QCOMPARE(scheduler.reminders().armedFor(), std::optional(tomorrow.fireDate));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(NotificationServerAppearsTest)
#include "NotificationServerAppearsTest.moc"
