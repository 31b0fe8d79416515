#include "app/DueCountRefresh.h"

#include <QPointer>

QCoro::Task<> refreshDueCountIfNeeded(AppState& app) {
    const QPointer<AppState> alive(&app);
    const NVUser* user = app.authState().user();
    QCoro::Task<bool> refreshing =
        app.myDay().refreshDueCount(app.settings().settings().showDueCountBadge,
                                    user ? std::optional(user->id) : std::nullopt, app.activeWorkspaceID());
    if (co_await std::move(refreshing) && alive && alive->updateBadge) {
        alive->updateBadge();
    }
}
