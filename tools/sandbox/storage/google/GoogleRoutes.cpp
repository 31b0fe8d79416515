#include "sandbox/storage/google/GoogleRoutes.h"

#include <QJsonDocument>

void addGoogleRoutes(RouteTable<RouteCall>& web, RouteTable<RouteCall>& admin, const QString& webBase) {
    const auto google = std::make_shared<LockedGoogleSandbox>();
    addGoogleOAuthRoutes(web, google);
    addDriveRoutes(web, google, webBase);

    admin.add("GET", u"google", [google](const RouteCall&) {
        return ServiceResponse::json(google->with([](const GoogleSandbox& state) { return state.toJson(); }));
    });
    admin.add("POST", u"google", [google](const RouteCall& call) {
        const QJsonDocument posted = QJsonDocument::fromJson(call.request.body);
        return google->with([&posted](GoogleSandbox& state) {
            const std::optional<QString> problem =
                posted.isObject() ? state.configure(posted.object())
                                  : std::optional(QStringLiteral("The body must be a JSON object"));
            return problem ? ServiceResponse::json({{QStringLiteral("error"), *problem}}, 400)
                           : ServiceResponse::json(state.toJson());
        });
    });
    admin.add("DELETE", u"google", [google](const RouteCall&) {
        return ServiceResponse::json(google->with([](GoogleSandbox& state) {
            state = GoogleSandbox();
            return state.toJson();
        }));
    });
    admin.add("POST", u"google/revoke", [google](const RouteCall&) {
        return ServiceResponse::json(google->with([](GoogleSandbox& state) {
            state.revokeGrants();
            return state.toJson();
        }));
    });
}
