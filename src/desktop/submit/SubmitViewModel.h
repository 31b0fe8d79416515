#pragma once

#include "core/auth/AuthController.h"
#include "core/platform/LinkActions.h"
#include "core/settings/SettingsStore.h"
#include "core/submit/SubmitController.h"

#include <QObject>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

// What the popover shows of a submission: which page stands in place of the composer, its texts,
// and the actions of its buttons; and the banner of a background job whose notification could not
// be delivered.
class SubmitViewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The app builds the popover's view models.")
    Q_PROPERTY(Page page READ page NOTIFY changed)
    // The progress page's line.
    Q_PROPERTY(QString progressText READ progressText NOTIFY changed)
    // The done page: its title, the failed attachments, and whether the task has a link.
    Q_PROPERTY(QString doneTitle READ doneTitle NOTIFY changed)
    Q_PROPERTY(bool hasFailedUploads READ hasFailedUploads NOTIFY changed)
    Q_PROPERTY(QStringList failedUploadTexts READ failedUploadTexts NOTIFY changed)
    Q_PROPERTY(QString taskName READ taskName NOTIFY changed)
    Q_PROPERTY(bool hasTaskLink READ hasTaskLink NOTIFY changed)
    // The bulk done page: the count created, the count failed, and a line per task and failure.
    Q_PROPERTY(QString bulkTitle READ bulkTitle NOTIFY changed)
    Q_PROPERTY(QString bulkFailureTitle READ bulkFailureTitle NOTIFY changed)
    Q_PROPERTY(QStringList createdTaskNames READ createdTaskNames NOTIFY changed)
    Q_PROPERTY(QStringList bulkFailureTexts READ bulkFailureTexts NOTIFY changed)
    // The failed page: its title and mark, its message, and whether it offers the task that a retry
    // found in the list after a lost answer ("Open in Norvane", "Create Anyway") in place of "Retry".
    Q_PROPERTY(QString failureTitle READ failureTitle NOTIFY changed)
    Q_PROPERTY(QString failureSymbol READ failureSymbol NOTIFY changed)
    Q_PROPERTY(QString failureMessage READ failureMessage NOTIFY changed)
    Q_PROPERTY(bool foundExisting READ foundExisting NOTIFY changed)
    // The result pages offer a retry.
    Q_PROPERTY(bool canRetry READ canRetry NOTIFY changed)

    Q_PROPERTY(bool hasBanner READ hasBanner NOTIFY bannerChanged)
    Q_PROPERTY(QString bannerTitle READ bannerTitle NOTIFY bannerChanged)
    Q_PROPERTY(QString bannerSubtitle READ bannerSubtitle NOTIFY bannerChanged)
    // The banner's mark, a symbol name.
    Q_PROPERTY(QString bannerSymbol READ bannerSymbol NOTIFY bannerChanged)
    Q_PROPERTY(bool bannerCanRetry READ bannerCanRetry NOTIFY bannerChanged)

public:
    // What stands in the popover below the location selector.
    enum Page { Composer, Progress, Done, BulkDone, Failed };
    Q_ENUM(Page)

    SubmitViewModel(SubmitController& submit, const AuthController& auth, const SettingsStore& settings,
                    LinkActions& links, QObject* parent = nullptr);

    Page page() const;
    QString progressText() const;
    QString doneTitle() const;
    bool hasFailedUploads() const;
    QStringList failedUploadTexts() const;
    QString taskName() const;
    bool hasTaskLink() const;
    QString bulkTitle() const;
    QString bulkFailureTitle() const;
    QStringList createdTaskNames() const;
    QStringList bulkFailureTexts() const;
    QString failureTitle() const;
    QString failureSymbol() const;
    QString failureMessage() const;
    bool foundExisting() const { return phaseAs<ForegroundSubmitPhases::FoundExisting>() != nullptr; }
    bool canRetry() const;

    bool hasBanner() const { return m_submit.lastBackgroundJobResult().has_value(); }
    QString bannerTitle() const;
    QString bannerSubtitle() const;
    QString bannerSymbol() const;
    bool bannerCanRetry() const;

    // "Create New Task" of the progress page: the job goes on in the background.
    Q_INVOKABLE void createNewTask() { m_submit.backgroundActiveSubmit(); }
    // "Retry", "Retry uploads" and "Retry failed".
    Q_INVOKABLE void retry();
    // "Create Anyway" beside a task found after a lost answer: creates another one.
    Q_INVOKABLE void createAnyway();
    // "Back to editing", "Create New Task" and "Done" of a result page.
    Q_INVOKABLE void leave() { m_submit.leaveSubmitResult(); }
    // Opens the created task, or the one found after a lost answer, in the browser, then leaves the
    // page.
    Q_INVOKABLE void openInNorvane();
    Q_INVOKABLE void copyLink();
    // The task's Git branch name, in the format of the settings, for the signed-in user.
    Q_INVOKABLE void copyBranchName();
    // The link of the created task at `index` of a bulk job.
    Q_INVOKABLE void copyLinkOf(int index);
    // Every created task's link, a line each.
    Q_INVOKABLE void copyAllLinks();
    Q_INVOKABLE void dismissBanner() { m_submit.dismissBackgroundResult(); }
    Q_INVOKABLE void retryBanner() { m_submit.retryBackgroundResult(); }

signals:
    void changed();
    void bannerChanged();

private:
    const ForegroundSubmitPhase* phase() const;
    template <typename T> const T* phaseAs() const {
        const ForegroundSubmitPhase* current = phase();
        return current ? std::get_if<T>(current) : nullptr;
    }
    std::optional<QUuid> retryJobID() const;
    // The task of the done page, or the one found after a lost answer; null on other pages.
    const CreatedTask* shownTask() const;

    SubmitController& m_submit;
    const AuthController& m_auth;
    const SettingsStore& m_settings;
    LinkActions& m_links;
};
