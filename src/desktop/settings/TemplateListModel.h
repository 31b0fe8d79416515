#pragma once

#include "core/settings/TaskTemplate.h"

#include <QAbstractListModel>
#include <QList>
#include <QtQml/qqmlregistration.h>

// The stored templates as rows of name and pinned list. A new list of templates changes only the
// rows that differ, so that the other rows, and the keyboard on them, stay.
class TemplateListModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The settings window builds its view models.")

public:
    enum Role { IdRole = Qt::UserRole + 1, NameRole, ListPathRole };
    Q_ENUM(Role)

    explicit TemplateListModel(QObject* parent = nullptr);

    const QList<TaskTemplate>& templates() const { return m_templates; }
    void setTemplates(const QList<TaskTemplate>& templates);

    int rowCount(const QModelIndex& parent = {}) const override;
    // The id in text form, the name, and the pinned list's path (empty without one).
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    // Removes the rows whose template is gone, inserts the new ones and updates the changed ones;
    // false, with part of it done, when the templates kept have moved.
    bool applyInPlace(const QList<TaskTemplate>& templates);

    QList<TaskTemplate> m_templates;
};
