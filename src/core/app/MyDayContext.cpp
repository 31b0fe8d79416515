#include "core/app/MyDayContext.h"

TasksTabContext myDayContext(AppState& app) {
    return {
        .signedInUser = [&app] { return app.authState().user(); },
        .activeWorkspaceID = [&app] { return app.activeWorkspaceID(); },
        .currentContext = [&app] { return app.currentContext(); },
        .reminders = &app.notifications(),
        .webBaseURL = app.serviceAddresses().webBaseURL,
        .clock = app.myDay().clock(),
        .dayChange = &app.dayChange(),
    };
}

void followAppState(AppState& app, TasksTabState& tab) {
    QObject::connect(&app, &AppState::authStateChanged, &tab, &TasksTabState::contextChanged);
    QObject::connect(&app, &AppState::currentContextChanged, &tab, &TasksTabState::contextChanged);
    QObject::connect(&app, &AppState::activeWorkspaceIDChanged, &tab, &TasksTabState::contextChanged);
}
