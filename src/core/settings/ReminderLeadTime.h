#pragma once

#include <QList>
#include <QString>

// How long before a task's due time its local reminder comes, as the settings offer it.
namespace ReminderLeadTime {

// The minutes offered, in order.
const QList<qint64>& choices();
// "At due time" for 0, else the number and " minutes before".
QString label(qint64 minutes);

} // namespace ReminderLeadTime
