#include "desktop/settings/TemplateSettingsViewModel.h"

#include "core/compose/TemplateList.h"

TemplateSettingsViewModel::TemplateSettingsViewModel(SettingsStore& settings, LocationMemory& location,
                                                     const QUrl& webBaseURL, QObject* parent)
    : QObject(parent)
    , m_settings(settings)
    , m_picker(settings, location, webBaseURL, [this](const ListEntry& entry) { pin(entry); }) {
    m_rows.setTemplates(settings.settings().templates);
    connect(&m_settings, &SettingsStore::settingsChanged, this, [this] {
        const bool wasEmpty = isEmpty();
        m_rows.setTemplates(m_settings.settings().templates);
        if (wasEmpty != isEmpty()) {
            emit isEmptyChanged();
        }
    });
}

QString TemplateSettingsViewModel::editingName() const {
    return m_editing ? m_editing->name : QString();
}

QString TemplateSettingsViewModel::editingTaskName() const {
    return m_editing ? m_editing->taskName : QString();
}

QString TemplateSettingsViewModel::editingDescription() const {
    return m_editing ? m_editing->descriptionMarkdown : QString();
}

QString TemplateSettingsViewModel::editingListPath() const {
    return m_editing ? m_editing->listPath.value_or(QString()) : QString();
}

void TemplateSettingsViewModel::edit(int row) {
    if (row >= 0 && row < m_rows.templates().size()) {
        startEditing(m_rows.templates().at(row));
    }
}

void TemplateSettingsViewModel::create() {
    startEditing(TaskTemplate{});
}

void TemplateSettingsViewModel::startEditing(TaskTemplate edited) {
    m_picker.setSelectedListID(edited.listID.value_or(QString()));
    m_editing = std::move(edited);
    emit editingChanged();
    emit editingListChanged();
}

void TemplateSettingsViewModel::remove(int row) {
    if (row >= 0 && row < m_rows.templates().size()) {
        // A copy: removing changes the rows.
        const QUuid id = m_rows.templates().at(row).id;
        TemplateList::remove(m_settings, id);
    }
}

void TemplateSettingsViewModel::pin(const ListEntry& entry) {
    if (m_editing) {
        TemplateList::pin(*m_editing, entry);
        m_picker.setSelectedListID(entry.id());
        emit editingListChanged();
    }
}

void TemplateSettingsViewModel::clearList() {
    if (m_editing) {
        m_editing->listID.reset();
        m_editing->listPath.reset();
        m_picker.setSelectedListID(QString());
        emit editingListChanged();
    }
}

void TemplateSettingsViewModel::save(const QString& name, const QString& taskName, const QString& description) {
    if (!m_editing) {
        return;
    }
    TaskTemplate saved = *std::exchange(m_editing, std::nullopt);
    saved.name = name;
    saved.taskName = taskName;
    saved.descriptionMarkdown = description;
    emit editingChanged();
    TemplateList::replace(m_settings, saved);
}

void TemplateSettingsViewModel::cancel() {
    if (m_editing) {
        m_editing.reset();
        emit editingChanged();
    }
}
