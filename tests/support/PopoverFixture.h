#pragma once

#include "MemorySecretStore.h"
#include "SandboxProcess.h"
#include "app/AppState.h"
#include "auth/AuthViewModel.h"
#include "auth/OnboardingModel.h"
#include "compose/AttachmentInput.h"
#include "compose/AttachmentListModel.h"
#include "hierarchy/LocationViewModel.h"
#include "shell/PopoverWindow.h"

#include <QGuiApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QQuickItem>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>
#include <memory>

// The popover as the app builds it: the central state with secrets in memory and a settings file
// of its own (aimed at a sandbox when one is given), the page models, and the window.
struct PopoverFixture {
    explicit PopoverFixture(const QUrl& apiBaseURL = {}, const QUrl& webBaseURL = {}) {
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
        app = std::make_unique<AppState>(AppEnvironment{&secrets, settingsPath});
        auth = std::make_unique<AuthViewModel>(*app);
        onboarding = std::make_unique<OnboardingModel>(*app);
        location = std::make_unique<LocationViewModel>(*app);
        attachments = std::make_unique<AttachmentListModel>(app->draft());
        attachmentInput = std::make_unique<AttachmentInput>(popover, *attachments, *QGuiApplication::clipboard());
        popover.setInitialProperties({{QStringLiteral("auth"), QVariant::fromValue(auth.get())},
                                      {QStringLiteral("onboarding"), QVariant::fromValue(onboarding.get())},
                                      {QStringLiteral("location"), QVariant::fromValue(location.get())},
                                      {QStringLiteral("attachments"), QVariant::fromValue(attachments.get())}});
    }

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
    std::unique_ptr<AuthViewModel> auth;
    std::unique_ptr<OnboardingModel> onboarding;
    std::unique_ptr<LocationViewModel> location;
    std::unique_ptr<AttachmentListModel> attachments;
    PopoverWindow popover;
    std::unique_ptr<AttachmentInput> attachmentInput;
};
