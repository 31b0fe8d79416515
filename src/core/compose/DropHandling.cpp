#include "core/compose/DropHandling.h"

#include "core/async/Background.h"
#include "core/async/StartTask.h"
#include "core/compose/AttachmentStaging.h"
#include "core/compose/PasteboardContents.h"

#include <QImageReader>
#include <QMimeData>
#include <algorithm>

namespace DropHandling {

QStringList acceptedTypes() {
    QStringList types{QStringLiteral("text/uri-list"), QStringLiteral("application/x-qt-image")};
    for (const QByteArray& type : QImageReader::supportedMimeTypes()) {
        types.append(QString::fromLatin1(type));
    }
    return types;
}

bool bringsAcceptedType(const QMimeData& data, const QStringList& types) {
    return std::ranges::any_of(types, [&data](const QString& type) { return data.hasFormat(type); });
}

bool handle(const QMimeData& data, QObject* context, std::function<void(QList<StagedAttachment>)> completion) {
    if (!bringsAcceptedType(data, acceptedTypes())) {
        return false;
    }
    const PasteboardContents contents = PasteboardContents::readDropped(data);
    // Encoding an image can take a while, so staging runs on the pool; the result comes back on the
    // context's thread, and not at all once the context is gone.
    std::function<QList<StagedAttachment>()> staging = [contents] { return AttachmentStaging::stage(contents); };
    startTask(context, runInBackground(std::move(staging)), std::move(completion));
    return true;
}

} // namespace DropHandling
