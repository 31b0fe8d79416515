#include "core/api/Endpoints.h"
#include "core/auth/StaticTokenAuth.h"
#include "core/hierarchy/HierarchyStore.h"
#include "core/hierarchy/ListContext.h"
#include "support/ClientTesting.h"
#include "support/SandboxDemo.h"
#include "support/SandboxProcess.h"
#include "support/TestMain.h"

#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QTemporaryDir>
#include <QTest>

namespace {
const QString seedToken = QStringLiteral("pk_seed_walker");
const QString seedWorkspaceID = QStringLiteral("77001");
const QString bigListID = QStringLiteral("77300");
constexpr int bigListTasks = 1050;

// A workspace of five spaces with one list each; the first list holds more open tasks than ten
// pages, all assigned to the one user.
QJsonObject walkerSeed() {
    const QJsonArray statuses{QJsonObject{{"status", "to do"}, {"type", "open"}},
                              QJsonObject{{"status", "done"}, {"type", "closed"}}};
    QJsonArray tasks;
    for (int index = 0; index < bigListTasks; ++index) {
        tasks.append(QJsonObject{{"id", QStringLiteral("t%1").arg(index)},
                                 {"name", QStringLiteral("Task %1").arg(index)},
                                 {"assignees", QJsonArray{77}}});
    }
    QJsonArray spaces;
    for (int index = 0; index < 5; ++index) {
        QJsonObject list{{"id", QString::number(77300 + index)}, {"name", QStringLiteral("List %1").arg(index)}};
        if (index == 0) {
            list.insert("tasks", tasks);
        }
        spaces.append(QJsonObject{{"id", QString::number(77200 + index)},
                                  {"name", QStringLiteral("Space %1").arg(index)},
                                  {"statuses", statuses},
                                  {"lists", QJsonArray{list}}});
    }
    return {{"users", QJsonArray{QJsonObject{{"id", 77}, {"username", "Walker"}, {"token", seedToken}}}},
            {"workspaces",
             QJsonArray{QJsonObject{
                 {"id", seedWorkspaceID}, {"name", "Walk"}, {"members", QJsonArray{77}}, {"spaces", spaces}}}}};
}

// The requests of the log whose path starts with `prefix`, in order.
QJsonArray requestsUnder(SandboxProcess& sandbox, const QString& prefix) {
    QJsonArray matching;
    for (const QJsonValue& request : sandbox.requests()) {
        if (request[QStringLiteral("path")].toString().startsWith(prefix)) {
            matching.append(request);
        }
    }
    return matching;
}

int mostInFlight(const QJsonArray& requests) {
    int most = 0;
    for (const QJsonValue& request : requests) {
        most = std::max(most, request[QStringLiteral("inFlight")].toInt());
    }
    return most;
}
} // namespace

// The endpoints, the hierarchy store and the list context against norvane-sandbox, read through
// its request log.
class HierarchySandboxTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;
    SandboxProcess m_demo;
    SandboxProcess m_walker;
    QNetworkAccessManager m_session;
    std::unique_ptr<StaticTokenAuth> m_demoAuth;
    std::unique_ptr<StaticTokenAuth> m_walkerAuth;
    std::unique_ptr<NorvaneClient> m_demoClient;
    std::unique_ptr<NorvaneClient> m_walkerClient;

private slots:
    void initTestCase() {
        QVERIFY2(m_demo.start(), qPrintable(m_demo.errorString()));
        const QString seedPath = m_folder.filePath(QStringLiteral("walker.json"));
        QFile seed(seedPath);
        QVERIFY(seed.open(QIODevice::WriteOnly));
        seed.write(QJsonDocument(walkerSeed()).toJson(QJsonDocument::Compact));
        seed.close();
        SandboxProcess::Options options;
        options.seed = seedPath;
        QVERIFY2(m_walker.start(options), qPrintable(m_walker.errorString()));
        m_demoAuth = std::make_unique<StaticTokenAuth>(m_demo.token());
        m_walkerAuth = std::make_unique<StaticTokenAuth>(seedToken);
        m_demoClient = std::make_unique<NorvaneClient>(*m_demoAuth, &m_session, nullptr, m_demo.apiUrl(u""));
        m_walkerClient = std::make_unique<NorvaneClient>(*m_walkerAuth, &m_session, nullptr, m_walker.apiUrl(u""));
    }

    void init() {
        QVERIFY(m_demo.reset());
        QVERIFY(m_walker.reset());
    }

    void loadEntriesKeepsTwoRequestsInFlightAndSkipsArchivedRecords() {
        // A delay makes the two reads of each space overlap for certain.
        QVERIFY(m_demo.addFault({.path = "/api/v2/space/*/*", .times = -1, .delayMs = 50}));
        HierarchyStore store(*m_demoClient);
        runTask(store.loadEntries(SandboxDemo::northwindID, false));
        QCOMPARE(store.lastError(), std::nullopt);
        const QJsonArray spaceReads = requestsUnder(m_demo, QStringLiteral("/api/v2/space/"));
        QCOMPARE(spaceReads.size(), 4);
        QCOMPARE(mostInFlight(spaceReads), 2);
        // A space's two reads arrive side by side, in either order, before the next space's.
        const QSet<QString> firstPair{spaceReads[0][QStringLiteral("path")].toString(),
                                      spaceReads[1][QStringLiteral("path")].toString()};
        QCOMPARE(firstPair, (QSet<QString>{QStringLiteral("/api/v2/space/%1/folder").arg(SandboxDemo::productSpaceID),
                                           QStringLiteral("/api/v2/space/%1/list").arg(SandboxDemo::productSpaceID)}));
        const QList<ListEntry> entries = store.entriesByWorkspace().value(SandboxDemo::northwindID);
        QVERIFY(store.entry(SandboxDemo::ideasListID));
        QCOMPARE(store.entry(SandboxDemo::oldBacklogListID), std::nullopt);
        QCOMPARE(entries.constFirst().list.id, SandboxDemo::inboxListID);
        for (const ListEntry& entry : entries) {
            QVERIFY(entry.folderID != SandboxDemo::archivedFolderID);
            if (entry.spaceID == SandboxDemo::operationsSpaceID) {
                QVERIFY(entry.spaceStatuses.isEmpty());
            }
        }
    }

    void theThirdOfFiveSpacesFailingStoresNothing() {
        QVERIFY(m_walker.addFault(SandboxFault::answer(QStringLiteral("/api/v2/space/77202/list"), 500)));
        HierarchyStore store(*m_walkerClient);
        runTask(store.loadEntries(seedWorkspaceID, false));
        QVERIFY(!store.entriesByWorkspace().contains(seedWorkspaceID));
        QVERIFY(store.lastError());
        QCOMPARE(requestsUnder(m_walker, QStringLiteral("/api/v2/space/77203")).size(), 0);
    }

    void aFailedReadAbortsItsSlowSibling() {
        QVERIFY(m_walker.addFault(SandboxFault::delay(QStringLiteral("/api/v2/space/77200/list"), 3000)));
        QVERIFY(m_walker.addFault(SandboxFault::answer(QStringLiteral("/api/v2/space/77200/folder"), 500)));
        HierarchyStore store(*m_walkerClient);
        QElapsedTimer timer;
        timer.start();
        runTask(store.loadEntries(seedWorkspaceID, false));
        QVERIFY2(timer.elapsed() < 2000, qPrintable(QString::number(timer.elapsed())));
        QVERIFY(store.lastError());
    }

    void tenFullPagesMakeExactlyTenRequestsNumberedZeroToNine() {
        const QList<NVTaskSummary> tasks = runTask(Endpoints::getAllTeamTasks(*m_walkerClient, seedWorkspaceID, {}));
        QCOMPARE(tasks.size(), 1000);
        const QJsonArray pages = requestsUnder(m_walker, QStringLiteral("/api/v2/team/"));
        QCOMPARE(pages.size(), 10);
        for (int number = 0; number < 10; ++number) {
            const QJsonArray query = pages[number][QStringLiteral("query")].toArray();
            QCOMPARE(query.size(), 4);
            const QStringList names{query[0][0].toString(), query[1][0].toString(), query[2][0].toString(),
                                    query[3][0].toString()};
            QCOMPARE(names, QStringList({"include_closed", "subtasks", "order_by", "page"}));
            QCOMPARE(query[3][1].toString(), QString::number(number));
        }
    }

    void teamTasksQueryItemsArriveInTheirOrder() {
        const Endpoints::TeamTasksFilter filter{QList<qint64>{77}, QStringList{bigListID}, QStringList{"to do"},
                                                std::nullopt};
        runTask(Endpoints::getTeamTasks(*m_walkerClient, seedWorkspaceID, filter, 2));
        const QJsonArray query =
            requestsUnder(m_walker, QStringLiteral("/api/v2/team/")).first()[QStringLiteral("query")].toArray();
        QCOMPARE(query, QJsonArray({QJsonArray{"include_closed", "false"}, QJsonArray{"subtasks", "true"},
                                    QJsonArray{"order_by", "due_date"}, QJsonArray{"page", "2"},
                                    QJsonArray{"assignees[]", "77"}, QJsonArray{"list_ids[]", bigListID},
                                    QJsonArray{"statuses[]", "to do"}}));
    }

    void listContextLoadKeepsFourRequestsInFlight() {
        QVERIFY(m_demo.addFault({.path = "/api/v2/**", .times = -1, .delayMs = 100}));
        HierarchyStore store(*m_demoClient);
        runTask(store.loadEntries(SandboxDemo::northwindID, false));
        QVERIFY(m_demo.clearRequests());
        ListContext context(*store.entry(SandboxDemo::releaseListID));
        runTask(context.load(*m_demoClient));
        const QJsonArray reads = requestsUnder(m_demo, QStringLiteral("/api/v2/"));
        QCOMPARE(reads.size(), 4);
        QCOMPARE(mostInFlight(reads), 4);
        QCOMPARE(context.error(), std::nullopt);
        QVERIFY(!context.statuses().isEmpty());
        QVERIFY(!context.members().isEmpty());
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(HierarchySandboxTest)
#include "HierarchySandboxTest.moc"
