// The workspace task search (team/{id}/task) of the sandbox: its filters, its order, its paging by
// 100 with last_page, and the demo tasks that make every My Day group, three pages, subtasks two
// levels deep and hostile names happen.
#include "support/SandboxDemo.h"
#include "support/SandboxProcess.h"
#include "support/SyncHttpClient.h"
#include "support/TestMain.h"

#include <QDateTime>
#include <QHash>
#include <QJsonArray>
#include <QSet>
#include <QTest>

using Query = QList<QPair<QString, QString>>;

class SandboxTaskQueryTest : public QObject {
    Q_OBJECT

    SandboxProcess m_sandbox;
    SyncHttpClient m_http;

    HttpResult search(const Query& query, const QString& team = SandboxDemo::northwindID, qsizetype token = 0) {
        return m_http.get(m_sandbox.apiUrl(QStringLiteral("team/%1/task").arg(team), query), m_sandbox.token(token));
    }

    // The query My Day sends for the first user, with more items after the page.
    static Query myDay(int page, const Query& more = {}) {
        return Query{{QStringLiteral("include_closed"), QStringLiteral("false")},
                     {QStringLiteral("subtasks"), QStringLiteral("true")},
                     {QStringLiteral("order_by"), QStringLiteral("due_date")},
                     {QStringLiteral("page"), QString::number(page)},
                     {QStringLiteral("assignees[]"), QString::number(SandboxDemo::firstUserID)}} +
               more;
    }

    // The query with one item's value replaced.
    static Query with(Query query, const QString& name, const QString& value) {
        for (auto& item : query) {
            if (item.first == name) {
                item.second = value;
            }
        }
        return query;
    }

    QJsonArray tasks(const Query& query, const QString& team = SandboxDemo::northwindID) {
        const HttpResult result = search(query, team);
        if (result.status != 200) {
            qWarning() << result.status << result.body;
        }
        return result.json().value(QStringLiteral("tasks")).toArray();
    }

    // Every page of the first user's open tasks.
    QJsonArray allOfMyDay() {
        QJsonArray all;
        for (int page = 0; page < myDayPages; ++page) {
            for (const QJsonValue& task : tasks(myDay(page))) {
                all.append(task);
            }
        }
        return all;
    }

    static constexpr int myDayPages = (SandboxDemo::firstUserOpenNorthwindTasks + 99) / 100;

    static QSet<QString> ids(const QJsonArray& tasks) {
        QSet<QString> found;
        for (const QJsonValue& task : tasks) {
            found.insert(task.toObject().value(QStringLiteral("id")).toString());
        }
        return found;
    }

private slots:
    void initTestCase() { QVERIFY2(m_sandbox.start(), qPrintable(m_sandbox.errorString())); }

    void firstUserHasThreePagesTheLastOneShort() {
        QCOMPARE(myDayPages, 3);
        for (int page = 0; page < myDayPages - 1; ++page) {
            const HttpResult full = search(myDay(page));
            QCOMPARE(full.status, 200);
            QCOMPARE(full.json().value(QStringLiteral("tasks")).toArray().size(), 100);
            QCOMPARE(full.json().value(QStringLiteral("last_page")), QJsonValue(false));
        }
        const HttpResult last = search(myDay(myDayPages - 1));
        QCOMPARE(last.json().value(QStringLiteral("tasks")).toArray().size(),
                 SandboxDemo::firstUserOpenNorthwindTasks - 100 * (myDayPages - 1));
        QCOMPARE(last.json().value(QStringLiteral("last_page")), QJsonValue(true));
        QCOMPARE(ids(allOfMyDay()).size(), SandboxDemo::firstUserOpenNorthwindTasks);
    }

    void subtasksGoTwoLevelsDeep() {
        QHash<QString, QString> parentOf;
        for (const QJsonValue& task : allOfMyDay()) {
            const QJsonValue parent = task[QStringLiteral("parent")];
            if (parent.isString()) {
                parentOf.insert(task[QStringLiteral("id")].toString(), parent.toString());
            }
        }
        int grandchildren = 0;
        for (auto it = parentOf.cbegin(); it != parentOf.cend(); ++it) {
            grandchildren += parentOf.contains(it.value());
        }
        QVERIFY(grandchildren >= 4);
    }

    void hostileNamesAndSeveralAssigneesAreAmongTheTasks() {
        QStringList names;
        int shared = 0;
        QSet<QString> lists;
        for (const QJsonValue& task : allOfMyDay()) {
            names.append(task[QStringLiteral("name")].toString());
            shared += task[QStringLiteral("assignees")].toArray().size() >= 3;
            lists.insert(task[QStringLiteral("list")][QStringLiteral("id")].toString());
        }
        for (const QString& name : SandboxDemo::hostileTaskNames(m_sandbox.webUrl(u""))) {
            QVERIFY2(names.contains(name), qPrintable(name));
        }
        QCOMPARE(SandboxDemo::hostileTaskNames(m_sandbox.webUrl(u"")).last().size(), 300);
        QVERIFY(shared > 0);
        QVERIFY(lists.size() >= 5);
    }

    void pageBeyondTheEndIsEmptyAndLast() {
        const HttpResult beyond = search(myDay(7));
        QCOMPARE(beyond.status, 200);
        QCOMPARE(beyond.json().value(QStringLiteral("tasks")).toArray().size(), 0);
        QCOMPARE(beyond.json().value(QStringLiteral("last_page")), QJsonValue(true));
    }

    void everyTaskIsTheFirstUsersAndOpen() {
        const QJsonArray all = allOfMyDay();
        for (const QJsonValue& value : all) {
            const QJsonObject task = value.toObject();
            QSet<qint64> assignees;
            for (const QJsonValue& assignee : task.value(QStringLiteral("assignees")).toArray()) {
                assignees.insert(assignee.toObject().value(QStringLiteral("id")).toInteger());
            }
            QVERIFY(assignees.contains(SandboxDemo::firstUserID));
            QVERIFY(task.value(QStringLiteral("status")).toObject().value(QStringLiteral("type")) !=
                    QStringLiteral("closed"));
            QCOMPARE(task.value(QStringLiteral("url")).toString(), m_sandbox.baseUrl().toString() +
                                                                       QStringLiteral("/t/") +
                                                                       task.value(QStringLiteral("id")).toString());
            QVERIFY(!task.value(QStringLiteral("list")).toObject().value(QStringLiteral("name")).toString().isEmpty());
            QVERIFY(task.value(QStringLiteral("custom_id")).toString().startsWith(QLatin1String("NW-")));
        }
    }

    void dueDateOrderWithUndatedLastAndEveryGroup() {
        const QDateTime startOfToday = QDate::currentDate().startOfDay();
        const qint64 todayStartsMs = startOfToday.toMSecsSinceEpoch();
        const qint64 todayEndsMs = startOfToday.addDays(1).toMSecsSinceEpoch();
        int overdue = 0;
        int today = 0;
        int later = 0;
        int undated = 0;
        qint64 previous = std::numeric_limits<qint64>::min();
        for (const QJsonValue& value : allOfMyDay()) {
            const QJsonValue due = value.toObject().value(QStringLiteral("due_date"));
            if (due.isNull()) {
                ++undated;
                previous = std::numeric_limits<qint64>::max();
                continue;
            }
            QCOMPARE(undated, 0);
            const qint64 dueMs = due.toString().toLongLong();
            QVERIFY(dueMs >= previous);
            previous = dueMs;
            (dueMs < todayStartsMs ? overdue : dueMs < todayEndsMs ? today : later)++;
        }
        QVERIFY(overdue > 0);
        QVERIFY(today > 0);
        QVERIFY(later > 0);
        QVERIFY(undated > 0);
    }

    void someSubtasksHaveTheirParentOnTheOtherPage() {
        const QSet<QString> first = ids(tasks(myDay(0)));
        const QJsonArray second = tasks(myDay(1));
        int acrossPages = 0;
        for (const QJsonValue& task : second) {
            if (first.contains(task.toObject().value(QStringLiteral("parent")).toString())) {
                ++acrossPages;
            }
        }
        QVERIFY(acrossPages > 0);
    }

    void subtasksFalseLeavesSubtasksOut() {
        int topLevel = 0;
        for (int page = 0; page < myDayPages; ++page) {
            for (const QJsonValue& task :
                 tasks(with(myDay(page), QStringLiteral("subtasks"), QStringLiteral("false")))) {
                QVERIFY(task.toObject().value(QStringLiteral("parent")).isNull());
                ++topLevel;
            }
        }
        QVERIFY(topLevel > 0);
        QVERIFY(topLevel < SandboxDemo::firstUserOpenNorthwindTasks);
    }

    void includeClosedAddsClosedTasks() {
        int closed = 0;
        for (int page = 0; page <= myDayPages; ++page) {
            for (const QJsonValue& task :
                 tasks(with(myDay(page), QStringLiteral("include_closed"), QStringLiteral("true")))) {
                closed += task.toObject().value(QStringLiteral("status")).toObject().value(QStringLiteral("type")) ==
                          QStringLiteral("closed");
            }
        }
        QVERIFY(closed > 0);
    }

    void filtersNarrowTheSearch() {
        for (const QJsonValue& task : tasks(myDay(0, {{QStringLiteral("list_ids[]"), SandboxDemo::inboxListID}}))) {
            QCOMPARE(task.toObject().value(QStringLiteral("list")).toObject().value(QStringLiteral("id")).toString(),
                     SandboxDemo::inboxListID);
        }
        const QJsonArray reviewOrTesting = tasks(myDay(0, {{QStringLiteral("statuses[]"), QStringLiteral("review")},
                                                           {QStringLiteral("statuses[]"), QStringLiteral("testing")}}));
        QVERIFY(!reviewOrTesting.isEmpty());
        for (const QJsonValue& task : reviewOrTesting) {
            const QString status =
                task.toObject().value(QStringLiteral("status")).toObject().value(QStringLiteral("status")).toString();
            QVERIFY(status == QLatin1String("review") || status == QLatin1String("testing"));
        }
        const qint64 nowMs = QDateTime::currentMSecsSinceEpoch();
        const QJsonArray overdue = tasks(myDay(0, {{QStringLiteral("due_date_lt"), QString::number(nowMs)}}));
        QVERIFY(!overdue.isEmpty());
        for (const QJsonValue& task : overdue) {
            QVERIFY(task.toObject().value(QStringLiteral("due_date")).toString().toLongLong() < nowMs);
        }
    }

    void assigneeFilterTakesAnyOfSeveral() {
        const Query both{{QStringLiteral("subtasks"), QStringLiteral("true")},
                         {QStringLiteral("assignees[]"), QString::number(SandboxDemo::secondUserID)},
                         {QStringLiteral("assignees[]"), QString::number(SandboxDemo::anonymousUserID)}};
        const QJsonArray found = tasks(both);
        QVERIFY(!found.isEmpty());
        for (const QJsonValue& task : found) {
            bool assigned = false;
            for (const QJsonValue& assignee : task.toObject().value(QStringLiteral("assignees")).toArray()) {
                const qint64 id = assignee.toObject().value(QStringLiteral("id")).toInteger();
                assigned = assigned || id == SandboxDemo::secondUserID || id == SandboxDemo::anonymousUserID;
            }
            QVERIFY(assigned);
        }
    }

    void secondWorkspaceHasNoCustomTaskIDs() {
        const QJsonArray fabrikam = tasks(myDay(0), SandboxDemo::fabrikamID);
        QVERIFY(!fabrikam.isEmpty());
        for (const QJsonValue& task : fabrikam) {
            QVERIFY(task.toObject().value(QStringLiteral("custom_id")).isNull());
            QCOMPARE(task.toObject().value(QStringLiteral("team_id")).toString(), SandboxDemo::fabrikamID);
        }
    }

    void withoutQueryTopLevelTasksOnly() {
        const HttpResult plain = search({});
        QCOMPARE(plain.status, 200);
        QCOMPARE(plain.json().value(QStringLiteral("tasks")).toArray().size(), 100);
        for (const QJsonValue& task : plain.json().value(QStringLiteral("tasks")).toArray()) {
            QVERIFY(task.toObject().value(QStringLiteral("parent")).isNull());
        }
    }

    void invalidQueryValuesAreRefused_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("value");
        QTest::newRow("page text") << QStringLiteral("page") << QStringLiteral("first");
        QTest::newRow("page negative") << QStringLiteral("page") << QStringLiteral("-1");
        QTest::newRow("include_closed") << QStringLiteral("include_closed") << QStringLiteral("maybe");
        QTest::newRow("subtasks") << QStringLiteral("subtasks") << QStringLiteral("1");
        QTest::newRow("order_by") << QStringLiteral("order_by") << QStringLiteral("colour");
        QTest::newRow("assignee") << QStringLiteral("assignees[]") << QStringLiteral("ada");
        QTest::newRow("due_date_lt") << QStringLiteral("due_date_lt") << QStringLiteral("soon");
    }

    void invalidQueryValuesAreRefused() {
        QFETCH(QString, name);
        QFETCH(QString, value);
        const HttpResult result = search({{name, value}});
        QCOMPARE(result.status, 400);
        QVERIFY(result.json().value(QStringLiteral("err")).toString().contains(name));
    }

    void foreignWorkspaceIsNotFound() { QCOMPARE(search(myDay(0), SandboxDemo::fabrikamID, 1).status, 404); }
};

NORVANEBAR_TEST_GUILESS_MAIN(SandboxTaskQueryTest)
#include "SandboxTaskQueryTest.moc"
