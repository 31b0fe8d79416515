#pragma once

#include "platform/NotificationCenter.h"

#include <QList>

// A notification center that shows nothing: it answers permission as told, records each post, and
// plays the user's side on request.
class RecordingNotificationCenter : public NotificationCenter {
    Q_OBJECT

public:
    using NotificationCenter::NotificationCenter;

    void setPermission(bool allowed) { m_permission = allowed; }
    void setOffersActions(bool offers) { m_offersActions = offers; }

    QCoro::Task<bool> permission() override;
    QCoro::Task<bool> offersActions() override;
    void post(NotificationRequest request) override { m_posted.append(std::move(request)); }

    const QList<NotificationRequest>& posted() const { return m_posted; }
    int permissionRequests() const { return m_permissionRequests; }

    // The user chose `actionIdentifier` on the posted notification at `index`; it closes then.
    void invoke(qsizetype index, const QString& actionIdentifier);

private:
    bool m_permission = true;
    bool m_offersActions = true;
    int m_permissionRequests = 0;
    QList<NotificationRequest> m_posted;
};
