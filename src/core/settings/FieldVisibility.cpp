#include "core/settings/FieldVisibility.h"

#include <QCoreApplication>

namespace FieldVisibility {

const QList<DefaultField>& defaultFieldsInOrder() {
    static const QList<DefaultField> fields{DefaultField::status, DefaultField::assignee, DefaultField::priority,
                                            DefaultField::dueDate, DefaultField::tags};
    return fields;
}

QString label(DefaultField field) {
    switch (field) {
    case DefaultField::status:
        return QCoreApplication::translate("FieldVisibility", "Status");
    case DefaultField::assignee:
        return QCoreApplication::translate("FieldVisibility", "Assignee");
    case DefaultField::dueDate:
        return QCoreApplication::translate("FieldVisibility", "Due date");
    case DefaultField::priority:
        return QCoreApplication::translate("FieldVisibility", "Priority");
    case DefaultField::tags:
        return QCoreApplication::translate("FieldVisibility", "Tags");
    }
    return {};
}

bool isVisible(const AppSettings& settings, DefaultField field) {
    return settings.visibleDefaultFields.contains(field);
}

void setVisible(SettingsStore& settings, DefaultField field, bool visible) {
    settings.modify([&](AppSettings& changed) {
        if (visible) {
            changed.visibleDefaultFields.insert(field);
        } else {
            changed.visibleDefaultFields.remove(field);
        }
    });
}

bool isCustomFieldVisible(const AppSettings& settings, const QString& fieldID) {
    return !settings.hiddenCustomFieldIDs.contains(fieldID);
}

void setCustomFieldVisible(SettingsStore& settings, const QString& fieldID, bool visible) {
    settings.modify([&](AppSettings& changed) {
        if (visible) {
            changed.hiddenCustomFieldIDs.remove(fieldID);
        } else {
            changed.hiddenCustomFieldIDs.insert(fieldID);
        }
    });
}

} // namespace FieldVisibility
