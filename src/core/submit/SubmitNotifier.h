#pragma once

#include "core/submit/BulkFailure.h"

#include <QDateTime>
#include <QList>
#include <QString>
#include <QUuid>
#include <functional>
#include <optional>

// What the submission pipeline tells the user outside the popover: the outcome of a job nobody
// watches, and the reminder of a task once it exists. NotificationScheduler is the program's one;
// tests bring a recording one.
//
// Every call returns at once. `onDelivered`, when given, learns whether the notification was handed
// to the desktop or could not be, so that the caller shows the outcome another way. A failure's
// notification, one that offers "Retry", may be heard of once more: when the desktop takes it away
// after a while without an answer, it expired, and its retry is out of reach unless shown elsewhere.
class SubmitNotifier {
public:
    enum class Delivery { delivered, undelivered, expired };
    using Delivered = std::function<void(Delivery delivery)>;

    virtual ~SubmitNotifier() = default;

    // Asks the desktop for leave to notify, if it has not been asked yet, before a job is left to
    // report by notification. The answer is not awaited.
    virtual void requestNotificationPermissionIfNeeded() = 0;

    virtual void scheduleReminder(const QString& taskName, const std::optional<QString>& taskURL,
                                  const QDateTime& fireDate) = 0;
    virtual void notifyTaskCreated(const QString& taskName, const std::optional<QString>& taskURL,
                                   int attachmentFailures, const std::optional<QString>& attachmentFailureMessage,
                                   const std::optional<QUuid>& retryJobID, Delivered onDelivered) = 0;
    virtual void notifyTaskCreateFailed(const QString& taskName, const QString& error, const QUuid& retryJobID,
                                        Delivered onDelivered) = 0;
    virtual void notifyBulkComplete(int createdCount, const QList<BulkFailure>& failures,
                                    const std::optional<QUuid>& retryJobID, Delivered onDelivered) = 0;
    virtual void notifyBulkCreateFailed(const QString& error, const QUuid& retryJobID, Delivered onDelivered) = 0;
};
