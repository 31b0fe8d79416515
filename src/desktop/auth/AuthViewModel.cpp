#include "auth/AuthViewModel.h"

AuthViewModel::AuthViewModel(AppState& app, QObject* parent)
    : QObject(parent)
    , m_app(app) {
    connect(&app, &AppState::authStateChanged, this, &AuthViewModel::changed);
}

QString AuthViewModel::phase() const {
    const AuthState& state = m_app.authState();
    if (state.is<AuthState::Validating>()) {
        return QStringLiteral("validating");
    }
    return state.is<AuthState::SignedIn>() ? QStringLiteral("signedIn") : QStringLiteral("signedOut");
}

QString AuthViewModel::userDisplayName() const {
    const NVUser* user = m_app.authState().user();
    return user ? user->displayName() : QString();
}
