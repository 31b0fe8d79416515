// The sandbox's web pages, where links of the demo lead: the index, the token page, a task and a list.
#include "support/SandboxDemo.h"
#include "support/SandboxProcess.h"
#include "support/SyncHttpClient.h"
#include "support/TestMain.h"

#include <QJsonArray>
#include <QTest>

class SandboxWebPagesTest : public QObject {
    Q_OBJECT

    SandboxProcess m_sandbox;
    SyncHttpClient m_http;

    HttpResult page(const QString& path) { return m_http.get(m_sandbox.webUrl(path)); }

    static void verifyPage(const HttpResult& result) {
        QCOMPARE(result.status, 200);
        QVERIFY(result.header("Content-Type").startsWith("text/html"));
        QVERIFY(result.body.startsWith("<!DOCTYPE html>"));
    }

private slots:
    void initTestCase() { QVERIFY2(m_sandbox.start(), qPrintable(m_sandbox.errorString())); }

    void indexShowsTheWorkspacesAndLeadsToTheirLists() {
        const HttpResult index = page(QStringLiteral("/"));
        verifyPage(index);
        QVERIFY(index.body.contains("Northwind Studio"));
        QVERIFY(index.body.contains("Fabrikam Labs"));
        QVERIFY(index.body.contains(m_sandbox.apiUrl(u"").toString().chopped(1).toUtf8()));
        QVERIFY(index.body.contains("/" + SandboxDemo::northwindID.toUtf8() + "/v/l/li/" +
                                    SandboxDemo::inboxListID.toUtf8()));
        QVERIFY(index.body.contains("href=\"/settings/apps\""));
    }

    void appsPageListsTheDemoTokens() {
        const HttpResult apps = page(QStringLiteral("/settings/apps"));
        verifyPage(apps);
        for (const SandboxProcess::Token& token : m_sandbox.tokens()) {
            QVERIFY(apps.body.contains(token.token.toUtf8()));
        }
    }

    void taskPageByIdAndByCustomID() {
        const QJsonObject task = SandboxDemo::firstNorthwindTask(m_http, m_sandbox);
        const QByteArray name = task.value(QStringLiteral("name")).toString().toHtmlEscaped().toUtf8();
        const HttpResult byID = m_http.get(QUrl(task.value(QStringLiteral("url")).toString()));
        verifyPage(byID);
        QVERIFY(byID.body.contains(name));
        const HttpResult byCustomID = page(QStringLiteral("/t/") + task.value(QStringLiteral("custom_id")).toString());
        verifyPage(byCustomID);
        QVERIFY(byCustomID.body.contains(name));
    }

    void listPageShowsItsTasks() {
        const HttpResult list =
            page(QStringLiteral("/%1/v/l/li/%2").arg(SandboxDemo::northwindID, SandboxDemo::inboxListID));
        verifyPage(list);
        QVERIFY(list.body.contains("<h1>Inbox</h1>"));
        QVERIFY(list.body.contains("href=\"/t/"));
    }

    void unknownPagesAreNotFound() {
        QCOMPARE(page(QStringLiteral("/t/nosuchtask")).status, 404);
        QCOMPARE(page(QStringLiteral("/%1/v/l/li/%2").arg(SandboxDemo::fabrikamID, SandboxDemo::inboxListID)).status,
                 404);
        QCOMPARE(page(QStringLiteral("/no/such/page")).status, 404);
        QCOMPARE(page(QStringLiteral("/attachments/none/file.txt")).status, 404);
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(SandboxWebPagesTest)
#include "SandboxWebPagesTest.moc"
