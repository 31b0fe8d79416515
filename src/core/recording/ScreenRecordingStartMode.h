#pragma once

#include <QUuid>
#include <optional>
#include <variant>

// How a finished recording enters the draft.
namespace ScreenRecordingStartModes {

// The draft starts afresh with the recording as its only attachment, and the template applied if
// there is one.
struct ReplaceDraft {
    std::optional<QUuid> templateID;
    bool operator==(const ReplaceDraft&) const = default;
};
// The recording joins the draft's attachments.
struct AppendToDraft {
    bool operator==(const AppendToDraft&) const = default;
};

} // namespace ScreenRecordingStartModes

using ScreenRecordingStartMode =
    std::variant<ScreenRecordingStartModes::ReplaceDraft, ScreenRecordingStartModes::AppendToDraft>;
