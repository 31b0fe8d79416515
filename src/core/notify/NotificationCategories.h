#pragma once

#include "core/platform/NotificationRequest.h"

#include <QString>

// The kinds of notification the program posts and the buttons each offers, in order.
namespace NotificationCategories {

inline const QString openTaskAction = QStringLiteral("OPEN_TASK");
inline const QString copyLinkAction = QStringLiteral("COPY_LINK");
inline const QString retryAction = QStringLiteral("RETRY");

// "TASK_CREATED": copy link, open.
NotificationCategory taskCreated();
// "TASK_UPLOAD_FAILED": copy link, open, retry.
NotificationCategory taskUploadFailed();
// "TASK_FAILED": retry.
NotificationCategory taskFailed();
// "BULK_FAILED": retry.
NotificationCategory bulkFailed();

} // namespace NotificationCategories
