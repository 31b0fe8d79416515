#pragma once

#include "core/app/AppState.h"

#include <QObject>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

// The composer's template menu: the templates of the settings by name, applying one to the draft,
// and keeping the draft as a new one.
class TemplateMenuViewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The app builds the popover's view models.")
    // In the order of the settings; names from the settings file, shown as plain text.
    Q_PROPERTY(QStringList names READ names NOTIFY namesChanged)

public:
    explicit TemplateMenuViewModel(AppState& app, QObject* parent = nullptr);

    const QStringList& names() const { return m_names; }

    // Applies the template at `index` of the list; the composer stays usable while its list loads.
    Q_INVOKABLE void apply(int index);
    // Keeps the draft as a new template of that name, pinned to the current list.
    Q_INVOKABLE void saveCurrent(const QString& name);

signals:
    void namesChanged();

private:
    void followSettings();

    AppState& m_app;
    QStringList m_names;
};
