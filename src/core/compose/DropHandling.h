#pragma once

#include "core/compose/StagedAttachment.h"

#include <QList>
#include <QStringList>
#include <functional>

class QMimeData;
class QObject;

// Dropped data into staged attachments. Each dropped file and the dropped image is an item of its
// own: a drop of files and an image stages them all.
namespace DropHandling {

// The types a drop target takes, file URLs before images: "text/uri-list", then Qt's in-process
// "application/x-qt-image", then every encoded image type this build can decode.
QStringList acceptedTypes();

// Whether the data has one of `types` (a list from acceptedTypes()), by its formats alone.
bool bringsAcceptedType(const QMimeData& data, const QStringList& types);

// False at once when the data brings none of the accepted types. Otherwise the drop is taken, also
// when nothing in it can be staged (files that are gone, a URL of the web, an image that doesn't
// decode): reads the data here, stages the existing local files and the image on a pool thread
// (encoding an image can take a while) and returns true at once; `completion` then gets what could
// be staged, possibly nothing, on the thread of `context`, and is not called if `context` is
// destroyed first.
bool handle(const QMimeData& data, QObject* context, std::function<void(QList<StagedAttachment>)> completion);

} // namespace DropHandling
