#include "core/storage/AttachmentLinkFormatter.h"

#include <QStringList>

namespace AttachmentLinkFormatter {

namespace {
// Backslashes first, so that the escapes the brackets gain are not doubled again.
QString escapedName(QString name) {
    name.replace(QLatin1Char('\\'), QStringLiteral("\\\\"));
    name.replace(QLatin1Char('['), QStringLiteral("\\["));
    name.replace(QLatin1Char(']'), QStringLiteral("\\]"));
    return name;
}
} // namespace

QString appendLinks(const std::optional<QString>& description, const QList<Link>& links) {
    QString trimmed = description.value_or(QString()).trimmed();
    if (links.isEmpty()) {
        return trimmed;
    }
    QStringList lines;
    for (const auto& [name, url] : links) {
        lines.append(QStringLiteral("[") + escapedName(name) + QStringLiteral("](") + url.toString(QUrl::FullyEncoded) +
                     QStringLiteral(")"));
    }
    const QString block = lines.join(QLatin1Char('\n'));
    return trimmed.isEmpty() ? block : trimmed + QStringLiteral("\n\n---\n\n") + block;
}

} // namespace AttachmentLinkFormatter
