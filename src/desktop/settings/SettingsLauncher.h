#pragma once

#include "app/AppState.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

// The popover's settings button: brings up the settings window on the tab it last showed.
class SettingsLauncher : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The app builds the popover's view models.")

public:
    explicit SettingsLauncher(AppState& app, QObject* parent = nullptr)
        : QObject(parent)
        , m_app(app) {}

    Q_INVOKABLE void open();

private:
    AppState& m_app;
};
