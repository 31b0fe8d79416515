#pragma once

#include "core/submit/SubmitNotifier.h"

#include <QList>

// A notifier that writes down every call, and tells each `onDelivered` it is given whether the
// notification reached the desktop: `delivers`, at once.
class RecordingNotifier : public SubmitNotifier {
public:
    struct Reminder {
        QString taskName;
        std::optional<QString> taskURL;
        QDateTime fireDate;
        bool operator==(const Reminder&) const = default;
    };
    struct TaskCreated {
        QString taskName;
        std::optional<QString> taskURL;
        int attachmentFailures = 0;
        std::optional<QString> attachmentFailureMessage;
        std::optional<QUuid> retryJobID;
        bool wantsDelivery = false;
        bool operator==(const TaskCreated&) const = default;
    };
    struct TaskCreateFailed {
        QString taskName;
        QString error;
        QUuid retryJobID;
        bool wantsDelivery = false;
        bool operator==(const TaskCreateFailed&) const = default;
    };
    struct BulkComplete {
        int createdCount = 0;
        QList<BulkFailure> failures;
        std::optional<QUuid> retryJobID;
        bool wantsDelivery = false;
        bool operator==(const BulkComplete&) const = default;
    };
    struct BulkCreateFailed {
        QString error;
        QUuid retryJobID;
        bool wantsDelivery = false;
        bool operator==(const BulkCreateFailed&) const = default;
    };

    bool delivers = true;
    int permissionRequests = 0;
    QList<Reminder> reminders;
    QList<TaskCreated> created;
    QList<TaskCreateFailed> createFailed;
    QList<BulkComplete> bulkComplete;
    QList<BulkCreateFailed> bulkCreateFailed;

    // Notifications of job outcomes, of every kind.
    qsizetype notificationCount() const {
        return created.size() + createFailed.size() + bulkComplete.size() + bulkCreateFailed.size();
    }

    void requestNotificationPermissionIfNeeded() override;
    void scheduleReminder(const QString& taskName, const std::optional<QString>& taskURL,
                          const QDateTime& fireDate) override;
    void notifyTaskCreated(const QString& taskName, const std::optional<QString>& taskURL, int attachmentFailures,
                           const std::optional<QString>& attachmentFailureMessage,
                           const std::optional<QUuid>& retryJobID, Delivered onDelivered) override;
    void notifyTaskCreateFailed(const QString& taskName, const QString& error, const QUuid& retryJobID,
                                Delivered onDelivered) override;
    void notifyBulkComplete(int createdCount, const QList<BulkFailure>& failures,
                            const std::optional<QUuid>& retryJobID, Delivered onDelivered) override;
    void notifyBulkCreateFailed(const QString& error, const QUuid& retryJobID, Delivered onDelivered) override;

private:
    // Tells `onDelivered`, if given, what `delivers` says.
    void deliver(const Delivered& onDelivered) const;
};
