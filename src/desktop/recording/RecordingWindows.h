#pragma once

#include "core/async/Clock.h"
#include "core/recording/RecordingPanels.h"
#include "core/shell/ScreenRecordingCoordinator.h"
#include "desktop/recording/CountdownWindow.h"
#include "desktop/recording/FacecamPreviewWindow.h"
#include "desktop/recording/RecordingControlsViewModel.h"
#include "desktop/recording/RecordingReviewViewModel.h"

#include <QObject>
#include <QQmlEngine>
#include <QQuickView>
#include <memory>

// The windows of a recording on the desktop: the countdown, the floating controls, the camera's
// preview and the review. Each is made at its first use; the controls and the review share one QML
// engine, made with the first of them.
class RecordingWindows : public QObject, public RecordingPanels {
    Q_OBJECT

public:
    static constexpr int controlsWidth = 360;
    // The controls' distance from the top of the main screen's free area.
    static constexpr int controlsTopMargin = 24;

    explicit RecordingWindows(Clock clock = Clocks::system(), QObject* parent = nullptr);
    ~RecordingWindows() override;

    // The recording the controls show and steer; given once, before the first recording.
    void follow(ScreenRecordingCoordinator& coordinator);

    void showCountdown(RecordingCountdown& countdown) override;
    void closeCountdown() override;
    void showControls() override;
    void hideControls() override;
    void showFacecamPreview(FacecamOverlay& facecam, const FacecamStyle& style) override;
    void dismissFacecamPreview() override;
    void showReview(const PendingRecordingPreview& preview, std::function<void()> onAttach,
                    std::function<void()> onReRecord, std::function<void()> onDiscard) override;
    void dismissReview() override;

    // The windows as they stand, none before their first use.
    CountdownWindow* countdownWindow() const { return m_countdown.get(); }
    QQuickView* controlsWindow() const { return m_controlsView.get(); }
    FacecamPreviewWindow* facecamPreviewWindow() const { return m_facecamPreview.get(); }
    QQuickView* reviewWindow() const { return m_reviewView.get(); }
    RecordingReviewViewModel& review() { return m_review; }

protected:
    // Closing the review by its title bar discards the movie.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::unique_ptr<QQuickView> makeView(const QString& page, const QVariantMap& properties);

    RecordingReviewViewModel m_review;
    std::unique_ptr<RecordingControlsViewModel> m_controls;
    std::unique_ptr<QQmlEngine> m_engine;
    // After the engine, so that they go before it.
    std::unique_ptr<QQuickView> m_controlsView;
    std::unique_ptr<QQuickView> m_reviewView;
    std::unique_ptr<CountdownWindow> m_countdown;
    std::unique_ptr<FacecamPreviewWindow> m_facecamPreview;
};
