#pragma once

#include <QString>
#include <QUrl>
#include <optional>
#include <variant>

// How big an attachment may be, and the texts that tell the user.
namespace AttachmentSizeLimits {

// Sizes above it (500 MiB) are accepted with a warning.
inline constexpr qint64 warningThreshold = 524'288'000;
// Sizes above it (93% of 1 GiB, rounded down) are refused.
inline constexpr qint64 hardLimit = 998'579'896;

struct Ok {
    bool operator==(const Ok&) const = default;
};
struct Warning {
    qint64 sizeBytes = 0;
    QString message;

    bool operator==(const Warning&) const = default;
};
struct Rejected {
    QString message;

    bool operator==(const Rejected&) const = default;
};
using ValidationResult = std::variant<Ok, Warning, Rejected>;

// The size the file system gives for a local file; absent when it can't be read.
std::optional<qint64> fileSize(const QUrl& url);

// Empty and too big are rejected; big but allowed comes with a warning to show.
ValidationResult validate(qint64 sizeBytes);

// Whole seconds, rounded to the nearest and never negative: "1:05" below an hour, "1:00:05" from it.
QString formattedDuration(double seconds);

} // namespace AttachmentSizeLimits
