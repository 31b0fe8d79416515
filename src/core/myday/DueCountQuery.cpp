#include "core/myday/DueCountQuery.h"

#include "core/api/Endpoints.h"
#include "core/async/LoadGuard.h"
#include "core/async/StartTask.h"
#include "core/myday/DayBounds.h"
#include "core/myday/DueDate.h"
#include "core/myday/TaskQueryFilters.h"
#include "core/settings/SettingsStore.h"

#include <algorithm>

DueCountQuery::DueCountQuery(const NorvaneClient& client, const SettingsStore& settings, DueCountContext context,
                             Clock clock, QObject* parent)
    : QObject(parent)
    , m_client(client)
    , m_settings(settings)
    , m_context(std::move(context))
    , m_clock(std::move(clock))
    , m_shown(settings.settings().showDueCountBadge) {
    connect(&m_settings, &SettingsStore::settingsChanged, this, &DueCountQuery::settingsChanged);
}

QCoro::Task<bool> DueCountQuery::refresh() {
    const std::optional<qint64> userID = m_context.signedInUserID();
    const std::optional<QString> workspaceID = m_context.activeWorkspaceID();
    if (!m_settings.settings().showDueCountBadge || !userID || !workspaceID) {
        co_return false;
    }
    const LoadGuard guard = LoadGuard(this, m_latest).also([this, userID, workspaceID] {
        return m_context.signedInUserID() == userID && m_context.activeWorkspaceID() == workspaceID;
    });
    const TaskQueryFilters mine(QList<qint64>{*userID}, std::nullopt, std::nullopt);
    QCoro::Task<QList<NVTaskSummary>> fetching =
        Endpoints::getAllTeamTasks(m_client, *workspaceID, mine.teamTasksFilter());
    QCoro::Task<std::optional<QList<NVTaskSummary>>> landing = awaitGuarded(guard, std::move(fetching));
    std::optional<QList<NVTaskSummary>> tasks;
    try {
        tasks = co_await std::move(landing);
    } catch (...) {
        // Nobody is told: the count stays until a later fetch succeeds.
        co_return false;
    }
    if (!tasks) {
        co_return false;
    }
    m_dueDates.clear();
    for (const NVTaskSummary& task : *tasks) {
        if (const std::optional<double> due = DueDate::milliseconds(task.dueDate)) {
            m_dueDates.append(*due);
        }
    }
    recount();
    co_return true;
}

void DueCountQuery::recount() {
    const auto end = static_cast<double>(DayBounds::endOfTodayAt(m_clock()).toMSecsSinceEpoch());
    setDueCount(static_cast<int>(
        std::count_if(m_dueDates.cbegin(), m_dueDates.cend(), [end](double due) { return due <= end; })));
}

void DueCountQuery::startRefresh() {
    startTask(this, refresh(), [](bool) {});
}

void DueCountQuery::settingsChanged() {
    const bool shown = m_settings.settings().showDueCountBadge;
    if (shown && !m_shown) {
        startRefresh();
    }
    m_shown = shown;
}

void DueCountQuery::setDueCount(int count) {
    if (m_dueCount == count) {
        return;
    }
    m_dueCount = count;
    emit dueCountChanged();
}
