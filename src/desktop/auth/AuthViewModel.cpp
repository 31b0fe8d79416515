#include "auth/AuthViewModel.h"

#include "support/Overloaded.h"

AuthViewModel::AuthViewModel(AppState& app, QObject* parent)
    : QObject(parent)
    , m_app(app) {
    connect(&app, &AppState::authStateChanged, this, &AuthViewModel::changed);
}

AuthViewModel::Phase AuthViewModel::phase() const {
    return std::visit(Overloaded{[](const AuthState::SignedOut&) { return SignedOut; },
                                 [](const AuthState::Validating&) { return Validating; },
                                 [](const AuthState::SignedIn&) { return SignedIn; }},
                      m_app.authState().value);
}

QString AuthViewModel::userDisplayName() const {
    const NVUser* user = m_app.authState().user();
    return user ? user->displayName() : QString();
}
