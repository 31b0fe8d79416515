#include "core/shell/StatusItemBadge.h"

#include <QCoreApplication>

StatusItemBadge StatusItemBadge::make(qsizetype backgroundJobs, qsizetype dueCount, bool showDueCountBadge) {
    if (backgroundJobs > 0) {
        // A named int, as lupdate sees no numerus text counted by a template call.
        const int count = static_cast<int>(backgroundJobs);
        return {QString::number(backgroundJobs),
                QCoreApplication::translate("StatusItemBadge", "%n background tasks in progress", nullptr, count)};
    }
    const QString toolTip = QCoreApplication::translate("StatusItemBadge", "NorvaneBar — new Norvane task");
    if (showDueCountBadge && dueCount > 0) {
        return {QString::number(dueCount), toolTip};
    }
    return {QString(), toolTip};
}
