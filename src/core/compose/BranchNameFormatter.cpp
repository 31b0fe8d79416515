#include "core/compose/BranchNameFormatter.h"

#include <QRegularExpression>

namespace BranchNameFormatter {
namespace {

QString withoutRemovedCharacters(QString text) {
    static const QRegularExpression removed(removedCharacters);
    return text.remove(removed);
}

QString trimmedOfSeparators(const QString& text) {
    qsizetype begin = 0;
    qsizetype end = text.size();
    while (begin < end && separators.contains(text.at(begin))) {
        ++begin;
    }
    while (end > begin && separators.contains(text.at(end - 1))) {
        --end;
    }
    return text.sliced(begin, end - begin);
}

// Runs of dashes become one dash, then runs of underscores one underscore.
QString collapseSeparators(QString text) {
    static const QRegularExpression dashes(QStringLiteral("-{2,}"));
    static const QRegularExpression underscores(QStringLiteral("_{2,}"));
    text.replace(dashes, QStringLiteral("-"));
    text.replace(underscores, QStringLiteral("_"));
    return text;
}

// One piece of free text as part of a name: words joined by dashes, only the allowed characters
// (letters outside ASCII are dropped, not transliterated), no separator at either end.
QString component(const QString& text) {
    // Unicode properties, so that every kind of space separates words, not only ASCII ones.
    static const QRegularExpression whitespace(QStringLiteral("\\s+"), QRegularExpression::UseUnicodePropertiesOption);
    QString words = text.trimmed();
    words.replace(whitespace, QStringLiteral("-"));
    return trimmedOfSeparators(collapseSeparators(withoutRemovedCharacters(words)));
}

} // namespace

QString linkableTaskID(const QString& taskID, const std::optional<QString>& customTaskID) {
    if (customTaskID && !customTaskID->isEmpty()) {
        return *customTaskID;
    }
    return QStringLiteral("NV-") + taskID;
}

QString branchName(const QString& taskID, const QString& taskName, const std::optional<QString>& customTaskID,
                   const std::optional<QString>& username, const QString& format) {
    QString id = linkableTaskID(taskID, customTaskID);
    QString name = format.trimmed();
    if (name.isEmpty()) {
        name = defaultFormat;
    }
    name.replace(taskIdPlaceholder, id);
    name.replace(taskNamePlaceholder, component(taskName));
    name.replace(usernamePlaceholder, component(username.value_or(QString())));
    // Sanitised again as a whole, so that a space in the format goes without leaving a dash.
    name = trimmedOfSeparators(collapseSeparators(withoutRemovedCharacters(name)));
    if (name.isEmpty()) {
        return id;
    }
    // The cut may leave a separator at the end.
    return trimmedOfSeparators(name.left(lengthLimit));
}

} // namespace BranchNameFormatter
