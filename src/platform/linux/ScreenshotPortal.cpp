#include "platform/linux/ScreenshotPortal.h"

#include "platform/linux/PortalRequest.h"

#include <QFile>
#include <QUrl>

ScreenshotPortal::ScreenshotPortal(QDBusConnection bus)
    : m_bus(std::move(bus)) {}

QCoro::Task<bool> ScreenshotPortal::capture(QString outputPath) {
    QCoro::Task<std::optional<PortalRequest::Response>> asking =
        PortalRequest::call(m_bus, QStringLiteral("org.freedesktop.portal.Screenshot"), QStringLiteral("Screenshot"),
                            {QString()}, // no parent window
                            {{QStringLiteral("modal"), true}, {QStringLiteral("interactive"), true}});
    const std::optional<PortalRequest::Response> response = co_await std::move(asking);
    if (!response) {
        co_return false;
    }
    const QUrl picture(response->results.value(QStringLiteral("uri")).toString());
    if (response->code == PortalRequest::success && picture.isLocalFile()) {
        QFile::copy(picture.toLocalFile(), outputPath);
    }
    co_return true;
}
