#pragma once

#include "core/app/ServiceAddresses.h"
#include "core/hierarchy/LocationMemory.h"
#include "core/platform/LinkActions.h"
#include "core/settings/SettingsStore.h"
#include "desktop/settings/FieldToggleModel.h"

#include <QObject>
#include <QPointer>
#include <QtQml/qqmlregistration.h>

// The "Fields" tab: a switch for each built-in field chip of the composer, and one for each custom
// field of the composer's list. Each change is saved at once.
class FieldVisibilityViewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The settings window builds its view models.")
    Q_PROPERTY(FieldToggleModel* defaultFields READ defaultFields CONSTANT)
    Q_PROPERTY(FieldToggleModel* customFields READ customFields CONSTANT)
    Q_PROPERTY(bool hasList READ hasList NOTIFY listChanged)
    Q_PROPERTY(QString listName READ listName NOTIFY listChanged)
    Q_PROPERTY(int customFieldCount READ customFieldCount NOTIFY customFieldCountChanged)

public:
    FieldVisibilityViewModel(SettingsStore& settings, LocationMemory& location, ServiceAddresses addresses,
                             LinkActions& links, QObject* parent = nullptr);

    FieldToggleModel* defaultFields() { return &m_defaultFields; }
    FieldToggleModel* customFields() { return &m_customFields; }
    bool hasList() const { return !m_context.isNull(); }
    QString listName() const;
    int customFieldCount() const { return m_customFields.rowCount(); }

    // Opens the list's page on the web, where its custom fields are edited.
    Q_INVOKABLE void openList();

signals:
    void listChanged();
    void customFieldCountChanged();

private:
    void followContext();
    void loadCustomFields();

    SettingsStore& m_settings;
    LocationMemory& m_location;
    const ServiceAddresses m_addresses;
    LinkActions& m_links;
    FieldToggleModel m_defaultFields;
    FieldToggleModel m_customFields;
    QPointer<ListContext> m_context;
};
