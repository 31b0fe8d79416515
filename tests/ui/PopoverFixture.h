#pragma once

#include "AttachmentInput.h"
#include "AttachmentListModel.h"
#include "AuthViewModel.h"
#include "LocationViewModel.h"
#include "MemorySecretStore.h"
#include "OnboardingModel.h"
#include "PopoverWindow.h"
#include "app/AppState.h"

#include <QGuiApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QQuickItem>
#include <QTemporaryDir>
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
