#include "core/api/Endpoints.h"
#include "support/ClientTesting.h"
#include "support/HierarchyTesting.h"
#include "support/TestMain.h"

#include <QTest>
#include <QTimeZone>

using namespace ClientTesting;
using namespace HierarchyTesting;

namespace {
// A page of `count` tasks; `lastPage` is left out when absent.
QByteArray page(int count, std::optional<bool> lastPage) {
    QStringList tasks;
    for (int index = 0; index < count; ++index) {
        tasks.append(record(QString::number(index)));
    }
    QString body = QStringLiteral(R"({"tasks":[%1])").arg(tasks.join(u','));
    if (lastPage) {
        body += *lastPage ? QStringLiteral(R"(,"last_page":true)") : QStringLiteral(R"(,"last_page":false)");
    }
    return (body + u'}').toUtf8();
}

const QString tasksPath = QStringLiteral("team/7/task");
} // namespace

class EndpointsTest : public QObject {
    Q_OBJECT

private slots:
    void everyCallGoesToItsPath() {
        FakeClient fake;
        const NorvaneClient& client = fake.client;
        failureOf(Endpoints::getUser(client));
        failureOf(Endpoints::getWorkspaces(client));
        failureOf(Endpoints::getSpaces(client, QStringLiteral("t1")));
        failureOf(Endpoints::getFolders(client, QStringLiteral("s1")));
        failureOf(Endpoints::getFolderlessLists(client, QStringLiteral("s1")));
        failureOf(Endpoints::getList(client, QStringLiteral("l1")));
        failureOf(Endpoints::getListMembers(client, QStringLiteral("l1")));
        failureOf(Endpoints::getSpaceTags(client, QStringLiteral("s1")));
        failureOf(Endpoints::getListFields(client, QStringLiteral("l1")));
        failureOf(Endpoints::getTeamTasks(client, QStringLiteral("t1"), {}, 0));
        failureOf(Endpoints::createTask(client, QStringLiteral("l1"), CreateTaskRequest()));
        failureOf(Endpoints::updateTask(client, QStringLiteral("k1"), UpdateTaskRequest()));
        failureOf(Endpoints::addComment(client, QStringLiteral("k1"), CommentRequest()));
        QCOMPARE(fake.service.paths, QStringList({"user", "team", "team/t1/space", "space/s1/folder", "space/s1/list",
                                                  "list/l1", "list/l1/member", "space/s1/tag", "list/l1/field",
                                                  "team/t1/task", "list/l1/task", "task/k1", "task/k1/comment"}));
        QCOMPARE(Endpoints::attachmentPath(QStringLiteral("k1")), QStringLiteral("task/k1/attachment"));
        for (qsizetype index = 0; index < fake.service.queries.size(); ++index) {
            QCOMPARE(fake.service.queries[index].isEmpty(),
                     fake.service.paths[index] != QStringLiteral("team/t1/task"));
        }
    }

    void allSpacesArchivedGiveAnEmptyArray() {
        FakeClient fake;
        fake.service.answer(QStringLiteral("team/t1/space"),
                            wrapped("spaces", {record("a", R"("archived":true)"), record("b", R"("archived":true)")}));
        QVERIFY(runTask(Endpoints::getSpaces(fake.client, QStringLiteral("t1"))).isEmpty());
    }

    void anElementWithArchivedNullStays() {
        FakeClient fake;
        fake.service.answer(QStringLiteral("space/s1/list"),
                            wrapped("lists", {record("a", R"("archived":null)"), record("b", R"("archived":true)"),
                                              record("c"), record("d", R"("archived":false)")}));
        const QList<NVList> lists = runTask(Endpoints::getFolderlessLists(fake.client, QStringLiteral("s1")));
        QStringList ids;
        for (const NVList& list : lists) {
            ids.append(list.id);
        }
        QCOMPARE(ids, QStringList({"a", "c", "d"}));
    }

    void aFolderKeepsItsArchivedListsForItsCaller() {
        FakeClient fake;
        const QString lists = QStringLiteral(R"("lists":[%1])").arg(record("l", R"("archived":true)"));
        fake.service.answer(QStringLiteral("space/s1/folder"),
                            wrapped("folders", {record("f", lists), record("g", R"("archived":true)")}));
        const QList<Folder> folders = runTask(Endpoints::getFolders(fake.client, QStringLiteral("s1")));
        QCOMPARE(folders.size(), 1);
        QCOMPARE(folders[0].lists.value().size(), 1);
    }

    void teamTasksWithAllOptionalArgumentsAbsentHasExactlyFourQueryItems() {
        const NorvaneClient::QueryItems query = Endpoints::teamTasksQuery({}, 3);
        const NorvaneClient::QueryItems expected{
            {"include_closed", "false"}, {"subtasks", "true"}, {"order_by", "due_date"}, {"page", "3"}};
        QCOMPARE(query, expected);
        // Empty arrays add nothing either.
        QCOMPARE(Endpoints::teamTasksQuery({QList<qint64>(), QStringList(), QStringList(), std::nullopt}, 3), expected);
    }

    void teamTasksQueryItemsComeInTheirOrder() {
        const Endpoints::TeamTasksFilter filter{QList<qint64>{12, 34}, QStringList{"l1"}, QStringList{"to do", "done"},
                                                QDateTime::fromMSecsSinceEpoch(1'700'000'000'123, QTimeZone::utc())};
        const NorvaneClient::QueryItems expected{{"include_closed", "false"}, {"subtasks", "true"},
                                                 {"order_by", "due_date"},    {"page", "0"},
                                                 {"assignees[]", "12"},       {"assignees[]", "34"},
                                                 {"list_ids[]", "l1"},        {"statuses[]", "to do"},
                                                 {"statuses[]", "done"},      {"due_date_lt", "1700000000123"}};
        QCOMPARE(Endpoints::teamTasksQuery(filter, 0), expected);
    }

    void aFullPageMarkedLastMakesNoFurtherRequest() {
        FakeClient fake;
        fake.service.answer(tasksPath, page(100, true));
        QCOMPARE(runTask(Endpoints::getAllTeamTasks(fake.client, QStringLiteral("7"), {})).size(), 100);
        QCOMPARE(fake.service.paths.size(), 1);
    }

    void aFullPageWithoutLastPageAsksForOneMore() {
        FakeClient fake;
        fake.service.answer(tasksPath, page(100, std::nullopt));
        fake.service.answerNext(tasksPath, page(0, std::nullopt));
        QCOMPARE(runTask(Endpoints::getAllTeamTasks(fake.client, QStringLiteral("7"), {})).size(), 100);
        QCOMPARE(fake.service.paths.size(), 2);
    }

    void aShortPageEndsTheWalkWhateverLastPageSays() {
        FakeClient fake;
        fake.service.answer(tasksPath, page(99, false));
        QCOMPARE(runTask(Endpoints::getAllTeamTasks(fake.client, QStringLiteral("7"), {})).size(), 99);
        QCOMPARE(fake.service.paths.size(), 1);
    }

    void tenFullPagesMakeExactlyTenRequestsNumberedZeroToNine() {
        FakeClient fake;
        fake.service.answer(tasksPath, page(100, false));
        QCOMPARE(runTask(Endpoints::getAllTeamTasks(fake.client, QStringLiteral("7"), {})).size(), 1000);
        QCOMPARE(fake.service.paths.size(), 10);
        for (int number = 0; number < 10; ++number) {
            QVERIFY(fake.service.queries[number].endsWith(QStringLiteral("page=%1").arg(number)));
        }
    }

    void aFailedPageFailsTheWholeWalk() {
        FakeClient fake;
        fake.service.answer(tasksPath, page(100, false));
        fake.service.answerNext(tasksPath, 500, R"({"err":"Broken","ECODE":"X"})");
        const auto error = failureOf(Endpoints::getAllTeamTasks(fake.client, QStringLiteral("7"), {}));
        QVERIFY(error && error->is<NVError::Server>());
        QCOMPARE(fake.service.paths.size(), 2);
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(EndpointsTest)
#include "EndpointsTest.moc"
