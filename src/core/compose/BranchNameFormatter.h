#pragma once

#include <QString>
#include <optional>

// Git branch names for a task, for the "Copy Git branch name" commands. The name holds the task's
// linkable id, which lets Norvane's GitHub integration tie the branch to the task.
namespace BranchNameFormatter {

// Placeholders, matched literally and case-sensitively.
inline const QString taskIdPlaceholder = QStringLiteral(":taskId:");
inline const QString taskNamePlaceholder = QStringLiteral(":taskName:");
inline const QString usernamePlaceholder = QStringLiteral(":username:");

inline const QString defaultFormat = QStringLiteral(":taskId:_:taskName:_:username:");
// The characters a branch name may not hold, as a regular expression of what to remove.
inline const QString removedCharacters = QStringLiteral("[^A-Za-z0-9\\-_./]");
// Trimmed from both ends of a name and of each component.
inline const QString separators = QStringLiteral("-_./");
inline constexpr qsizetype lengthLimit = 60;

// The branch name `format` gives for the task. A blank format means the default one. When nothing
// is left after sanitising, the result is the linkable id untouched, even if it holds characters a
// name otherwise may not.
QString branchName(const QString& taskID, const QString& taskName, const std::optional<QString>& customTaskID,
                   const std::optional<QString>& username, const QString& format);

// The custom task id when there is one, otherwise "NV-" and the task id.
QString linkableTaskID(const QString& taskID, const std::optional<QString>& customTaskID);

} // namespace BranchNameFormatter
