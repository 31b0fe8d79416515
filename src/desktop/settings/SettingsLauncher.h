#pragma once

#include "core/app/AppState.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

// The popover's way to the settings window: its settings button, and "Add Account…".
class SettingsLauncher : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The app builds the popover's view models.")

public:
    explicit SettingsLauncher(AppState& app, QObject* parent = nullptr)
        : QObject(parent)
        , m_app(app) {}

    // Brings up the window on the tab it last showed.
    Q_INVOKABLE void open() { openOn(std::nullopt); }
    void openOn(std::optional<SettingsTab> tab);

private:
    AppState& m_app;
};
