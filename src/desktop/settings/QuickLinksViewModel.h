#pragma once

#include "core/app/ServiceAddresses.h"
#include "core/settings/SettingsStore.h"
#include "desktop/settings/QuickLink.h"

#include <QList>
#include <QObject>
#include <QtQml/qqmlregistration.h>

// The "Quick Links" section: the bookmarks of the tray menu, each removable, and the fields of a new
// one. Each change is saved at once.
class QuickLinksViewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The settings window builds its view models.")
    // The links in stored order.
    Q_PROPERTY(QList<QuickLink> links READ links NOTIFY linksChanged)
    Q_PROPERTY(QString newName READ newName WRITE setNewName NOTIFY newLinkChanged)
    Q_PROPERTY(QString newURL READ newURL WRITE setNewURL NOTIFY newLinkChanged)
    Q_PROPERTY(bool canAdd READ canAdd NOTIFY newLinkChanged)
    Q_PROPERTY(QString addressPlaceholder READ addressPlaceholder CONSTANT)

public:
    QuickLinksViewModel(SettingsStore& settings, const ServiceAddresses& addresses, QObject* parent = nullptr);

    QList<QuickLink> links() const;
    const QString& newName() const { return m_newName; }
    void setNewName(const QString& name);
    const QString& newURL() const { return m_newURL; }
    void setNewURL(const QString& url);
    bool canAdd() const;
    // The service's web address and "…".
    const QString& addressPlaceholder() const { return m_addressPlaceholder; }

    // Adds the link when it can be added, and empties both fields.
    Q_INVOKABLE void add();
    Q_INVOKABLE void remove(const QString& id);

signals:
    void linksChanged();
    void newLinkChanged();

private:
    SettingsStore& m_settings;
    const QString m_addressPlaceholder;
    QList<Bookmark> m_shown;
    QString m_newName;
    QString m_newURL;
};
