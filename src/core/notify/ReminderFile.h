#pragma once

#include "core/notify/Reminder.h"

#include <QByteArray>
#include <QList>
#include <QString>

// The file of reminders not yet due: {"reminders": [ … ]}. It is read as untrusted input: what
// can't be read is dropped, entry by entry, and never fails the rest.
namespace ReminderFile {

// NorvaneBar/reminders.json in the per-user data folder.
QString defaultPath();

// The entries that decode; nothing for bytes that are not such a document.
QList<Reminder> decode(const QByteArray& bytes);
QByteArray encode(const QList<Reminder>& reminders);

// Nothing when the file is missing or unreadable.
QList<Reminder> read(const QString& path);
// Replaces the file atomically, so that a crash leaves the old one or the new one. A failure is
// dropped.
void write(const QString& path, const QList<Reminder>& reminders);

} // namespace ReminderFile
