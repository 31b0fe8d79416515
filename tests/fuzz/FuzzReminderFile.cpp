// The reminders file decoder on any bytes: it never fails, and what it reads saves to a file that
// reads back as the same reminders and saves to the same bytes again.
#include "core/notify/ReminderFile.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const QList<Reminder> reminders = ReminderFile::decode(bytes);
    const QByteArray saved = ReminderFile::encode(reminders);
    const QList<Reminder> again = ReminderFile::decode(saved);
    if (again != reminders || ReminderFile::encode(again) != saved) {
        std::abort();
    }
    return 0;
}
