#pragma once

#include "core/recording/ScreenRecordingStartMode.h"

#include <QString>
#include <QUrl>
#include <optional>

// A finished recording that waits for the person to keep or discard it.
struct PendingRecordingPreview {
    // The movie in the temporary folder.
    QUrl url;
    // In seconds, as the engine counted it: pauses left out.
    double duration = 0;
    ScreenRecordingStartMode mode;
    // Shown in the review panel.
    std::optional<QString> sizeWarning;

    bool operator==(const PendingRecordingPreview&) const = default;
};
