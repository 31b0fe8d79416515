#pragma once

#include "core/async/Clock.h"
#include "core/notify/ReminderSchedule.h"
#include "core/platform/LinkActions.h"
#include "core/platform/NotificationCenter.h"
#include "core/submit/SubmitNotifier.h"

#include <QHash>
#include <QObject>
#include <QUuid>
#include <functional>
#include <memory>

// The one place that talks to the desktop's notification center: it posts the outcomes of work
// nobody watches, keeps and delivers the reminders of tasks, and carries out what the user chooses
// on a notification: open the task, copy its link, or retry a failed job. What it knows about a
// notification travels as the notification's user info; it keeps only whom to tell when a
// failure's notification expires. Main thread only.
class NotificationScheduler : public QObject, public SubmitNotifier {
    Q_OBJECT

public:
    using RetryHandler = std::function<void(const QUuid& jobID)>;

    // `remindersPath`: the file of reminders; empty means the user's own. `reminderAlarm` wakes the
    // reminders up when the next falls due.
    NotificationScheduler(NotificationCenter& center, LinkActions& links, const QString& remindersPath, Clock clock,
                          std::unique_ptr<WallClockAlarm> reminderAlarm, QObject* parent = nullptr);

    // Called with the job id of a "Retry" the user chose.
    void setRetryHandler(RetryHandler handler) { m_retry = std::move(handler); }

    // At start-up. The freedesktop server keeps no categories: each notification carries its
    // category's buttons. Registering makes the scheduler answer them.
    void registerCategories();
    // At start-up: reminders that fell due while the program was not running are delivered now,
    // and the alarm is set for the next.
    void restoreReminders() { m_reminders.wakeUp(); }

    ReminderSchedule& reminders() { return m_reminders; }

    // A freedesktop server needs no leave: one that answers is leave enough.
    void requestNotificationPermissionIfNeeded() override {}
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
    // Posts when leave is given; `onDelivered` learns whether the center took it, and later whether
    // a failure's notification expired.
    void deliverImmediately(NotificationRequest request, Delivered onDelivered);
    QCoro::Task<bool> deliverReminder(const Reminder& reminder);
    void didReceive(const QString& actionIdentifier, const NotificationUserInfo& userInfo);
    void closed(const QString& identifier, NotificationCenter::CloseReason reason);
    void copyTaskURL(const NotificationUserInfo& userInfo);
    void openTaskURL(const NotificationUserInfo& userInfo);
    void retryJob(const NotificationUserInfo& userInfo);

    NotificationCenter& m_center;
    LinkActions& m_links;
    ReminderSchedule m_reminders;
    RetryHandler m_retry;
    // The failures' notifications still shown, by identifier, with whom to tell if they expire.
    QHash<QString, Delivered> m_shownFailures;
};
