// The store of My Day over a session that answers from a table: paging, refreshing, statuses and
// the row actions with the lists they leave behind.
#include "core/myday/MyDayStore.h"
#include "support/HierarchyTesting.h"
#include "support/MyDayTesting.h"
#include "support/TestMain.h"

#include <QJsonDocument>
#include <QSignalSpy>
#include <QTest>

using namespace HierarchyTesting;
using namespace MyDayTesting;

namespace {
const QString tasksPath = QStringLiteral("team/7/task");
const QString teamID = QStringLiteral("7");

QByteArray listBody(const QStringList& statuses) {
    return QStringLiteral(R"({"id":"l1","name":"List","statuses":[%1]})").arg(statuses.join(u',')).toUtf8();
}

QString typedStatus(const QString& name, const QString& type) {
    return QStringLiteral(R"({"status":"%1","type":"%2"})").arg(name, type);
}

QByteArray taskBody(const QString& id, const QString& name, const QString& dueDate) {
    return QStringLiteral(R"({"id":"%1","name":"%2","due_date":"%3","list":{"id":"l1"}})")
        .arg(id, name, dueDate)
        .toUtf8();
}

NVTaskSummary inList(NVTaskSummary task) {
    task.list = NVTaskSummary::ListRef{QStringLiteral("l1"), QStringLiteral("List")};
    return task;
}

// A store that holds `tasks` after one refresh.
void load(FakeClient& fake, MyDayStore& store, const QList<NVTaskSummary>& tasks) {
    QJsonArray array;
    for (const NVTaskSummary& task : tasks) {
        array.append(task.toJson());
    }
    fake.service.answer(tasksPath, QJsonDocument(QJsonObject{{"tasks", array}}).toJson());
    runTask(store.refresh(teamID, {}));
}
} // namespace

class MyDayStoreTest : public QObject {
    Q_OBJECT

    const QDateTime m_now = localNoon();
    Clock m_clock = [now = m_now] { return now; };

private slots:
    void startsEmptyAndIdle() {
        FakeClient fake;
        MyDayStore store(fake.client, m_clock);
        QVERIFY(store.tasks().isEmpty());
        QVERIFY(!store.isLoading());
        QCOMPARE(store.loadingMessage(), QStringLiteral("Loading tasks…"));
        QCOMPARE(store.error(), std::nullopt);
        QCOMPARE(store.lastFetched(), std::nullopt);
    }

    void aFullPageWithoutLastPageLeadsToAnotherRequest() {
        FakeClient fake;
        fake.service.answer(tasksPath, page(100, std::nullopt));
        fake.service.answerNext(tasksPath, page(3, std::nullopt, 100));
        MyDayStore store(fake.client, m_clock);
        runTask(store.refresh(teamID, {}));
        QCOMPARE(fake.service.paths.size(), 2);
        QCOMPARE(store.tasks().size(), 103);
    }

    void aPageOfNinetyNineEndsTheRunEvenIfLastPageIsFalse() {
        FakeClient fake;
        fake.service.answer(tasksPath, page(99, false));
        MyDayStore store(fake.client, m_clock);
        runTask(store.refresh(teamID, {}));
        QCOMPARE(fake.service.paths.size(), 1);
        QCOMPARE(store.tasks().size(), 99);
    }

    void theTenthPageIsTheLastWhateverItSays() {
        FakeClient fake;
        fake.service.answer(tasksPath, page(100, false));
        MyDayStore store(fake.client, m_clock);
        runTask(store.refresh(teamID, {}));
        QCOMPARE(fake.service.paths.size(), 10);
        QVERIFY(fake.service.queries.last().contains(QStringLiteral("page=9")));
        QCOMPARE(store.tasks().size(), 1000);
    }

    void theLoadingMessageNamesThePageAboutToBeRead() {
        FakeClient fake;
        fake.service.answer(tasksPath, page(100, false));
        fake.service.answerNext(tasksPath, page(1, true, 100));
        MyDayStore store(fake.client, m_clock);
        QStringList messages;
        connect(&store, &MyDayStore::loadingMessageChanged, this, [&] { messages.append(store.loadingMessage()); });
        QSignalSpy loading(&store, &MyDayStore::isLoadingChanged);
        runTask(store.refresh(teamID, {}));
        fake.service.answer(tasksPath, page(100, false));
        fake.service.answerNext(tasksPath, page(1, true, 100));
        runTask(store.refresh(teamID, {}));
        QCOMPARE(messages, (QStringList{"Loading tasks… (page 2)", "Loading tasks…", "Loading tasks… (page 2)"}));
        QCOMPARE(loading.count(), 4);
        QVERIFY(!store.isLoading());
        QCOMPARE(store.lastFetched(), std::optional(m_now));
    }

    void theFiltersGoIntoTheQuery() {
        FakeClient fake;
        fake.service.answer(tasksPath, page(0, true));
        MyDayStore store(fake.client, m_clock);
        runTask(store.refresh(teamID, TaskQueryFilters(QList<qint64>{5}, QStringList{"l1"}, QStringList{"open"})));
        QCOMPARE(fake.service.queries.first(),
                 QStringLiteral("include_closed=false&subtasks=true&order_by=due_date&page=0&assignees[]=5&"
                                "list_ids[]=l1&statuses[]=open"));
    }

    void aFailedRefreshKeepsTheTasksAndCountsAsAFetch() {
        FakeClient fake;
        MyDayStore store(fake.client, m_clock);
        load(fake, store, {task("a")});
        fake.service.answer(tasksPath, 500, R"({"err":"Search is down","ECODE":"X"})");
        runTask(store.refresh(teamID, {}));
        QCOMPARE(ids(store.tasks()), QStringList{"a"});
        QVERIFY(store.error() && store.error()->contains(QStringLiteral("Search is down")));
        QVERIFY(!store.isLoading());
        QVERIFY(store.lastFetched());
    }

    void aPageThatDoesNotDecodeFailsTheRefresh() {
        FakeClient fake;
        fake.service.answer(tasksPath, R"({"tasks":[{"id":1}]})");
        MyDayStore store(fake.client, m_clock);
        runTask(store.refresh(teamID, {}));
        QVERIFY(store.error());
        QVERIFY(store.tasks().isEmpty());
    }

    void withoutAWorkspaceTheTasksAreEmptiedAndNothingIsAsked() {
        FakeClient fake;
        MyDayStore store(fake.client, m_clock);
        load(fake, store, {task("a")});
        runTask(store.refresh(std::nullopt, {}));
        QVERIFY(store.tasks().isEmpty());
        QCOMPARE(fake.service.paths.size(), 1);
        QCOMPARE(store.error(), std::nullopt);
    }

    void refreshSortsWhatTheServiceSent() {
        FakeClient fake;
        MyDayStore store(fake.client, m_clock);
        load(fake, store, {task("undated"), dueAt("overdue", m_now.addDays(-1)), dueAt("today", m_now)});
        QCOMPARE(ids(store.tasks()), (QStringList{"overdue", "today", "undated"}));
    }

    void aQueryOfOnlyBlanksReturnsAllTasks() {
        FakeClient fake;
        MyDayStore store(fake.client, m_clock);
        load(fake, store, {task("a"), task("b")});
        QCOMPARE(ids(store.searchAssigned(QStringLiteral("   \t "))), (QStringList{"a", "b"}));
        QCOMPARE(ids(store.searchAssigned(QStringLiteral("task b"))), QStringList{"b"});
    }

    void aListWithoutAClosedStatusCompletesWithItsLastStatus() {
        FakeClient fake;
        fake.service.answer(QStringLiteral("list/l1"),
                            listBody({typedStatus("open", "open"), typedStatus("shipped", "custom")}));
        fake.service.answer(QStringLiteral("task/a"), taskBody("a", "A", "1"));
        MyDayStore store(fake.client, m_clock);
        load(fake, store, {inList(task("a")), inList(task("b"))});
        QSignalSpy changed(&store, &MyDayStore::taskChanged);
        QCOMPARE(runTask(store.complete(inList(task("a")))), std::nullopt);
        QCOMPARE(ids(store.tasks()), QStringList{"b"});
        QCOMPARE(fake.service.paths.last(), QStringLiteral("task/a"));
        QCOMPARE(QJsonDocument::fromJson(fake.service.bodies.last()).object(), (QJsonObject{{"status", "shipped"}}));
        QCOMPARE(changed.count(), 1);
    }

    void theFirstClosedStatusIsTheDoneStatus() {
        FakeClient fake;
        fake.service.answer(
            QStringLiteral("list/l1"),
            listBody({typedStatus("open", "open"), typedStatus("done", "closed"), typedStatus("archived", "closed")}));
        MyDayStore store(fake.client, m_clock);
        QCOMPARE(runTask(store.closedStatus(QStringLiteral("l1"))), std::optional(QStringLiteral("done")));
    }

    void aListWithNoStatusesGetsTheErrorMessage() {
        FakeClient fake;
        fake.service.answer(QStringLiteral("list/l1"), listBody({}));
        MyDayStore store(fake.client, m_clock);
        QCOMPARE(runTask(store.complete(inList(task("a")))),
                 std::optional(QStringLiteral("Couldn't resolve a done status for this list.")));
        QCOMPARE(runTask(store.complete(task("no list"))),
                 std::optional(QStringLiteral("Couldn't resolve a done status for this list.")));
    }

    void aFailedStatusLoadIsNotCachedAndTheNextCallTriesAgain() {
        FakeClient fake;
        fake.service.answer(QStringLiteral("list/l1"), 500, R"({"err":"No","ECODE":"X"})");
        fake.service.answerNext(QStringLiteral("list/l1"), listBody({typedStatus("open", "open")}));
        MyDayStore store(fake.client, m_clock);
        QVERIFY(runTask(store.loadStatuses(QStringLiteral("l1"))).isEmpty());
        QVERIFY(store.statusesByListID().isEmpty());
        QCOMPARE(runTask(store.loadStatuses(QStringLiteral("l1"))).size(), 1);
        QCOMPARE(runTask(store.loadStatuses(QStringLiteral("l1"))).size(), 1);
        QCOMPARE(fake.service.paths.size(), 2);
        QCOMPARE(store.statusesByListID().value(QStringLiteral("l1")).first().status, QStringLiteral("open"));
    }

    void anEmptyStatusListIsAskedForAgain() {
        FakeClient fake;
        fake.service.answer(QStringLiteral("list/l1"), listBody({}));
        MyDayStore store(fake.client, m_clock);
        runTask(store.loadStatuses(QStringLiteral("l1")));
        runTask(store.loadStatuses(QStringLiteral("l1")));
        QCOMPARE(fake.service.paths.size(), 2);
    }

    void snoozingSendsWholeMillisecondsWithTheTimeKept() {
        FakeClient fake;
        const QDateTime to = QDateTime::fromMSecsSinceEpoch(1'781'000'000'999, QTimeZone::utc());
        fake.service.answer(QStringLiteral("task/a"), taskBody("a", "A", "1781000000999"));
        MyDayStore store(fake.client, m_clock);
        QCOMPARE(runTask(store.snooze(task("a"), to)), std::nullopt);
        QCOMPARE(fake.service.bodies.last(), QByteArray(R"({"due_date":1781000000999,"due_date_time":true})"));
    }

    void snoozingMovesTheTaskToItsNewPlaceAndKeepsIt() {
        FakeClient fake;
        MyDayStore store(fake.client, m_clock);
        load(fake, store, {dueAt("a", m_now.addDays(-1)), dueAt("b", m_now)});
        fake.service.answer(QStringLiteral("task/a"), taskBody("a", "A", millis(m_now.addDays(2))));
        runTask(store.snooze(store.tasks().first(), m_now.addDays(2)));
        QCOMPARE(ids(store.tasks()), (QStringList{"b", "a"}));
        QCOMPARE(store.tasks().last().name, QStringLiteral("A"));
    }

    void aStatusChangeSendsTheStatusAloneAndKeepsTheTask() {
        FakeClient fake;
        MyDayStore store(fake.client, m_clock);
        load(fake, store, {inList(task("a"))});
        fake.service.answer(QStringLiteral("task/a"), taskBody("a", "A", "1"));
        QSignalSpy changed(&store, &MyDayStore::taskChanged);
        QCOMPARE(runTask(store.updateStatus(store.tasks().first(), QStringLiteral("done"))), std::nullopt);
        QCOMPARE(fake.service.bodies.last(), QByteArray(R"({"status":"done"})"));
        QCOMPARE(ids(store.tasks()), QStringList{"a"});
        QCOMPARE(changed.count(), 1);
    }

    void aRefusedUpdateReturnsTheServiceMessageAndChangesNothing() {
        FakeClient fake;
        MyDayStore store(fake.client, m_clock);
        load(fake, store, {inList(task("a"))});
        fake.service.answer(QStringLiteral("task/a"), 400, R"({"err":"Status not found","ECODE":"ITEM_114"})");
        QSignalSpy changed(&store, &MyDayStore::taskChanged);
        const std::optional<QString> message = runTask(store.updateStatus(store.tasks().first(), "nope"));
        QVERIFY(message && message->contains(QStringLiteral("Status not found")));
        QCOMPARE(store.tasks().first(), inList(task("a")));
        QCOMPARE(store.error(), std::nullopt);
        QCOMPARE(changed.count(), 0);
    }

    void anUpdateOfATaskNoLongerListedChangesNothing() {
        FakeClient fake;
        MyDayStore store(fake.client, m_clock);
        load(fake, store, {task("a")});
        fake.service.answer(QStringLiteral("task/gone"), taskBody("gone", "Gone", "1"));
        QSignalSpy changes(&store, &MyDayStore::tasksChanged);
        QCOMPARE(runTask(store.updateStatus(task("gone"), "open")), std::nullopt);
        QCOMPARE(changes.count(), 0);
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(MyDayStoreTest)
#include "MyDayStoreTest.moc"
