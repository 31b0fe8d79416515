#pragma once

#include <QString>
#include <qcoro/qcorotask.h>

// The desktop's own tool for taking a picture of a part of the screen: the user marks a region, or
// cancels, and the tool writes the picture as PNG. The desktop gives the real one.
class RegionCaptureTool {
public:
    virtual ~RegionCaptureTool() = default;

    // Lets the user mark a region and writes its picture to `outputPath`; whether a tool ran. A
    // cancelled selection still ran, and leaves no file or an empty one.
    virtual QCoro::Task<bool> captureRegion(QString outputPath) = 0;
};
