#pragma once

#include "core/api/NorvaneClient.h"
#include "core/compose/StagedAttachment.h"
#include "core/submit/AttachmentUploadFailure.h"

#include <QCoroTask>
#include <QList>
#include <QString>
#include <functional>
#include <optional>

// Sends a batch of attachments to a task on the service, one file at a time. Holds no state; the
// program-wide order of batches is AttachmentUploadQueue's.
namespace AttachmentUploader {

// Told (file number from 1, file count) on the main thread before each file goes out.
using Progress = std::function<void(int current, int total)>;

// Sizes from this one up are refused before any request: one byte above the attachment limit.
inline constexpr qint64 refusedSize = 998'579'897;
// Files up to this size (5 MiB), videos apart, are read whole and sent from memory.
inline constexpr qint64 inMemoryLimit = 5'242'880;

// How a file goes out: read whole into memory, or streamed from disk.
enum class Route { memory, streaming };
// Videos and files above 5 MiB stream; the rest, a file of unknown size included, go from memory.
Route routeFor(const StagedAttachment& attachment, std::optional<qint64> size);

// Every attachment in order; one that fails becomes a failure with a fresh id and the next goes on.
QCoro::Task<QList<AttachmentUploadFailure>> uploadAll(QString taskID, QList<StagedAttachment> attachments,
                                                      NorvaneClient client, Progress onProgress);

// One attachment: refused locally from refusedSize up (NVError::Server), AttachmentUploadError
// when the file is gone, else sent through the client with its own retries.
QCoro::Task<> upload(StagedAttachment attachment, QString taskID, NorvaneClient client);

} // namespace AttachmentUploader
