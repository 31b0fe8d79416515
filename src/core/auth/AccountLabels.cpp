#include "core/auth/AccountLabels.h"

#include <QTextBoundaryFinder>

namespace AccountLabels {
namespace {
// The text up to the end of its `count`th grapheme cluster.
QString leadingCharacters(const QString& text, int count) {
    QTextBoundaryFinder boundaries(QTextBoundaryFinder::Grapheme, text);
    qsizetype end = 0;
    for (int taken = 0; taken < count; ++taken) {
        const qsizetype next = boundaries.toNextBoundary();
        if (next < 0) {
            break;
        }
        end = next;
    }
    return text.left(end);
}
} // namespace

QString menuTitle(const StoredAccount& account) {
    if (!account.email || account.email->isEmpty() || *account.email == account.displayName) {
        return account.displayName;
    }
    return account.displayName + QStringLiteral(" (") + *account.email + QLatin1Char(')');
}

QString avatarText(const StoredAccount& account) {
    if (account.initials && !account.initials->isEmpty()) {
        return *account.initials;
    }
    return leadingCharacters(account.displayName, 2).toUpper();
}

} // namespace AccountLabels
