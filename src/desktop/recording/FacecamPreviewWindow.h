#pragma once

#include "core/recording/FacecamOverlay.h"
#include "core/recording/FacecamStyle.h"

#include <QRasterWindow>
#include <QTimer>

// The camera's live picture in a small window of the style's shape, in the corner of the main
// screen the style names, over every window, taking no clicks and never the keyboard. The picture
// is mirrored, as a person expects to see themself, and fills the window.
class FacecamPreviewWindow : public QRasterWindow {
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds frameInterval{33};

    FacecamPreviewWindow();

    // Shows the camera of `facecam`; the camera must outlive the preview, or the preview be
    // dismissed first.
    void present(FacecamOverlay& facecam, const FacecamStyle& style);
    void dismiss();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    FacecamOverlay* m_facecam = nullptr;
    FacecamStyle m_style;
    QTimer m_frames;
};
