#include "core/submit/BulkSubmitter.h"

#include "core/api/Endpoints.h"
#include "core/submit/ExistingTasks.h"
#include "core/submit/FailureMessage.h"

#include <QCoreApplication>
#include <QUuid>

namespace {
// Why a line whose creation's answer was lost is not created now: its task is in the list, or the
// list couldn't be read, so the task may still exist; nothing when it is to be created.
std::optional<BulkFailure> notCreatedAgain(const ExistingTasks& existing, const QString& line) {
    if (const std::optional<QString>& error = existing.error()) {
        return BulkFailure{QUuid::createUuid(), line, CreateFailures::described(*error, CreateFailure::answerLost),
                           CreateFailure::answerLost};
    }
    if (existing.named(line)) {
        return BulkFailure{QUuid::createUuid(), line, CreateFailures::taskFoundMessage(), CreateFailure::taskFound};
    }
    return std::nullopt;
}
} // namespace

BulkSubmitter::BulkSubmitter(NorvaneClient client)
    : m_client(std::move(client)) {}

QCoro::Task<ExistingTasks> BulkSubmitter::lookUp(BulkSubmitJobPayload payload) const {
    if (payload.lostAnswerLines.isEmpty()) {
        co_return ExistingTasks();
    }
    QCoro::Task<ExistingTasks> fetching = ExistingTasks::fetch(m_client, payload.workspaceID, payload.listID);
    co_return co_await std::move(fetching);
}

QCoro::Task<BulkSubmitResult> BulkSubmitter::runBulkJob(BulkSubmitJobPayload payload, PhaseHandler onPhase) const {
    const QString nothingCreated = QCoreApplication::translate("BulkSubmitter", "Couldn't create tasks.");
    BulkSubmitResult result;
    const int total = static_cast<int>(payload.taskNames.size());
    if (total == 0) {
        result.error = nothingCreated;
        co_return result;
    }
    QCoro::Task<ExistingTasks> looking = lookUp(payload);
    const ExistingTasks existing = co_await std::move(looking);
    for (int index = 0; index < total; ++index) {
        if (onPhase) {
            onPhase(ForegroundSubmitPhases::BulkCreating{index + 1, total});
        }
        const QString& line = payload.taskNames.at(index);
        if (payload.lostAnswerLines.contains(line)) {
            if (std::optional<BulkFailure> failure = notCreatedAgain(existing, line)) {
                result.failures.append(std::move(*failure));
                continue;
            }
        }
        CreateTaskRequest body = payload.fieldTemplate;
        body.name = line;
        body.markdownDescription.reset();
        body.customFields.reset();
        try {
            QCoro::Task<CreatedTask> creating = Endpoints::createTask(m_client, payload.listID, body);
            result.created.append(co_await std::move(creating));
        } catch (...) {
            const CreateFailure failure = CreateFailures::of(std::current_exception());
            result.failures.append({QUuid::createUuid(), line,
                                    CreateFailures::described(FailureMessage::of(std::current_exception()), failure),
                                    failure});
        }
    }
    if (result.created.isEmpty()) {
        result.error = result.failures.isEmpty() ? nothingCreated : result.failures.first().message;
    }
    co_return result;
}
