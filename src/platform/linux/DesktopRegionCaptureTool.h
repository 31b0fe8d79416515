#pragma once

#include "core/platform/RegionCaptureTool.h"
#include "platform/linux/ScreenshotPortal.h"

// Region screenshots on a Linux desktop: the Screenshot portal where one takes the request, else
// the first installed region tool (RegionCaptureCommands). One screenshot at a time: a request while
// one is being taken runs nothing.
class DesktopRegionCaptureTool : public RegionCaptureTool {
public:
    explicit DesktopRegionCaptureTool(QDBusConnection bus = QDBusConnection::sessionBus());

    QCoro::Task<bool> captureRegion(QString outputPath) override;

private:
    ScreenshotPortal m_portal;
    bool m_capturing = false;
};
