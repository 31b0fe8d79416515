#include "support/AppStateFixture.h"
#include "support/SandboxDemo.h"
#include "support/TestMain.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QPointer>
#include <QTest>
#include <functional>

namespace {
// What the settings file holds of the accounts and their navigation memory, by list id.
struct NavigationFile {
    std::optional<qint64> activeAccountID;
    QList<qint64> accounts;
    std::optional<QString> lastListID;
    std::optional<QString> preferredWorkspaceID;
    QMap<QString, QString> accountListIDs;
    QMap<QString, QString> accountPreferredWorkspaceIDs;

    static NavigationFile read(const QString& path) {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly)) {
            return {};
        }
        const QJsonObject json = QJsonDocument::fromJson(file.readAll()).object();
        NavigationFile read;
        if (json.contains(QStringLiteral("activeAccountID"))) {
            read.activeAccountID = json.value(QStringLiteral("activeAccountID")).toInteger();
        }
        for (const QJsonValue account : json.value(QStringLiteral("accounts")).toArray()) {
            read.accounts.append(account[QStringLiteral("id")].toInteger());
        }
        if (json.contains(QStringLiteral("lastLocation"))) {
            read.lastListID = json.value(QStringLiteral("lastLocation"))[QStringLiteral("listID")].toString();
        }
        if (json.contains(QStringLiteral("preferredWorkspaceID"))) {
            read.preferredWorkspaceID = json.value(QStringLiteral("preferredWorkspaceID")).toString();
        }
        const QJsonObject locations = json.value(QStringLiteral("accountLocations")).toObject();
        for (auto location = locations.begin(); location != locations.end(); ++location) {
            read.accountListIDs.insert(location.key(), location.value()[QStringLiteral("listID")].toString());
        }
        const QJsonObject workspaces = json.value(QStringLiteral("accountPreferredWorkspaceIDs")).toObject();
        for (auto workspace = workspaces.begin(); workspace != workspaces.end(); ++workspace) {
            read.accountPreferredWorkspaceIDs.insert(workspace.key(), workspace.value().toString());
        }
        return read;
    }

    bool operator==(const NavigationFile&) const = default;
};

QString describe(const NavigationFile& file) {
    QStringList parts{
        QStringLiteral("active %1").arg(file.activeAccountID ? QString::number(*file.activeAccountID) : "-"),
        QStringLiteral("accounts %1").arg(QString::number(file.accounts.size())),
        QStringLiteral("list %1").arg(file.lastListID.value_or("-")),
        QStringLiteral("workspace %1").arg(file.preferredWorkspaceID.value_or("-"))};
    for (auto entry = file.accountListIDs.begin(); entry != file.accountListIDs.end(); ++entry) {
        parts.append(QStringLiteral("%1: list %2").arg(entry.key(), entry.value()));
    }
    for (auto entry = file.accountPreferredWorkspaceIDs.begin(); entry != file.accountPreferredWorkspaceIDs.end();
         ++entry) {
        parts.append(QStringLiteral("%1: workspace %2").arg(entry.key(), entry.value()));
    }
    return parts.join(QStringLiteral(", "));
}

// One operation on the accounts, and what the settings file holds after it.
struct Step {
    QString name;
    std::function<void(AppState&)> act;
    NavigationFile expected;
};
} // namespace

Q_DECLARE_METATYPE(QList<Step>)

// Each account's navigation memory as the settings file keeps it through switches, removals and
// sign-outs, against norvane-sandbox; and the resets that go with each change of account.
class AccountNavigationTest : public QObject {
    Q_OBJECT

    SandboxProcess m_sandbox;
    std::unique_ptr<AppStateFixture> m_fixture;
    QList<SandboxProcess::Token> m_tokens;

    qint64 ada() const { return m_tokens.at(0).userID; }
    qint64 ben() const { return m_tokens.at(1).userID; }
    QString key(qint64 userID) const { return QString::number(userID); }

    qsizetype userRequests() {
        qsizetype count = 0;
        for (const QJsonValue& request : m_sandbox.requests()) {
            count += request[QStringLiteral("path")].toString() == QStringLiteral("/api/v2/user") ? 1 : 0;
        }
        return count;
    }

    // Ben signs in and chooses the support list, then Ada signs in and chooses the inbox.
    AppState& bothSignedInAdaOnTheInbox() {
        AppState& app = m_fixture->start();
        [&] {
            QCOMPARE(runTask(app.signIn(m_tokens.at(1).token)), std::nullopt);
            QVERIFY(m_fixture->chooseNorthwindList(SandboxDemo::supportListID));
            QCOMPARE(runTask(app.signIn(m_tokens.at(0).token)), std::nullopt);
            QVERIFY(m_fixture->chooseNorthwindList(SandboxDemo::inboxListID));
        }();
        return app;
    }

    static void waitForList(const AppState& app, const QString& listID) {
        QTRY_VERIFY(app.currentContext());
        QCOMPARE(app.currentContext()->entry().list.id, listID);
    }

private slots:
    void initTestCase() {
        QVERIFY2(m_sandbox.start(), qPrintable(m_sandbox.errorString()));
        m_tokens = m_sandbox.tokens();
        QVERIFY(m_tokens.size() >= 2);
        QCOMPARE(m_tokens.at(0).userID, SandboxDemo::firstUserID);
        QCOMPARE(m_tokens.at(1).userID, SandboxDemo::secondUserID);
    }

    void init() {
        QVERIFY(m_sandbox.reset());
        m_fixture = std::make_unique<AppStateFixture>(&m_sandbox);
    }

    void cleanup() { m_fixture.reset(); }

    void theSettingsFileFollowsEachStep_data() {
        QTest::addColumn<QList<Step>>("steps");
        const QString inbox = SandboxDemo::inboxListID;
        const QString support = SandboxDemo::supportListID;
        const QString northwind = SandboxDemo::northwindID;
        const qint64 a = ada();
        const qint64 b = ben();
        const QString keyA = key(a);
        const QString keyB = key(b);

        QTest::newRow("switch, then switch back") << QList<Step>{
            {QStringLiteral("switch to Ben"),
             [b](AppState& app) { runTask(app.switchAccount(b)); },
             {b, {b, a}, support, northwind, {{keyA, inbox}, {keyB, support}}, {{keyA, northwind}, {keyB, northwind}}}},
            {QStringLiteral("switch back to Ada"),
             [a](AppState& app) { runTask(app.switchAccount(a)); },
             {a, {b, a}, inbox, northwind, {{keyA, inbox}, {keyB, support}}, {{keyA, northwind}, {keyB, northwind}}}},
        };

        // Removing the signed-in account stashes its memory once more on the way to the next one:
        // that entry stays behind, unused.
        QTest::newRow("remove the active one, then the last one") << QList<Step>{
            {QStringLiteral("remove Ada, who is active"),
             [a](AppState& app) { runTask(app.removeAccount(a)); },
             {b, {b}, support, northwind, {{keyA, inbox}, {keyB, support}}, {{keyA, northwind}, {keyB, northwind}}}},
            {QStringLiteral("remove Ben, the last one"),
             [b](AppState& app) { runTask(app.removeAccount(b)); },
             {std::nullopt, {}, std::nullopt, std::nullopt, {{keyA, inbox}}, {{keyA, northwind}}}},
        };

        QTest::newRow("remove the inactive one") << QList<Step>{
            {QStringLiteral("remove Ben"),
             [b](AppState& app) { runTask(app.removeAccount(b)); },
             {a, {a}, inbox, northwind, {}, {}}},
        };

        QTest::newRow("sign out, then sign in to the other") << QList<Step>{
            {QStringLiteral("sign out of Ada"),
             [](AppState& app) { app.signOut(); },
             {std::nullopt, {b}, std::nullopt, std::nullopt, {{keyB, support}}, {{keyB, northwind}}}},
            {QStringLiteral("switch to Ben"),
             [b](AppState& app) { runTask(app.switchAccount(b)); },
             {b, {b}, support, northwind, {{keyB, support}}, {{keyB, northwind}}}},
        };
    }

    void theSettingsFileFollowsEachStep() {
        QFETCH(QList<Step>, steps);
        AppState& app = bothSignedInAdaOnTheInbox();
        // Ada's memory is stashed when she is left; Ben's was stashed when he was.
        QCOMPARE(NavigationFile::read(m_fixture->settingsPath()),
                 (NavigationFile{ada(),
                                 {ben(), ada()},
                                 SandboxDemo::inboxListID,
                                 SandboxDemo::northwindID,
                                 {{key(ben()), SandboxDemo::supportListID}},
                                 {{key(ben()), SandboxDemo::northwindID}}}));
        for (const Step& step : steps) {
            step.act(app);
            const NavigationFile found = NavigationFile::read(m_fixture->settingsPath());
            QVERIFY2(found == step.expected, qPrintable(QStringLiteral("after \"%1\": found %2, expected %3")
                                                            .arg(step.name, describe(found), describe(step.expected))));
        }
    }

    void switchingToANeverVisitedAccountClearsTheLocationAndSwitchingBackSelectsItAgain() {
        AppState& app = m_fixture->start();
        QCOMPARE(runTask(app.signIn(m_tokens.at(0).token)), std::nullopt);
        QVERIFY(m_fixture->chooseNorthwindList(SandboxDemo::inboxListID));
        // Ben's token is stored, but he has never been active.
        m_fixture->storeToken(ben(), m_tokens.at(1).token);

        runTask(app.switchAccount(ben()));
        QCOMPARE(app.authState().user()->id, ben());
        QCOMPARE(app.settings().settings().lastLocation, std::nullopt);
        QCOMPARE(app.currentContext(), nullptr);

        runTask(app.switchAccount(ada()));
        QCOMPARE(app.settings().settings().lastLocation->listID, SandboxDemo::inboxListID);
        waitForList(app, SandboxDemo::inboxListID);
    }

    void aForcedSwitchToTheSignedInAccountResetsEverythingAndValidatesAgain() {
        AppState& app = m_fixture->start();
        QCOMPARE(runTask(app.signIn(m_tokens.at(0).token)), std::nullopt);
        QVERIFY(m_fixture->chooseNorthwindList(SandboxDemo::inboxListID));
        runTask(app.myDay().refresh(SandboxDemo::northwindID, {}));
        QVERIFY(!app.myDay().tasks().isEmpty());
        app.draft().setName(QStringLiteral("Thrown away"));
        const QPointer<ListContext> before = app.currentContext();
        const qsizetype requests = userRequests();
        bool sawReset = false;
        QObject::connect(&app, &AppState::currentContextChanged, &app,
                         [&app, &sawReset] { sawReset = sawReset || !app.currentContext(); });

        runTask(app.switchAccount(ada(), true));
        QVERIFY(sawReset);
        QCOMPARE(userRequests(), requests + 1);
        QCOMPARE(app.draft().name(), QString());
        QVERIFY(app.myDay().tasks().isEmpty());
        waitForList(app, SandboxDemo::inboxListID);
        QTRY_VERIFY(!before); // a new context took the old one's place
    }

    void removingAnInactiveAccountLeavesTheSignedInStateTheDraftAndTheContextAlone() {
        AppState& app = bothSignedInAdaOnTheInbox();
        waitForList(app, SandboxDemo::inboxListID);
        const ListContext* context = app.currentContext();
        app.draft().setName(QStringLiteral("Kept"));
        const qsizetype requests = userRequests();
        runTask(app.removeAccount(ben()));
        QCOMPARE(app.authState().user()->id, ada());
        QCOMPARE(app.currentContext(), context);
        QCOMPARE(app.draft().name(), QStringLiteral("Kept"));
        QCOMPARE(userRequests(), requests);
    }

    void switchingAccountsEmptiesTheTasksTab() {
        AppState& app = bothSignedInAdaOnTheInbox();
        runTask(app.myDay().refresh(SandboxDemo::northwindID, {}));
        QVERIFY(!app.myDay().tasks().isEmpty());
        runTask(app.switchAccount(ben()));
        QVERIFY(app.myDay().tasks().isEmpty());
    }

    void signingOutEmptiesTheTasksTab() {
        AppState& app = bothSignedInAdaOnTheInbox();
        runTask(app.myDay().refresh(SandboxDemo::northwindID, {}));
        QVERIFY(!app.myDay().tasks().isEmpty());
        app.signOut();
        QVERIFY(app.myDay().tasks().isEmpty());
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(AccountNavigationTest)
#include "AccountNavigationTest.moc"
