#pragma once

#include "core/app/AppState.h"
#include "core/platform/LoginItem.h"
#include "core/settings/SettingsTab.h"
#include "core/shell/HotKeyManager.h"
#include "desktop/auth/AccountsViewModel.h"
#include "desktop/recording/RecordingDefaultsViewModel.h"
#include "desktop/settings/AttachmentStorageViewModel.h"
#include "desktop/settings/FieldVisibilityViewModel.h"
#include "desktop/settings/GeneralSettingsViewModel.h"
#include "desktop/settings/QuickLinksViewModel.h"
#include "desktop/settings/ShortcutSettingsViewModel.h"
#include "desktop/settings/TemplateSettingsViewModel.h"

#include <QObject>
#include <QQuickView>
#include <QtQml/qqmlregistration.h>
#include <memory>

// The settings window: the tabs "Account", "Fields", "Templates", "General" and "Attachments", each change saved
// at once. One window for the life of the app: opening it again brings it to the front. Ctrl+Tab
// and Ctrl+Page Down move to the next tab, Escape closes it.
class SettingsWindow : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The app builds the settings window.")
    // The tab shown, as its place in the order of SettingsTab.
    Q_PROPERTY(int currentTab READ currentTab WRITE setCurrentTab NOTIFY currentTabChanged)

public:
    SettingsWindow(AppState& app, LoginItem& loginItem, HotKeyManager& hotKeys, QObject* parent = nullptr);

    // The window, made and loaded at first use: a second QML engine costs start-up time and memory.
    QQuickView& view();
    AccountsViewModel& accounts() { return m_accounts; }
    FieldVisibilityViewModel& fields() { return m_fields; }
    TemplateSettingsViewModel& templates() { return m_templates; }
    GeneralSettingsViewModel& general() { return m_general; }
    ShortcutSettingsViewModel& shortcuts() { return m_shortcuts; }
    QuickLinksViewModel& quickLinks() { return m_quickLinks; }
    AttachmentStorageViewModel& storage() { return m_storage; }

    int currentTab() const { return int(m_currentTab); }
    void setCurrentTab(int tab);

    // Shows the window on `tab`, in front and with the keyboard.
    void showTab(SettingsTab tab);
    // Shows the window on the tab it last showed, in front and with the keyboard.
    void showSettings();
    // Loads the content once; showing the window does it too.
    void prepare();

signals:
    void currentTabChanged();

private:
    AccountsViewModel m_accounts;
    FieldVisibilityViewModel m_fields;
    TemplateSettingsViewModel m_templates;
    GeneralSettingsViewModel m_general;
    ShortcutSettingsViewModel m_shortcuts;
    RecordingDefaultsViewModel m_recording;
    QuickLinksViewModel m_quickLinks;
    AttachmentStorageViewModel m_storage;
    SettingsTab m_currentTab = SettingsTab::account;
    // After the models, so that the pages are gone before the models they show.
    std::unique_ptr<QQuickView> m_view;
};
