#pragma once

#include "compose/StagedAttachment.h"

#include <QList>
#include <QStringList>
#include <functional>

class QMimeData;
class QObject;

// Dropped data into staged attachments, with the same rules as pasting: local file URLs win, an image
// counts only when there is none.
namespace DropHandling {

// The types a drop target takes, file URLs before images: "text/uri-list", then Qt's in-process
// "application/x-qt-image", then every encoded image type this build can decode.
QStringList acceptedTypes();

// False at once when the data has neither a local file URL nor an image. Otherwise reads the data
// here, stages it on a pool thread (encoding an image can take a while) and returns true at once;
// `completion` then gets what could be staged, possibly nothing, on the thread of `context`, and is
// not called if `context` is destroyed first.
bool handle(const QMimeData& data, QObject* context, std::function<void(QList<StagedAttachment>)> completion);

} // namespace DropHandling
