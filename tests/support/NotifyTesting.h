#pragma once

#include "core/notify/NotificationScheduler.h"
#include "support/ManualWallClock.h"
#include "support/RecordingLinkActions.h"
#include "support/RecordingNotificationCenter.h"

#include <QDateTime>
#include <QTemporaryDir>
#include <memory>

// A scheduler on a reminders file of its own, a recording center and link actions, and a wall clock
// the test moves, which rings the reminders' alarm.
struct SchedulerFixture {
    SchedulerFixture()
        : scheduler(makeScheduler()) {}

    QString remindersPath() const { return folder.filePath(QStringLiteral("reminders.json")); }
    QDateTime now() const { return time.now(); }
    // A new scheduler on the same file, as after a restart.
    void restart() {
        scheduler.reset();
        scheduler = makeScheduler();
    }
    void advance(qint64 seconds) { time.advance(seconds); }

    QTemporaryDir folder;
    ManualWallClock time{QDateTime(QDate(2026, 3, 14), QTime(9, 26, 53), Qt::UTC)};
    RecordingNotificationCenter center;
    RecordingLinkActions links;
    std::unique_ptr<NotificationScheduler> scheduler;

private:
    std::unique_ptr<NotificationScheduler> makeScheduler() {
        auto made = std::make_unique<NotificationScheduler>(center, links, remindersPath(), time.clock(), time.alarm());
        made->registerCategories();
        return made;
    }
};
