#pragma once

#include "core/platform/RegionCaptureTool.h"

#include <QUrl>
#include <optional>
#include <qcoro/qcorotask.h>

// A picture of a screen region, marked by the user with the desktop's capture tool.
class ScreenshotCapture {
public:
    // The tool must outlive this object; without one there is never a picture.
    explicit ScreenshotCapture(RegionCaptureTool* tool);

    // Lets the tool write "norvanebar-shot-<UUID>.png" in the temporary folder and gives the file
    // when the tool ran and left it with at least one byte. Anything else, a cancelled selection
    // among them, removes the file and gives nothing; it never fails. The tool's exit status is not
    // read. The file belongs to the caller.
    QCoro::Task<std::optional<QUrl>> capture();

private:
    RegionCaptureTool* m_tool;
};
