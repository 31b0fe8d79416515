#include "core/shell/StatusItemBadgeModel.h"

#include "core/myday/DueCountQuery.h"
#include "core/settings/SettingsStore.h"
#include "core/submit/BackgroundSubmitQueue.h"

StatusItemBadgeModel::StatusItemBadgeModel(const BackgroundSubmitQueue& queue, const DueCountQuery& dueCount,
                                           const SettingsStore& settings, QObject* parent)
    : QObject(parent)
    , m_queue(queue)
    , m_dueCountQuery(dueCount)
    , m_settings(settings) {
    update();
    connect(&m_queue, &BackgroundSubmitQueue::backgroundedJobIDsChanged, this, &StatusItemBadgeModel::update);
    connect(&m_dueCountQuery, &DueCountQuery::dueCountChanged, this, &StatusItemBadgeModel::update);
    connect(&m_settings, &SettingsStore::settingsChanged, this, &StatusItemBadgeModel::update);
}

void StatusItemBadgeModel::update() {
    const auto backgroundCount = static_cast<int>(m_queue.backgroundedJobIDs().size());
    const int dueCount = m_dueCountQuery.dueCount();
    const bool showDueCountBadge = m_settings.settings().showDueCountBadge;
    if (backgroundCount == m_backgroundCount && dueCount == m_dueCount && showDueCountBadge == m_showDueCountBadge) {
        return;
    }
    m_backgroundCount = backgroundCount;
    m_dueCount = dueCount;
    m_showDueCountBadge = showDueCountBadge;
    emit changed();
}
