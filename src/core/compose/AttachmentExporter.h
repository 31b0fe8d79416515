#pragma once

#include <QString>
#include <QUrl>
#include <optional>

// Saving an attachment where the user picks; the view asks for the place and shows the failure.
namespace AttachmentExporter {

// Copies the local file `fileURL` to `destination`, removing any file there first. A destination
// that already is the source is left as it is, since removing it would lose the file. On failure,
// the system's description of it, to show to the user.
std::optional<QString> copyReplacing(const QUrl& fileURL, const QUrl& destination);

} // namespace AttachmentExporter
