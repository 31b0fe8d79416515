#pragma once

#include "core/app/AppState.h"
#include "core/platform/LoginItem.h"

#include <QObject>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

// The "General" tab: the due count beside the tray icon, the default workspace, the format of Git
// branch names with its preview, the reminders' lead time, and launch at login. Each change is saved
// at once; a failure to change the login item is shown, and the switch shows what stands.
class GeneralSettingsViewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The settings window builds its view models.")
    Q_PROPERTY(bool showDueCountBadge READ showDueCountBadge WRITE setShowDueCountBadge NOTIFY settingsChanged)
    Q_PROPERTY(QStringList workspaceNames READ workspaceNames NOTIFY workspacesChanged)
    Q_PROPERTY(int preferredWorkspaceIndex READ preferredWorkspaceIndex WRITE setPreferredWorkspaceIndex NOTIFY
                   preferredWorkspaceIndexChanged)
    Q_PROPERTY(QString branchNameFormat READ branchNameFormat WRITE setBranchNameFormat NOTIFY settingsChanged)
    Q_PROPERTY(QString branchNamePreview READ branchNamePreview NOTIFY branchNamePreviewChanged)
    Q_PROPERTY(QStringList reminderLeadLabels READ reminderLeadLabels CONSTANT)
    Q_PROPERTY(int reminderLeadIndex READ reminderLeadIndex WRITE setReminderLeadIndex NOTIFY settingsChanged)
    Q_PROPERTY(bool launchAtLogin READ launchAtLogin WRITE setLaunchAtLogin NOTIFY launchAtLoginChanged)
    Q_PROPERTY(QString loginItemError READ loginItemError NOTIFY launchAtLoginChanged)

public:
    GeneralSettingsViewModel(AppState& app, LoginItem& loginItem, QObject* parent = nullptr);

    bool showDueCountBadge() const { return settings().showDueCountBadge; }
    // Saves; the tray icon follows, and turning the count on fetches it.
    void setShowDueCountBadge(bool show);

    // The workspaces of the account, by name, in the service's order.
    QStringList workspaceNames() const;
    // The preferred workspace's place among them; -1 when it is none of them.
    int preferredWorkspaceIndex() const;
    void setPreferredWorkspaceIndex(int index);

    const QString& branchNameFormat() const { return settings().branchNameFormat; }
    void setBranchNameFormat(const QString& format);
    // The branch name of an example task, for the signed-in user or "John Smith".
    QString branchNamePreview() const;

    static QStringList reminderLeadLabels();
    // The place of the lead time among the choices; -1 for a time the settings file holds but the
    // choices don't.
    int reminderLeadIndex() const;
    void setReminderLeadIndex(int index);

    bool launchAtLogin() const { return m_launchAtLogin; }
    void setLaunchAtLogin(bool enabled);
    const QString& loginItemError() const { return m_loginItemError; }

signals:
    void settingsChanged();
    void workspacesChanged();
    void preferredWorkspaceIndexChanged();
    void branchNamePreviewChanged();
    void launchAtLoginChanged();

private:
    const AppSettings& settings() const { return m_app.settings().settings(); }

    AppState& m_app;
    LoginItem& m_loginItem;
    bool m_launchAtLogin;
    QString m_loginItemError;
};
