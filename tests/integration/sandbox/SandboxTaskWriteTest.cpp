// The write side of the sandbox's REST contract: creating a task, changing it, commenting on it,
// and the 400 answers for bodies that are not JSON or hold values of the wrong type.
#include "support/SandboxDemo.h"
#include "support/SandboxProcess.h"
#include "support/SyncHttpClient.h"
#include "support/TestMain.h"

#include <QDateTime>
#include <QJsonArray>
#include <QTest>

using Query = QList<QPair<QString, QString>>;

class SandboxTaskWriteTest : public QObject {
    Q_OBJECT

    SandboxProcess m_sandbox;
    SyncHttpClient m_http;

    HttpResult create(const QJsonObject& body, const QString& listID = SandboxDemo::inboxListID, qsizetype token = 0) {
        return m_http.postJson(m_sandbox.apiUrl(QStringLiteral("list/%1/task").arg(listID)), m_sandbox.token(token),
                               body);
    }

    HttpResult change(const QString& taskID, const QJsonObject& body) {
        return m_http.putJson(m_sandbox.apiUrl(QStringLiteral("task/") + taskID), m_sandbox.token(), body);
    }

    QString createdID(const QJsonObject& body) {
        const HttpResult result = create(body);
        if (result.status != 200) {
            qWarning() << result.status << result.body;
        }
        return result.json().value(QStringLiteral("id")).toString();
    }

    // The ids of the open tasks assigned to one user in the first workspace.
    QStringList openTaskIDs(qint64 assignee) {
        QStringList found;
        for (int page = 0; page < 3; ++page) {
            const Query query{{QStringLiteral("subtasks"), QStringLiteral("true")},
                              {QStringLiteral("page"), QString::number(page)},
                              {QStringLiteral("assignees[]"), QString::number(assignee)}};
            const HttpResult result =
                m_http.get(m_sandbox.apiUrl(QStringLiteral("team/%1/task").arg(SandboxDemo::northwindID), query),
                           m_sandbox.token());
            for (const QJsonValue& task : result.json().value(QStringLiteral("tasks")).toArray()) {
                found.append(task.toObject().value(QStringLiteral("id")).toString());
            }
        }
        return found;
    }

    QJsonArray inboxFields() {
        return m_http
            .get(m_sandbox.apiUrl(QStringLiteral("list/%1/field").arg(SandboxDemo::inboxListID)), m_sandbox.token())
            .json()
            .value(QStringLiteral("fields"))
            .toArray();
    }

    QJsonObject inboxField(const QString& type) {
        for (const QJsonValue& field : inboxFields()) {
            if (field.toObject().value(QStringLiteral("type")).toString() == type) {
                return field.toObject();
            }
        }
        return {};
    }

    static QString firstOption(const QJsonObject& field) {
        return field.value(QStringLiteral("type_config"))
            .toObject()
            .value(QStringLiteral("options"))
            .toArray()
            .first()
            .toObject()
            .value(QStringLiteral("id"))
            .toString();
    }

private slots:
    void initTestCase() { QVERIFY2(m_sandbox.start(), qPrintable(m_sandbox.errorString())); }

    void createdTaskShowsUpForItsAssignees() {
        const qint64 dueMs = QDateTime::currentDateTime().addDays(2).toMSecsSinceEpoch();
        const HttpResult result = create({{QStringLiteral("name"), QStringLiteral("Write the sandbox guide")},
                                          {QStringLiteral("markdown_description"), QStringLiteral("**Soon**")},
                                          {QStringLiteral("assignees"), QJsonArray{SandboxDemo::secondUserID}},
                                          {QStringLiteral("tags"), QJsonArray{QStringLiteral("bug")}},
                                          {QStringLiteral("status"), QStringLiteral("Review")},
                                          {QStringLiteral("priority"), 2},
                                          {QStringLiteral("due_date"), dueMs},
                                          {QStringLiteral("due_date_time"), true},
                                          {QStringLiteral("notify_all"), false}});
        QCOMPARE(result.status, 200);
        const QJsonObject task = result.json();
        const QString id = task.value(QStringLiteral("id")).toString();
        QVERIFY(!id.isEmpty());
        QCOMPARE(task.value(QStringLiteral("name")).toString(), QStringLiteral("Write the sandbox guide"));
        QCOMPARE(task.value(QStringLiteral("url")).toString(),
                 m_sandbox.baseUrl().toString() + QStringLiteral("/t/") + id);
        QVERIFY(task.value(QStringLiteral("custom_id")).toString().startsWith(QLatin1String("NW-")));
        QCOMPARE(task.value(QStringLiteral("status")).toObject().value(QStringLiteral("status")).toString(),
                 QStringLiteral("review"));
        QCOMPARE(task.value(QStringLiteral("due_date")).toString(), QString::number(dueMs));
        QVERIFY(openTaskIDs(SandboxDemo::secondUserID).contains(id));
        QVERIFY(!openTaskIDs(SandboxDemo::anonymousUserID).contains(id));
    }

    void aNameAloneIsEnough() {
        const HttpResult result = create({{QStringLiteral("name"), QStringLiteral("Just a name")}});
        QCOMPARE(result.status, 200);
        QCOMPARE(result.json().value(QStringLiteral("status")).toObject().value(QStringLiteral("status")).toString(),
                 QStringLiteral("to do"));
        QVERIFY(result.json().value(QStringLiteral("due_date")).isNull());
        QCOMPARE(result.json().value(QStringLiteral("assignees")).toArray().size(), 0);
    }

    void customFieldValuesOfEveryEditableType() {
        const QJsonObject values{
            {QStringLiteral("text"), QStringLiteral("Contoso")},
            {QStringLiteral("short_text"), QStringLiteral("short")},
            {QStringLiteral("number"), 2.5},
            {QStringLiteral("drop_down"), firstOption(inboxField(QStringLiteral("drop_down")))},
            {QStringLiteral("labels"), QJsonArray{firstOption(inboxField(QStringLiteral("labels")))}},
            {QStringLiteral("date"), QDateTime::currentMSecsSinceEpoch()},
            {QStringLiteral("checkbox"), true},
            {QStringLiteral("url"), QStringLiteral("https://example.com/design")},
            {QStringLiteral("email"), QStringLiteral("someone@example.com")},
            {QStringLiteral("phone"), QStringLiteral("+1 555 0100")}};
        QJsonArray customFields;
        for (auto it = values.begin(); it != values.end(); ++it) {
            customFields.append(QJsonObject{{QStringLiteral("id"), inboxField(it.key()).value(QStringLiteral("id"))},
                                            {QStringLiteral("value"), it.value()}});
        }
        const HttpResult result = create(
            {{QStringLiteral("name"), QStringLiteral("Fields")}, {QStringLiteral("custom_fields"), customFields}});
        QCOMPARE(result.status, 200);
        QCOMPARE(result.json().value(QStringLiteral("custom_fields")).toArray().size(), 10);
    }

    void invalidTaskBodiesAreRefused_data() {
        QTest::addColumn<QByteArray>("body");
        QTest::newRow("not JSON") << QByteArray("{\"name\": ");
        QTest::newRow("an array") << QByteArray("[]");
        QTest::newRow("invalid UTF-8") << QByteArray("{\"name\": \"\xff\xfe\"}");
        QTest::newRow("no name") << QByteArray("{}");
        QTest::newRow("empty name") << QByteArray("{\"name\": \"\"}");
        QTest::newRow("name a number") << QByteArray("{\"name\": 5}");
        QTest::newRow("assignees of text") << QByteArray("{\"name\": \"a\", \"assignees\": [\"ada\"]}");
        QTest::newRow("assignee not a member") << QByteArray("{\"name\": \"a\", \"assignees\": [99]}");
        QTest::newRow("due date text") << QByteArray("{\"name\": \"a\", \"due_date\": \"tomorrow\"}");
        QTest::newRow("due date fraction") << QByteArray("{\"name\": \"a\", \"due_date\": 1.5}");
        QTest::newRow("due_date_time text") << QByteArray("{\"name\": \"a\", \"due_date_time\": \"yes\"}");
        QTest::newRow("unknown status") << QByteArray("{\"name\": \"a\", \"status\": \"somewhere\"}");
        QTest::newRow("priority out of range") << QByteArray("{\"name\": \"a\", \"priority\": 9}");
        QTest::newRow("tags of numbers") << QByteArray("{\"name\": \"a\", \"tags\": [1]}");
        QTest::newRow("custom_fields an object") << QByteArray("{\"name\": \"a\", \"custom_fields\": {}}");
        QTest::newRow("unknown custom field")
            << QByteArray("{\"name\": \"a\", \"custom_fields\": [{\"id\": \"nope\", \"value\": 1}]}");
    }

    void invalidTaskBodiesAreRefused() {
        QFETCH(QByteArray, body);
        const HttpResult result =
            m_http.send("POST", m_sandbox.apiUrl(QStringLiteral("list/%1/task").arg(SandboxDemo::inboxListID)),
                        {{"Authorization", m_sandbox.token().toUtf8()}, {"Content-Type", "application/json"}}, body);
        QCOMPARE(result.status, 400);
        QVERIFY(!result.json().value(QStringLiteral("err")).toString().isEmpty());
    }

    void customFieldValuesOfTheWrongTypeAreRefused_data() {
        QTest::addColumn<QString>("type");
        QTest::addColumn<QJsonValue>("value");
        QTest::newRow("number") << QStringLiteral("number") << QJsonValue(QStringLiteral("two"));
        QTest::newRow("drop_down") << QStringLiteral("drop_down") << QJsonValue(QStringLiteral("no such option"));
        QTest::newRow("labels") << QStringLiteral("labels") << QJsonValue(QStringLiteral("not an array"));
        QTest::newRow("checkbox") << QStringLiteral("checkbox") << QJsonValue(QStringLiteral("yes"));
        QTest::newRow("date") << QStringLiteral("date") << QJsonValue(QStringLiteral("today"));
        QTest::newRow("email") << QStringLiteral("email") << QJsonValue(QStringLiteral("nobody"));
        QTest::newRow("text") << QStringLiteral("text") << QJsonValue(7);
        QTest::newRow("formula, which takes no value") << QStringLiteral("formula") << QJsonValue(2);
    }

    void customFieldValuesOfTheWrongTypeAreRefused() {
        QFETCH(QString, type);
        QFETCH(QJsonValue, value);
        const QJsonObject field{{QStringLiteral("id"), inboxField(type).value(QStringLiteral("id"))},
                                {QStringLiteral("value"), value}};
        const HttpResult result = create(
            {{QStringLiteral("name"), QStringLiteral("a")}, {QStringLiteral("custom_fields"), QJsonArray{field}}});
        QCOMPARE(result.status, 400);
        QVERIFY(result.json().value(QStringLiteral("err")).toString().contains(type));
    }

    void unknownOrForeignListIsNotFound() {
        QCOMPARE(create({{QStringLiteral("name"), QStringLiteral("a")}}, QStringLiteral("404")).status, 404);
        QCOMPARE(create({{QStringLiteral("name"), QStringLiteral("a")}}, SandboxDemo::labNotesListID, 1).status, 404);
    }

    void changingTheStatusToClosedTakesTheTaskOutOfTheOpenSearch() {
        const QString id = createdID({{QStringLiteral("name"), QStringLiteral("Close me")},
                                      {QStringLiteral("assignees"), QJsonArray{SandboxDemo::firstUserID}}});
        QVERIFY(openTaskIDs(SandboxDemo::firstUserID).contains(id));
        const HttpResult result = change(id, {{QStringLiteral("status"), QStringLiteral("complete")}});
        QCOMPARE(result.status, 200);
        QCOMPARE(result.json().value(QStringLiteral("id")).toString(), id);
        QCOMPARE(result.json().value(QStringLiteral("status")).toObject().value(QStringLiteral("type")).toString(),
                 QStringLiteral("closed"));
        QVERIFY(!openTaskIDs(SandboxDemo::firstUserID).contains(id));
    }

    void changingTheDueDate() {
        const QString id = createdID({{QStringLiteral("name"), QStringLiteral("Move me")}});
        const qint64 dueMs = QDateTime::currentDateTime().addDays(5).toMSecsSinceEpoch();
        const HttpResult moved =
            change(id, {{QStringLiteral("due_date"), dueMs}, {QStringLiteral("due_date_time"), true}});
        QCOMPARE(moved.status, 200);
        QCOMPARE(moved.json().value(QStringLiteral("due_date")).toString(), QString::number(dueMs));
        QCOMPARE(moved.json().value(QStringLiteral("name")).toString(), QStringLiteral("Move me"));
        const HttpResult cleared = change(id, {{QStringLiteral("due_date"), QJsonValue()}});
        QVERIFY(cleared.json().value(QStringLiteral("due_date")).isNull());
    }

    void invalidChangesAreRefusedAndChangeNothing() {
        const QString id = createdID({{QStringLiteral("name"), QStringLiteral("Keep me")}});
        QCOMPARE(change(id, {{QStringLiteral("status"), QStringLiteral("nowhere")}}).status, 400);
        QCOMPARE(change(id, {{QStringLiteral("due_date"), QStringLiteral("later")}}).status, 400);
        QCOMPARE(
            change(id, {{QStringLiteral("name"), QStringLiteral("Renamed")}, {QStringLiteral("priority"), 0}}).status,
            400);
        const HttpResult notJSON = m_http.send("PUT", m_sandbox.apiUrl(QStringLiteral("task/") + id),
                                               {{"Authorization", m_sandbox.token().toUtf8()}}, "status=complete");
        QCOMPARE(notJSON.status, 400);
        const HttpResult unchanged = change(id, {});
        QCOMPARE(unchanged.status, 200);
        QCOMPARE(unchanged.json().value(QStringLiteral("name")).toString(), QStringLiteral("Keep me"));
        QCOMPARE(unchanged.json().value(QStringLiteral("status")).toObject().value(QStringLiteral("status")).toString(),
                 QStringLiteral("to do"));
        QCOMPARE(change(QStringLiteral("nosuchtask"), {{QStringLiteral("status"), QStringLiteral("complete")}}).status,
                 404);
    }

    void commentsAreKept() {
        const QString id = createdID({{QStringLiteral("name"), QStringLiteral("Discuss me")}});
        const QUrl url = m_sandbox.apiUrl(QStringLiteral("task/%1/comment").arg(id));
        const HttpResult comment =
            m_http.postJson(url, m_sandbox.token(), {{QStringLiteral("comment_text"), QStringLiteral("Looks good")}});
        QCOMPARE(comment.status, 200);
        QVERIFY(!comment.json().value(QStringLiteral("id")).toString().isEmpty());
        QVERIFY(m_http.get(m_sandbox.webUrl(QStringLiteral("/t/") + id)).body.contains("Looks good"));
        QCOMPARE(m_http.postJson(url, m_sandbox.token(), {}).status, 400);
        QCOMPARE(m_http.postJson(url, m_sandbox.token(), {{QStringLiteral("comment_text"), 5}}).status, 400);
        QCOMPARE(m_http
                     .postJson(m_sandbox.apiUrl(u"task/nosuchtask/comment"), m_sandbox.token(),
                               {{QStringLiteral("comment_text"), QStringLiteral("hi")}})
                     .status,
                 404);
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(SandboxTaskWriteTest)
#include "SandboxTaskWriteTest.moc"
