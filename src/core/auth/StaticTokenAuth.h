#pragma once

#include "core/api/AuthProvider.h"

// One fixed token, for the probe of a sign-in before the token is known to be good.
class StaticTokenAuth : public AuthProvider {
public:
    explicit StaticTokenAuth(QString token)
        : m_token(std::move(token)) {}

    std::optional<QString> authorizationValue() const override { return m_token; }

private:
    const QString m_token;
};
