#include "app/MyDayContext.h"

TasksTabContext myDayContext(AppState& app) {
    return {
        .signedInUser = [&app] { return app.authState().user(); },
        .activeWorkspaceID = [&app] { return app.activeWorkspaceID(); },
        .currentContext = [&app] { return app.currentContext(); },
        .updateBadge =
            [&app] {
                if (app.updateBadge) {
                    app.updateBadge();
                }
            },
        .reminders = &app.notifications(),
        .webBaseURL = app.serviceAddresses().webBaseURL,
        .clock = app.myDay().clock(),
        .dayChange = &app.dayChange(),
    };
}
