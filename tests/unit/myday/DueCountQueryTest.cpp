// The tray icon's due count over a session that answers from a table: what it asks for, what it
// counts, when it fetches and when it drops an answer.
#include "core/myday/DueCountQuery.h"
#include "core/settings/SettingsStore.h"
#include "support/HierarchyTesting.h"
#include "support/MyDayTesting.h"
#include "support/TestMain.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace HierarchyTesting;
using namespace MyDayTesting;

namespace {
const QString tasksPath = QStringLiteral("team/7/task");
const qint64 me = 11;

QByteArray pageOf(const QList<NVTaskSummary>& tasks) {
    QJsonArray array;
    for (const NVTaskSummary& task : tasks) {
        array.append(task.toJson());
    }
    return QJsonDocument(QJsonObject{{"tasks", array}, {"last_page", true}}).toJson();
}
} // namespace

class DueCountQueryTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;
    QDateTime m_now = localNoon();
    std::optional<qint64> m_user = me;
    std::optional<QString> m_workspace = QStringLiteral("7");
    std::unique_ptr<FakeClient> m_fake;
    std::unique_ptr<SettingsStore> m_settings;
    std::unique_ptr<DueCountQuery> m_query;

    DueCountQuery& query() { return *m_query; }

    // The end of m_now's day, and tasks on both sides of it.
    QDateTime endOfToday() const { return m_now.date().startOfDay().addSecs(86399); }
    QList<NVTaskSummary> mixedTasks() const {
        return {task("undated"), task("bad", {}, QStringLiteral(" 1")), dueAt("overdue", m_now.addDays(-9)),
                dueAt("last second", endOfToday()), dueAt("tomorrow", endOfToday().addSecs(1))};
    }

private slots:
    void init() {
        m_now = localNoon();
        m_user = me;
        m_workspace = QStringLiteral("7");
        m_fake = std::make_unique<FakeClient>();
        m_settings = std::make_unique<SettingsStore>(m_folder.filePath(QUuid::createUuid().toString() + ".json"));
        m_settings->set(&AppSettings::showDueCountBadge, true);
        m_query = std::make_unique<DueCountQuery>(m_fake->client, *m_settings,
                                                  DueCountContext{.signedInUserID = [this] { return m_user; },
                                                                  .activeWorkspaceID = [this] { return m_workspace; }},
                                                  [this] { return m_now; });
    }

    void cleanup() {
        m_query.reset();
        m_settings.reset();
        m_fake.reset();
    }

    void itCountsOverdueAndTodayButNotLaterOrUndated() {
        m_fake->service.answer(tasksPath, pageOf(mixedTasks()));
        QSignalSpy changed(&query(), &DueCountQuery::dueCountChanged);
        QCOMPARE(query().dueCount(), 0);
        QVERIFY(runTask(query().refresh()));
        QCOMPARE(query().dueCount(), 2);
        QCOMPARE(changed.count(), 1);
    }

    void itAsksForTheUsersOpenTasksOfTheActiveWorkspaceAndNothingElse() {
        m_fake->service.answer(tasksPath, pageOf({}));
        QVERIFY(runTask(query().refresh()));
        QCOMPARE(m_fake->service.paths, QStringList{tasksPath});
        QCOMPARE(m_fake->service.queries.first(),
                 QStringLiteral("include_closed=false&subtasks=true&order_by=due_date&page=0&assignees[]=11"));
    }

    void hiddenSignedOutOrWithoutAWorkspaceItFetchesNothing() {
        m_fake->service.answer(tasksPath, pageOf(mixedTasks()));
        m_settings->set(&AppSettings::showDueCountBadge, false);
        QVERIFY(!runTask(query().refresh()));
        m_settings->set(&AppSettings::showDueCountBadge, true);
        QTRY_COMPARE(query().dueCount(), 2);
        const qsizetype requests = m_fake->service.paths.size();
        m_user.reset();
        QVERIFY(!runTask(query().refresh()));
        m_user = me;
        m_workspace.reset();
        QVERIFY(!runTask(query().refresh()));
        QCOMPARE(m_fake->service.paths.size(), requests);
    }

    void turningTheSettingOnFetchesAndOtherChangesDoNot() {
        m_settings->set(&AppSettings::showDueCountBadge, false);
        m_fake->service.answer(tasksPath, pageOf(mixedTasks()));
        m_settings->set(&AppSettings::branchNameFormat, QStringLiteral(":taskId:"));
        m_settings->set(&AppSettings::showDueCountBadge, true);
        QTRY_COMPARE(query().dueCount(), 2);
        m_settings->set(&AppSettings::showDueCountBadge, true);
        m_settings->set(&AppSettings::branchNameFormat, QStringLiteral(":taskName:"));
        QCOMPARE(m_fake->service.paths, QStringList{tasksPath});
    }

    void aRecountPastMidnightCountsTomorrowsTaskWithoutAsking() {
        m_fake->service.answer(tasksPath, pageOf(mixedTasks()));
        QVERIFY(runTask(query().refresh()));
        QSignalSpy changed(&query(), &DueCountQuery::dueCountChanged);
        query().recount();
        QCOMPARE(changed.count(), 0);
        m_now = endOfToday().addSecs(1);
        query().recount();
        QCOMPARE(query().dueCount(), 3);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(m_fake->service.paths.size(), 1);
    }

    void aFailedFetchKeepsTheCount() {
        m_fake->service.answer(tasksPath, pageOf(mixedTasks()));
        QVERIFY(runTask(query().refresh()));
        m_fake->service.answer(tasksPath, 500, R"({"err":"Down","ECODE":"X"})");
        QVERIFY(!runTask(query().refresh()));
        QCOMPARE(query().dueCount(), 2);
    }

    void anAnswerForAnotherWorkspaceOrUserIsDropped() {
        m_fake->service.answer(tasksPath, pageOf(mixedTasks()));
        m_fake->service.hold(tasksPath);
        QCoro::Task<bool> otherWorkspace = query().refresh();
        m_workspace = QStringLiteral("8");
        m_fake->service.release(tasksPath);
        QVERIFY(!runTask(std::move(otherWorkspace)));

        m_workspace = QStringLiteral("7");
        m_fake->service.hold(tasksPath);
        QCoro::Task<bool> otherUser = query().refresh();
        m_user = 12;
        m_fake->service.release(tasksPath);
        QVERIFY(!runTask(std::move(otherUser)));
        QCOMPARE(query().dueCount(), 0);
    }

    void onlyTheNewestFetchCounts() {
        // The older request is answered first, with one task due; the newer with two.
        m_fake->service.answer(tasksPath, pageOf({dueAt("overdue", m_now.addDays(-1))}));
        m_fake->service.answerNext(tasksPath, pageOf(mixedTasks()));
        m_fake->service.hold(tasksPath);
        QSignalSpy changed(&query(), &DueCountQuery::dueCountChanged);
        QCoro::Task<bool> older = query().refresh();
        QCoro::Task<bool> newer = query().refresh();
        m_fake->service.release(tasksPath);
        QVERIFY(runTask(std::move(newer)));
        QVERIFY(!runTask(std::move(older)));
        QCOMPARE(query().dueCount(), 2);
        QCOMPARE(changed.count(), 1);
    }

    void anAnswerThatLandsAfterTheQueryIsGoneIsDropped() {
        m_fake->service.answer(tasksPath, pageOf(mixedTasks()));
        m_fake->service.hold(tasksPath);
        QCoro::Task<bool> fetching = query().refresh();
        m_query.reset();
        m_fake->service.release(tasksPath);
        QVERIFY(!runTask(std::move(fetching)));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(DueCountQueryTest)
#include "DueCountQueryTest.moc"
