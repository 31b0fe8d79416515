#pragma once

#include "core/api/NorvaneClient.h"
#include "core/auth/StaticTokenAuth.h"
#include "support/SandboxProcess.h"

#include <QJsonObject>
#include <QNetworkAccessManager>
#include <cstdio>
#include <optional>

// norvane-sandbox started on a seed of a benchmark's own, and a client signed in with one of its
// tokens.
struct SandboxClient {
    SandboxProcess sandbox;
    std::optional<StaticTokenAuth> auth;
    QNetworkAccessManager session;
    std::optional<NorvaneClient> client;

    // False, with the reason on standard error, when the sandbox does not start.
    bool start(const QJsonObject& seed, const QString& token) {
        if (!sandbox.startSeeded(seed)) {
            std::fprintf(stderr, "sandbox: %s\n", qPrintable(sandbox.errorString()));
            return false;
        }
        auth.emplace(token);
        client.emplace(*auth, &session, nullptr, sandbox.apiUrl(u""));
        return true;
    }
};
