#include "core/settings/ReminderLeadTime.h"

#include <QCoreApplication>

namespace ReminderLeadTime {

const QList<qint64>& choices() {
    static const QList<qint64> minutes{0, 5, 10, 15, 30, 60};
    return minutes;
}

QString label(qint64 minutes) {
    if (minutes == 0) {
        return QCoreApplication::translate("ReminderLeadTime", "At due time");
    }
    const int count = static_cast<int>(minutes);
    return QCoreApplication::translate("ReminderLeadTime", "%n minutes before", nullptr, count);
}

} // namespace ReminderLeadTime
