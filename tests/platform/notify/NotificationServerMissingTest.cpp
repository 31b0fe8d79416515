#include "core/notify/NotificationScheduler.h"
#include "platform/linux/FreedesktopNotificationCenter.h"
#include "platform/linux/TimerFdAlarm.h"
#include "support/AppStateFixture.h"
#include "support/RecordingLinkActions.h"
#include "support/RunTask.h"
#include "support/SandboxDemo.h"
#include "support/TestMain.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

// A session bus without a notification server: no leave to notify, said at once, and nothing kept;
// the outcome of a job in the background then shows in the popover's banner.
class NotificationServerMissingTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        QVERIFY(QDBusConnection::sessionBus().isConnected());
        QVERIFY(!QDBusConnection::sessionBus().interface()->isServiceRegistered(
            QStringLiteral("org.freedesktop.Notifications")));
    }

    void noServerOnTheBusMeansNoLeaveAndNoButtons() {
        FreedesktopNotificationCenter center;
        QElapsedTimer answered;
        answered.start();
        QVERIFY(!runTask(center.permission()));
        QVERIFY(!runTask(center.offersActions()));
        QVERIFY2(answered.elapsed() < 2000, "the bus says at once that nobody owns the name");
    }

    void eachPostReportsItWasNotDelivered() {
        FreedesktopNotificationCenter center;
        RecordingLinkActions links;
        QTemporaryDir folder;
        NotificationScheduler scheduler(center, links, folder.filePath(QStringLiteral("reminders.json")),
                                        Clocks::system(), std::make_unique<TimerFdAlarm>());
        QList<SubmitNotifier::Delivery> delivered;
        const auto record = [&delivered](SubmitNotifier::Delivery answer) { delivered.append(answer); };
        const QUuid jobID = QUuid::createUuid();
        scheduler.notifyTaskCreated(QStringLiteral("A"), QStringLiteral("https://x.test/t/1"), 0, std::nullopt, jobID,
                                    record);
        scheduler.notifyTaskCreateFailed(QStringLiteral("A"), QStringLiteral("e"), jobID, record);
        scheduler.notifyBulkComplete(2, {}, jobID, record);
        scheduler.notifyBulkCreateFailed(QStringLiteral("e"), jobID, record);
        QTRY_COMPARE_WITH_TIMEOUT(delivered, QList<SubmitNotifier::Delivery>(4, SubmitNotifier::Delivery::undelivered),
                                  5000);
    }

    void aReminderIsDroppedSilently() {
        FreedesktopNotificationCenter center;
        RecordingLinkActions links;
        QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("reminders.json"));
        NotificationScheduler scheduler(center, links, path, Clocks::system(), std::make_unique<TimerFdAlarm>());
        scheduler.scheduleReminder(QStringLiteral("r"), std::nullopt, QDateTime::currentDateTimeUtc().addSecs(60));
        QTest::qWait(200);
        QVERIFY(!QFile::exists(path));
        QCOMPARE(scheduler.reminders().armedFor(), std::nullopt);
    }

    void theOutcomeOfAJobInTheBackgroundComesAsTheBanner() {
        SandboxProcess sandbox;
        QVERIFY2(sandbox.start(), qPrintable(sandbox.errorString()));
        const std::unique_ptr<AppStateFixture> fixture = AppStateFixture::withFirstUser(sandbox);
        QVERIFY(fixture);
        FreedesktopNotificationCenter center;
        fixture->useNotificationCenter(center);
        fixture->writeSettings({{QStringLiteral("activeAccountID"), SandboxDemo::firstUserID}});
        AppState& app = fixture->startSignedIn();
        QVERIFY(app.authState().user());
        QVERIFY(fixture->chooseNorthwindList(SandboxDemo::supportListID));
        SandboxFault slowCreation = SandboxFault::delay(QStringLiteral("/api/v2/list/*/task"), 300);
        slowCreation.method = QStringLiteral("POST");
        QVERIFY(sandbox.addFault(slowCreation));

        app.draft().setName(QStringLiteral("Left to the background"));
        app.submit().submitDraft();
        QVERIFY(app.submit().foregroundSubmit());
        app.submit().backgroundActiveSubmit();
        QVERIFY(!app.submit().foregroundSubmit());
        QTRY_VERIFY_WITH_TIMEOUT(app.submit().lastBackgroundJobResult().has_value(), 10'000);
        const auto* success =
            std::get_if<BackgroundJobResult::Success>(&app.submit().lastBackgroundJobResult()->outcome);
        QVERIFY(success);
        QCOMPARE(success->taskName, QStringLiteral("Left to the background"));
        QCOMPARE(app.submitQueue().pendingCount(), 0);
    }
};

NORVANEBAR_TEST_MAIN(NotificationServerMissingTest)
#include "NotificationServerMissingTest.moc"
