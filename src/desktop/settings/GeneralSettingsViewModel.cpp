#include "desktop/settings/GeneralSettingsViewModel.h"

#include "core/compose/BranchNameFormatter.h"
#include "core/settings/ReminderLeadTime.h"

GeneralSettingsViewModel::GeneralSettingsViewModel(AppState& app, LoginItem& loginItem, QObject* parent)
    : QObject(parent)
    , m_app(app)
    , m_loginItem(loginItem)
    , m_launchAtLogin(loginItem.isEnabled()) {
    SettingsStore* store = &m_app.settings();
    HierarchyStore* hierarchy = &m_app.hierarchy();
    connect(store, &SettingsStore::settingsChanged, this, &GeneralSettingsViewModel::settingsChanged);
    connect(store, &SettingsStore::settingsChanged, this, &GeneralSettingsViewModel::preferredWorkspaceIndexChanged);
    connect(store, &SettingsStore::settingsChanged, this, &GeneralSettingsViewModel::branchNamePreviewChanged);
    connect(&m_app, &AppState::authStateChanged, this, &GeneralSettingsViewModel::branchNamePreviewChanged);
    connect(hierarchy, &HierarchyStore::workspacesChanged, this, &GeneralSettingsViewModel::workspacesChanged);
    connect(hierarchy, &HierarchyStore::workspacesChanged, this,
            &GeneralSettingsViewModel::preferredWorkspaceIndexChanged);
}

void GeneralSettingsViewModel::setShowDueCountBadge(bool show) {
    m_app.settings().set(&AppSettings::showDueCountBadge, show);
}

QStringList GeneralSettingsViewModel::workspaceNames() const {
    QStringList names;
    for (const Workspace& workspace : m_app.hierarchy().workspaces()) {
        names.append(workspace.name);
    }
    return names;
}

int GeneralSettingsViewModel::preferredWorkspaceIndex() const {
    const QList<Workspace>& workspaces = m_app.hierarchy().workspaces();
    const std::optional<QString>& preferred = settings().preferredWorkspaceID;
    for (qsizetype index = 0; preferred && index < workspaces.size(); ++index) {
        if (workspaces.at(index).id == *preferred) {
            return int(index);
        }
    }
    return -1;
}

void GeneralSettingsViewModel::setPreferredWorkspaceIndex(int index) {
    const QList<Workspace>& workspaces = m_app.hierarchy().workspaces();
    if (index >= 0 && index < workspaces.size()) {
        m_app.settings().set(&AppSettings::preferredWorkspaceID, workspaces.at(index).id);
    }
}

void GeneralSettingsViewModel::setBranchNameFormat(const QString& format) {
    m_app.settings().set(&AppSettings::branchNameFormat, format);
}

QString GeneralSettingsViewModel::branchNamePreview() const {
    const NVUser* user = m_app.authState().user();
    const QString username = user ? user->displayName() : QStringLiteral("John Smith");
    return BranchNameFormatter::branchName(QStringLiteral("ae27de"), QStringLiteral("Auto generated naming"),
                                           std::nullopt, username, settings().branchNameFormat);
}

QStringList GeneralSettingsViewModel::reminderLeadLabels() {
    QStringList labels;
    for (const qint64 minutes : ReminderLeadTime::choices()) {
        labels.append(ReminderLeadTime::label(minutes));
    }
    return labels;
}

int GeneralSettingsViewModel::reminderLeadIndex() const {
    return int(ReminderLeadTime::choices().indexOf(settings().defaultReminderLeadMinutes));
}

void GeneralSettingsViewModel::setReminderLeadIndex(int index) {
    const QList<qint64>& choices = ReminderLeadTime::choices();
    if (index >= 0 && index < choices.size()) {
        m_app.settings().set(&AppSettings::defaultReminderLeadMinutes, choices.at(index));
    }
}

void GeneralSettingsViewModel::setLaunchAtLogin(bool enabled) {
    const std::optional<QString> failure = m_loginItem.setEnabled(enabled);
    m_loginItemError = failure.value_or(QString());
    m_launchAtLogin = failure ? m_loginItem.isEnabled() : enabled;
    // Also when nothing changed: a switch that the user moved goes back to what stands.
    emit launchAtLoginChanged();
}
