// The read side of the sandbox's REST contract: sign-in, workspaces, spaces, folders, lists,
// members, tags and custom fields of the demo data, and its 401 and 404 answers.
#include "support/SandboxDemo.h"
#include "support/SandboxProcess.h"
#include "support/SyncHttpClient.h"
#include "support/TestMain.h"

#include <QJsonArray>
#include <QSet>
#include <QTest>

namespace {
QJsonObject findByID(const QJsonArray& array, const QJsonValue& id) {
    for (const QJsonValue& each : array) {
        if (each.toObject().value(QStringLiteral("id")) == id) {
            return each.toObject();
        }
    }
    return {};
}

QStringList names(const QJsonArray& array) {
    QStringList found;
    for (const QJsonValue& each : array) {
        found.append(each.toObject().value(QStringLiteral("name")).toString());
    }
    return found;
}

void verifyErrorBody(const HttpResult& result, int status) {
    QCOMPARE(result.status, status);
    QVERIFY(!result.json().value(QStringLiteral("err")).toString().isEmpty());
    QVERIFY(!result.json().value(QStringLiteral("ECODE")).toString().isEmpty());
}
} // namespace

class SandboxHierarchyTest : public QObject {
    Q_OBJECT

    SandboxProcess m_sandbox;
    SyncHttpClient m_http;

    QJsonObject get(const QString& path, qsizetype token = 0) {
        const HttpResult result = m_http.get(m_sandbox.apiUrl(path), m_sandbox.token(token));
        if (result.status != 200) {
            qWarning() << path << result.status << result.body;
        }
        return result.json();
    }

private slots:
    void initTestCase() { QVERIFY2(m_sandbox.start(), qPrintable(m_sandbox.errorString())); }

    void eachDemoTokenSignsInItsUser() {
        QCOMPARE(get(QStringLiteral("user"), 0)
                     .value(QStringLiteral("user"))
                     .toObject()
                     .value(QStringLiteral("id"))
                     .toInteger(),
                 SandboxDemo::firstUserID);
        const QJsonObject second = get(QStringLiteral("user"), 1).value(QStringLiteral("user")).toObject();
        QCOMPARE(second.value(QStringLiteral("id")).toInteger(), SandboxDemo::secondUserID);
        QVERIFY(!second.value(QStringLiteral("username")).toString().isEmpty());
        QVERIFY(second.contains(QStringLiteral("profilePicture")));
    }

    void otherTokensAreRejected_data() {
        QTest::addColumn<QByteArray>("authorization");
        QTest::newRow("none") << QByteArray();
        QTest::newRow("unknown") << QByteArray("pk_demo_nobody");
        QTest::newRow("with a scheme word") << ("Bearer " + m_sandbox.token().toUtf8());
    }

    void otherTokensAreRejected() {
        QFETCH(QByteArray, authorization);
        const SyncHttpClient::Headers headers = authorization.isEmpty()
                                                    ? SyncHttpClient::Headers{}
                                                    : SyncHttpClient::Headers{{"Authorization", authorization}};
        verifyErrorBody(m_http.send("GET", m_sandbox.apiUrl(u"user"), headers), 401);
        verifyErrorBody(m_http.send("GET", m_sandbox.apiUrl(u"team"), headers), 401);
    }

    void workspacesFollowMembership() {
        const QJsonArray first = get(QStringLiteral("team"), 0).value(QStringLiteral("teams")).toArray();
        QCOMPARE(first.size(), 2);
        QCOMPARE(first[0].toObject().value(QStringLiteral("id")).toString(), SandboxDemo::northwindID);
        QCOMPARE(first[1].toObject().value(QStringLiteral("id")).toString(), SandboxDemo::fabrikamID);
        const QJsonArray second = get(QStringLiteral("team"), 1).value(QStringLiteral("teams")).toArray();
        QCOMPARE(second.size(), 1);
        QCOMPARE(second[0].toObject().value(QStringLiteral("id")).toString(), SandboxDemo::northwindID);
    }

    void membersWithAndWithoutNamesAndEmails() {
        const QJsonArray members = get(QStringLiteral("list/%1/member").arg(SandboxDemo::inboxListID))
                                       .value(QStringLiteral("members"))
                                       .toArray();
        QCOMPARE(members.size(), 5);
        const QJsonObject emptyName = findByID(members, SandboxDemo::emptyUsernameUserID);
        QCOMPARE(emptyName.value(QStringLiteral("username")), QJsonValue(QString()));
        QVERIFY(!emptyName.value(QStringLiteral("email")).toString().isEmpty());
        const QJsonObject noName = findByID(members, SandboxDemo::noUsernameUserID);
        QVERIFY(noName.value(QStringLiteral("username")).isNull());
        QVERIFY(!noName.value(QStringLiteral("email")).toString().isEmpty());
        const QJsonObject anonymous = findByID(members, SandboxDemo::anonymousUserID);
        QVERIFY(anonymous.value(QStringLiteral("username")).isNull());
        QVERIFY(anonymous.value(QStringLiteral("email")).isNull());
    }

    void spacesWithAndWithoutStatuses() {
        const QJsonArray northwind = get(QStringLiteral("team/%1/space").arg(SandboxDemo::northwindID))
                                         .value(QStringLiteral("spaces"))
                                         .toArray();
        const QJsonObject product = findByID(northwind, SandboxDemo::productSpaceID);
        QCOMPARE(product.value(QStringLiteral("statuses")).toArray().size(), 4);
        QVERIFY(!findByID(northwind, SandboxDemo::operationsSpaceID).contains(QStringLiteral("statuses")));
        const QJsonArray fabrikam =
            get(QStringLiteral("team/%1/space").arg(SandboxDemo::fabrikamID)).value(QStringLiteral("spaces")).toArray();
        QCOMPARE(findByID(fabrikam, SandboxDemo::legacySpaceID).value(QStringLiteral("archived")), QJsonValue(true));
    }

    void foldersWithTheirListsAndOneArchived() {
        const QJsonArray folders = get(QStringLiteral("space/%1/folder").arg(SandboxDemo::productSpaceID))
                                       .value(QStringLiteral("folders"))
                                       .toArray();
        QCOMPARE(folders.size(), 3);
        QVERIFY(!findByID(folders, SandboxDemo::sprintFolderID).contains(QStringLiteral("archived")));
        QCOMPARE(findByID(folders, SandboxDemo::archivedFolderID).value(QStringLiteral("archived")), QJsonValue(true));
        // Lists nested in a folder come whole, the archived one included.
        const QJsonArray releases =
            findByID(folders, SandboxDemo::releasesFolderID).value(QStringLiteral("lists")).toArray();
        QCOMPARE(releases.size(), 2);
        QCOMPARE(releases[1].toObject().value(QStringLiteral("archived")), QJsonValue(true));
        QCOMPARE(get(QStringLiteral("space/%1/folder").arg(SandboxDemo::operationsSpaceID))
                     .value(QStringLiteral("folders"))
                     .toArray()
                     .size(),
                 0);
    }

    void folderlessListsWithArchivedTrueAndNull() {
        const QJsonArray lists = get(QStringLiteral("space/%1/list").arg(SandboxDemo::productSpaceID))
                                     .value(QStringLiteral("lists"))
                                     .toArray();
        QCOMPARE(names(lists),
                 (QStringList{QStringLiteral("Inbox"), QStringLiteral("Ideas"), QStringLiteral("Old backlog")}));
        const QJsonObject ideas = findByID(lists, SandboxDemo::ideasListID);
        QVERIFY(ideas.contains(QStringLiteral("archived")) && ideas.value(QStringLiteral("archived")).isNull());
        QCOMPARE(findByID(lists, SandboxDemo::oldBacklogListID).value(QStringLiteral("archived")), QJsonValue(true));
    }

    void oneListCarriesTheStatusesInForce() {
        const QJsonArray inherited =
            get(QStringLiteral("list/%1").arg(SandboxDemo::inboxListID)).value(QStringLiteral("statuses")).toArray();
        QCOMPARE(inherited.size(), 4);
        QCOMPARE(inherited.last().toObject().value(QStringLiteral("type")).toString(), QStringLiteral("closed"));
        const QJsonObject release = get(QStringLiteral("list/%1").arg(SandboxDemo::releaseListID));
        QCOMPARE(release.value(QStringLiteral("name")).toString(), QStringLiteral("2.4 release"));
        QCOMPARE(release.value(QStringLiteral("statuses"))
                     .toArray()
                     .last()
                     .toObject()
                     .value(QStringLiteral("status"))
                     .toString(),
                 QStringLiteral("shipped"));
        // A list whose statuses have no type: the client closes a task with the last one.
        for (const QJsonValue& status : get(QStringLiteral("list/%1").arg(SandboxDemo::facilitiesListID))
                                            .value(QStringLiteral("statuses"))
                                            .toArray()) {
            QVERIFY(!status.toObject().contains(QStringLiteral("type")));
        }
    }

    void tagsHaveColours() {
        const QJsonArray tags = get(QStringLiteral("space/%1/tag").arg(SandboxDemo::productSpaceID))
                                    .value(QStringLiteral("tags"))
                                    .toArray();
        QVERIFY(tags.size() >= 3);
        for (const QJsonValue& tag : tags) {
            QVERIFY(tag.toObject().value(QStringLiteral("tag_fg")).toString().startsWith(QLatin1Char('#')));
            QVERIFY(tag.toObject().value(QStringLiteral("tag_bg")).toString().startsWith(QLatin1Char('#')));
        }
    }

    void customFieldsOfEveryType() {
        const QJsonArray fields = get(QStringLiteral("list/%1/field").arg(SandboxDemo::inboxListID))
                                      .value(QStringLiteral("fields"))
                                      .toArray();
        QSet<QString> types;
        for (const QJsonValue& field : fields) {
            const QJsonObject object = field.toObject();
            types.insert(object.value(QStringLiteral("type")).toString());
            QVERIFY(!object.value(QStringLiteral("id")).toString().isEmpty());
            QVERIFY(!object.value(QStringLiteral("name")).toString().isEmpty());
            const QJsonArray options =
                object.value(QStringLiteral("type_config")).toObject().value(QStringLiteral("options")).toArray();
            if (object.value(QStringLiteral("type")) == QStringLiteral("drop_down")) {
                QCOMPARE(options.size(), 4);
                QVERIFY(!options[0].toObject().value(QStringLiteral("name")).toString().isEmpty());
            } else if (object.value(QStringLiteral("type")) == QStringLiteral("labels")) {
                QCOMPARE(options.size(), 3);
                QVERIFY(!options[0].toObject().value(QStringLiteral("label")).toString().isEmpty());
            }
        }
        const QSet<QString> expected{
            QStringLiteral("text"),      QStringLiteral("short_text"), QStringLiteral("number"),
            QStringLiteral("drop_down"), QStringLiteral("labels"),     QStringLiteral("date"),
            QStringLiteral("checkbox"),  QStringLiteral("url"),        QStringLiteral("email"),
            QStringLiteral("phone"),     QStringLiteral("formula")};
        QCOMPARE(types, expected);
        QCOMPARE(fields.size(), 11);
    }

    void unknownAndForeignIdsAreNotFound_data() {
        QTest::addColumn<QString>("path");
        QTest::addColumn<int>("token");
        QTest::newRow("team") << QStringLiteral("team/404/space") << 0;
        QTest::newRow("team tasks") << QStringLiteral("team/404/task") << 0;
        QTest::newRow("space folders") << QStringLiteral("space/404/folder") << 0;
        QTest::newRow("space lists") << QStringLiteral("space/404/list") << 0;
        QTest::newRow("space tags") << QStringLiteral("space/404/tag") << 0;
        QTest::newRow("list") << QStringLiteral("list/404") << 0;
        QTest::newRow("list members") << QStringLiteral("list/404/member") << 0;
        QTest::newRow("list fields") << QStringLiteral("list/404/field") << 0;
        QTest::newRow("route") << QStringLiteral("no/such/route") << 0;
        QTest::newRow("another user's workspace") << QStringLiteral("team/%1/space").arg(SandboxDemo::fabrikamID) << 1;
        QTest::newRow("another user's list") << QStringLiteral("list/%1").arg(SandboxDemo::labNotesListID) << 1;
        QTest::newRow("another user's space") << QStringLiteral("space/%1/tag").arg(SandboxDemo::researchSpaceID) << 1;
    }

    void unknownAndForeignIdsAreNotFound() {
        QFETCH(QString, path);
        QFETCH(int, token);
        verifyErrorBody(m_http.get(m_sandbox.apiUrl(path), m_sandbox.token(token)), 404);
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(SandboxHierarchyTest)
#include "SandboxHierarchyTest.moc"
