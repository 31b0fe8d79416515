// Branch names from any text: the bytes are split at NUL into task id, task name, custom id,
// username and format (a missing field is absent). The name is the linkable id untouched, or else
// at most 60 characters of the allowed ones with no separator at either end.
#include "core/compose/BranchNameFormatter.h"

#include <QByteArrayList>
#include <QRegularExpression>
#include <cstdint>
#include <cstdlib>

namespace {
std::optional<QString> field(const QByteArrayList& fields, qsizetype index) {
    if (index >= fields.size()) {
        return std::nullopt;
    }
    return QString::fromUtf8(fields.at(index));
}

bool isSeparator(QChar character) {
    return BranchNameFormatter::separators.contains(character);
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const QRegularExpression allowed(QStringLiteral("\\A[A-Za-z0-9\\-_./]+\\z"));
    const QByteArrayList fields =
        QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)).split('\0');
    const QString taskID = field(fields, 0).value_or(QString());
    const QString taskName = field(fields, 1).value_or(QString());
    const std::optional<QString> customTaskID = field(fields, 2);
    const QString format = field(fields, 4).value_or(QString());

    const QString name = BranchNameFormatter::branchName(taskID, taskName, customTaskID, field(fields, 3), format);
    if (name == BranchNameFormatter::linkableTaskID(taskID, customTaskID)) {
        return 0;
    }
    if (name.size() > BranchNameFormatter::lengthLimit || !allowed.match(name).hasMatch() ||
        isSeparator(name.front()) || isSeparator(name.back())) {
        std::abort();
    }
    return 0;
}
