#include "desktop/compose/TemplateMenuViewModel.h"

#include "core/async/StartTask.h"

TemplateMenuViewModel::TemplateMenuViewModel(AppState& app, QObject* parent)
    : QObject(parent)
    , m_app(app) {
    followSettings();
    connect(&app.settings(), &SettingsStore::settingsChanged, this, &TemplateMenuViewModel::followSettings);
}

void TemplateMenuViewModel::followSettings() {
    QStringList names;
    for (const TaskTemplate& stored : m_app.settings().settings().templates) {
        names.append(stored.name);
    }
    if (m_names != names) {
        m_names = std::move(names);
        emit namesChanged();
    }
}

void TemplateMenuViewModel::apply(int index) {
    const QList<TaskTemplate>& templates = m_app.settings().settings().templates;
    if (index >= 0 && index < templates.size()) {
        startTask(this, m_app.applyTemplate(templates.at(index)));
    }
}

void TemplateMenuViewModel::saveCurrent(const QString& name) {
    m_app.saveCurrentAsTemplate(name);
}
