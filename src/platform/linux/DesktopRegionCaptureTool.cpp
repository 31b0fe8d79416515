#include "platform/linux/DesktopRegionCaptureTool.h"

#include "platform/linux/RegionCaptureCommands.h"

#include <QScopeGuard>

DesktopRegionCaptureTool::DesktopRegionCaptureTool(QDBusConnection bus)
    : m_portal(std::move(bus)) {}

QCoro::Task<bool> DesktopRegionCaptureTool::captureRegion(QString outputPath) {
    if (m_capturing) {
        co_return false;
    }
    m_capturing = true;
    const auto done = qScopeGuard([this] { m_capturing = false; });
    QCoro::Task<bool> asking = m_portal.capture(outputPath);
    if (co_await std::move(asking)) {
        co_return true;
    }
    QCoro::Task<bool> running = RegionCaptureCommands::runFirstInstalled(outputPath);
    co_return co_await std::move(running);
}
