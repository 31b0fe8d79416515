#pragma once

#include "core/compose/PasteboardContents.h"
#include "core/compose/StagedAttachment.h"

#include <QDateTime>
#include <QImage>
#include <QList>
#include <QSet>
#include <QString>
#include <QUrl>
#include <optional>

class QMimeData;

// Turns what the user drops, pastes, captures or records into staged attachments, writing bytes to
// the temporary directory where there is no file yet. Holds no state, so any thread may call it.
// Every failure gives nothing, silently.
namespace AttachmentStaging {

// Lower-case path extensions that make a file an image or a video.
extern const QSet<QString> imageExtensions;
extern const QSet<QString> videoExtensions;

// Pasted or dropped data: the existing files among its local file URLs; only when it has no file URL
// at all, its image as staged from memory without a name.
QList<StagedAttachment> stage(const QMimeData& pasteboard);
// The same, for contents already read from the data.
QList<StagedAttachment> stage(const PasteboardContents& contents);

// The image as PNG in "norvanebar-<UUID>-<name>" of the temporary directory; the name is the one
// suggested, else timestampedName(). Nothing for a null image or when encoding or writing fails.
std::optional<StagedAttachment> stage(const QImage& image, const std::optional<QString>& suggestedName);

// The file where it lies, nothing copied; nothing when it doesn't exist.
std::optional<StagedAttachment> stage(const QUrl& fileURL);

// A finished recording, moved or copied to "norvanebar-recording-<UUID>.mov" of the temporary
// directory and named timestampedRecordingName(). Nothing when it is missing or too big.
std::optional<StagedAttachment> stage(const QUrl& recordingAt, double duration, bool move);

// A private copy, "norvanebar-job-<UUID>-<filename>" in the temporary directory, that a background
// job can keep after the draft lets go of the original. It has its own id, since a job's failures
// refer to the attachments it pinned. Nothing when the source is gone or the copy fails.
std::optional<StagedAttachment> pinForBackgroundJob(const StagedAttachment& attachment);

// "Pasted image 2024-03-05 at 14.07.09.png" and "Screen Recording 2024-03-05 at 14.07.09.mov", in
// local time.
QString timestampedName(const QDateTime& now = QDateTime::currentDateTime());
QString timestampedRecordingName(const QDateTime& now = QDateTime::currentDateTime());

} // namespace AttachmentStaging
