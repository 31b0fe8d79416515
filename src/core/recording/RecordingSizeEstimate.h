#pragma once

#include "core/recording/RecordingConfiguration.h"

#include <QString>
#include <optional>

// What a recording's file is expected to weigh as it grows, and the warning once that comes near
// Norvane's limit for one attachment.
namespace RecordingSizeEstimate {

// The estimate after `elapsedSeconds` of recording: the video's rate of the quality, and the
// microphone's when it records.
qint64 estimatedFileBytes(const RecordingConfiguration& configuration, double elapsedSeconds);

// The warning for an estimate of `bytes`, from 524,288,001 bytes on; none below.
std::optional<QString> sizeWarning(qint64 bytes);

} // namespace RecordingSizeEstimate
