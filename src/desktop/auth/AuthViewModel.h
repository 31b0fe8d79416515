#pragma once

#include "app/AppState.h"

#include <QObject>

// What the popover shows of sign-in: which page, and whose name.
class AuthViewModel : public QObject {
    Q_OBJECT
    // "signedOut", "validating" or "signedIn".
    Q_PROPERTY(QString phase READ phase NOTIFY changed)
    Q_PROPERTY(QString userDisplayName READ userDisplayName NOTIFY changed)

public:
    explicit AuthViewModel(AppState& app, QObject* parent = nullptr);

    QString phase() const;
    QString userDisplayName() const;

signals:
    void changed();

private:
    AppState& m_app;
};
