#pragma once

#include "app/AppState.h"

#include <qcoro/qcorotask.h>

// With the due count shown, a user signed in and a workspace active: fetches the user's tasks in the
// active workspace, then redraws the tray icon's badge through AppState::updateBadge. At launch,
// each time the popover opens and when the count is turned on; never by a timer.
QCoro::Task<> refreshDueCountIfNeeded(AppState& app);
