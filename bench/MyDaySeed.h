#pragma once

#include <QDateTime>
#include <QJsonArray>
#include <QJsonObject>
#include <QString>

// The My Day benchmarks' service: one workspace whose user has 1,000 open tasks.
namespace MyDaySeed {
inline constexpr int taskCount = 1000;
inline constexpr qint64 userID = 77;
inline const QString token = QStringLiteral("pk_bench_myday");
inline const QString workspaceID = QStringLiteral("77001");
inline const QDateTime benchNow = QDateTime::currentDateTimeUtc();

// One list per status group, 1,000 open tasks of the user: dated and undated, every fourth a
// subtask of the task before it.
inline QJsonObject benchSeed() {
    QJsonArray lists;
    for (int list = 0; list < 5; ++list) {
        QJsonArray tasks;
        for (int index = list; index < taskCount; index += 5) {
            QJsonObject task{{"id", QStringLiteral("bt%1").arg(index)},
                             {"name", QStringLiteral("Review task %1 of the café backlog").arg(index)},
                             {"status", "to do"},
                             {"assignees", QJsonArray{userID}},
                             {"date_created", benchNow.toMSecsSinceEpoch() - index}};
            if (index % 7 != 0) {
                task.insert("due_date", benchNow.addSecs((index % 90 - 30) * 3600LL * 7).toMSecsSinceEpoch());
            }
            if (index % 4 == 3 && index >= 5) {
                task.insert("parent", QStringLiteral("bt%1").arg(index - 5));
            }
            tasks.append(task);
        }
        lists.append(QJsonObject{{"id", QStringLiteral("7720%1").arg(list)},
                                 {"name", QStringLiteral("List %1").arg(list)},
                                 {"tasks", tasks}});
    }
    const QJsonArray statuses{QJsonObject{{"status", "to do"}, {"type", "open"}},
                              QJsonObject{{"status", "done"}, {"type", "closed"}}};
    return {{"users", QJsonArray{QJsonObject{{"id", userID}, {"username", "Bench"}, {"token", token}}}},
            {"workspaces",
             QJsonArray{QJsonObject{
                 {"id", workspaceID},
                 {"name", "Bench"},
                 {"members", QJsonArray{userID}},
                 {"spaces", QJsonArray{QJsonObject{
                                {"id", "77100"}, {"name", "Space"}, {"statuses", statuses}, {"lists", lists}}}}}}}};
}
} // namespace MyDaySeed
