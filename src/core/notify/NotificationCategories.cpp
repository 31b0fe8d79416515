#include "core/notify/NotificationCategories.h"

#include <QCoreApplication>

namespace NotificationCategories {
namespace {
NotificationAction openTask() {
    return {openTaskAction, QCoreApplication::translate("NotificationScheduler", "Open in Norvane")};
}
NotificationAction copyLink() {
    return {copyLinkAction, QCoreApplication::translate("NotificationScheduler", "Copy Link")};
}
NotificationAction retry() {
    return {retryAction, QCoreApplication::translate("NotificationScheduler", "Retry")};
}
} // namespace

NotificationCategory taskCreated() {
    return {QStringLiteral("TASK_CREATED"), {copyLink(), openTask()}};
}

NotificationCategory taskUploadFailed() {
    return {QStringLiteral("TASK_UPLOAD_FAILED"), {copyLink(), openTask(), retry()}};
}

NotificationCategory taskFailed() {
    return {QStringLiteral("TASK_FAILED"), {retry()}};
}

NotificationCategory bulkFailed() {
    return {QStringLiteral("BULK_FAILED"), {retry()}};
}

} // namespace NotificationCategories
