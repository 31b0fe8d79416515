#include "desktop/settings/FieldVisibilityViewModel.h"

#include "core/settings/FieldVisibility.h"

#include <QUrl>

FieldVisibilityViewModel::FieldVisibilityViewModel(SettingsStore& settings, LocationMemory& location,
                                                   ServiceAddresses addresses, LinkActions& links, QObject* parent)
    : QObject(parent)
    , m_settings(settings)
    , m_location(location)
    , m_addresses(std::move(addresses))
    , m_links(links)
    , m_defaultFields(
          [&settings](const QString& key) {
              const std::optional<DefaultField> field = fromRawValue<DefaultField>(key);
              return field && FieldVisibility::isVisible(settings.settings(), *field);
          },
          [&settings](const QString& key, bool on) {
              if (const std::optional<DefaultField> field = fromRawValue<DefaultField>(key)) {
                  FieldVisibility::setVisible(settings, *field, on);
              }
          })
    , m_customFields(
          [&settings](const QString& id) { return FieldVisibility::isCustomFieldVisible(settings.settings(), id); },
          [&settings](const QString& id, bool on) { FieldVisibility::setCustomFieldVisible(settings, id, on); }) {
    QList<FieldToggleModel::Row> rows;
    for (const DefaultField field : FieldVisibility::defaultFieldsInOrder()) {
        rows.append({rawValue(field), FieldVisibility::label(field)});
    }
    m_defaultFields.setRows(std::move(rows));
    connect(&m_settings, &SettingsStore::settingsChanged, this, [this] {
        m_defaultFields.refreshChecked();
        m_customFields.refreshChecked();
    });
    connect(&m_location, &LocationMemory::currentContextChanged, this, &FieldVisibilityViewModel::followContext);
    followContext();
}

QString FieldVisibilityViewModel::listName() const {
    return m_context ? m_context->entry().list.name : QString();
}

void FieldVisibilityViewModel::openList() {
    if (m_context) {
        const ListEntry& entry = m_context->entry();
        m_links.openURL(QUrl(m_addresses.listURL(entry.workspaceID, entry.id())));
    }
}

void FieldVisibilityViewModel::followContext() {
    if (m_context) {
        disconnect(m_context, nullptr, this, nullptr);
    }
    m_context = m_location.currentContext();
    if (m_context) {
        connect(m_context, &ListContext::fieldsChanged, this, &FieldVisibilityViewModel::loadCustomFields);
    }
    loadCustomFields();
    emit listChanged();
}

void FieldVisibilityViewModel::loadCustomFields() {
    QList<FieldToggleModel::Row> rows;
    if (m_context) {
        for (const CustomField& field : m_context->fields()) {
            rows.append({field.id, field.name});
        }
    }
    m_customFields.setRows(std::move(rows));
    emit customFieldCountChanged();
}
