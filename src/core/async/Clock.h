#pragma once

#include <QDateTime>
#include <functional>

// Where "now" comes from. Code that reads the time takes a Clock, so tests can fix it.
using Clock = std::function<QDateTime()>;

namespace Clocks {
// The system's time, in UTC.
inline Clock system() {
    return [] { return QDateTime::currentDateTimeUtc(); };
}
} // namespace Clocks
