#pragma once

#include "core/shell/StatusItemBadge.h"

#include <QObject>

class BackgroundSubmitQueue;
class DueCountQuery;
class SettingsStore;

// What the tray icon shows, kept up to date from where it comes from: the jobs the user left to run
// in the background, the due count and the setting `showDueCountBadge`. The tray observes `changed`
// and draws badge(). Main thread only; everything given must outlive it.
class StatusItemBadgeModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(int backgroundCount READ backgroundCount NOTIFY changed)
    Q_PROPERTY(int dueCount READ dueCount NOTIFY changed)
    Q_PROPERTY(bool showDueCountBadge READ showDueCountBadge NOTIFY changed)

public:
    StatusItemBadgeModel(const BackgroundSubmitQueue& queue, const DueCountQuery& dueCount,
                         const SettingsStore& settings, QObject* parent = nullptr);

    int backgroundCount() const { return m_backgroundCount; }
    int dueCount() const { return m_dueCount; }
    bool showDueCountBadge() const { return m_showDueCountBadge; }
    StatusItemBadge badge() const { return StatusItemBadge::make(m_backgroundCount, m_dueCount, m_showDueCountBadge); }

signals:
    // One of the three changed.
    void changed();

private:
    void update();

    const BackgroundSubmitQueue& m_queue;
    const DueCountQuery& m_dueCountQuery;
    const SettingsStore& m_settings;
    int m_backgroundCount = 0;
    int m_dueCount = 0;
    bool m_showDueCountBadge = false;
};
