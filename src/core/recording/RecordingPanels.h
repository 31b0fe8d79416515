#pragma once

#include "core/recording/FacecamStyle.h"
#include "core/recording/PendingRecordingPreview.h"

#include <functional>

class FacecamOverlay;
class RecordingCountdown;

// The windows of a recording, which the desktop draws: the countdown over the whole screen, the
// floating controls, the camera's preview and the review of the finished movie. They hold no
// workflow of their own; the controls read the recording's coordinator and call it.
class RecordingPanels {
public:
    virtual ~RecordingPanels() = default;

    // Shows `countdown`, which counts by itself, in place of any countdown shown before.
    virtual void showCountdown(RecordingCountdown& countdown) = 0;
    virtual void closeCountdown() = 0;

    virtual void showControls() = 0;
    virtual void hideControls() = 0;

    // Shows the camera of `facecam` as `style` places it; a style that hides the camera hides the
    // preview.
    virtual void showFacecamPreview(FacecamOverlay& facecam, const FacecamStyle& style) = 0;
    virtual void dismissFacecamPreview() = 0;

    // Plays the movie of `preview` for review; its buttons call the three actions.
    virtual void showReview(const PendingRecordingPreview& preview, std::function<void()> onAttach,
                            std::function<void()> onReRecord, std::function<void()> onDiscard) = 0;
    virtual void dismissReview() = 0;
};
