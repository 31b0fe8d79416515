#pragma once

#include "sandbox/admin/AdminRoutes.h"
#include "sandbox/api/ApiRoutes.h"
#include "sandbox/web/WebRoutes.h"

#include <QJsonObject>

#include <atomic>
#include <memory>
#include <variant>

// What the service is started with.
struct SandboxSettings {
    QString webBase;
    QString dataFolder;
    bool admin = false;
    std::optional<qint64> storageQuota;
    // Makes the seed document; called again for /_sandbox/reset, so demo dates follow the clock.
    std::function<QJsonObject()> seed;
};

// The whole service apart from sockets: it takes a parsed request and gives its answer. The REST
// API lives under /api/v2, the test endpoints under /_sandbox, the web pages and the stand-ins of
// storage services (Cloudinary) everywhere else.
// Every request outside /_sandbox is logged and may be caught by a fault rule first.
class SandboxService {
public:
    // The service, or what is wrong with its seed.
    static std::variant<std::unique_ptr<SandboxService>, QString> create(SandboxSettings settings);

    // Whether the request's body is to be streamed to the service rather than read into memory.
    bool streamsBody(const ServiceRequest& request) const;
    ServiceResponse handle(const ServiceRequest& request);
    // The users that can sign in, for the start-up message.
    std::vector<User> tokenUsers() const;

private:
    SandboxService(SandboxSettings settings, StoreData data);

    // The fault rule's answer, if one catches the request, else route's.
    ServiceResponse answer(const ServiceRequest& request, std::optional<int>& faultID);
    // The answer of the API, the web pages or a 404, without fault rules.
    ServiceResponse route(const ServiceRequest& request);
    ServiceResponse answerAPI(const ServiceRequest& request);
    ServiceResponse answerAdmin(const ServiceRequest& request);
    void resetData();

    SandboxSettings m_settings;
    SandboxStore m_store;
    SandboxConfig m_config;
    FaultRules m_faults;
    RequestLog m_log;
    ApiEnvironment m_apiEnvironment;
    AdminEnvironment m_adminEnvironment;
    ApiRoutes m_api;
    WebRoutes m_web;
    AdminRoutes m_admin;
    std::atomic<int> m_inFlight{0};
};
