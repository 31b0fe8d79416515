#pragma once

#include "core/storage/StorageProviderError.h"

#include <optional>

namespace StorageTesting {

// The StorageProviderError that the call throws, or nothing when it throws none.
template <typename Call> std::optional<StorageProviderError> failureOf(Call call) {
    try {
        call();
    } catch (const StorageProviderError& error) {
        return error;
    }
    return std::nullopt;
}

} // namespace StorageTesting
