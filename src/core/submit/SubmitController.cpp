#include "core/submit/SubmitController.h"

#include "core/api/NorvaneClient.h"
#include "core/compose/TaskDraft.h"
#include "core/hierarchy/LocationMemory.h"
#include "core/settings/SettingsStore.h"
#include "core/submit/BackgroundSubmitQueue.h"
#include "core/submit/DraftSnapshot.h"
#include "core/submit/SubmitNotifier.h"
#include "core/support/SpacesAndTabs.h"

#include <QCoreApplication>
#include <QPointer>

namespace {
bool hasNonBlankLine(const QString& lines) {
    const QStringList split = lines.split(QLatin1Char('\n'));
    return std::any_of(split.cbegin(), split.cend(), [](const QString& line) { return !line.trimmed().isEmpty(); });
}

// A name that submitDraft takes: spaces and tabs alone are blank, while a name of other white space,
// newlines say, still counts as given.
bool isGivenName(const QString& name) {
    return !SpacesAndTabs::trimmed(name).isEmpty();
}

// A result page: the job behind it has ended.
bool showsResult(const ForegroundSubmitPhase& phase) {
    return std::holds_alternative<ForegroundSubmitPhases::Done>(phase) ||
           std::holds_alternative<ForegroundSubmitPhases::Failed>(phase) ||
           std::holds_alternative<ForegroundSubmitPhases::BulkDone>(phase) ||
           std::holds_alternative<ForegroundSubmitPhases::FoundExisting>(phase);
}
} // namespace

SubmitController::SubmitController(TaskDraft& draft, SettingsStore& settings, LocationMemory& location,
                                   const NorvaneClient& client, BackgroundSubmitQueue& queue, SubmitNotifier& notifier,
                                   QObject* parent)
    : QObject(parent)
    , m_draft(draft)
    , m_settings(settings)
    , m_location(location)
    , m_client(client)
    , m_queue(queue)
    , m_notifier(notifier) {
    connect(&m_draft, &TaskDraft::nameChanged, this, &SubmitController::updateCanSubmit);
    connect(&m_location, &LocationMemory::currentContextChanged, this, &SubmitController::updateCanSubmit);
    connect(&m_queue, &BackgroundSubmitQueue::backgroundResult, this,
            [this](const BackgroundJobResult& result) { setLastBackgroundJobResult(result); });
    updateCanSubmit();
}

void SubmitController::setBulkMode(bool bulk) {
    if (m_isBulkMode == bulk) {
        return;
    }
    m_isBulkMode = bulk;
    emit isBulkModeChanged();
    updateCanSubmit();
}

void SubmitController::setBulkLines(const QString& lines) {
    if (m_bulkLines == lines) {
        return;
    }
    m_bulkLines = lines;
    emit bulkLinesChanged();
    updateCanSubmit();
}

void SubmitController::submitDraft() {
    const ListContext* context = m_location.currentContext();
    if (!context || m_foregroundSubmit) {
        return;
    }
    const QSet<DefaultField> visibleFields = m_settings.settings().visibleDefaultFields;
    const QUuid jobID = QUuid::createUuid();
    const QString listID = context->entry().list.id;
    if (!m_isBulkMode) {
        if (!isGivenName(m_draft.name())) {
            return;
        }
        std::optional<SubmitJobPayload> payload = DraftSnapshot::snapshot(m_draft, listID, visibleFields);
        if (!payload) {
            return;
        }
        payload->workspaceID = context->entry().workspaceID;
        setForegroundSubmit(ForegroundSubmitSession{jobID, payload->taskName, ForegroundSubmitPhases::Creating{}});
        m_queue.enqueue(std::move(*payload), m_client, jobID, makePhaseHandler(jobID));
        return;
    }
    std::optional<BulkSubmitJobPayload> payload =
        DraftSnapshot::bulkSnapshot(m_draft, listID, m_bulkLines, visibleFields);
    if (!payload) {
        return;
    }
    payload->workspaceID = context->entry().workspaceID;
    const int count = static_cast<int>(payload->taskNames.size());
    setForegroundSubmit(ForegroundSubmitSession{jobID, QString::number(count) + bulkNameSuffix(),
                                                ForegroundSubmitPhases::BulkCreating{0, count}});
    m_queue.enqueueBulk(std::move(*payload), m_client, jobID, makePhaseHandler(jobID));
}

PhaseHandler SubmitController::makePhaseHandler(const QUuid& jobID) {
    return [self = QPointer<SubmitController>(this), jobID](const ForegroundSubmitPhase& phase) {
        if (!self || !self->m_foregroundSubmit || self->m_foregroundSubmit->jobID != jobID) {
            return;
        }
        ForegroundSubmitSession session = *self->m_foregroundSubmit;
        session.phase = phase;
        self->setForegroundSubmit(std::move(session));
    };
}

void SubmitController::backgroundActiveSubmit() {
    if (!m_foregroundSubmit) {
        return;
    }
    m_notifier.requestNotificationPermissionIfNeeded();
    // A job that has ended would never take its id out of the background again.
    if (!showsResult(m_foregroundSubmit->phase)) {
        m_queue.markBackgrounded(*m_foregroundSubmit);
    }
    setForegroundSubmit(std::nullopt);
    resetDraftForNewTask();
}

void SubmitController::retryForegroundSubmit(const QUuid& retryJobID) {
    if (!m_foregroundSubmit) {
        return;
    }
    // The name alone tells a bulk session, deliberately simple: a single task whose name ends in
    // that word shows the bulk label until its first real phase arrives.
    ForegroundSubmitSession session = *m_foregroundSubmit;
    if (session.taskName.endsWith(bulkNameSuffix())) {
        session.phase = ForegroundSubmitPhases::BulkCreating{0, 1};
    } else {
        session.phase = ForegroundSubmitPhases::Creating{};
    }
    const QUuid jobID = session.jobID;
    setForegroundSubmit(std::move(session));
    m_queue.retry(retryJobID, m_client, makePhaseHandler(jobID), false);
}

void SubmitController::leaveSubmitResult() {
    setForegroundSubmit(std::nullopt);
    resetDraftForNewTask();
}

void SubmitController::resetDraftForNewTask() {
    m_draft.reset(m_settings.settings().defaultReminderLeadMinutes);
    setBulkLines(QString());
    setBulkMode(false);
}

void SubmitController::dismissBackgroundResult() {
    setLastBackgroundJobResult(std::nullopt);
}

void SubmitController::retryBackgroundResult() {
    const std::optional<QUuid> retryJobID =
        m_lastBackgroundJobResult ? m_lastBackgroundJobResult->retryJobID() : std::nullopt;
    if (!retryJobID) {
        return;
    }
    setLastBackgroundJobResult(std::nullopt);
    m_queue.retry(*retryJobID, m_client, {}, true);
}

void SubmitController::setForegroundSubmit(std::optional<ForegroundSubmitSession> session) {
    if (m_foregroundSubmit == session) {
        return;
    }
    m_foregroundSubmit = std::move(session);
    emit foregroundSubmitChanged();
    updateCanSubmit();
}

void SubmitController::setLastBackgroundJobResult(std::optional<BackgroundJobResult> result) {
    if (m_lastBackgroundJobResult == result) {
        return;
    }
    m_lastBackgroundJobResult = std::move(result);
    emit lastBackgroundJobResultChanged();
}

void SubmitController::updateCanSubmit() {
    bool can = !m_foregroundSubmit && m_location.currentContext() != nullptr;
    if (can) {
        can = m_isBulkMode ? hasNonBlankLine(m_bulkLines) : isGivenName(m_draft.name());
    }
    if (can == m_canSubmit) {
        return;
    }
    m_canSubmit = can;
    emit canSubmitChanged();
}

QString SubmitController::bulkNameSuffix() {
    return QCoreApplication::translate("SubmitController", " tasks");
}
