#pragma once

#include <QList>
#include <QString>

// How long before the due time the composer can have a reminder fire.
namespace ReminderLeads {

// In minutes: 0, 5, 10, 15, 30, 60.
const QList<qint64>& choices();

// "At due time" for 0, otherwise the number and " min before".
QString label(qint64 minutes);

} // namespace ReminderLeads
