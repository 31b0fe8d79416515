#include "support/AppStateFixture.h"

#include "core/auth/KeychainStore.h"
#include "support/SandboxDemo.h"

#include <QFile>
#include <QJsonDocument>
#include <QTest>

AppStateFixture::AppStateFixture(const SandboxProcess* sandbox, SecretStore* secrets)
    : m_sandbox(sandbox)
    , m_secrets(secrets ? secrets : &m_memorySecrets) {
    writeSettings();
}

AppStateFixture::~AppStateFixture() {
    stop();
    QTRY_VERIFY_WITH_TIMEOUT(m_memorySecrets.inFlight() == 0, 5000);
}

std::unique_ptr<AppStateFixture> AppStateFixture::withFirstUser(SandboxProcess& sandbox) {
    if (!sandbox.reset()) {
        return nullptr;
    }
    auto fixture = std::make_unique<AppStateFixture>(&sandbox);
    fixture->storeToken(SandboxDemo::firstUserID, sandbox.token());
    return fixture;
}

void AppStateFixture::writeSettings(QJsonObject settings) {
    if (m_sandbox) {
        settings.insert(QStringLiteral("serviceAPIBaseURL"), m_sandbox->apiUrl(u"").toString());
        settings.insert(QStringLiteral("serviceWebBaseURL"), m_sandbox->webUrl(u"").toString());
    }
    QFile file(settingsPath());
    if (!file.open(QIODevice::WriteOnly) || file.write(QJsonDocument(settings).toJson()) < 0) {
        qFatal("Cannot write the settings file %s", qPrintable(settingsPath()));
    }
}

void AppStateFixture::storeToken(qint64 userID, const QString& token) {
    m_memorySecrets.setItem(KeychainStore::appService, QStringLiteral("norvane-token-") + QString::number(userID),
                            token.toUtf8());
}

AppState& AppStateFixture::start() {
    m_app.reset();
    m_app = std::make_unique<AppState>(AppEnvironment{
        .secrets = m_secrets,
        .settingsPath = settingsPath(),
        .sleeper = m_waits,
        .clock = m_clock,
        .notificationCenter = m_center,
        .linkActions = &m_linkActions,
        .remindersPath = remindersPath(),
        .wallClockAlarms = m_wallClock.alarms(),
        .regionCaptureTool = m_regionCaptureTool,
    });
    return *m_app;
}

bool AppStateFixture::chooseList(const QString& workspaceID, const QString& listID) {
    runTask(app().hierarchy().loadEntries(workspaceID, false));
    std::optional<ListEntry> entry;
    if (!QTest::qWaitFor([&] { return (entry = app().hierarchy().entry(listID)).has_value(); }, 10'000)) {
        return false;
    }
    app().selectLocation(*entry);
    return true;
}

AppState& AppStateFixture::startSignedIn() {
    AppState& app = start();
    runTask(app.bootstrap());
    return app;
}
