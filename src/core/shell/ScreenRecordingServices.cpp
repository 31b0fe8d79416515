#include "core/shell/ScreenRecordingServices.h"

#include <QCoreApplication>
#include <QList>

namespace {
// Answers every request with the news that nothing can be recorded here.
class UnavailablePicker : public ScreenContentPicker {
    Q_DECLARE_TR_FUNCTIONS(UnavailablePicker)

public:
    void addObserver(ScreenContentPickerObserver* observer) override { m_observers.append(observer); }
    void removeObserver(ScreenContentPickerObserver* observer) override { m_observers.removeAll(observer); }
    bool isActive() const override { return m_active; }
    void setActive(bool active) override { m_active = active; }
    void present(bool) override {
        for (ScreenContentPickerObserver* observer : QList(m_observers)) {
            observer->contentPickerStartDidFail(tr("Screen recording isn't available on this desktop."));
        }
    }
    bool remembersChoice() const override { return false; }
    void forgetChoice() override {}

private:
    QList<ScreenContentPickerObserver*> m_observers;
    bool m_active = false;
};

// Never asked to show anything, as nothing is ever chosen to record.
class NoPanels : public RecordingPanels {
public:
    void showCountdown(RecordingCountdown&) override {}
    void closeCountdown() override {}
    void showControls() override {}
    void hideControls() override {}
    void showFacecamPreview(FacecamOverlay&, const FacecamStyle&) override {}
    void dismissFacecamPreview() override {}
    void showReview(const PendingRecordingPreview&, std::function<void()>, std::function<void()>,
                    std::function<void()>) override {}
    void dismissReview() override {}
};
} // namespace

ScreenRecordingCoordinator::Services screenRecordingServices(const ScreenRecordingDesktop& desktop, Sleeper sleeper) {
    if (!desktop.isComplete()) {
        static UnavailablePicker unavailable;
        static NoPanels none;
        return {.makeEngine = [](const RecordingConfiguration&) { return std::unique_ptr<ScreenRecordingEngine>(); },
                .picker = unavailable,
                .panels = none,
                .sleeper = std::move(sleeper)};
    }
    return {.makeEngine =
                [desktop](const RecordingConfiguration& configuration) {
                    return std::make_unique<ScreenRecordingEngine>(configuration,
                                                                   ScreenRecordingEngine::Services{
                                                                       .capture = *desktop.capture,
                                                                       .writers = *desktop.writers,
                                                                       .microphone = *desktop.microphone,
                                                                       .makeFacecam = desktop.makeFacecam,
                                                                   });
                },
            .picker = *desktop.picker,
            .panels = *desktop.panels,
            .prepareCapture =
                [capture = desktop.capture](const CaptureTarget& target, const RecordingConfiguration& configuration) {
                    ScreenRecordingEngine::prepareCapture(*capture, target, configuration);
                },
            .sleeper = std::move(sleeper)};
}
