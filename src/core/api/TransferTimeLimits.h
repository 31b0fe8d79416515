#pragma once

#include <chrono>

// How long the client's transfers may take.
struct TransferTimeLimits {
    // Any transfer that moves no byte for this long ends.
    std::chrono::milliseconds withoutProgress = std::chrono::seconds(60);
    // One attempt of an upload ends when it has taken this long in all, progress or not.
    std::chrono::milliseconds upload = std::chrono::hours(1);

    bool operator==(const TransferTimeLimits&) const = default;
};
