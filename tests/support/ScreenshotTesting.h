#pragma once

#include "core/app/AppState.h"

// Makes a template of a name and a tag ("Bug report", "bug") the screenshot's template.
inline void chooseScreenshotTemplate(AppState& app) {
    TaskTemplate bug;
    bug.name = QStringLiteral("Bug");
    bug.taskName = QStringLiteral("Bug report");
    bug.tags = {QStringLiteral("bug")};
    app.settings().modify([&bug](AppSettings& changed) {
        changed.templates.append(bug);
        changed.screenshotTemplateID = bug.id;
    });
}

// Whether the draft is as chooseScreenshotTemplate()'s template fills it.
inline bool screenshotTemplateApplied(AppState& app) {
    return app.draft().name() == QStringLiteral("Bug report") &&
           app.draft().tags() == QSet<QString>{QStringLiteral("bug")};
}
