#include "core/submit/TaskCounts.h"

#include <QCoreApplication>

namespace TaskCounts {

// The English catalogue gives the singular of one ("1 task created"). The count is a named int:
// lupdate sees no numerus text counted by a template call such as static_cast<int>(…).
QString created(qsizetype count) {
    const int n = static_cast<int>(count);
    return QCoreApplication::translate("TaskCounts", "%n tasks created", nullptr, n);
}

QString failed(qsizetype count) {
    const int n = static_cast<int>(count);
    return QCoreApplication::translate("TaskCounts", "%n tasks failed", nullptr, n);
}

} // namespace TaskCounts
