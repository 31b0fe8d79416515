// What the tray icon shows, as the queue of jobs, the due count and the settings change it, over a
// session that answers from a table.
#include "core/shell/StatusItemBadgeModel.h"
#include "core/myday/DueCountQuery.h"
#include "core/settings/SettingsStore.h"
#include "core/storage/StorageProviderRegistry.h"
#include "core/support/Translations.h"
#include "support/HierarchyTesting.h"
#include "support/SubmitPipeline.h"
#include "support/SubmitTesting.h"
#include "support/TestMain.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using HierarchyTesting::FakeClient;
using namespace SubmitTesting;

namespace {
const QString tasksPath = QStringLiteral("team/7/task");
const QString createPath = QStringLiteral("list/L1/task");
const QString newTask = QStringLiteral("NorvaneBar — new Norvane task");

// Noon of a fixed day in local time.
QDateTime noon() {
    return QDateTime(QDate(2026, 6, 17), QTime(12, 0), Qt::LocalTime);
}

// A page of the task search: one task an hour ago, one tomorrow.
QByteArray oneDueAndOneTomorrow() {
    QJsonArray tasks;
    for (const QDateTime& due : {noon().addSecs(-3600), noon().addDays(1)}) {
        tasks.append(QJsonObject{{"id", QString::number(due.toMSecsSinceEpoch())},
                                 {"name", QStringLiteral("Task")},
                                 {"due_date", QString::number(due.toMSecsSinceEpoch())}});
    }
    return QJsonDocument(QJsonObject{{"tasks", tasks}, {"last_page", true}}).toJson();
}
} // namespace

class StatusItemBadgeModelTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;
    QDateTime m_now;
    std::unique_ptr<FakeClient> m_fake;
    std::unique_ptr<SettingsStore> m_settings;
    std::unique_ptr<StorageProviderRegistry> m_providers;
    std::unique_ptr<SubmitPipeline> m_pipeline;
    std::unique_ptr<DueCountQuery> m_dueCount;
    std::unique_ptr<StatusItemBadgeModel> m_model;

    StatusItemBadgeModel& model() { return *m_model; }

    // Starts a job that waits for its answer, and leaves its page.
    void jobInTheBackground() {
        const QUuid jobID = QUuid::createUuid();
        m_pipeline->queue.enqueue(payload(QStringLiteral("L1"), QStringLiteral("Report")), m_fake->client, jobID, {});
        m_pipeline->queue.markBackgrounded(ForegroundSubmitSession{jobID, QStringLiteral("Report"), {}});
    }

    void jobsEnd() {
        m_fake->service.release(createPath);
        QTRY_COMPARE(m_pipeline->queue.pendingCount(), 0);
    }

    // Turns the count on, which fetches it.
    void countShown() {
        m_settings->set(&AppSettings::showDueCountBadge, true);
        QTRY_COMPARE(m_dueCount->dueCount(), 1);
    }

private slots:
    // The English catalogue, as the program loads it, gives the singular of one.
    void initTestCase() { QVERIFY(Translations::install(*QCoreApplication::instance())); }

    void init() {
        m_now = noon();
        m_fake = std::make_unique<FakeClient>();
        m_fake->service.answer(tasksPath, oneDueAndOneTomorrow());
        m_fake->service.answer(createPath, R"({"id":"T1","name":"Report"})");
        m_fake->service.hold(createPath);
        m_settings = std::make_unique<SettingsStore>(m_folder.filePath(QUuid::createUuid().toString() + ".json"));
        m_providers = std::make_unique<StorageProviderRegistry>();
        m_pipeline = std::make_unique<SubmitPipeline>(*m_providers, *m_settings);
        m_dueCount = std::make_unique<DueCountQuery>(
            m_fake->client, *m_settings,
            DueCountContext{.signedInUserID = [] { return std::optional<qint64>(11); },
                            .activeWorkspaceID = [] { return std::optional(QStringLiteral("7")); }},
            [this] { return m_now; });
        m_model = std::make_unique<StatusItemBadgeModel>(m_pipeline->queue, *m_dueCount, *m_settings);
    }

    void cleanup() {
        m_model.reset();
        m_dueCount.reset();
        m_pipeline.reset();
        m_providers.reset();
        m_settings.reset();
        m_fake.reset();
    }

    void itStartsFromWhatItsSourcesHold() {
        m_model.reset();
        m_settings->set(&AppSettings::showDueCountBadge, true);
        QTRY_COMPARE(m_dueCount->dueCount(), 1);
        jobInTheBackground();
        StatusItemBadgeModel model(m_pipeline->queue, *m_dueCount, *m_settings);
        QCOMPARE(model.backgroundCount(), 1);
        QCOMPARE(model.dueCount(), 1);
        QVERIFY(model.showDueCountBadge());
        jobsEnd();
    }

    void aJobInTheBackgroundShowsUntilItEnds() {
        QSignalSpy changed(&model(), &StatusItemBadgeModel::changed);
        QCOMPARE(model().badge(), (StatusItemBadge{QString(), newTask}));
        jobInTheBackground();
        QCOMPARE(changed.count(), 1);
        QCOMPARE(model().backgroundCount(), 1);
        QCOMPARE(model().badge(),
                 (StatusItemBadge{QStringLiteral("1"), QStringLiteral("1 background task in progress")}));
        jobInTheBackground();
        QCOMPARE(model().badge().text, QStringLiteral("2"));
        jobsEnd();
        QCOMPARE(model().backgroundCount(), 0);
        QCOMPARE(model().badge(), (StatusItemBadge{QString(), newTask}));
    }

    void aJobWatchedOnItsPageIsNotCounted() {
        QSignalSpy changed(&model(), &StatusItemBadgeModel::changed);
        m_pipeline->queue.enqueue(payload(QStringLiteral("L1"), QStringLiteral("Report")), m_fake->client,
                                  QUuid::createUuid(), {});
        jobsEnd();
        QCOMPARE(changed.count(), 0);
        QCOMPARE(model().backgroundCount(), 0);
    }

    void theDueCountShowsWithTheSettingOn() {
        QSignalSpy changed(&model(), &StatusItemBadgeModel::changed);
        countShown();
        QVERIFY(model().showDueCountBadge());
        QCOMPARE(model().dueCount(), 1);
        QCOMPARE(model().badge(), (StatusItemBadge{QStringLiteral("1"), newTask}));
        // The setting, then the count that its fetch brought.
        QCOMPARE(changed.count(), 2);
    }

    void aRecountPastMidnightChangesTheBadge() {
        countShown();
        QSignalSpy changed(&model(), &StatusItemBadgeModel::changed);
        m_now = m_now.addDays(1);
        m_dueCount->recount();
        QCOMPARE(changed.count(), 1);
        QCOMPARE(model().badge().text, QStringLiteral("2"));
    }

    void theSettingOffHidesTheDueCountButNotTheBackgroundCount() {
        countShown();
        jobInTheBackground();
        // Work in the background outranks the tasks due.
        QCOMPARE(model().badge().text, QStringLiteral("1"));
        QCOMPARE(model().badge().toolTip, QStringLiteral("1 background task in progress"));
        m_settings->set(&AppSettings::showDueCountBadge, false);
        QVERIFY(!model().showDueCountBadge());
        QCOMPARE(model().badge().toolTip, QStringLiteral("1 background task in progress"));
        jobsEnd();
        QCOMPARE(model().dueCount(), 1);
        QCOMPARE(model().badge(), (StatusItemBadge{QString(), newTask}));
        m_settings->set(&AppSettings::showDueCountBadge, true);
        QCOMPARE(model().badge(), (StatusItemBadge{QStringLiteral("1"), newTask}));
        // Turning it on fetched the count again.
        QTRY_COMPARE(m_fake->service.inFlight, 0);
    }

    void otherSettingsChangeNothing() {
        QSignalSpy changed(&model(), &StatusItemBadgeModel::changed);
        m_settings->set(&AppSettings::branchNameFormat, QStringLiteral(":taskId:"));
        QCOMPARE(changed.count(), 0);
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(StatusItemBadgeModelTest)
#include "StatusItemBadgeModelTest.moc"
