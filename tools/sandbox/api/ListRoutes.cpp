#include "sandbox/api/ReadVisible.h"
#include "sandbox/api/Visibility.h"

#include <QJsonArray>

void addListRoutes(ApiRoutes& routes, const ApiEnvironment& environment) {
    routes.add("GET", u"list/{}", [&environment](const ApiCall& call) {
        return readVisible(environment, call, Visibility::list, QStringLiteral("List"),
                           [](const StoreData&, const WireJson& wire, const TaskList& list) {
                               return ServiceResponse::json(wire.list(list, true));
                           });
    });

    // Every member of the list's workspace may be assigned.
    routes.add("GET", u"list/{}/member", [&environment](const ApiCall& call) {
        return readVisible(environment, call, Visibility::list, QStringLiteral("List"),
                           [](const StoreData& data, const WireJson& wire, const TaskList& list) {
                               QJsonArray members;
                               for (const qint64 memberID : data.workspaceOfList(list.id)->memberIDs) {
                                   if (const User* member = data.user(memberID)) {
                                       members.append(wire.user(*member));
                                   }
                               }
                               return ServiceResponse::json({{QStringLiteral("members"), members}});
                           });
    });

    routes.add("GET", u"list/{}/field", [&environment](const ApiCall& call) {
        return readVisible(environment, call, Visibility::list, QStringLiteral("List"),
                           [](const StoreData&, const WireJson& wire, const TaskList& list) {
                               QJsonArray fields;
                               for (const FieldDefinition& field : list.fields) {
                                   fields.append(wire.field(field));
                               }
                               return ServiceResponse::json({{QStringLiteral("fields"), fields}});
                           });
    });
}
