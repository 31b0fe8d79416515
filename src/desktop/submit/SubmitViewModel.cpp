#include "desktop/submit/SubmitViewModel.h"

#include "core/compose/BranchNameFormatter.h"
#include "core/submit/TaskCounts.h"
#include "core/support/Overloaded.h"

#include <QUrl>

namespace Phases = ForegroundSubmitPhases;

SubmitViewModel::SubmitViewModel(SubmitController& submit, const AuthController& auth, const SettingsStore& settings,
                                 LinkActions& links, QObject* parent)
    : QObject(parent)
    , m_submit(submit)
    , m_auth(auth)
    , m_settings(settings)
    , m_links(links) {
    connect(&m_submit, &SubmitController::foregroundSubmitChanged, this, &SubmitViewModel::changed);
    connect(&m_submit, &SubmitController::lastBackgroundJobResultChanged, this, &SubmitViewModel::bannerChanged);
}

const ForegroundSubmitPhase* SubmitViewModel::phase() const {
    const std::optional<ForegroundSubmitSession>& session = m_submit.foregroundSubmit();
    return session ? &session->phase : nullptr;
}

SubmitViewModel::Page SubmitViewModel::page() const {
    const ForegroundSubmitPhase* current = phase();
    if (!current) {
        return Composer;
    }
    return std::visit(
        Overloaded{[](const Phases::Done&) { return Done; }, [](const Phases::BulkDone&) { return BulkDone; },
                   [](const Phases::Failed&) { return Failed; }, [](const Phases::FoundExisting&) { return Failed; },
                   [](const auto&) { return Progress; }},
        *current);
}

QString SubmitViewModel::progressText() const {
    const ForegroundSubmitPhase* current = phase();
    if (!current) {
        return {};
    }
    const QString& name = m_submit.foregroundSubmit()->taskName;
    return std::visit(
        Overloaded{[&](const Phases::Creating&) { return tr("Creating %1…").arg(name); },
                   [](const Phases::Uploading& uploading) {
                       return tr("Uploading attachment %1 of %2…").arg(uploading.current).arg(uploading.total);
                   },
                   [](const Phases::BulkCreating& creating) {
                       return tr("Creating task %1 of %2…").arg(creating.current).arg(creating.total);
                   },
                   [](const auto&) { return QString(); }},
        *current);
}

const CreatedTask* SubmitViewModel::shownTask() const {
    if (const auto* done = phaseAs<Phases::Done>()) {
        return &done->task;
    }
    const auto* found = phaseAs<Phases::FoundExisting>();
    return found ? &found->task : nullptr;
}

QString SubmitViewModel::doneTitle() const {
    const auto* done = phaseAs<Phases::Done>();
    if (!done) {
        return {};
    }
    const auto failures = static_cast<int>(done->failedUploads.size());
    return failures == 0 ? tr("Task created") : tr("%n attachments failed to upload", nullptr, failures);
}

bool SubmitViewModel::hasFailedUploads() const {
    const auto* done = phaseAs<Phases::Done>();
    return done && !done->failedUploads.isEmpty();
}

QStringList SubmitViewModel::failedUploadTexts() const {
    QStringList texts;
    if (const auto* done = phaseAs<Phases::Done>()) {
        for (const AttachmentUploadFailure& failure : done->failedUploads) {
            texts.append(failure.attachment.filename + QStringLiteral(": ") + failure.message);
        }
    }
    return texts;
}

QString SubmitViewModel::taskName() const {
    const CreatedTask* task = shownTask();
    return task ? task->name : QString();
}

bool SubmitViewModel::hasTaskLink() const {
    const CreatedTask* task = shownTask();
    return task && task->url && !task->url->isEmpty();
}

QString SubmitViewModel::bulkTitle() const {
    const auto* done = phaseAs<Phases::BulkDone>();
    return done ? TaskCounts::created(done->created.size()) : QString();
}

QString SubmitViewModel::bulkFailureTitle() const {
    const auto* done = phaseAs<Phases::BulkDone>();
    return done && !done->failures.isEmpty() ? TaskCounts::failed(done->failures.size()) : QString();
}

QStringList SubmitViewModel::createdTaskNames() const {
    QStringList names;
    if (const auto* done = phaseAs<Phases::BulkDone>()) {
        for (const CreatedTask& task : done->created) {
            names.append(task.name);
        }
    }
    return names;
}

QStringList SubmitViewModel::bulkFailureTexts() const {
    QStringList texts;
    if (const auto* done = phaseAs<Phases::BulkDone>()) {
        for (const BulkFailure& failure : done->failures) {
            texts.append(failure.line + QStringLiteral(": ") + failure.message);
        }
    }
    return texts;
}

QString SubmitViewModel::failureTitle() const {
    return foundExisting() ? tr("Task may already exist") : tr("Couldn't create task");
}

QString SubmitViewModel::failureSymbol() const {
    const auto* failed = phaseAs<Phases::Failed>();
    if (foundExisting() || (failed && failed->failure != CreateFailure::notCreated)) {
        return QStringLiteral("exclamationmark.triangle.fill");
    }
    return QStringLiteral("xmark.octagon.fill");
}

QString SubmitViewModel::failureMessage() const {
    if (const auto* found = phaseAs<Phases::FoundExisting>()) {
        return tr("An open task named “%1” is already in this list. It was probably created before "
                  "its answer was lost.")
            .arg(found->task.name);
    }
    const auto* failed = phaseAs<Phases::Failed>();
    return failed ? failed->message : QString();
}

std::optional<QUuid> SubmitViewModel::retryJobID() const {
    const ForegroundSubmitPhase* current = phase();
    if (!current) {
        return std::nullopt;
    }
    return std::visit(Overloaded{[](const Phases::Done& done) { return done.retryJobID; },
                                 [](const Phases::BulkDone& done) { return done.retryJobID; },
                                 [](const Phases::Failed& failed) { return failed.retryJobID; },
                                 [](const auto&) { return std::optional<QUuid>(); }},
                      *current);
}

bool SubmitViewModel::canRetry() const {
    return retryJobID().has_value();
}

void SubmitViewModel::retry() {
    if (const std::optional<QUuid> id = retryJobID()) {
        m_submit.retryForegroundSubmit(*id);
    }
}

void SubmitViewModel::createAnyway() {
    if (const auto* found = phaseAs<Phases::FoundExisting>()) {
        m_submit.retryForegroundSubmit(found->retryJobID);
    }
}

void SubmitViewModel::openInNorvane() {
    if (hasTaskLink()) {
        m_links.openURL(QUrl(*shownTask()->url));
    }
    m_submit.leaveSubmitResult();
}

void SubmitViewModel::copyLink() {
    if (hasTaskLink()) {
        m_links.copyText(*shownTask()->url);
    }
}

void SubmitViewModel::copyBranchName() {
    const CreatedTask* task = shownTask();
    if (!task) {
        return;
    }
    const NVUser* user = m_auth.authState().user();
    m_links.copyText(BranchNameFormatter::branchName(task->id, task->name, task->customTaskID,
                                                     user ? user->username : std::nullopt,
                                                     m_settings.settings().branchNameFormat));
}

void SubmitViewModel::copyLinkOf(int index) {
    const auto* done = phaseAs<Phases::BulkDone>();
    if (done && index >= 0 && index < done->created.size() && done->created.at(index).url) {
        m_links.copyText(*done->created.at(index).url);
    }
}

void SubmitViewModel::copyAllLinks() {
    const auto* done = phaseAs<Phases::BulkDone>();
    if (!done) {
        return;
    }
    QStringList links;
    for (const CreatedTask& task : done->created) {
        if (task.url) {
            links.append(*task.url);
        }
    }
    m_links.copyText(links.join(u'\n'));
}

QString SubmitViewModel::bannerTitle() const {
    const std::optional<BackgroundJobResult>& result = m_submit.lastBackgroundJobResult();
    if (!result) {
        return {};
    }
    return std::visit(
        Overloaded{[](const BackgroundJobResult::Success& success) { return success.taskName; },
                   [](const BackgroundJobResult::UploadPartialFailure& partial) { return partial.taskName; },
                   [](const BackgroundJobResult::CreateFailed& failed) { return failed.taskName; },
                   [](const BackgroundJobResult::BulkSuccess& bulk) { return TaskCounts::created(bulk.createdCount); },
                   [](const BackgroundJobResult::BulkPartial& bulk) { return TaskCounts::created(bulk.createdCount); }},
        result->outcome);
}

QString SubmitViewModel::bannerSubtitle() const {
    const std::optional<BackgroundJobResult>& result = m_submit.lastBackgroundJobResult();
    if (!result) {
        return {};
    }
    return std::visit(
        Overloaded{[](const BackgroundJobResult::Success&) { return tr("Background task completed"); },
                   [](const BackgroundJobResult::UploadPartialFailure& partial) {
                       return partial.failureMessage.value_or(tr("Attachment failed to upload"));
                   },
                   [](const BackgroundJobResult::CreateFailed& failed) { return failed.message; },
                   [](const BackgroundJobResult::BulkSuccess&) { return tr("All tasks created in Norvane"); },
                   [](const BackgroundJobResult::BulkPartial& bulk) { return TaskCounts::failed(bulk.failureCount); }},
        result->outcome);
}

QString SubmitViewModel::bannerSymbol() const {
    const std::optional<BackgroundJobResult>& result = m_submit.lastBackgroundJobResult();
    if (!result) {
        return {};
    }
    return std::visit(Overloaded{[](const BackgroundJobResult::UploadPartialFailure&) {
                                     return QStringLiteral("exclamationmark.triangle.fill");
                                 },
                                 [](const BackgroundJobResult::BulkPartial&) {
                                     return QStringLiteral("exclamationmark.triangle.fill");
                                 },
                                 [](const BackgroundJobResult::CreateFailed& failed) {
                                     return failed.failure == CreateFailure::notCreated
                                                ? QStringLiteral("xmark.circle.fill")
                                                : QStringLiteral("exclamationmark.triangle.fill");
                                 },
                                 [](const auto&) { return QStringLiteral("checkmark.circle.fill"); }},
                      result->outcome);
}

bool SubmitViewModel::bannerCanRetry() const {
    const std::optional<BackgroundJobResult>& result = m_submit.lastBackgroundJobResult();
    return result && result->retryJobID().has_value();
}
