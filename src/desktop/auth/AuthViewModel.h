#pragma once

#include "core/auth/AuthController.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

// What the popover shows of sign-in: which page, and whose name.
class AuthViewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The app builds the popover's view models.")
    Q_PROPERTY(Phase phase READ phase NOTIFY changed)
    Q_PROPERTY(QString userDisplayName READ userDisplayName NOTIFY changed)

public:
    // The sign-in state, as far as the choice of page goes.
    enum Phase { SignedOut, Validating, SignedIn };
    Q_ENUM(Phase)

    explicit AuthViewModel(AuthController& auth, QObject* parent = nullptr);

    Phase phase() const;
    QString userDisplayName() const;

signals:
    void changed();

private:
    AuthController& m_auth;
};
