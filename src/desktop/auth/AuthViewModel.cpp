#include "desktop/auth/AuthViewModel.h"

#include "core/support/Overloaded.h"

AuthViewModel::AuthViewModel(AuthController& auth, QObject* parent)
    : QObject(parent)
    , m_auth(auth) {
    connect(&auth, &AuthController::authStateChanged, this, &AuthViewModel::changed);
}

AuthViewModel::Phase AuthViewModel::phase() const {
    return std::visit(Overloaded{[](const AuthState::SignedOut&) { return SignedOut; },
                                 [](const AuthState::Validating&) { return Validating; },
                                 [](const AuthState::SignedIn&) { return SignedIn; }},
                      m_auth.authState().value);
}

QString AuthViewModel::userDisplayName() const {
    const NVUser* user = m_auth.authState().user();
    return user ? user->displayName() : QString();
}
