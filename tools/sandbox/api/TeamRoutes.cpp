#include "sandbox/api/ReadVisible.h"
#include "sandbox/api/TeamTaskQuery.h"
#include "sandbox/api/Visibility.h"

#include <QJsonArray>

void addTeamRoutes(ApiRoutes& routes, const ApiEnvironment& environment) {
    routes.add("GET", u"team", [&environment](const ApiCall& call) {
        return environment.store.read([&](const StoreData& data) {
            const WireJson wire(data, environment.webBase);
            QJsonArray teams;
            for (const Workspace& workspace : data.workspaces) {
                if (data.isMember(&workspace, call.user.id)) {
                    teams.append(wire.workspace(workspace));
                }
            }
            return ServiceResponse::json({{QStringLiteral("teams"), teams}});
        });
    });

    routes.add("GET", u"team/{}/space", [&environment](const ApiCall& call) {
        return readVisible(environment, call, Visibility::workspace, QStringLiteral("Team"),
                           [](const StoreData& data, const WireJson& wire, const Workspace& workspace) {
                               QJsonArray spaces;
                               for (const Space& space : data.spaces) {
                                   if (space.workspaceID == workspace.id) {
                                       spaces.append(wire.space(space));
                                   }
                               }
                               return ServiceResponse::json({{QStringLiteral("spaces"), spaces}});
                           });
    });

    routes.add("GET", u"team/{}/task", [&environment](const ApiCall& call) {
        auto query = TeamTaskQuery::parse(call.request.query);
        if (const ServiceResponse* invalid = std::get_if<ServiceResponse>(&query)) {
            return *invalid;
        }
        return readVisible(environment, call, Visibility::workspace, QStringLiteral("Team"),
                           [&](const StoreData& data, const WireJson& wire, const Workspace& workspace) {
                               const TeamTaskQuery::Page page = std::get<TeamTaskQuery>(query).run(data, workspace);
                               QJsonArray tasks;
                               for (const Task* task : page.tasks) {
                                   tasks.append(wire.task(*task));
                               }
                               return ServiceResponse::json(
                                   {{QStringLiteral("tasks"), tasks}, {QStringLiteral("last_page"), page.lastPage}});
                           });
    });
}
