#include "core/submit/BackgroundJobResult.h"

#include "core/support/Overloaded.h"

std::optional<QUuid> BackgroundJobResult::retryJobID() const {
    return std::visit(
        Overloaded{
            [](const UploadPartialFailure& failure) -> std::optional<QUuid> { return failure.retryJobID; },
            [](const CreateFailed& failure) -> std::optional<QUuid> { return failure.retryJobID; },
            [](const BulkPartial& partial) { return partial.retryJobID; },
            [](const auto&) -> std::optional<QUuid> { return std::nullopt; },
        },
        outcome);
}
