#pragma once

#include <QDateTime>
#include <optional>

// Instants as a double of seconds since a reference instant, 1970-01-01 00:00:00 UTC unless another
// is given (in milliseconds since 1970), to the millisecond.
namespace EpochSeconds {

double of(const QDateTime& instant, qint64 referenceMSecs = 0);
// Absent for a number too far from the reference to be a date: beyond about 31,000 years either
// way, where milliseconds would no longer be exact in a double.
std::optional<QDateTime> toInstant(double seconds, qint64 referenceMSecs = 0);

} // namespace EpochSeconds
