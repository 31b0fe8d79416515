#pragma once

#include <QString>

// What the tray icon tells beside its design: a number drawn into it, and its tool tip.
struct StatusItemBadge {
    // The number to draw into the icon; empty for none.
    QString text;
    QString toolTip;

    bool operator==(const StatusItemBadge&) const = default;

    // Submissions running in the background outrank the tasks due today, which count only with the
    // setting `showDueCountBadge` on. A count of 0 or less shows nothing.
    static StatusItemBadge make(qsizetype backgroundJobs, qsizetype dueCount, bool showDueCountBadge);
};
