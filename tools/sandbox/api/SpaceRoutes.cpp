#include "sandbox/api/ReadVisible.h"
#include "sandbox/api/Visibility.h"

#include <QJsonArray>

void addSpaceRoutes(ApiRoutes& routes, const ApiEnvironment& environment) {
    routes.add("GET", u"space/{}/folder", [&environment](const ApiCall& call) {
        return readVisible(environment, call, Visibility::space, QStringLiteral("Space"),
                           [](const StoreData& data, const WireJson& wire, const Space& space) {
                               QJsonArray folders;
                               for (const Folder& folder : data.folders) {
                                   if (folder.spaceID == space.id) {
                                       folders.append(wire.folder(folder));
                                   }
                               }
                               return ServiceResponse::json({{QStringLiteral("folders"), folders}});
                           });
    });

    routes.add("GET", u"space/{}/list", [&environment](const ApiCall& call) {
        return readVisible(environment, call, Visibility::space, QStringLiteral("Space"),
                           [](const StoreData& data, const WireJson& wire, const Space& space) {
                               QJsonArray lists;
                               for (const TaskList& list : data.lists) {
                                   if (list.spaceID == space.id && !list.folderID) {
                                       lists.append(wire.list(list, false));
                                   }
                               }
                               return ServiceResponse::json({{QStringLiteral("lists"), lists}});
                           });
    });

    routes.add("GET", u"space/{}/tag", [&environment](const ApiCall& call) {
        return readVisible(environment, call, Visibility::space, QStringLiteral("Space"),
                           [](const StoreData&, const WireJson& wire, const Space& space) {
                               QJsonArray tags;
                               for (const Tag& tag : space.tags) {
                                   tags.append(wire.tag(tag));
                               }
                               return ServiceResponse::json({{QStringLiteral("tags"), tags}});
                           });
    });
}
