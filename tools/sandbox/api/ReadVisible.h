#pragma once

#include "sandbox/api/ApiRoutes.h"
#include "sandbox/api/WireJson.h"
#include "sandbox/service/ApiErrors.h"

// Answers a request about the record named by the first id of its path: `answer` runs under the
// store's read lock when the user may see the record, else the answer is 404 naming `what`.
template <typename Find, typename Answer>
ServiceResponse readVisible(const ApiEnvironment& environment, const ApiCall& call, Find find, const QString& what,
                            Answer answer) {
    return environment.store.read([&](const StoreData& data) {
        const auto* record = find(data, call.param(0), call.user);
        return record ? answer(data, WireJson(data, environment.webBase), *record) : ApiErrors::notFound(what);
    });
}
