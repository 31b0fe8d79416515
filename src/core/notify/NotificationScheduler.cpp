#include "core/notify/NotificationScheduler.h"

#include "core/submit/TaskCounts.h"

#include "core/async/StartTask.h"
#include "core/notify/NotificationCategories.h"
#include "core/notify/ReminderFile.h"
#include "core/support/GeneratedNames.h"

#include <QPointer>
#include <QUrl>
#include <algorithm>

namespace {
const QString taskURLKey = QStringLiteral("taskURL");
const QString retryJobIDKey = QStringLiteral("retryJobID");
// The canonical form of a UUID: 8-4-4-4-12 hexadecimal digits, no braces.
constexpr qsizetype canonicalUuidLength = 36;

QCoro::Task<bool> askPermission(QPointer<NotificationCenter> center) {
    if (!center) {
        co_return false;
    }
    QCoro::Task<bool> permission = center->permission();
    co_return co_await std::move(permission);
}

// Posts when leave is given: whether the center took the notification.
QCoro::Task<bool> askAndPost(QPointer<NotificationCenter> center, NotificationRequest request) {
    QCoro::Task<bool> asking = askPermission(center);
    const bool allowed = co_await std::move(asking);
    if (!allowed || !center) {
        co_return false;
    }
    QCoro::Task<bool> posting = center->post(std::move(request));
    co_return co_await std::move(posting);
}

// A failure's notification: it offers to retry the job.
bool offersRetry(const NotificationRequest& request) {
    return request.category && std::any_of(request.category->actions.cbegin(), request.category->actions.cend(),
                                           [](const NotificationAction& action) {
                                               return action.identifier == NotificationCategories::retryAction;
                                           });
}

// Only the keys whose values are present.
NotificationUserInfo userInfoOf(const std::optional<QString>& taskURL, const std::optional<QUuid>& retryJobID) {
    NotificationUserInfo info;
    if (taskURL) {
        info.insert(taskURLKey, *taskURL);
    }
    if (retryJobID) {
        info.insert(retryJobIDKey, upperCaseUuid(*retryJobID));
    }
    return info;
}

std::optional<QUuid> parsedUuid(const QString& text) {
    const QUuid uuid = QUuid::fromString(text);
    if (text.size() != canonicalUuidLength || uuid.isNull()) {
        return std::nullopt;
    }
    return uuid;
}

NotificationRequest makeRequest(QString title, QString body, std::optional<NotificationCategory> category,
                                NotificationUserInfo info) {
    return {
        .identifier = QStringLiteral("norvanebar-") + upperCaseUuid(),
        .title = std::move(title),
        .body = std::move(body),
        .category = std::move(category),
        .userInfo = std::move(info),
    };
}
} // namespace

NotificationScheduler::NotificationScheduler(NotificationCenter& center, LinkActions& links,
                                             const QString& remindersPath, Clock clock,
                                             std::unique_ptr<WallClockAlarm> reminderAlarm, QObject* parent)
    : QObject(parent)
    , m_center(center)
    , m_links(links)
    , m_reminders(remindersPath.isEmpty() ? ReminderFile::defaultPath() : remindersPath, std::move(clock),
                  std::move(reminderAlarm), [this](const Reminder& reminder) { return deliverReminder(reminder); }) {
    connect(&m_center, &NotificationCenter::notificationClosed, this, &NotificationScheduler::closed);
    // Reminders that could not be shown for want of a server are shown once one comes.
    connect(&m_center, &NotificationCenter::serverAppeared, &m_reminders, &ReminderSchedule::wakeUp);
}

void NotificationScheduler::registerCategories() {
    connect(&m_center, &NotificationCenter::actionInvoked, this, &NotificationScheduler::didReceive,
            Qt::UniqueConnection);
}

void NotificationScheduler::scheduleReminder(const QString& taskName, const std::optional<QString>& taskURL,
                                             const QDateTime& fireDate) {
    Reminder reminder{
        .identifier = QStringLiteral("norvanebar-reminder-") + upperCaseUuid(),
        .taskName = taskName,
        .taskURL = taskURL,
        .fireDate = fireDate.toUTC(),
    };
    // Without leave the reminder is dropped, silently.
    startTask(this, askPermission(&m_center), [this, reminder = std::move(reminder)](bool allowed) {
        if (allowed) {
            m_reminders.add(reminder);
        }
    });
}

void NotificationScheduler::notifyTaskCreated(const QString& taskName, const std::optional<QString>& taskURL,
                                              int attachmentFailures,
                                              const std::optional<QString>& attachmentFailureMessage,
                                              const std::optional<QUuid>& retryJobID, Delivered onDelivered) {
    if (attachmentFailures <= 0) {
        deliverImmediately(makeRequest(taskName, tr("Task created"), NotificationCategories::taskCreated(),
                                       userInfoOf(taskURL, retryJobID)),
                           std::move(onDelivered));
        return;
    }
    const QString body =
        attachmentFailureMessage.value_or(tr("%n attachments failed to upload", nullptr, attachmentFailures));
    deliverImmediately(
        makeRequest(taskName, body, NotificationCategories::taskUploadFailed(), userInfoOf(taskURL, retryJobID)),
        std::move(onDelivered));
}

void NotificationScheduler::notifyTaskCreateFailed(const QString& taskName, const QString& error,
                                                   const QUuid& retryJobID, Delivered onDelivered) {
    deliverImmediately(makeRequest(tr("Couldn't create task"), taskName + QStringLiteral(": ") + error,
                                   NotificationCategories::taskFailed(), userInfoOf(std::nullopt, retryJobID)),
                       std::move(onDelivered));
}

void NotificationScheduler::notifyBulkComplete(int createdCount, const QList<BulkFailure>& failures,
                                               const std::optional<QUuid>& retryJobID, Delivered onDelivered) {
    const QString title = TaskCounts::created(createdCount);
    if (failures.isEmpty()) {
        deliverImmediately(
            makeRequest(title, tr("All tasks created in Norvane"), std::nullopt, userInfoOf(std::nullopt, retryJobID)),
            std::move(onDelivered));
        return;
    }
    const QString body = TaskCounts::failed(failures.size());
    deliverImmediately(
        makeRequest(title, body, NotificationCategories::bulkFailed(), userInfoOf(std::nullopt, retryJobID)),
        std::move(onDelivered));
}

void NotificationScheduler::notifyBulkCreateFailed(const QString& error, const QUuid& retryJobID,
                                                   Delivered onDelivered) {
    deliverImmediately(makeRequest(tr("Couldn't create tasks"), error, NotificationCategories::bulkFailed(),
                                   userInfoOf(std::nullopt, retryJobID)),
                       std::move(onDelivered));
}

void NotificationScheduler::deliverImmediately(NotificationRequest request, Delivered onDelivered) {
    const QString identifier = request.identifier;
    const bool watchesExpiry = onDelivered && offersRetry(request);
    startTask(this, askAndPost(&m_center, std::move(request)),
              [this, identifier, watchesExpiry, onDelivered = std::move(onDelivered)](bool delivered) {
                  if (delivered && watchesExpiry) {
                      m_shownFailures.insert(identifier, onDelivered);
                  }
                  if (onDelivered) {
                      onDelivered(delivered ? Delivery::delivered : Delivery::undelivered);
                  }
              });
}

QCoro::Task<bool> NotificationScheduler::deliverReminder(const Reminder& reminder) {
    // No category, so no buttons; a click opens the task.
    NotificationRequest reminderRequest{
        .identifier = reminder.identifier,
        .title = tr("Task reminder"),
        .body = reminder.taskName,
        .category = std::nullopt,
        .userInfo = userInfoOf(reminder.taskURL, std::nullopt),
    };
    return askAndPost(&m_center, std::move(reminderRequest));
}

void NotificationScheduler::closed(const QString& identifier, NotificationCenter::CloseReason reason) {
    const Delivered tell = m_shownFailures.take(identifier);
    // Only one the desktop took away without an answer needs its outcome shown elsewhere.
    if (tell && reason == NotificationCenter::CloseReason::expired) {
        tell(Delivery::expired);
    }
}

void NotificationScheduler::didReceive(const QString& actionIdentifier, const NotificationUserInfo& userInfo) {
    if (actionIdentifier == NotificationCategories::copyLinkAction) {
        copyTaskURL(userInfo);
    } else if (actionIdentifier == NotificationCategories::openTaskAction ||
               actionIdentifier == NotificationCenter::defaultActionIdentifier) {
        openTaskURL(userInfo);
    } else if (actionIdentifier == NotificationCategories::retryAction) {
        retryJob(userInfo);
    }
}

void NotificationScheduler::copyTaskURL(const NotificationUserInfo& userInfo) {
    if (userInfo.contains(taskURLKey)) {
        m_links.copyText(userInfo.value(taskURLKey));
    }
}

void NotificationScheduler::openTaskURL(const NotificationUserInfo& userInfo) {
    const QUrl url(userInfo.value(taskURLKey), QUrl::StrictMode);
    if (userInfo.contains(taskURLKey) && url.isValid() && !url.isRelative()) {
        m_links.openURL(url);
    }
}

void NotificationScheduler::retryJob(const NotificationUserInfo& userInfo) {
    const std::optional<QUuid> jobID = parsedUuid(userInfo.value(retryJobIDKey));
    if (jobID && m_retry) {
        m_retry(*jobID);
    }
}
