#pragma once

#include "core/platform/ScreenContentPicker.h"
#include "core/recording/RecordingCountdown.h"
#include "core/recording/RecordingPanels.h"

#include <QList>
#include <QPointer>
#include <functional>
#include <optional>

// The surfaces of a recording workflow, driven by the test: a content picker the test answers in
// the person's place, and panels that note what they were asked to show.
namespace ScriptedRecording {

class ContentPicker : public ScreenContentPicker {
public:
    void addObserver(ScreenContentPickerObserver* observer) override { observers.append(observer); }
    void removeObserver(ScreenContentPickerObserver* observer) override { observers.removeAll(observer); }
    bool isActive() const override { return active; }
    void setActive(bool isActive) override { active = isActive; }
    void present(bool showsCursor) override {
        ++presented;
        showedCursor = showsCursor;
    }

    // The person's answers, told to every observer.
    void select(const CaptureTarget& target) const {
        for (ScreenContentPickerObserver* observer : QList(observers)) {
            observer->contentPickerDidSelect(target);
        }
    }
    void cancel() const {
        for (ScreenContentPickerObserver* observer : QList(observers)) {
            observer->contentPickerDidCancel();
        }
    }
    void failToStart(const QString& description) const {
        for (ScreenContentPickerObserver* observer : QList(observers)) {
            observer->contentPickerStartDidFail(description);
        }
    }

    QList<ScreenContentPickerObserver*> observers;
    bool active = false;
    int presented = 0;
    // Whether the last presentation asked for the pointer.
    std::optional<bool> showedCursor;
};

class Panels : public RecordingPanels {
public:
    void showCountdown(RecordingCountdown& shown) override {
        countdown = &shown;
        countdownsShown.append(shown.remaining());
    }
    void closeCountdown() override {
        countdown = nullptr;
        ++countdownsClosed;
    }
    void showControls() override {
        controlsShown = true;
        ++controlsShowings;
    }
    void hideControls() override { controlsShown = false; }
    void showFacecamPreview(FacecamOverlay& /*facecam*/, const FacecamStyle& style) override { previewStyle = style; }
    void dismissFacecamPreview() override { previewStyle.reset(); }
    void showReview(const PendingRecordingPreview& preview, std::function<void()> onAttach,
                    std::function<void()> onReRecord, std::function<void()> onDiscard) override {
        review = preview;
        ++reviewsShown;
        attach = std::move(onAttach);
        reRecord = std::move(onReRecord);
        discard = std::move(onDiscard);
    }
    void dismissReview() override { review.reset(); }

    // The countdown on show, and the seconds each countdown began with.
    QPointer<RecordingCountdown> countdown;
    QList<int> countdownsShown;
    int countdownsClosed = 0;
    bool controlsShown = false;
    int controlsShowings = 0;
    // The camera preview's style while it shows.
    std::optional<FacecamStyle> previewStyle;
    // The review on show and its buttons.
    std::optional<PendingRecordingPreview> review;
    int reviewsShown = 0;
    std::function<void()> attach;
    std::function<void()> reRecord;
    std::function<void()> discard;
};

} // namespace ScriptedRecording
