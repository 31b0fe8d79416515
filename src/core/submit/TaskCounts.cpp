#include "core/submit/TaskCounts.h"

#include <QCoreApplication>

namespace TaskCounts {

QString created(qsizetype count) {
    return count == 1 ? QCoreApplication::translate("TaskCounts", "1 task created")
                      : QCoreApplication::translate("TaskCounts", "%1 tasks created").arg(count);
}

QString failed(qsizetype count) {
    return count == 1 ? QCoreApplication::translate("TaskCounts", "1 task failed")
                      : QCoreApplication::translate("TaskCounts", "%1 tasks failed").arg(count);
}

} // namespace TaskCounts
