#include "RecordingNotificationCenter.h"

QCoro::Task<bool> RecordingNotificationCenter::permission() {
    ++m_permissionRequests;
    co_return m_permission;
}

QCoro::Task<bool> RecordingNotificationCenter::offersActions() {
    co_return m_offersActions;
}

void RecordingNotificationCenter::invoke(qsizetype index, const QString& actionIdentifier) {
    const NotificationRequest request = m_posted.at(index);
    emit actionInvoked(actionIdentifier, request.userInfo);
    emit notificationClosed(request.identifier);
}
