#include "core/shell/StatusItemBadge.h"

#include <QCoreApplication>

StatusItemBadge StatusItemBadge::make(qsizetype backgroundJobs, qsizetype dueCount, bool showDueCountBadge) {
    if (backgroundJobs == 1) {
        return {QStringLiteral("1"), QCoreApplication::translate("StatusItemBadge", "1 background task in progress")};
    }
    if (backgroundJobs > 1) {
        return {QString::number(backgroundJobs),
                QCoreApplication::translate("StatusItemBadge", "%1 background tasks in progress").arg(backgroundJobs)};
    }
    const QString toolTip = QCoreApplication::translate("StatusItemBadge", "NorvaneBar — new Norvane task");
    if (showDueCountBadge && dueCount > 0) {
        return {QString::number(dueCount), toolTip};
    }
    return {QString(), toolTip};
}
