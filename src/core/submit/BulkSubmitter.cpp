#include "submit/BulkSubmitter.h"

#include "api/Endpoints.h"
#include "submit/FailureMessage.h"

#include <QCoreApplication>
#include <QUuid>

BulkSubmitter::BulkSubmitter(NorvaneClient client)
    : m_client(std::move(client)) {}

QCoro::Task<BulkSubmitResult> BulkSubmitter::runBulkJob(BulkSubmitJobPayload payload, PhaseHandler onPhase) const {
    const QString nothingCreated = QCoreApplication::translate("BulkSubmitter", "Couldn't create tasks.");
    BulkSubmitResult result;
    const int total = static_cast<int>(payload.taskNames.size());
    if (total == 0) {
        result.error = nothingCreated;
        co_return result;
    }
    for (int index = 0; index < total; ++index) {
        if (onPhase) {
            onPhase(ForegroundSubmitPhases::BulkCreating{index + 1, total});
        }
        const QString& line = payload.taskNames.at(index);
        CreateTaskRequest body = payload.fieldTemplate;
        body.name = line;
        body.markdownDescription.reset();
        body.customFields.reset();
        try {
            QCoro::Task<CreatedTask> creating = Endpoints::createTask(m_client, payload.listID, body);
            result.created.append(co_await std::move(creating));
        } catch (...) {
            result.failures.append({QUuid::createUuid(), line, FailureMessage::of(std::current_exception())});
        }
    }
    if (result.created.isEmpty()) {
        result.error = result.failures.isEmpty() ? nothingCreated : result.failures.first().message;
    }
    co_return result;
}
