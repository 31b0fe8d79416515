#pragma once

#include "core/platform/ScreenContentPicker.h"
#include "core/recording/RecordingCountdown.h"
#include "core/recording/RecordingPanels.h"
#include "core/shell/ScreenRecordingCoordinator.h"
#include "support/ScriptedRecording.h"

#include <QCoreApplication>
#include <QList>
#include <QPointer>
#include <functional>
#include <optional>

// The surfaces of a recording workflow, driven by the test: a content picker the test answers in
// the person's place, panels that note what they were asked to show, and a coordinator over them
// and the real engine between the rig's scripted pieces.
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
    bool remembersChoice() const override { return remembered; }
    void forgetChoice() override { remembered = false; }

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
    bool remembered = false;
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

// A recording's coordinator with its scripted surroundings, and the steps a test takes through it.
struct Workflow {
    Rig rig;
    ContentPicker picker;
    Panels panels;
    std::unique_ptr<ScreenRecordingCoordinator> coordinator;

    Workflow()
        : Workflow(panels) {}
    // The recording's windows are `shownBy` in place of the noted panels.
    explicit Workflow(RecordingPanels& shownBy)
        : coordinator(std::make_unique<ScreenRecordingCoordinator>(ScreenRecordingCoordinator::Services{
              .makeEngine =
                  [this](const RecordingConfiguration& chosen) {
                      return std::make_unique<ScreenRecordingEngine>(chosen, rig.engineServices());
                  },
              .picker = picker,
              .panels = shownBy,
              .prepareCapture =
                  [this](const CaptureTarget& target, const RecordingConfiguration& chosen) {
                      ScreenRecordingEngine::prepareCapture(rig.capture, target, chosen);
                  },
              .sleeper = rig.waits.sleeper(),
          })) {}
    Workflow(const Workflow&) = delete;
    Workflow& operator=(const Workflow&) = delete;
    // The coordinator goes first; then every wait ends, so no waiting task outlives the test.
    ~Workflow() {
        coordinator.reset();
        rig.waits.releaseAll();
        drain();
    }

    // Lets the posted work run: the writer queue's, what it hands back, and the hops to the main
    // thread.
    static void drain() {
        for (int round = 0; round < 6; ++round) {
            QCoreApplication::processEvents();
        }
    }
    void release(std::chrono::milliseconds length) {
        rig.waits.release(length);
        drain();
    }
    // The person picks a screen of 64 × 48 pixels, and the countdown runs out.
    void chooseScreenAndCountDown() {
        CaptureTarget screen;
        screen.contentRect = QRectF(0, 0, 64, 48);
        picker.select(screen);
        for (int second = 0; second < ScreenRecordingCoordinator::countdownSeconds; ++second) {
            release(std::chrono::seconds(1));
        }
    }
    StreamRecord& stream() const { return *rig.capture.streams.last(); }
    // Frames and, with `withSound`, the microphone from `from` for a tenth of a second.
    void speak(double from, bool withSound = true) {
        for (int step = 0; step < 3; ++step) {
            const double at = from + step / 30.0;
            if (withSound) {
                stream().deliver(microphone(at));
            }
            stream().deliver(frame(at));
            drain();
        }
    }
    // One half-second tick of the engine's clock, the clock moved on first.
    void tick(double seconds = 0.5) {
        rig.advance(seconds);
        release(std::chrono::milliseconds(500));
    }
    // Records a little with sound and stops: the review opens.
    void speakAndStop() {
        speak(0.0);
        tick(2.0);
        coordinator->stopRecording();
        drain();
    }
};

} // namespace ScriptedRecording
