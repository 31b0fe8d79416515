#pragma once

#include "core/submit/CreateFailure.h"

#include <QString>
#include <QUuid>
#include <optional>
#include <variant>

// The outcome of a job in the background whose notification couldn't be delivered: the composer
// shows it as a banner instead.
struct BackgroundJobResult {
    struct Success {
        QString taskName;
        std::optional<QString> taskURL;
        bool operator==(const Success&) const = default;
    };
    struct UploadPartialFailure {
        QString taskName;
        std::optional<QString> taskURL;
        int failureCount = 0;
        std::optional<QString> failureMessage;
        QUuid retryJobID;
        bool operator==(const UploadPartialFailure&) const = default;
    };
    struct CreateFailed {
        QString taskName;
        QString message;
        QUuid retryJobID;
        CreateFailure failure = CreateFailure::notCreated;
        bool operator==(const CreateFailed&) const = default;
    };
    struct BulkSuccess {
        int createdCount = 0;
        bool operator==(const BulkSuccess&) const = default;
    };
    struct BulkPartial {
        int createdCount = 0;
        int failureCount = 0;
        std::optional<QUuid> retryJobID;
        bool operator==(const BulkPartial&) const = default;
    };
    using Outcome = std::variant<Success, UploadPartialFailure, CreateFailed, BulkSuccess, BulkPartial>;

    Outcome outcome;

    // The job to retry from the banner, where the outcome has one.
    std::optional<QUuid> retryJobID() const;

    bool operator==(const BackgroundJobResult&) const = default;
};
