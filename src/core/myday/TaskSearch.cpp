#include "core/myday/TaskSearch.h"

#include <algorithm>

namespace TaskSearch {

QString fold(const QString& text) {
    const bool ascii = std::all_of(text.cbegin(), text.cend(), [](QChar c) { return c.unicode() < 0x80; });
    if (ascii) {
        return text.toLower();
    }
    // Accents go by decomposing and dropping the combining marks.
    QString decomposed = text.normalized(QString::NormalizationForm_D);
    decomposed.removeIf([](QChar c) { return c.isMark(); });
    return decomposed.toCaseFolded();
}

QStringList normalizedTokens(const QString& query) {
    const QString folded = fold(query.trimmed());
    QStringList tokens;
    qsizetype start = -1;
    for (qsizetype index = 0; index <= folded.size(); ++index) {
        const bool boundary = index == folded.size() || folded.at(index).isSpace();
        if (boundary && start >= 0) {
            tokens.append(folded.mid(start, index - start));
            start = -1;
        } else if (!boundary && start < 0) {
            start = index;
        }
    }
    return tokens;
}

QString searchText(const NVTaskSummary& task) {
    QStringList assignees;
    for (const NVUser& assignee : task.assignees.value_or(QList<NVUser>())) {
        assignees.append(assignee.displayName());
    }
    const QString list = task.list ? task.list->name.value_or(QString()) : QString();
    const QString status = task.status ? task.status->status : QString();
    return fold(QStringList{task.name, task.id, list, status, assignees.join(u' ')}.join(u'\n'));
}

bool matchesTokens(const QString& foldedText, const QStringList& tokens) {
    return std::all_of(tokens.cbegin(), tokens.cend(),
                       [&foldedText](const QString& token) { return foldedText.contains(token); });
}

} // namespace TaskSearch
