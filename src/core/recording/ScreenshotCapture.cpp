#include "core/recording/ScreenshotCapture.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUuid>

ScreenshotCapture::ScreenshotCapture(RegionCaptureTool* tool)
    : m_tool(tool) {}

QCoro::Task<std::optional<QUrl>> ScreenshotCapture::capture() {
    const QString name =
        QStringLiteral("norvanebar-shot-%1.png").arg(QUuid::createUuid().toString(QUuid::WithoutBraces));
    const QString path = QDir(QDir::tempPath()).filePath(name);
    bool ran = false;
    if (m_tool) {
        QCoro::Task<bool> capturing = m_tool->captureRegion(path);
        ran = co_await std::move(capturing);
    }
    const QFileInfo file(path);
    if (ran && file.exists() && file.size() > 0) {
        co_return QUrl::fromLocalFile(path);
    }
    QFile::remove(path);
    co_return std::nullopt;
}
