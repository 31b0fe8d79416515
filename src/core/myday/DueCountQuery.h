#pragma once

#include "core/api/NorvaneClient.h"
#include "core/api/TaskRecords.h"
#include "core/async/Clock.h"
#include "core/async/LatestWins.h"

#include <QCoroTask>
#include <QList>
#include <QObject>
#include <functional>
#include <optional>

class SettingsStore;

// Whose tasks the due count is about, read each time it is needed.
struct DueCountContext {
    // The signed-in user's id; absent while nobody is signed in.
    std::function<std::optional<qint64>()> signedInUserID;
    std::function<std::optional<QString>()> activeWorkspaceID;
};

// The number beside the tray icon: how many of the signed-in user's open tasks in the active
// workspace are due by the end of today, overdue ones included, undated ones not. It has a request of
// its own, whatever the Tasks tab shows. It fetches only when asked and only with the setting
// `showDueCountBadge` on, and by itself when that setting is turned on; never by a timer. Main thread
// only; everything given must outlive it.
class DueCountQuery : public QObject {
    Q_OBJECT
    Q_PROPERTY(int dueCount READ dueCount NOTIFY dueCountChanged)

public:
    DueCountQuery(const NorvaneClient& client, const SettingsStore& settings, DueCountContext context,
                  Clock clock = Clocks::system(), QObject* parent = nullptr);

    // 0 until a fetch has landed.
    int dueCount() const { return m_dueCount; }

    // With the count shown, a user signed in and a workspace active: fetches every page of the user's
    // open tasks in that workspace and counts them. The answer is dropped when the account or the
    // workspace it was asked for is no longer the active one, when a newer fetch has started, or when
    // the query is gone; a failed fetch leaves the count as it was. Whether a new count was taken.
    QCoro::Task<bool> refresh();
    // Counts the tasks of the last fetch again against today's end, without asking the service: past
    // midnight, yesterday's "tomorrow" is due.
    void recount();

public slots:
    // refresh(), with nobody waiting for it.
    void startRefresh();

signals:
    void dueCountChanged();

private:
    void settingsChanged();
    void setDueCount(int count);

    const NorvaneClient& m_client;
    const SettingsStore& m_settings;
    const DueCountContext m_context;
    const Clock m_clock;
    LatestWins m_latest;
    bool m_shown;
    // The due dates of the fetched tasks that have one, in milliseconds since 1970.
    QList<double> m_dueDates;
    int m_dueCount = 0;
};
