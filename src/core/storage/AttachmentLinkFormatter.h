#pragma once

#include <QList>
#include <QString>
#include <QUrl>
#include <optional>
#include <utility>

// Writes the addresses of files uploaded to an external provider into a task, as a block of
// markdown links after its description.
namespace AttachmentLinkFormatter {

// One uploaded file: the name shown and where it lies.
using Link = std::pair<QString, QUrl>;

// The description, trimmed, then a rule, then one "[name](url)" line per link in order. With no
// description only the lines; with no links only the trimmed description.
QString appendLinks(const std::optional<QString>& description, const QList<Link>& links);

} // namespace AttachmentLinkFormatter
