#include "core/hierarchy/HierarchyStore.h"
#include "support/HierarchyTesting.h"
#include "support/TestMain.h"

#include <QSignalSpy>
#include <QTest>

using namespace HierarchyTesting;

namespace {
const QString workspaceID = QStringLiteral("w");
const QString spacesPath = QStringLiteral("team/w/space");

QString foldersPath(const QString& spaceID) {
    return QStringLiteral("space/%1/folder").arg(spaceID);
}
QString listsPath(const QString& spaceID) {
    return QStringLiteral("space/%1/list").arg(spaceID);
}

// A workspace of `count` spaces s0, s1, …, each with one folderless list l<n>.
void answerSpaces(FakeService& service, int count) {
    QStringList spaces;
    for (int index = 0; index < count; ++index) {
        const QString spaceID = QStringLiteral("s%1").arg(index);
        spaces.append(record(spaceID));
        service.answer(foldersPath(spaceID), wrapped("folders", {}));
        service.answer(listsPath(spaceID), wrapped("lists", {record(QStringLiteral("l%1").arg(index))}));
    }
    service.answer(spacesPath, wrapped("spaces", spaces));
}

QStringList listIDs(const QList<ListEntry>& entries) {
    QStringList ids;
    for (const ListEntry& entry : entries) {
        ids.append(entry.list.id);
    }
    return ids;
}
} // namespace

class HierarchyStoreTest : public QObject {
    Q_OBJECT

private slots:
    void workspacesAreKeptInTheServiceOrderAndNotAskedForTwice() {
        FakeClient fake;
        fake.service.answer(QStringLiteral("team"), wrapped("teams", {record("b"), record("a")}));
        HierarchyStore store(fake.client);
        QSignalSpy changes(&store, &HierarchyStore::workspacesChanged);
        runTask(store.loadWorkspaces(false));
        runTask(store.loadWorkspaces(false));
        QCOMPARE(store.workspaces().size(), 2);
        QCOMPARE(store.workspaces()[0].id, QStringLiteral("b"));
        QCOMPARE(fake.service.paths.size(), 1);
        QCOMPARE(changes.count(), 1);
        QVERIFY(!store.isLoadingWorkspaces());
    }

    void aForcedLoadWorkspacesDuringARunningLoadIsDropped() {
        FakeClient fake;
        fake.service.answer(QStringLiteral("team"), wrapped("teams", {record("a")}));
        fake.service.hold(QStringLiteral("team"));
        HierarchyStore store(fake.client);
        QCoro::Task<> running = store.loadWorkspaces(false);
        QVERIFY(store.isLoadingWorkspaces());
        runTask(store.loadWorkspaces(true));
        fake.service.release(QStringLiteral("team"));
        runTask(std::move(running));
        QCOMPARE(fake.service.paths.size(), 1);
        QVERIFY(!store.isLoadingWorkspaces());
    }

    void aFailedLoadWorkspacesKeepsTheWorkspacesAndSetsLastError() {
        FakeClient fake;
        fake.service.answer(QStringLiteral("team"), wrapped("teams", {record("a")}));
        fake.service.answerNext(QStringLiteral("team"), 500, R"({"err":"Team trouble","ECODE":"X"})");
        HierarchyStore store(fake.client);
        runTask(store.loadWorkspaces(false));
        runTask(store.loadWorkspaces(true));
        QCOMPARE(store.workspaces().size(), 1);
        QCOMPARE(store.lastError(), std::optional(QStringLiteral("Team trouble")));
    }

    void entriesListFolderlessListsFirstThenEachFoldersLists() {
        FakeClient fake;
        fake.service.answer(
            spacesPath,
            wrapped("spaces", {record("s1", QStringLiteral(R"("statuses":[%1])").arg(status("open"))), record("s2")}));
        const QString folderLists = QStringLiteral(R"("lists":[%1,%2])").arg(record("f1a"), record("f1b"));
        fake.service.answer(foldersPath("s1"), wrapped("folders", {record("f1", folderLists), record("f2")}));
        fake.service.answer(listsPath("s1"), wrapped("lists", {record("l1"), record("l2")}));
        fake.service.answer(foldersPath("s2"), wrapped("folders", {}));
        fake.service.answer(listsPath("s2"), wrapped("lists", {record("l3")}));
        HierarchyStore store(fake.client);
        runTask(store.loadEntries(workspaceID, false));
        const QList<ListEntry> entries = store.entriesByWorkspace().value(workspaceID);
        QCOMPARE(listIDs(entries), QStringList({"l1", "l2", "f1a", "f1b", "l3"}));
        QCOMPARE(entries[0].folderID, std::nullopt);
        QCOMPARE(entries[0].folderName, std::nullopt);
        QCOMPARE(entries[2].folderID, std::optional(QStringLiteral("f1")));
        QCOMPARE(entries[2].folderName, std::optional(QStringLiteral("Name f1")));
        QCOMPARE(entries[0].spaceName, QStringLiteral("Name s1"));
        QCOMPARE(entries[0].spaceStatuses.size(), 1);
        QCOMPARE(entries[4].workspaceID, workspaceID);
        QVERIFY(store.loadingLists().isEmpty());
        QCOMPARE(store.entry(QStringLiteral("f1b"))->folderID, std::optional(QStringLiteral("f1")));
    }

    void neverMoreThanTwoRequestsInFlight() {
        FakeClient fake;
        answerSpaces(fake.service, 5);
        HierarchyStore store(fake.client);
        runTask(store.loadEntries(workspaceID, false));
        QCOMPARE(fake.service.paths.size(), 11);
        QCOMPARE(fake.service.maxInFlight, 2);
        QCOMPARE(fake.service.paths[1], foldersPath("s0"));
        QCOMPARE(fake.service.paths[2], listsPath("s0"));
    }

    void aWorkspaceWithoutSpacesIsLoadedWithNoEntries() {
        FakeClient fake;
        answerSpaces(fake.service, 0);
        HierarchyStore store(fake.client);
        runTask(store.loadEntries(workspaceID, false));
        QVERIFY(store.entriesByWorkspace().contains(workspaceID));
        runTask(store.loadEntries(workspaceID, false));
        QCOMPARE(fake.service.paths.size(), 1);
    }

    void aForcedLoadEntriesDuringARunningLoadDoesNothing() {
        FakeClient fake;
        answerSpaces(fake.service, 1);
        fake.service.hold(spacesPath);
        HierarchyStore store(fake.client);
        QCoro::Task<> running = store.loadEntries(workspaceID, false);
        QCOMPARE(store.loadingLists(), QSet<QString>{workspaceID});
        runTask(store.loadEntries(workspaceID, true));
        QCOMPARE(fake.service.paths.size(), 1);
        fake.service.release(spacesPath);
        runTask(std::move(running));
        QCOMPARE(fake.service.paths.size(), 3);
        QVERIFY(store.loadingLists().isEmpty());
    }

    void aForcedReloadReplacesTheEntriesOnlyOnSuccess() {
        FakeClient fake;
        answerSpaces(fake.service, 2);
        HierarchyStore store(fake.client);
        runTask(store.loadEntries(workspaceID, false));
        const QList<ListEntry> before = store.entriesByWorkspace().value(workspaceID);
        fake.service.answer(spacesPath, 503, R"({"err":"Spaces are down","ECODE":"X"})");
        runTask(store.loadEntries(workspaceID, true));
        QCOMPARE(store.entriesByWorkspace().value(workspaceID), before);
        QCOMPARE(store.lastError(), std::optional(QStringLiteral("Spaces are down")));
        fake.service.answer(spacesPath, wrapped("spaces", {record("s1")}));
        runTask(store.loadEntries(workspaceID, true));
        QCOMPARE(listIDs(store.entriesByWorkspace().value(workspaceID)), QStringList({"l1"}));
        QCOMPARE(store.lastError(), std::nullopt);
    }

    void theThirdOfFiveSpacesFailingStoresNothing() {
        FakeClient fake;
        answerSpaces(fake.service, 5);
        fake.service.answer(foldersPath("s2"), 500, R"({"err":"Third space broke","ECODE":"X"})");
        HierarchyStore store(fake.client);
        QSignalSpy changes(&store, &HierarchyStore::entriesByWorkspaceChanged);
        runTask(store.loadEntries(workspaceID, false));
        QVERIFY(!store.entriesByWorkspace().contains(workspaceID));
        QCOMPARE(changes.count(), 0);
        QCOMPARE(store.lastError(), std::optional(QStringLiteral("Third space broke")));
        QVERIFY(!fake.service.paths.contains(foldersPath("s3")));
        QVERIFY(store.loadingLists().isEmpty());
    }

    void aFailedReadAbortsItsSiblingRequest() {
        FakeClient fake;
        answerSpaces(fake.service, 1);
        fake.service.hold(listsPath("s0"));
        fake.service.answer(foldersPath("s0"), 500, R"({"err":"Folders broke","ECODE":"X"})");
        HierarchyStore store(fake.client);
        runTask(store.loadEntries(workspaceID, false));
        QCOMPARE(fake.service.aborted, QStringList{listsPath("s0")});
        QCOMPARE(store.lastError(), std::optional(QStringLiteral("Folders broke")));
    }

    void theFirstFailureOfAPairIsReportedNotTheAbortItCaused() {
        FakeClient fake;
        answerSpaces(fake.service, 1);
        fake.service.hold(foldersPath("s0"));
        fake.service.answer(listsPath("s0"), 500, R"({"err":"Lists broke","ECODE":"X"})");
        HierarchyStore store(fake.client);
        runTask(store.loadEntries(workspaceID, false));
        QCOMPARE(fake.service.aborted, QStringList{foldersPath("s0")});
        QCOMPARE(store.lastError(), std::optional(QStringLiteral("Lists broke")));
    }

    void anArchivedListInAFolderIsLeftOutAndAnAbsentArchivedIsKept() {
        FakeClient fake;
        answerSpaces(fake.service, 1);
        const QString lists =
            QStringLiteral(R"("lists":[%1,%2,%3])")
                .arg(record("gone", R"("archived":true)"), record("kept"), record("null", R"("archived":null)"));
        fake.service.answer(foldersPath("s0"), wrapped("folders", {record("f", lists)}));
        HierarchyStore store(fake.client);
        runTask(store.loadEntries(workspaceID, false));
        QCOMPARE(listIDs(store.entriesByWorkspace().value(workspaceID)), QStringList({"l0", "kept", "null"}));
    }

    void anArchivedFolderNeverAppears() {
        FakeClient fake;
        answerSpaces(fake.service, 1);
        const QString lists =
            QStringLiteral(R"("archived":true,"lists":[%1])").arg(record("live", R"("archived":false)"));
        fake.service.answer(foldersPath("s0"), wrapped("folders", {record("f", lists)}));
        HierarchyStore store(fake.client);
        runTask(store.loadEntries(workspaceID, false));
        QCOMPARE(listIDs(store.entriesByWorkspace().value(workspaceID)), QStringList({"l0"}));
    }

    void aSpaceWithoutStatusesGivesEntriesWithEmptySpaceStatuses() {
        FakeClient fake;
        answerSpaces(fake.service, 1);
        HierarchyStore store(fake.client);
        runTask(store.loadEntries(workspaceID, false));
        const std::optional<ListEntry> entry = store.entry(QStringLiteral("l0"));
        QVERIFY(entry);
        QVERIFY(entry->spaceStatuses.isEmpty());
    }

    void entryForAListOfAWorkspaceNotYetLoadedIsAbsent() {
        FakeClient fake;
        answerSpaces(fake.service, 1);
        // Workspace "b" has a list of its own at the service, but nobody loads it.
        fake.service.answer(QStringLiteral("team/b/space"), wrapped("spaces", {record("bs")}));
        fake.service.answer(foldersPath("bs"), wrapped("folders", {}));
        fake.service.answer(listsPath("bs"), wrapped("lists", {record("bl")}));
        HierarchyStore store(fake.client);
        runTask(store.loadEntries(workspaceID, false));
        QCOMPARE(store.entry(QStringLiteral("l0"))->workspaceID, workspaceID);
        const qsizetype requests = fake.service.paths.size();
        QCOMPARE(store.entry(QStringLiteral("bl")), std::nullopt);
        QCOMPARE(fake.service.paths.size(), requests);
        QVERIFY(!store.entriesByWorkspace().contains(QStringLiteral("b")));
    }

    void settersNotifyOnlyOnChange() {
        FakeClient fake;
        HierarchyStore store(fake.client);
        QSignalSpy workspaces(&store, &HierarchyStore::workspacesChanged);
        QSignalSpy entries(&store, &HierarchyStore::entriesByWorkspaceChanged);
        store.setWorkspaces({});
        store.setEntriesByWorkspace({});
        QCOMPARE(workspaces.count() + entries.count(), 0);
        store.setEntriesByWorkspace({{workspaceID, {}}});
        QCOMPARE(entries.count(), 1);
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(HierarchyStoreTest)
#include "HierarchyStoreTest.moc"
