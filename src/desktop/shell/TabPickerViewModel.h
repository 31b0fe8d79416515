#pragma once

#include "core/app/AppState.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

// The popover's tab picker, "Create" and "Tasks", bound to the central state's active tab.
class TabPickerViewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The app builds the popover's view models.")
    Q_PROPERTY(Tab activeTab READ activeTab WRITE setActiveTab NOTIFY activeTabChanged)

public:
    enum Tab { Create, Tasks };
    Q_ENUM(Tab)

    explicit TabPickerViewModel(AppState& app, QObject* parent = nullptr);

    Tab activeTab() const { return m_app.activeTab() == PopoverTab::myDay ? Tasks : Create; }
    void setActiveTab(Tab tab) { m_app.setActiveTab(tab == Tasks ? PopoverTab::myDay : PopoverTab::compose); }

signals:
    void activeTabChanged();

private:
    AppState& m_app;
};
