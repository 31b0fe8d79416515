#include "core/support/EpochSeconds.h"

#include <cmath>

namespace EpochSeconds {
namespace {
constexpr double maximumSeconds = 1e12;
}

double of(const QDateTime& instant, qint64 referenceMSecs) {
    return static_cast<double>(instant.toMSecsSinceEpoch() - referenceMSecs) / 1000.0;
}

std::optional<QDateTime> toInstant(double seconds, qint64 referenceMSecs) {
    if (!(std::abs(seconds) <= maximumSeconds)) {
        return std::nullopt;
    }
    return QDateTime::fromMSecsSinceEpoch(std::llround(seconds * 1000.0) + referenceMSecs, Qt::UTC);
}

} // namespace EpochSeconds
