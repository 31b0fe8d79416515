#pragma once

#include "app/AppState.h"
#include "myday/TasksTabState.h"

// What the Tasks tab reads of the central state: the signed-in user, the active workspace, the
// current list, the reminders and the web address. `app` must outlive the tab.
TasksTabContext myDayContext(AppState& app);
