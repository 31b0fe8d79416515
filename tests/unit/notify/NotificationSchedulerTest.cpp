#include "core/notify/NotificationCategories.h"
#include "core/support/Translations.h"
#include "support/NotifyTesting.h"
#include "support/TestMain.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

namespace {
const QUuid jobID = QUuid::fromString(QStringLiteral("6f1c2a7e-93b4-4d0a-8e15-2c7d9b0f4a31"));
const QString jobIDText = QStringLiteral("6F1C2A7E-93B4-4D0A-8E15-2C7D9B0F4A31");
const QString taskURL = QStringLiteral("https://app.norvane.com/t/86b2x9");

QStringList actionIdentifiers(const NotificationRequest& request) {
    QStringList identifiers;
    for (const NotificationAction& action : request.category->actions) {
        identifiers << action.identifier;
    }
    return identifiers;
}

using Delivery = SubmitNotifier::Delivery;

// Records the answers of onDelivered.
struct DeliveredRecorder {
    std::shared_ptr<QList<Delivery>> answers = std::make_shared<QList<Delivery>>();
    SubmitNotifier::Delivered callback() const {
        return [answers = answers](Delivery delivery) { answers->append(delivery); };
    }
};
} // namespace

// What each notification says and carries, and what the user's answers do, against a recording
// notification center.
class NotificationSchedulerTest : public QObject {
    Q_OBJECT

private slots:
    // The English catalogue, as the program loads it, gives the singular of one.
    void initTestCase() { QVERIFY(Translations::install(*QCoreApplication::instance())); }

    void taskCreatedWithoutFailuresURLOrRetryJobHasNoUserInfoAndAClickDoesNothing() {
        SchedulerFixture fixture;
        fixture.scheduler->notifyTaskCreated(QStringLiteral("Write release notes"), std::nullopt, 0, std::nullopt,
                                             std::nullopt, nullptr);
        QCOMPARE(fixture.center.posted().size(), 1);
        const NotificationRequest& posted = fixture.center.posted().constFirst();
        QCOMPARE(posted.title, QStringLiteral("Write release notes"));
        QCOMPARE(posted.body, QStringLiteral("Task created"));
        QCOMPARE(posted.category->identifier, QStringLiteral("TASK_CREATED"));
        QVERIFY(posted.userInfo.isEmpty());
        fixture.center.invoke(0, NotificationCenter::defaultActionIdentifier);
        QVERIFY(fixture.links.opened().isEmpty());
        QVERIFY(fixture.links.copied().isEmpty());
    }

    void taskCreatedCarriesTheLinkAndTheRetryJobWithCopyThenOpen() {
        SchedulerFixture fixture;
        fixture.scheduler->notifyTaskCreated(QStringLiteral("Fix login"), taskURL, 0, std::nullopt, jobID, nullptr);
        const NotificationRequest& posted = fixture.center.posted().constFirst();
        QCOMPARE(posted.userInfo, (NotificationUserInfo{{"taskURL", taskURL}, {"retryJobID", jobIDText}}));
        QCOMPARE(posted.category->actions,
                 (QList<NotificationAction>{{"COPY_LINK", "Copy Link"}, {"OPEN_TASK", "Open in Norvane"}}));
    }

    // None failed reads "Task created"; one in the singular; two and many in the plural.
    void failedAttachmentsAreCounted_data() {
        QTest::addColumn<int>("failures");
        QTest::addColumn<QString>("body");
        QTest::newRow("none") << 0 << QStringLiteral("Task created");
        QTest::newRow("one") << 1 << QStringLiteral("1 attachment failed to upload");
        QTest::newRow("two") << 2 << QStringLiteral("2 attachments failed to upload");
        QTest::newRow("many") << 1000 << QStringLiteral("1000 attachments failed to upload");
    }

    void failedAttachmentsAreCounted() {
        QFETCH(int, failures);
        QFETCH(QString, body);
        SchedulerFixture fixture;
        fixture.scheduler->notifyTaskCreated(QStringLiteral("A"), taskURL, failures, std::nullopt, jobID, nullptr);
        QCOMPARE(fixture.center.posted().at(0).body, body);
    }

    void oneFailedAttachmentReadsSingularAndTwoPlural() {
        SchedulerFixture fixture;
        fixture.scheduler->notifyTaskCreated(QStringLiteral("A"), taskURL, 1, std::nullopt, jobID, nullptr);
        fixture.scheduler->notifyTaskCreated(QStringLiteral("B"), taskURL, 2, std::nullopt, jobID, nullptr);
        QCOMPARE(fixture.center.posted().at(0).body, QStringLiteral("1 attachment failed to upload"));
        QCOMPARE(fixture.center.posted().at(1).body, QStringLiteral("2 attachments failed to upload"));
        const NotificationRequest& failed = fixture.center.posted().at(0);
        QCOMPARE(failed.title, QStringLiteral("A"));
        QCOMPARE(failed.category->identifier, QStringLiteral("TASK_UPLOAD_FAILED"));
        QCOMPARE(actionIdentifiers(failed), (QStringList{"COPY_LINK", "OPEN_TASK", "RETRY"}));
        QCOMPARE(failed.category->actions.at(2).title, QStringLiteral("Retry"));
        QCOMPARE(failed.userInfo, (NotificationUserInfo{{"taskURL", taskURL}, {"retryJobID", jobIDText}}));
    }

    void theAttachmentFailureMessageReplacesTheCount() {
        SchedulerFixture fixture;
        fixture.scheduler->notifyTaskCreated(QStringLiteral("A"), std::nullopt, 3,
                                             QStringLiteral("Storage full: 3 files were not uploaded"), std::nullopt,
                                             nullptr);
        const NotificationRequest& posted = fixture.center.posted().constFirst();
        QCOMPARE(posted.body, QStringLiteral("Storage full: 3 files were not uploaded"));
        QCOMPARE(posted.category->identifier, QStringLiteral("TASK_UPLOAD_FAILED"));
        QVERIFY(posted.userInfo.isEmpty());
    }

    void aFailedTaskNamesTheTaskAndTheErrorAndOffersRetryOnly() {
        SchedulerFixture fixture;
        fixture.scheduler->notifyTaskCreateFailed(QStringLiteral("Fix login"), QStringLiteral("The list is gone."),
                                                  jobID, nullptr);
        const NotificationRequest& posted = fixture.center.posted().constFirst();
        QCOMPARE(posted.title, QStringLiteral("Couldn't create task"));
        QCOMPARE(posted.body, QStringLiteral("Fix login: The list is gone."));
        QCOMPARE(posted.category->identifier, QStringLiteral("TASK_FAILED"));
        QCOMPARE(actionIdentifiers(posted), QStringList{"RETRY"});
        QCOMPARE(posted.userInfo, (NotificationUserInfo{{"retryJobID", jobIDText}}));
    }

    void bulkCompleteWithOneCreatedAndOneFailedReadsTaskTwiceAndIsBulkFailed() {
        SchedulerFixture fixture;
        const QList<BulkFailure> failures{{QUuid::createUuid(), QStringLiteral("line"), QStringLiteral("refused")}};
        fixture.scheduler->notifyBulkComplete(1, failures, jobID, nullptr);
        const NotificationRequest& posted = fixture.center.posted().constFirst();
        QCOMPARE(posted.title, QStringLiteral("1 task created"));
        QCOMPARE(posted.body, QStringLiteral("1 task failed"));
        QCOMPARE(posted.category->identifier, QStringLiteral("BULK_FAILED"));
        QCOMPARE(actionIdentifiers(posted), QStringList{"RETRY"});
        QCOMPARE(posted.userInfo, (NotificationUserInfo{{"retryJobID", jobIDText}}));
    }

    void bulkCompleteCountsInThePluralExceptForExactlyOne() {
        SchedulerFixture fixture;
        const BulkFailure failure{QUuid::createUuid(), QStringLiteral("line"), QStringLiteral("refused")};
        fixture.scheduler->notifyBulkComplete(0, {failure, failure, failure}, jobID, nullptr);
        fixture.scheduler->notifyBulkComplete(12, {}, std::nullopt, nullptr);
        QCOMPARE(fixture.center.posted().at(0).title, QStringLiteral("0 tasks created"));
        QCOMPARE(fixture.center.posted().at(0).body, QStringLiteral("3 tasks failed"));
        const NotificationRequest& allCreated = fixture.center.posted().at(1);
        QCOMPARE(allCreated.title, QStringLiteral("12 tasks created"));
        QCOMPARE(allCreated.body, QStringLiteral("All tasks created in Norvane"));
        QVERIFY(!allCreated.category);
        QVERIFY(allCreated.userInfo.isEmpty());
    }

    void aFailedBulkJobSaysSoWithTheError() {
        SchedulerFixture fixture;
        fixture.scheduler->notifyBulkCreateFailed(QStringLiteral("No connection"), jobID, nullptr);
        const NotificationRequest& posted = fixture.center.posted().constFirst();
        QCOMPARE(posted.title, QStringLiteral("Couldn't create tasks"));
        QCOMPARE(posted.body, QStringLiteral("No connection"));
        QCOMPARE(posted.category->identifier, QStringLiteral("BULK_FAILED"));
        QCOMPARE(posted.userInfo, (NotificationUserInfo{{"retryJobID", jobIDText}}));
    }

    void everyPostAsksLeaveFirstAndReportsItWasHandedOn() {
        SchedulerFixture fixture;
        DeliveredRecorder delivered;
        fixture.scheduler->notifyTaskCreated(QStringLiteral("A"), std::nullopt, 0, std::nullopt, std::nullopt,
                                             delivered.callback());
        fixture.scheduler->notifyBulkCreateFailed(QStringLiteral("e"), jobID, delivered.callback());
        QCOMPARE(fixture.center.permissionRequests(), 2);
        QCOMPARE(fixture.center.posted().size(), 2);
        QCOMPARE(*delivered.answers, (QList<Delivery>{Delivery::delivered, Delivery::delivered}));
    }

    void aPostTheCenterDidNotTakeIsReportedUndelivered() {
        SchedulerFixture fixture;
        fixture.center.setTakesPosts(false);
        DeliveredRecorder delivered;
        fixture.scheduler->notifyTaskCreateFailed(QStringLiteral("A"), QStringLiteral("e"), jobID,
                                                  delivered.callback());
        QCOMPARE(*delivered.answers, QList<Delivery>{Delivery::undelivered});
    }

    void aFailureNotificationThatExpiresIsReportedOnceMore() {
        SchedulerFixture fixture;
        DeliveredRecorder taskFailed, uploadFailed, bulkFailed;
        fixture.scheduler->notifyTaskCreateFailed(QStringLiteral("A"), QStringLiteral("e"), jobID,
                                                  taskFailed.callback());
        fixture.scheduler->notifyTaskCreated(QStringLiteral("B"), taskURL, 1, std::nullopt, jobID,
                                             uploadFailed.callback());
        fixture.scheduler->notifyBulkComplete(1, {BulkFailure{QUuid::createUuid(), "line", "refused"}}, jobID,
                                              bulkFailed.callback());
        for (qsizetype index = 0; index < 3; ++index) {
            fixture.center.expire(index);
        }
        for (const DeliveredRecorder& recorder : {taskFailed, uploadFailed, bulkFailed}) {
            QCOMPARE(*recorder.answers, (QList<Delivery>{Delivery::delivered, Delivery::expired}));
        }
        // Told once: a second close of the same notification reaches nobody.
        fixture.center.expire(0);
        QCOMPARE(taskFailed.answers->size(), 2);
    }

    void aFailureTheUserClosedOrAnsweredAndASuccessAreNotReportedAgain() {
        SchedulerFixture fixture;
        DeliveredRecorder dismissed, retried, created, bulkCreated;
        fixture.scheduler->notifyTaskCreateFailed(QStringLiteral("A"), QStringLiteral("e"), jobID,
                                                  dismissed.callback());
        fixture.scheduler->notifyTaskCreateFailed(QStringLiteral("B"), QStringLiteral("e"), jobID, retried.callback());
        fixture.scheduler->notifyTaskCreated(QStringLiteral("C"), taskURL, 0, std::nullopt, std::nullopt,
                                             created.callback());
        fixture.scheduler->notifyBulkComplete(3, {}, std::nullopt, bulkCreated.callback());
        fixture.center.dismiss(0);
        fixture.center.invoke(1, NotificationCategories::retryAction);
        for (qsizetype index = 0; index < 4; ++index) {
            fixture.center.expire(index);
        }
        for (const DeliveredRecorder& recorder : {dismissed, retried, created, bulkCreated}) {
            QCOMPARE(*recorder.answers, QList<Delivery>{Delivery::delivered});
        }
    }

    void withoutLeaveNothingIsShownAndOnDeliveredHearsFalse() {
        SchedulerFixture fixture;
        fixture.center.setPermission(false);
        DeliveredRecorder delivered;
        fixture.scheduler->notifyTaskCreated(QStringLiteral("A"), taskURL, 0, std::nullopt, jobID,
                                             delivered.callback());
        fixture.scheduler->notifyTaskCreateFailed(QStringLiteral("A"), QStringLiteral("e"), jobID,
                                                  delivered.callback());
        fixture.scheduler->notifyBulkComplete(2, {}, jobID, delivered.callback());
        fixture.scheduler->notifyBulkCreateFailed(QStringLiteral("e"), jobID, delivered.callback());
        fixture.scheduler->notifyTaskCreated(QStringLiteral("A"), taskURL, 0, std::nullopt, jobID, nullptr);
        QVERIFY(fixture.center.posted().isEmpty());
        QCOMPARE(*delivered.answers, QList<Delivery>(4, Delivery::undelivered));
    }

    void eachNotificationHasAFreshIdentifier() {
        SchedulerFixture fixture;
        fixture.scheduler->notifyBulkComplete(1, {}, std::nullopt, nullptr);
        fixture.scheduler->notifyBulkComplete(1, {}, std::nullopt, nullptr);
        const QRegularExpression form(QStringLiteral("^norvanebar-[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}$"));
        const QString first = fixture.center.posted().at(0).identifier;
        QVERIFY2(form.match(first).hasMatch(), qPrintable(first));
        QVERIFY(form.match(fixture.center.posted().at(1).identifier).hasMatch());
        QVERIFY(first != fixture.center.posted().at(1).identifier);
    }

    void copyLinkPutsTheTaskURLOnTheClipboard() {
        SchedulerFixture fixture;
        fixture.scheduler->notifyTaskCreated(QStringLiteral("A"), taskURL, 0, std::nullopt, std::nullopt, nullptr);
        fixture.center.invoke(0, NotificationCategories::copyLinkAction);
        QCOMPARE(fixture.links.copied(), QStringList{taskURL});
        QVERIFY(fixture.links.opened().isEmpty());
    }

    void openTaskAndAClickOpenTheTaskURL() {
        SchedulerFixture fixture;
        fixture.scheduler->notifyTaskCreated(QStringLiteral("A"), taskURL, 0, std::nullopt, std::nullopt, nullptr);
        fixture.center.invoke(0, NotificationCategories::openTaskAction);
        fixture.center.invoke(0, NotificationCenter::defaultActionIdentifier);
        QCOMPARE(fixture.links.opened(), (QList<QUrl>{QUrl(taskURL), QUrl(taskURL)}));
        QVERIFY(fixture.links.copied().isEmpty());
    }

    void aTaskURLThatIsNoValidURLIsNotOpenedButCanBeCopied() {
        SchedulerFixture fixture;
        const QString notAURL = QStringLiteral("http://exa mple.com/%zz");
        fixture.scheduler->notifyTaskCreated(QStringLiteral("A"), notAURL, 0, std::nullopt, std::nullopt, nullptr);
        fixture.center.invoke(0, NotificationCategories::openTaskAction);
        fixture.center.invoke(0, NotificationCenter::defaultActionIdentifier);
        fixture.center.invoke(0, NotificationCategories::copyLinkAction);
        QVERIFY(fixture.links.opened().isEmpty());
        QCOMPARE(fixture.links.copied(), QStringList{notAURL});
    }

    void retryHandsTheJobIDToTheRetryHandler() {
        SchedulerFixture fixture;
        QList<QUuid> retried;
        fixture.scheduler->setRetryHandler([&retried](const QUuid& id) { retried.append(id); });
        fixture.scheduler->notifyTaskCreateFailed(QStringLiteral("A"), QStringLiteral("e"), jobID, nullptr);
        fixture.center.invoke(0, NotificationCategories::retryAction);
        QCOMPARE(retried, QList<QUuid>{jobID});
    }

    void aRetryJobIDThatIsNotAUUIDDoesNothingAndTheAnswerStillEnds() {
        SchedulerFixture fixture;
        QList<QUuid> retried;
        fixture.scheduler->setRetryHandler([&retried](const QUuid& id) { retried.append(id); });
        QSignalSpy closed(&fixture.center, &NotificationCenter::notificationClosed);
        for (const QString& notAUUID :
             {QStringLiteral("job-42"), QStringLiteral("{6f1c2a7e-93b4-4d0a-8e15-2c7d9b0f4a31}"),
              QStringLiteral("6f1c2a7e-93b4-4d0a-8e15-2c7d9b0f4a3"), QString()}) {
            emit fixture.center.actionInvoked(NotificationCategories::retryAction,
                                              NotificationUserInfo{{"retryJobID", notAUUID}});
        }
        emit fixture.center.actionInvoked(NotificationCategories::retryAction, NotificationUserInfo{});
        // A retry without a job id on the recorded notification: it still closes.
        fixture.scheduler->notifyBulkComplete(1, {}, std::nullopt, nullptr);
        fixture.center.invoke(0, NotificationCategories::retryAction);
        QCOMPARE(closed.count(), 1);
        QVERIFY(retried.isEmpty());
        QVERIFY(fixture.links.opened().isEmpty());
    }

    void anUnknownActionDoesNothing() {
        SchedulerFixture fixture;
        QList<QUuid> retried;
        fixture.scheduler->setRetryHandler([&retried](const QUuid& id) { retried.append(id); });
        fixture.scheduler->notifyTaskCreated(QStringLiteral("A"), taskURL, 0, std::nullopt, jobID, nullptr);
        fixture.center.invoke(0, QStringLiteral("SNOOZE"));
        fixture.center.invoke(0, QStringLiteral("open_task"));
        QVERIFY(retried.isEmpty());
        QVERIFY(fixture.links.opened().isEmpty());
        QVERIFY(fixture.links.copied().isEmpty());
    }

    void answersReachTheSchedulerOnlyOnceItRegisteredItsCategories() {
        RecordingNotificationCenter center;
        RecordingLinkActions links;
        QTemporaryDir folder;
        ManualWallClock time(QDateTime::currentDateTimeUtc());
        NotificationScheduler scheduler(center, links, folder.filePath(QStringLiteral("r.json")), time.clock(),
                                        time.alarm());
        scheduler.notifyTaskCreated(QStringLiteral("A"), taskURL, 0, std::nullopt, std::nullopt, nullptr);
        center.invoke(0, NotificationCategories::copyLinkAction);
        QVERIFY(links.copied().isEmpty());
        scheduler.registerCategories();
        scheduler.registerCategories();
        center.invoke(0, NotificationCategories::copyLinkAction);
        QCOMPARE(links.copied(), QStringList{taskURL});
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(NotificationSchedulerTest)
#include "NotificationSchedulerTest.moc"
