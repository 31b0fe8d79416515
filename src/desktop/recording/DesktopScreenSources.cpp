#include "desktop/recording/DesktopScreenSources.h"

#include "core/recording/CameraOverlayCompositor.h"
#include "platform/linux/GStreamerCameraFeed.h"
#include "platform/linux/GStreamerScreenCapture.h"
#include "platform/linux/ScreenCastPortal.h"

#include <QStandardPaths>

namespace {
QString restoreTokenPath() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/NorvaneBar/screencast-restore-token");
}
} // namespace

DesktopScreenSources desktopScreenSources() {
    return {.picker = std::make_unique<ScreenCastPortal>(restoreTokenPath()),
            .capture = std::make_unique<GStreamerScreenCapture>(GStreamerScreenCapture::Screens::pipeWire)};
}

std::unique_ptr<FacecamOverlay> desktopFacecam(const FacecamStyle& style) {
    return std::make_unique<CameraOverlayCompositor>(style, std::make_unique<GStreamerCameraFeed>(),
                                                     PersonSegmenters::unavailable());
}
