#pragma once

#include "core/settings/SettingsStore.h"
#include "core/settings/TaskTemplate.h"
#include "desktop/hierarchy/LocationPickerViewModel.h"
#include "desktop/settings/TemplateListModel.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>
#include <optional>

// The "Templates" tab: the stored templates, each to edit or delete, and the template being edited
// in the sheet, whose list is chosen through its own location picker. A new template is stored
// only when its sheet is saved. Each change is saved at once.
class TemplateSettingsViewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The settings window builds its view models.")
    Q_PROPERTY(TemplateListModel* rows READ rows CONSTANT)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY isEmptyChanged)
    Q_PROPERTY(LocationPickerViewModel* picker READ picker CONSTANT)
    // Whether the sheet is open, and what it starts with when it opens.
    Q_PROPERTY(bool isEditing READ isEditing NOTIFY editingChanged)
    Q_PROPERTY(QString editingName READ editingName NOTIFY editingChanged)
    Q_PROPERTY(QString editingTaskName READ editingTaskName NOTIFY editingChanged)
    Q_PROPERTY(QString editingDescription READ editingDescription NOTIFY editingChanged)
    // The pinned list's path; empty without one.
    Q_PROPERTY(QString editingListPath READ editingListPath NOTIFY editingListChanged)

public:
    // The stores must outlive this object.
    TemplateSettingsViewModel(SettingsStore& settings, LocationMemory& location, const QUrl& webBaseURL,
                              QObject* parent = nullptr);

    TemplateListModel& templates() { return m_rows; }
    TemplateListModel* rows() { return &m_rows; }
    bool isEmpty() const { return m_rows.rowCount() == 0; }
    LocationPickerViewModel* picker() { return &m_picker; }
    bool isEditing() const { return m_editing.has_value(); }
    QString editingName() const;
    QString editingTaskName() const;
    QString editingDescription() const;
    QString editingListPath() const;

    // Opens the sheet on the template of this row.
    Q_INVOKABLE void edit(int row);
    // Opens the sheet on a new template named "Template".
    Q_INVOKABLE void create();
    // Removes the template of this row and saves.
    Q_INVOKABLE void remove(int row);
    // Unpins the edited template's list.
    Q_INVOKABLE void clearList();
    // Stores the edited template with these texts and closes the sheet.
    Q_INVOKABLE void save(const QString& name, const QString& taskName, const QString& description);
    // Closes the sheet; a new template is dropped.
    Q_INVOKABLE void cancel();

signals:
    void isEmptyChanged();
    void editingChanged();
    void editingListChanged();

private:
    void pin(const ListEntry& entry);
    void startEditing(TaskTemplate edited);

    SettingsStore& m_settings;
    TemplateListModel m_rows;
    LocationPickerViewModel m_picker;
    std::optional<TaskTemplate> m_editing;
};
