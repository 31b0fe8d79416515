#pragma once

#include "core/app/AppState.h"
#include "core/myday/TasksTabState.h"

// What the Tasks tab reads of the central state: the signed-in user, the active workspace, the
// current list, the reminders and the web address. `app` must outlive the tab.
TasksTabContext myDayContext(AppState& app);

// Tells the tab whenever the account, the active workspace or the current list may have changed,
// for as long as both live.
void followAppState(AppState& app, TasksTabState& tab);
