#pragma once

#include "MemorySecretStore.h"
#include "SandboxProcess.h"
#include "app/AppState.h"
#include "shell/PopoverPages.h"

#include <QGuiApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QQuickItem>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>
#include <memory>

// The popover as the app builds it: the central state with secrets in memory and a settings file
// of its own (aimed at a sandbox when one is given), and the popover's pages.
struct PopoverFixture {
    explicit PopoverFixture(const QUrl& apiBaseURL = {}, const QUrl& webBaseURL = {})
        : app(std::make_unique<AppState>(AppEnvironment{&secrets, writeSettings(folder, apiBaseURL, webBaseURL)}))
        , pages(*app, *QGuiApplication::clipboard()) {}

    // A fixture aimed at a freshly reset sandbox, its popover shown; null when the sandbox can't be
    // reset or the window doesn't appear.
    static std::unique_ptr<PopoverFixture> shownAgainst(SandboxProcess& sandbox) {
        if (!sandbox.reset()) {
            return nullptr;
        }
        auto fixture = std::make_unique<PopoverFixture>(sandbox.apiUrl(u""), sandbox.webUrl(u""));
        fixture->popover.toggle(std::nullopt);
        return QTest::qWaitForWindowExposed(&fixture->popover) ? std::move(fixture) : nullptr;
    }

    // The item of the page with this objectName, or null.
    QObject* find(const QString& objectName) const {
        return popover.rootObject() ? popover.rootObject()->findChild<QObject*>(objectName) : nullptr;
    }

    QTemporaryDir folder;
    MemorySecretStore secrets;
    std::unique_ptr<AppState> app;
    PopoverPages pages;
    // What the tests drive of the pages.
    PopoverWindow& popover = pages.window();
    AuthViewModel* const auth = &pages.auth();
    OnboardingModel* const onboarding = &pages.onboarding();
    LocationViewModel* const location = &pages.location();
    AttachmentListModel* const attachments = &pages.attachments();

private:
    // The settings file in the folder, with the service addresses when given; returns its path.
    static QString writeSettings(const QTemporaryDir& folder, const QUrl& apiBaseURL, const QUrl& webBaseURL) {
        QJsonObject settings;
        if (apiBaseURL.isValid()) {
            settings.insert(QStringLiteral("serviceAPIBaseURL"), apiBaseURL.toString());
            settings.insert(QStringLiteral("serviceWebBaseURL"), webBaseURL.toString());
        }
        const QString settingsPath = folder.filePath(QStringLiteral("settings.json"));
        QFile file(settingsPath);
        if (file.open(QIODevice::WriteOnly)) {
            file.write(QJsonDocument(settings).toJson());
            file.close();
        }
        return settingsPath;
    }
};
