#pragma once

#include "app/AppState.h"
#include "auth/AuthViewModel.h"
#include "auth/OnboardingModel.h"
#include "compose/AttachmentInput.h"
#include "compose/AttachmentListModel.h"
#include "hierarchy/LocationViewModel.h"
#include "linux/ControlService.h"
#include "linux/SecretServiceStore.h"
#include "linux/SingleInstance.h"
#include "linux/TrayHostWatcher.h"
#include "shell/PopoverWindow.h"
#include "shell/StatusItem.h"

#include <QGuiApplication>
#include <QObject>

// Builds NorvaneBar's presence on the desktop: the tray icon once a tray host is known, the
// popover and its pages, and the ways to reach it without the icon (a second launch, the D-Bus
// interface); then starts the central state.
class AppDelegate : public QObject {
    Q_OBJECT

public:
    explicit AppDelegate(QObject* parent = nullptr);

    void applicationDidFinishLaunching();

private:
    void trayHostFound();
    void noTrayHostFound();

    SecretServiceStore m_secrets;
    AppState m_app{AppEnvironment{&m_secrets}};
    AuthViewModel m_authModel{m_app};
    OnboardingModel m_onboardingModel{m_app};
    LocationViewModel m_locationModel{m_app};
    AttachmentListModel m_attachmentsModel{m_app.draft()};
    SingleInstance m_instance;
    ControlService m_control;
    TrayHostWatcher m_trayHost;
    StatusItem m_statusItem;
    PopoverWindow m_popover;
    AttachmentInput m_attachmentInput{m_popover, m_attachmentsModel, *QGuiApplication::clipboard()};
};
