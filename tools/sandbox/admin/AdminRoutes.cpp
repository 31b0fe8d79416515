#include "sandbox/admin/AdminRoutes.h"

#include "sandbox/service/ApiErrors.h"
#include "sandbox/service/JsonBody.h"

#include <QJsonDocument>

namespace {

ServiceResponse invalid(const QString& problem) {
    return ApiErrors::error(400, problem, QStringLiteral("SANDBOX_001"));
}

// The posted JSON object, or the answer for a body that is none.
std::variant<QJsonObject, ServiceResponse> postedObject(const ServiceRequest& request) {
    const QJsonDocument document = QJsonDocument::fromJson(request.body);
    if (!document.isObject()) {
        return invalid(QStringLiteral("The body must be a JSON object"));
    }
    return document.object();
}

ServiceResponse rules(const QJsonArray& list) {
    return ServiceResponse::json({{QStringLiteral("rules"), list}});
}

} // namespace

void addAdminRoutes(AdminRoutes& routes, const AdminEnvironment& environment) {
    routes.add("GET", u"faults", [&environment](const RouteCall&) { return rules(environment.faults.toJson()); });
    routes.add("POST", u"faults", [&environment](const RouteCall& call) {
        const auto posted = postedObject(call.request);
        if (const ServiceResponse* answer = std::get_if<ServiceResponse>(&posted)) {
            return *answer;
        }
        const auto added = environment.faults.add(std::get<QJsonObject>(posted));
        if (const QString* problem = std::get_if<QString>(&added)) {
            return invalid(*problem);
        }
        return rules(std::get<QJsonArray>(added));
    });
    routes.add("DELETE", u"faults", [&environment](const RouteCall&) {
        environment.faults.clear();
        return rules({});
    });
    routes.add("POST", u"faults/release", [&environment](const RouteCall&) {
        environment.faults.release();
        return rules(environment.faults.toJson());
    });

    routes.add("GET", u"requests", [&environment](const RouteCall& call) {
        const QStringList since = call.request.queryValues(u"since");
        return ServiceResponse::json(
            {{QStringLiteral("requests"), environment.log.entries(since.value(0, QStringLiteral("0")).toLongLong())}});
    });
    routes.add("DELETE", u"requests", [&environment](const RouteCall&) {
        environment.log.clear();
        return ServiceResponse::json({});
    });

    routes.add("POST", u"reset", [&environment](const RouteCall&) {
        environment.faults.clear();
        environment.log.clear();
        environment.config.reset();
        environment.resetData();
        return ServiceResponse::json({});
    });

    routes.add("GET", u"config",
               [&environment](const RouteCall&) { return ServiceResponse::json(environment.config.toJson()); });
    routes.add("POST", u"config", [&environment](const RouteCall& call) {
        const auto posted = postedObject(call.request);
        if (const ServiceResponse* answer = std::get_if<ServiceResponse>(&posted)) {
            return *answer;
        }
        JsonBody body(std::get<QJsonObject>(posted));
        const std::optional<qint64> quota = body.integer(QStringLiteral("storageQuotaBytes"));
        if (!body.problem().isEmpty() || (quota && *quota < 0)) {
            return invalid(QStringLiteral("storageQuotaBytes must be a number of bytes or null"));
        }
        if (body.isPresent(QStringLiteral("storageQuotaBytes")) || body.isNull(QStringLiteral("storageQuotaBytes"))) {
            environment.config.setStorageQuota(quota);
        }
        return ServiceResponse::json(environment.config.toJson());
    });
}
