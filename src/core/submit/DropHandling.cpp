#include "submit/DropHandling.h"
#include "submit/AttachmentStaging.h"
#include "submit/PasteboardContents.h"

#include <QFutureWatcher>
#include <QImageReader>
#include <QPromise>
#include <QThreadPool>
#include <memory>

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
    // The watcher belongs to the context, so the result reaches its thread and is dropped with it.
    auto* watcher = new QFutureWatcher<QList<StagedAttachment>>(context);
    QObject::connect(watcher, &QFutureWatcherBase::finished, watcher, [watcher, completion = std::move(completion)] {
        completion(watcher->result());
        watcher->deleteLater();
    });
    // Shared because the pool takes a copyable function and a promise only moves.
    auto promise = std::make_shared<QPromise<QList<StagedAttachment>>>();
    watcher->setFuture(promise->future());
    promise->start();
    QThreadPool::globalInstance()->start([promise, contents] {
        promise->addResult(AttachmentStaging::stage(contents));
        promise->finish();
    });
    return true;
}

} // namespace DropHandling
