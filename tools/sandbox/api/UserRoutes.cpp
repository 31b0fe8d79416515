#include "sandbox/api/ApiRoutes.h"
#include "sandbox/api/WireJson.h"

void addUserRoutes(ApiRoutes& routes, const ApiEnvironment& environment) {
    routes.add("GET", u"user", [&environment](const ApiCall& call) {
        return environment.store.read([&](const StoreData& data) {
            return ServiceResponse::json(
                {{QStringLiteral("user"), WireJson(data, environment.webBase).user(call.user)}});
        });
    });
}
