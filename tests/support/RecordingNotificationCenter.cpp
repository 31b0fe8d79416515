#include "support/RecordingNotificationCenter.h"

QCoro::Task<bool> RecordingNotificationCenter::permission() {
    ++m_permissionRequests;
    co_return m_permission;
}

QCoro::Task<bool> RecordingNotificationCenter::offersActions() {
    co_return m_offersActions;
}

QCoro::Task<bool> RecordingNotificationCenter::post(NotificationRequest request) {
    if (m_takesPosts) {
        m_posted.append(std::move(request));
    }
    co_return m_takesPosts;
}

void RecordingNotificationCenter::invoke(qsizetype index, const QString& actionIdentifier) {
    const NotificationRequest request = m_posted.at(index);
    emit actionInvoked(actionIdentifier, request.userInfo);
    emit notificationClosed(request.identifier, CloseReason::dismissed);
}

void RecordingNotificationCenter::dismiss(qsizetype index) {
    emit notificationClosed(m_posted.at(index).identifier, CloseReason::dismissed);
}

void RecordingNotificationCenter::expire(qsizetype index) {
    emit notificationClosed(m_posted.at(index).identifier, CloseReason::expired);
}

void RecordingNotificationCenter::appear() {
    m_permission = true;
    m_takesPosts = true;
    emit serverAppeared();
}
