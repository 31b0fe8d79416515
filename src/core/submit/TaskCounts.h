#pragma once

#include <QString>

// How many tasks of a bulk job were created or failed, as the notifications, the result page and the
// banner say it: "1 task created", "3 tasks created", "1 task failed", "2 tasks failed".
namespace TaskCounts {

QString created(qsizetype count);
QString failed(qsizetype count);

} // namespace TaskCounts
