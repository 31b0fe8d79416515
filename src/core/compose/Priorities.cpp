#include "core/compose/Priorities.h"

#include <QCoreApplication>
#include <algorithm>

namespace Priorities {

QList<Priority> all() {
    const auto tr = [](const char* text) { return QCoreApplication::translate("Priorities", text); };
    return {
        {1, tr("Urgent"), {1.0, 0.231, 0.188}},
        {2, tr("High"), {1.0, 0.584, 0.0}},
        {3, tr("Normal"), {0.0, 0.478, 1.0}},
        {4, tr("Low"), {0.557, 0.557, 0.576}},
    };
}

std::optional<Priority> withValue(std::optional<int> value) {
    const QList<Priority> priorities = all();
    const auto found = std::find_if(priorities.cbegin(), priorities.cend(),
                                    [value](const Priority& priority) { return priority.value == value; });
    return found == priorities.cend() ? std::nullopt : std::optional(*found);
}

} // namespace Priorities
