#include "support/SubmitTesting.h"

#include "core/support/Overloaded.h"

namespace SubmitTesting {

QString describe(const ForegroundSubmitPhase& phase) {
    using namespace ForegroundSubmitPhases;
    return std::visit(
        Overloaded{
            [](const Uploading& p) { return QStringLiteral("uploading %1/%2").arg(p.current).arg(p.total); },
            [](const Done& p) { return QStringLiteral("done %1 failed").arg(p.failedUploads.size()); },
            [](const Failed& p) { return QStringLiteral("failed ") + p.message; },
            [](const BulkCreating& p) { return QStringLiteral("bulkCreating %1/%2").arg(p.current).arg(p.total); },
            [](const BulkDone& p) {
                return QStringLiteral("bulkDone %1 created %2 failed").arg(p.created.size()).arg(p.failures.size());
            },
            [](const Creating&) { return QStringLiteral("creating"); },
            [](const FoundExisting& p) { return QStringLiteral("found ") + p.task.name; },
        },
        phase);
}

} // namespace SubmitTesting
