#pragma once

#include "RecordingLinkActions.h"
#include "RecordingNotificationCenter.h"
#include "async/Clock.h"
#include "notify/NotificationScheduler.h"

#include <QDateTime>
#include <QTemporaryDir>
#include <memory>

// A scheduler on a reminders file of its own, a recording center and link actions, and a clock the
// test sets.
struct SchedulerFixture {
    SchedulerFixture()
        : scheduler(std::make_unique<NotificationScheduler>(center, links, remindersPath(), clock())) {
        scheduler->registerCategories();
    }

    QString remindersPath() const { return folder.filePath(QStringLiteral("reminders.json")); }
    Clock clock() const {
        return [now = now] { return *now; };
    }
    // A new scheduler on the same file, as after a restart.
    void restart() {
        scheduler.reset();
        scheduler = std::make_unique<NotificationScheduler>(center, links, remindersPath(), clock());
        scheduler->registerCategories();
    }
    void advance(qint64 seconds) { *now = now->addSecs(seconds); }

    QTemporaryDir folder;
    std::shared_ptr<QDateTime> now =
        std::make_shared<QDateTime>(QDateTime(QDate(2026, 3, 14), QTime(9, 26, 53), Qt::UTC));
    RecordingNotificationCenter center;
    RecordingLinkActions links;
    std::unique_ptr<NotificationScheduler> scheduler;
};
