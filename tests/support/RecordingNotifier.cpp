#include "support/RecordingNotifier.h"

void RecordingNotifier::deliver(const Delivered& onDelivered) const {
    if (onDelivered) {
        onDelivered(delivers ? Delivery::delivered : Delivery::undelivered);
    }
}

void RecordingNotifier::requestNotificationPermissionIfNeeded() {
    permissionRequests += 1;
}

void RecordingNotifier::scheduleReminder(const QString& taskName, const std::optional<QString>& taskURL,
                                         const QDateTime& fireDate) {
    reminders.append({taskName, taskURL, fireDate});
}

void RecordingNotifier::notifyTaskCreated(const QString& taskName, const std::optional<QString>& taskURL,
                                          int attachmentFailures,
                                          const std::optional<QString>& attachmentFailureMessage,
                                          const std::optional<QUuid>& retryJobID, Delivered onDelivered) {
    created.append({taskName, taskURL, attachmentFailures, attachmentFailureMessage, retryJobID, bool(onDelivered)});
    deliver(onDelivered);
}

void RecordingNotifier::notifyTaskCreateFailed(const QString& taskName, const QString& error, const QUuid& retryJobID,
                                               Delivered onDelivered) {
    createFailed.append({taskName, error, retryJobID, bool(onDelivered)});
    deliver(onDelivered);
}

void RecordingNotifier::notifyBulkComplete(int createdCount, const QList<BulkFailure>& failures,
                                           const std::optional<QUuid>& retryJobID, Delivered onDelivered) {
    bulkComplete.append({createdCount, failures, retryJobID, bool(onDelivered)});
    deliver(onDelivered);
}

void RecordingNotifier::notifyBulkCreateFailed(const QString& error, const QUuid& retryJobID, Delivered onDelivered) {
    bulkCreateFailed.append({error, retryJobID, bool(onDelivered)});
    deliver(onDelivered);
}
