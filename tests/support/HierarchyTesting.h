#pragma once

#include "core/api/NorvaneClient.h"
#include "core/auth/StaticTokenAuth.h"
#include "core/hierarchy/ListEntry.h"
#include "support/FakeService.h"
#include "support/RunTask.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

// A client on a FakeService, and JSON bodies of the tree in the service's shape.
namespace HierarchyTesting {

struct FakeClient {
    FakeService service;
    StaticTokenAuth auth{QStringLiteral("pk_test")};
    NorvaneClient client{auth, &service, nullptr, FakeService::baseURL()};
};

// `{"<key>": [<items joined>]}`
inline QByteArray wrapped(const char* key, const QStringList& items) {
    return QStringLiteral(R"({"%1":[%2]})").arg(QString::fromLatin1(key), items.join(u',')).toUtf8();
}

// A record with id and name, and whatever else `extra` adds (`"archived":true`).
inline QString record(const QString& id, const QString& extra = {}) {
    return QStringLiteral(R"({"id":"%1","name":"Name %1"%2})").arg(id, extra.isEmpty() ? QString() : u',' + extra);
}

inline QString status(const QString& name) {
    return QStringLiteral(R"({"status":"%1","color":"#000000","type":"open"})").arg(name);
}

// List l1 of space s1 in workspace w, outside any folder, with the space's statuses given.
inline ListEntry entryWithSpaceStatuses(const QList<NVStatus>& statuses = {}) {
    return {QStringLiteral("w"),
            QStringLiteral("s1"),
            QStringLiteral("Space"),
            std::nullopt,
            std::nullopt,
            NVList{QStringLiteral("l1"), QStringLiteral("List"), std::nullopt, std::nullopt},
            statuses};
}

} // namespace HierarchyTesting
