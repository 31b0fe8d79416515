#include "desktop/recording/DesktopScreenSources.h"

#include "core/recording/CameraOverlayCompositor.h"
#include "desktop/recording/X11ScreenPicker.h"
#include "platform/linux/GStreamerCameraFeed.h"
#include "platform/linux/GStreamerScreenCapture.h"
#include "platform/linux/ScreenCastPortal.h"
#include "platform/linux/X11Connection.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QStandardPaths>

namespace {
const QString portalService = QStringLiteral("org.freedesktop.portal.Desktop");

// Whether the desktop's portals run, or start when asked.
bool portalAnswers() {
    const QDBusConnectionInterface* bus = QDBusConnection::sessionBus().interface();
    if (!bus) {
        return false;
    }
    const QDBusReply<bool> running = bus->isServiceRegistered(portalService);
    if (running.isValid() && running.value()) {
        return true;
    }
    const QDBusReply<QStringList> activatable = bus->activatableServiceNames();
    return activatable.isValid() && activatable.value().contains(portalService);
}

QString restoreTokenPath() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/NorvaneBar/screencast-restore-token");
}
} // namespace

DesktopScreenSources desktopScreenSources() {
    const bool x11 = x11Connection() != nullptr;
    std::unique_ptr<ScreenContentPicker> picker;
    if (x11 && !portalAnswers()) {
        picker = std::make_unique<X11ScreenPicker>();
    } else {
        picker = std::make_unique<ScreenCastPortal>(restoreTokenPath());
    }
    return {.picker = std::move(picker),
            .capture = std::make_unique<GStreamerScreenCapture>(x11 ? GStreamerScreenCapture::Screens::x11
                                                                    : GStreamerScreenCapture::Screens::pipeWire)};
}

std::unique_ptr<FacecamOverlay> desktopFacecam(const FacecamStyle& style) {
    return std::make_unique<CameraOverlayCompositor>(style, std::make_unique<GStreamerCameraFeed>(),
                                                     PersonSegmenters::unavailable());
}
