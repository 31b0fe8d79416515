#pragma once

#include "core/submit/BackgroundJobResult.h"
#include "core/submit/ForegroundSubmitPhase.h"
#include "core/submit/ForegroundSubmitSession.h"

#include <QObject>
#include <QString>
#include <QUuid>
#include <optional>

class BackgroundSubmitQueue;
class LocationMemory;
class NorvaneClient;
class SettingsStore;
class SubmitNotifier;
class TaskDraft;

// Submitting from the popover: freezes the draft into a job of BackgroundSubmitQueue and mirrors
// the job's phases into `foregroundSubmit`, which the progress and result pages show. The user may
// leave the page at any time; the job then reports by notification, or, when that can't be
// delivered, through `lastBackgroundJobResult`, the composer's banner. Everything given must
// outlive it. Main thread only.
class SubmitController : public QObject {
    Q_OBJECT
    Q_PROPERTY(
        std::optional<ForegroundSubmitSession> foregroundSubmit READ foregroundSubmit NOTIFY foregroundSubmitChanged)
    Q_PROPERTY(std::optional<BackgroundJobResult> lastBackgroundJobResult READ lastBackgroundJobResult NOTIFY
                   lastBackgroundJobResultChanged)
    Q_PROPERTY(bool isBulkMode READ isBulkMode WRITE setBulkMode NOTIFY isBulkModeChanged)
    Q_PROPERTY(QString bulkLines READ bulkLines WRITE setBulkLines NOTIFY bulkLinesChanged)
    Q_PROPERTY(bool canSubmit READ canSubmit NOTIFY canSubmitChanged)

public:
    SubmitController(TaskDraft& draft, SettingsStore& settings, LocationMemory& location, const NorvaneClient& client,
                     BackgroundSubmitQueue& queue, SubmitNotifier& notifier, QObject* parent = nullptr);

    const std::optional<ForegroundSubmitSession>& foregroundSubmit() const { return m_foregroundSubmit; }
    const std::optional<BackgroundJobResult>& lastBackgroundJobResult() const { return m_lastBackgroundJobResult; }
    bool isBulkMode() const { return m_isBulkMode; }
    void setBulkMode(bool bulk);
    const QString& bulkLines() const { return m_bulkLines; }
    void setBulkLines(const QString& lines);
    // False while a submission is shown and without a list; then it needs a name, or in bulk mode
    // one line, that isn't blank. A name is blank as submitDraft sees it: of spaces and tabs alone.
    bool canSubmit() const { return m_canSubmit; }

    // Starts a submission from the composer, one at a time. The draft stays as it is behind the
    // progress page. A blank name, no list or a file that can't be pinned leave everything as it was,
    // without a word.
    Q_INVOKABLE void submitDraft();
    // "Create New Task" on the progress page: the job goes on unseen and reports by notification; the
    // composer is emptied.
    Q_INVOKABLE void backgroundActiveSubmit();
    // The retry buttons of the result pages, and "Create Anyway" beside a task found after a lost
    // answer: the same session follows the retried job.
    void retryForegroundSubmit(const QUuid& retryJobID);
    // "Back to editing", "Done" and "Open in Norvane" on a result page: the session ends and the
    // composer is emptied, whatever failed.
    Q_INVOKABLE void leaveSubmitResult();
    // Empties the composer: the draft, the bulk lines and bulk mode.
    Q_INVOKABLE void resetDraftForNewTask();

    // The banner's "Dismiss".
    Q_INVOKABLE void dismissBackgroundResult();
    // The banner's "Retry", where its outcome has a retry id: the outcome comes back as a
    // notification.
    Q_INVOKABLE void retryBackgroundResult();

signals:
    void foregroundSubmitChanged();
    void lastBackgroundJobResultChanged();
    void isBulkModeChanged();
    void bulkLinesChanged();
    void canSubmitChanged();

private:
    // Mirrors the job's phases into the session while the session is this job's; otherwise, and
    // once this object is gone, the phases are dropped.
    PhaseHandler makePhaseHandler(const QUuid& jobID);
    void setForegroundSubmit(std::optional<ForegroundSubmitSession> session);
    void setLastBackgroundJobResult(std::optional<BackgroundJobResult> result);
    void updateCanSubmit();
    // What follows a count in the name of a bulk session.
    static QString bulkNameSuffix();

    TaskDraft& m_draft;
    SettingsStore& m_settings;
    LocationMemory& m_location;
    const NorvaneClient& m_client;
    BackgroundSubmitQueue& m_queue;
    SubmitNotifier& m_notifier;
    std::optional<ForegroundSubmitSession> m_foregroundSubmit;
    std::optional<BackgroundJobResult> m_lastBackgroundJobResult;
    bool m_isBulkMode = false;
    QString m_bulkLines;
    bool m_canSubmit = false;
};
