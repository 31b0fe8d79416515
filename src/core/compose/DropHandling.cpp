#include "compose/DropHandling.h"

#include "async/Background.h"
#include "async/StartTask.h"
#include "compose/AttachmentStaging.h"
#include "compose/PasteboardContents.h"

#include <QImageReader>

namespace DropHandling {

QStringList acceptedTypes() {
    QStringList types{QStringLiteral("text/uri-list"), QStringLiteral("application/x-qt-image")};
    for (const QByteArray& type : QImageReader::supportedMimeTypes()) {
        types.append(QString::fromLatin1(type));
    }
    return types;
}

bool handle(const QMimeData& data, QObject* context, std::function<void(QList<StagedAttachment>)> completion) {
    const PasteboardContents contents = PasteboardContents::read(data);
    if (contents.isEmpty()) {
        return false;
    }
    // Encoding an image can take a while, so staging runs on the pool; the result comes back on the
    // context's thread, and not at all once the context is gone.
    std::function<QList<StagedAttachment>()> staging = [contents] { return AttachmentStaging::stage(contents); };
    startTask(context, runInBackground(std::move(staging)), std::move(completion));
    return true;
}

} // namespace DropHandling
