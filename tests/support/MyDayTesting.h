#pragma once

#include "core/api/TaskRecords.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <QTimeZone>
#include <optional>

// Tasks for tests of My Day, as records and as the service writes them.
namespace MyDayTesting {

inline NVTaskSummary task(const QString& id, const QString& name = {}, std::optional<QString> dueDate = std::nullopt) {
    NVTaskSummary task;
    task.id = id;
    task.name = name.isEmpty() ? QStringLiteral("Task ") + id : name;
    task.dueDate = std::move(dueDate);
    return task;
}

inline QString millis(const QDateTime& instant) {
    return QString::number(instant.toMSecsSinceEpoch());
}

inline NVTaskSummary dueAt(const QString& id, const QDateTime& instant) {
    return task(id, {}, millis(instant));
}

inline NVUser user(qint64 id, std::optional<QString> username = std::nullopt,
                   std::optional<QString> email = std::nullopt) {
    NVUser user;
    user.id = id;
    user.username = std::move(username);
    user.email = std::move(email);
    return user;
}

inline QStringList ids(const QList<NVTaskSummary>& tasks) {
    QStringList ids;
    for (const NVTaskSummary& task : tasks) {
        ids.append(task.id);
    }
    return ids;
}

// A page of the task search with `count` tasks t<first>, t<first+1>, … and `lastPage` if given.
inline QByteArray page(int count, std::optional<bool> lastPage, int first = 0) {
    QJsonArray tasks;
    for (int index = first; index < first + count; ++index) {
        tasks.append(QJsonObject{{QStringLiteral("id"), QStringLiteral("t%1").arg(index)},
                                 {QStringLiteral("name"), QStringLiteral("Task %1").arg(index)}});
    }
    QJsonObject body{{QStringLiteral("tasks"), tasks}};
    if (lastPage) {
        body.insert(QStringLiteral("last_page"), *lastPage);
    }
    return QJsonDocument(body).toJson(QJsonDocument::Compact);
}

// Noon of a fixed day in local time, 2026-06-17, a Wednesday.
inline QDateTime localNoon() {
    return QDateTime(QDate(2026, 6, 17), QTime(12, 0), Qt::LocalTime);
}

} // namespace MyDayTesting
