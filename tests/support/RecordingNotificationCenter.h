#pragma once

#include "core/platform/NotificationCenter.h"

#include <QList>

// A notification center that shows nothing: it answers permission as told, takes each post as told
// and records those it takes, and plays the user's and the desktop's side on request.
class RecordingNotificationCenter : public NotificationCenter {
    Q_OBJECT

public:
    using NotificationCenter::NotificationCenter;

    void setPermission(bool allowed) { m_permission = allowed; }
    void setOffersActions(bool offers) { m_offersActions = offers; }
    // Whether posts are taken, as a server that vanished between the question and the post would not.
    void setTakesPosts(bool takes) { m_takesPosts = takes; }

    QCoro::Task<bool> permission() override;
    QCoro::Task<bool> offersActions() override;
    QCoro::Task<bool> post(NotificationRequest request) override;

    const QList<NotificationRequest>& posted() const { return m_posted; }
    int permissionRequests() const { return m_permissionRequests; }

    // The user chose `actionIdentifier` on the posted notification at `index`; it closes then.
    void invoke(qsizetype index, const QString& actionIdentifier);
    // The posted notification at `index` closes: the user closed it, or it timed out.
    void dismiss(qsizetype index);
    void expire(qsizetype index);
    // Notifications can be shown again: leave is given and a server came.
    void appear();

private:
    bool m_permission = true;
    bool m_offersActions = true;
    bool m_takesPosts = true;
    int m_permissionRequests = 0;
    QList<NotificationRequest> m_posted;
};
