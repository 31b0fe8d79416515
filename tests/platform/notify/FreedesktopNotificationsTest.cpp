#include "core/notify/NotificationScheduler.h"
#include "core/notify/ReminderFile.h"
#include "platform/linux/DesktopLinkActions.h"
#include "platform/linux/FreedesktopNotificationCenter.h"
#include "platform/linux/TimerFdAlarm.h"
#include "support/NotificationServerLog.h"
#include "support/RecordingLinkActions.h"
#include "support/RunTask.h"
#include "support/TestMain.h"

#include <QProcess>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <memory>

using NotificationServerLog::invokeAction;
using NotificationServerLog::notifications;
using Delivery = SubmitNotifier::Delivery;

namespace {
const QString taskURL = QStringLiteral("https://app.norvane.com/t/86b2x9");
const QUuid jobID = QUuid::fromString(QStringLiteral("6f1c2a7e-93b4-4d0a-8e15-2c7d9b0f4a31"));

// A body no other test posts.
QString uniqueBody(const QString& text) {
    return text + u' ' + QUuid::createUuid().toString(QUuid::WithoutBraces);
}

QJsonArray strings(const QStringList& values) {
    return QJsonArray::fromStringList(values);
}

QList<QJsonObject> withBody(const QString& body) {
    return notifications(QStringLiteral("body"), body);
}

// What another client reads from the clipboard, while this process serves it.
QString clipboardSeenByXclip() {
    QProcess xclip;
    xclip.start(QStringLiteral("xclip"),
                {QStringLiteral("-selection"), QStringLiteral("clipboard"), QStringLiteral("-o")});
    QSignalSpy finished(&xclip, &QProcess::finished);
    finished.wait(3000);
    return QString::fromUtf8(xclip.readAllStandardOutput());
}

// The scheduler as the app builds it, on the session's notification server.
struct DesktopScheduler {
    explicit DesktopScheduler(LinkActions& links, const QString& remindersPath)
        : scheduler(center, links, remindersPath, Clocks::system(), std::make_unique<TimerFdAlarm>()) {
        scheduler.registerCategories();
    }

    FreedesktopNotificationCenter center;
    NotificationScheduler scheduler;
};
} // namespace

// Notifications through the harness's freedesktop notification server: what is sent, and what the
// user's answers do.
class FreedesktopNotificationsTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;
    RecordingLinkActions m_links;

    QString remindersPath() const { return m_folder.filePath(QStringLiteral("reminders.json")); }

    // The one notification whose `field` is `value`, once the server has it.
    static QJsonObject awaitNotification(const QString& value, const QString& field = QStringLiteral("body")) {
        [&] { QTRY_COMPARE_WITH_TIMEOUT(notifications(field, value).size(), 1, 5000); }();
        const QList<QJsonObject> found = notifications(field, value);
        return found.isEmpty() ? QJsonObject() : found.constFirst();
    }

private slots:
    void cleanup() {
        QFile::remove(remindersPath());
        // Back to a server that shows buttons.
        NotificationServerLog::callServer(QStringLiteral("SetCapabilities"), {QStringList()});
    }

    void aServerThatAnswersIsLeaveToNotifyAndOffersActions() {
        FreedesktopNotificationCenter center;
        QVERIFY(runTask(center.permission()));
        QVERIFY(runTask(center.offersActions()));
    }

    void eachNotificationReachesTheServerWithItsTextButtonsAndHints() {
        DesktopScheduler desktop(m_links, remindersPath());
        const QString name = uniqueBody(QStringLiteral("Fix login"));
        const QString created = uniqueBody(QStringLiteral("uploads"));
        const QString taskFailed = uniqueBody(QStringLiteral("No connection"));
        const QString bulkFailed = uniqueBody(QStringLiteral("Service down"));
        const BulkFailure failure{QUuid::createUuid(), QStringLiteral("line"), QStringLiteral("refused")};
        QList<Delivery> delivered;
        const auto record = [&delivered](Delivery answer) { delivered.append(answer); };
        desktop.scheduler.notifyTaskCreated(name, taskURL, 0, std::nullopt, jobID, record);
        desktop.scheduler.notifyTaskCreated(QStringLiteral("Upload"), taskURL, 2, created, jobID, record);
        desktop.scheduler.notifyTaskCreateFailed(QStringLiteral("Fix login"), taskFailed, jobID, record);
        desktop.scheduler.notifyBulkComplete(1, {failure, failure}, jobID, record);
        desktop.scheduler.notifyBulkCreateFailed(bulkFailed, jobID, record);
        QTRY_COMPARE_WITH_TIMEOUT(delivered, QList<Delivery>(5, Delivery::delivered), 5000);

        const QJsonObject hints{{"desktop-entry", "com.norvanebar.NorvaneBar"}, {"sound-name", "message-new-instant"}};
        const QJsonObject taskCreated = awaitNotification(name, QStringLiteral("summary"));
        QCOMPARE(taskCreated.value("body").toString(), QStringLiteral("Task created"));
        QCOMPARE(taskCreated.value("app_name").toString(), QStringLiteral("NorvaneBar"));
        QCOMPARE(taskCreated.value("replaces_id").toInt(), 0);
        QCOMPARE(taskCreated.value("app_icon").toString(), QString());
        QCOMPARE(taskCreated.value("expire_timeout").toInt(), -1);
        QCOMPARE(taskCreated.value("hints").toObject(), hints);
        QCOMPARE(taskCreated.value("actions").toArray(),
                 strings({"COPY_LINK", "Copy Link", "OPEN_TASK", "Open in Norvane", "default", ""}));

        const QJsonObject uploadFailed = awaitNotification(created);
        QCOMPARE(uploadFailed.value("summary").toString(), QStringLiteral("Upload"));
        QCOMPARE(uploadFailed.value("actions").toArray(),
                 strings({"COPY_LINK", "Copy Link", "OPEN_TASK", "Open in Norvane", "RETRY", "Retry", "default", ""}));
        QCOMPARE(uploadFailed.value("hints").toObject(), hints);

        const QJsonObject failed = awaitNotification(QStringLiteral("Fix login: ") + taskFailed);
        QCOMPARE(failed.value("summary").toString(), QStringLiteral("Couldn't create task"));
        QCOMPARE(failed.value("actions").toArray(), strings({"RETRY", "Retry", "default", ""}));
        QCOMPARE(failed.value("hints").toObject(), hints);

        const QJsonObject bulk = awaitNotification(bulkFailed);
        QCOMPARE(bulk.value("summary").toString(), QStringLiteral("Couldn't create tasks"));
        QCOMPARE(bulk.value("actions").toArray(), strings({"RETRY", "Retry", "default", ""}));
        QCOMPARE(bulk.value("hints").toObject(), hints);
    }

    void aBulkJobWithoutFailuresHasOnlyTheClick() {
        DesktopScheduler desktop(m_links, remindersPath());
        const int created = QRandomGenerator::global()->bounded(1000, 1000000);
        desktop.scheduler.notifyBulkComplete(created, {}, std::nullopt, nullptr);
        const QJsonObject posted =
            awaitNotification(QString::number(created) + QStringLiteral(" tasks created"), QStringLiteral("summary"));
        QCOMPARE(posted.value("body").toString(), QStringLiteral("All tasks created in Norvane"));
        QCOMPARE(posted.value("actions").toArray(), strings({"default", ""}));
    }

    void copyLinkPutsTheTaskURLOnTheDesktopClipboard() {
        DesktopLinkActions links;
        DesktopScheduler desktop(links, remindersPath());
        const QString url = taskURL + u'/' + QUuid::createUuid().toString(QUuid::WithoutBraces);
        const QString body = uniqueBody(QStringLiteral("copy"));
        desktop.scheduler.notifyTaskCreated(QStringLiteral("Copy me"), url, 1, body, std::nullopt, nullptr);
        QVERIFY(invokeAction(awaitNotification(body), QStringLiteral("COPY_LINK")));

        QTRY_COMPARE_WITH_TIMEOUT(clipboardSeenByXclip(), url, 5000);
    }

    void openTaskAndAClickReachOpenURL() {
        DesktopScheduler desktop(m_links, remindersPath());
        const QString first = uniqueBody(QStringLiteral("open"));
        const QString second = uniqueBody(QStringLiteral("click"));
        const qsizetype openedBefore = m_links.opened().size();
        desktop.scheduler.notifyTaskCreated(QStringLiteral("A"), taskURL, 1, first, std::nullopt, nullptr);
        desktop.scheduler.notifyTaskCreated(QStringLiteral("B"), taskURL + QStringLiteral("?b"), 1, second,
                                            std::nullopt, nullptr);
        QVERIFY(invokeAction(awaitNotification(first), QStringLiteral("OPEN_TASK")));
        QTRY_COMPARE_WITH_TIMEOUT(m_links.opened().size(), openedBefore + 1, 5000);
        QVERIFY(invokeAction(awaitNotification(second), QStringLiteral("default")));
        QTRY_COMPARE_WITH_TIMEOUT(m_links.opened().size(), openedBefore + 2, 5000);
        QCOMPARE(m_links.opened().mid(openedBefore),
                 (QList<QUrl>{QUrl(taskURL), QUrl(taskURL + QStringLiteral("?b"))}));
    }

    void retryCallsTheRetryHandlerWithTheJobID() {
        DesktopScheduler desktop(m_links, remindersPath());
        QList<QUuid> retried;
        desktop.scheduler.setRetryHandler([&retried](const QUuid& id) { retried.append(id); });
        const QString error = uniqueBody(QStringLiteral("retry"));
        desktop.scheduler.notifyBulkCreateFailed(error, jobID, nullptr);
        QVERIFY(invokeAction(awaitNotification(error), QStringLiteral("RETRY")));
        QTRY_COMPARE_WITH_TIMEOUT(retried, QList<QUuid>{jobID}, 5000);
    }

    void aClosedNotificationIsForgotten() {
        DesktopScheduler desktop(m_links, remindersPath());
        QSignalSpy closed(&desktop.center, &NotificationCenter::notificationClosed);
        QSignalSpy invoked(&desktop.center, &NotificationCenter::actionInvoked);
        const QString error = uniqueBody(QStringLiteral("dismissed"));
        desktop.scheduler.notifyBulkCreateFailed(error, jobID, nullptr);
        const QJsonObject posted = awaitNotification(error);
        QVERIFY(invokeAction(posted, QStringLiteral("RETRY")));
        QTRY_COMPARE_WITH_TIMEOUT(closed.count(), 1, 5000);
        QVERIFY(closed.constFirst().constFirst().toString().startsWith(QStringLiteral("norvanebar-")));
        QCOMPARE(invoked.count(), 1);
        // The server has closed it: what the bus says of that id now reaches nobody.
        QVERIFY(!invokeAction(posted, QStringLiteral("RETRY")));
    }

    void aFailureTheServerLetExpireIsReportedAsExpiredAndOneDismissedIsNot() {
        DesktopScheduler desktop(m_links, remindersPath());
        QSignalSpy closed(&desktop.center, &NotificationCenter::notificationClosed);
        QList<Delivery> expiring, dismissed;
        const QString expiringError = uniqueBody(QStringLiteral("expires"));
        const QString dismissedError = uniqueBody(QStringLiteral("dismissed"));
        desktop.scheduler.notifyTaskCreateFailed(QStringLiteral("A"), expiringError, jobID,
                                                 [&expiring](Delivery answer) { expiring.append(answer); });
        desktop.scheduler.notifyTaskCreateFailed(QStringLiteral("B"), dismissedError, jobID,
                                                 [&dismissed](Delivery answer) { dismissed.append(answer); });
        const QJsonObject toExpire = awaitNotification(QStringLiteral("A: ") + expiringError);
        const QJsonObject toDismiss = awaitNotification(QStringLiteral("B: ") + dismissedError);
        QTRY_COMPARE_WITH_TIMEOUT(expiring, QList<Delivery>{Delivery::delivered}, 5000);
        QTRY_COMPARE_WITH_TIMEOUT(dismissed, QList<Delivery>{Delivery::delivered}, 5000);

        const auto close = [](const QString& method, const QJsonObject& notification) {
            const QVariant id =
                QVariant::fromValue(static_cast<uint>(notification.value(QStringLiteral("id")).toInt()));
            return NotificationServerLog::callServer(method, {id}).type() == QDBusMessage::ReplyMessage;
        };
        QVERIFY(close(QStringLiteral("Dismiss"), toDismiss));
        QVERIFY(close(QStringLiteral("Expire"), toExpire));
        QTRY_COMPARE_WITH_TIMEOUT(closed.count(), 2, 5000);
        QCOMPARE(closed.at(0).at(1).value<NotificationCenter::CloseReason>(),
                 NotificationCenter::CloseReason::dismissed);
        QCOMPARE(closed.at(1).at(1).value<NotificationCenter::CloseReason>(), NotificationCenter::CloseReason::expired);
        QCOMPARE(expiring, (QList<Delivery>{Delivery::delivered, Delivery::expired}));
        QCOMPARE(dismissed, QList<Delivery>{Delivery::delivered});
    }

    void aServerWithoutActionsGetsTheNotificationWithoutButtons() {
        QCOMPARE(NotificationServerLog::callServer(QStringLiteral("SetCapabilities"), {QStringList{"body"}}).type(),
                 QDBusMessage::ReplyMessage);
        DesktopScheduler desktop(m_links, remindersPath());
        QVERIFY(runTask(desktop.center.permission()));
        QVERIFY(!runTask(desktop.center.offersActions()));
        const QString error = uniqueBody(QStringLiteral("no buttons"));
        std::optional<Delivery> delivered;
        desktop.scheduler.notifyBulkCreateFailed(error, jobID, [&delivered](Delivery answer) { delivered = answer; });
        const QJsonObject posted = awaitNotification(error);
        QTRY_COMPARE_WITH_TIMEOUT(delivered, std::optional(Delivery::delivered), 5000);
        QCOMPARE(posted.value("summary").toString(), QStringLiteral("Couldn't create tasks"));
        QCOMPARE(posted.value("actions").toArray(), QJsonArray());
        QCOMPARE(posted.value("hints").toObject().value("sound-name").toString(),
                 QStringLiteral("message-new-instant"));
    }

    void aReminderDueInTwoSecondsIsDeliveredOnceAndLeavesTheFile() {
        DesktopScheduler desktop(m_links, remindersPath());
        const QString name = uniqueBody(QStringLiteral("Call the bank"));
        desktop.scheduler.scheduleReminder(name, taskURL, QDateTime::currentDateTimeUtc().addSecs(2));
        QTRY_COMPARE_WITH_TIMEOUT(ReminderFile::read(remindersPath()).size(), 1, 5000);
        QVERIFY(withBody(name).isEmpty());

        const QJsonObject reminder = awaitNotification(name);
        QCOMPARE(reminder.value("summary").toString(), QStringLiteral("Task reminder"));
        QCOMPARE(reminder.value("actions").toArray(), strings({"default", ""}));
        QTRY_VERIFY_WITH_TIMEOUT(ReminderFile::read(remindersPath()).isEmpty(), 5000);
        QTest::qWait(300);
        QCOMPARE(withBody(name).size(), 1);

        QVERIFY(invokeAction(reminder, QStringLiteral("default")));
        QTRY_COMPARE_WITH_TIMEOUT(m_links.opened().isEmpty() ? QUrl() : m_links.opened().constLast(), QUrl(taskURL),
                                  5000);
    }

    void remindersSurviveARestart() {
        const QString missed = uniqueBody(QStringLiteral("missed"));
        const QString soon = uniqueBody(QStringLiteral("soon"));
        {
            DesktopScheduler before(m_links, remindersPath());
            before.scheduler.scheduleReminder(soon, std::nullopt, QDateTime::currentDateTimeUtc().addSecs(2));
            QTRY_COMPARE_WITH_TIMEOUT(ReminderFile::read(remindersPath()).size(), 1, 5000);
        }
        // One more fell due while no scheduler ran.
        QList<Reminder> kept = ReminderFile::read(remindersPath());
        kept.append({QStringLiteral("norvanebar-reminder-missed"), missed, taskURL,
                     QDateTime::currentDateTimeUtc().addSecs(-60)});
        ReminderFile::write(remindersPath(), kept);

        DesktopScheduler after(m_links, remindersPath());
        after.scheduler.restoreReminders();
        awaitNotification(missed);
        // It leaves the file once the server has answered.
        QTRY_COMPARE_WITH_TIMEOUT(ReminderFile::read(remindersPath()).size(), 1, 5000);
        QVERIFY(withBody(soon).isEmpty());
        awaitNotification(soon);
        QTRY_VERIFY_WITH_TIMEOUT(ReminderFile::read(remindersPath()).isEmpty(), 5000);
        QCOMPARE(withBody(missed).size(), 1);
    }
};

NORVANEBAR_TEST_MAIN(FreedesktopNotificationsTest)
#include "FreedesktopNotificationsTest.moc"
