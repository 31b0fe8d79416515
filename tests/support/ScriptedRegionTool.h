#pragma once

#include "core/platform/RegionCaptureTool.h"

#include <QByteArray>
#include <QFile>
#include <QStringList>
#include <optional>

// A region capture tool that plays the user's part as the test sets it: it writes the bytes given
// (or nothing, as a cancelled selection) and says whether it ran. It writes even when it says it
// didn't run, as a tool that half started might. It remembers every path it was given.
class ScriptedRegionTool : public RegionCaptureTool {
public:
    // Writes these bytes; absent writes no file.
    std::optional<QByteArray> written;
    bool ran = true;
    QStringList paths;

    QCoro::Task<bool> captureRegion(QString outputPath) override {
        paths.append(outputPath);
        if (written) {
            QFile file(outputPath);
            if (file.open(QIODevice::WriteOnly)) {
                file.write(*written);
            }
        }
        co_return ran;
    }
};
