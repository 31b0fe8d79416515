#include "core/api/Endpoints.h"

namespace Endpoints {
namespace {
// The records of a tree read without the archived ones; an absent `archived` counts as not.
template <typename Record> QList<Record> withoutArchived(QList<Record> records) {
    records.removeIf([](const Record& record) { return record.archived.value_or(false); });
    return records;
}

// Each task below is made apart from its co_await; see the note on GCC 12 in the header.
template <typename Response> QCoro::Task<Response> fetch(const NorvaneClient& client, QString path) {
    QCoro::Task<Response> request = client.get<Response>(std::move(path));
    co_return co_await std::move(request);
}
} // namespace

QCoro::Task<UserResponse> getUser(const NorvaneClient& client) {
    return client.get<UserResponse>(QStringLiteral("user"));
}

QCoro::Task<TeamsResponse> getWorkspaces(const NorvaneClient& client) {
    return client.get<TeamsResponse>(QStringLiteral("team"));
}

QCoro::Task<QList<Space>> getSpaces(const NorvaneClient& client, QString teamID) {
    QCoro::Task<SpacesResponse> request = fetch<SpacesResponse>(client, QStringLiteral("team/%1/space").arg(teamID));
    co_return withoutArchived((co_await std::move(request)).spaces);
}

QCoro::Task<QList<Folder>> getFolders(const NorvaneClient& client, QString spaceID) {
    QCoro::Task<FoldersResponse> request = fetch<FoldersResponse>(client, foldersPath(spaceID));
    co_return withoutArchived((co_await std::move(request)).folders);
}

QCoro::Task<QList<NVList>> getFolderlessLists(const NorvaneClient& client, QString spaceID) {
    QCoro::Task<ListsResponse> request = fetch<ListsResponse>(client, folderlessListsPath(spaceID));
    co_return withoutArchived((co_await std::move(request)).lists);
}

QString foldersPath(const QString& spaceID) {
    return QStringLiteral("space/%1/folder").arg(spaceID);
}

QString folderlessListsPath(const QString& spaceID) {
    return QStringLiteral("space/%1/list").arg(spaceID);
}

QCoro::Task<NVList> getList(const NorvaneClient& client, const QString& listID) {
    return client.get<NVList>(QStringLiteral("list/") + listID);
}

QCoro::Task<MembersResponse> getListMembers(const NorvaneClient& client, const QString& listID) {
    return client.get<MembersResponse>(QStringLiteral("list/%1/member").arg(listID));
}

QCoro::Task<TagsResponse> getSpaceTags(const NorvaneClient& client, const QString& spaceID) {
    return client.get<TagsResponse>(QStringLiteral("space/%1/tag").arg(spaceID));
}

QCoro::Task<FieldsResponse> getListFields(const NorvaneClient& client, const QString& listID) {
    return client.get<FieldsResponse>(QStringLiteral("list/%1/field").arg(listID));
}

NorvaneClient::QueryItems teamTasksQuery(const TeamTasksFilter& filter, int page) {
    NorvaneClient::QueryItems query{
        {QStringLiteral("include_closed"), QStringLiteral("false")},
        {QStringLiteral("subtasks"), QStringLiteral("true")},
        {QStringLiteral("order_by"), QStringLiteral("due_date")},
        {QStringLiteral("page"), QString::number(page)},
    };
    for (const qint64 assignee : filter.assigneeIDs.value_or(QList<qint64>())) {
        query.append({QStringLiteral("assignees[]"), QString::number(assignee)});
    }
    for (const QString& listID : filter.listIDs.value_or(QStringList())) {
        query.append({QStringLiteral("list_ids[]"), listID});
    }
    for (const QString& status : filter.statuses.value_or(QStringList())) {
        query.append({QStringLiteral("statuses[]"), status});
    }
    if (filter.dueBefore) {
        // Whole milliseconds since 1970, the fraction cut off.
        query.append({QStringLiteral("due_date_lt"), QString::number(filter.dueBefore->toMSecsSinceEpoch())});
    }
    return query;
}

QCoro::Task<TeamTasksResponse> getTeamTasks(const NorvaneClient& client, const QString& teamID,
                                            const TeamTasksFilter& filter, int page) {
    return client.getDecodedInBackground<TeamTasksResponse>(QStringLiteral("team/%1/task").arg(teamID),
                                                            teamTasksQuery(filter, page));
}

QCoro::Task<QList<NVTaskSummary>> getAllTeamTasks(const NorvaneClient& client, QString teamID, TeamTasksFilter filter,
                                                  NextPageHandler onNextPage) {
    QList<NVTaskSummary> tasks;
    for (int page = 0; page < maxTaskPages; ++page) {
        if (page > 0 && onNextPage) {
            onNextPage(page);
        }
        QCoro::Task<TeamTasksResponse> request = getTeamTasks(client, teamID, filter, page);
        const TeamTasksResponse answer = co_await std::move(request);
        tasks.append(answer.tasks);
        if (answer.lastPage.value_or(false) || answer.tasks.size() < taskPageSize) {
            break;
        }
    }
    co_return tasks;
}

QCoro::Task<CreatedTask> createTask(const NorvaneClient& client, const QString& listID,
                                    const CreateTaskRequest& request) {
    return client.post<CreatedTask>(QStringLiteral("list/%1/task").arg(listID), request);
}

QCoro::Task<NVTaskSummary> updateTask(const NorvaneClient& client, const QString& taskID,
                                      const UpdateTaskRequest& request) {
    return client.put<NVTaskSummary>(QStringLiteral("task/") + taskID, request);
}

QCoro::Task<CommentResponse> addComment(const NorvaneClient& client, const QString& taskID,
                                        const CommentRequest& request) {
    return client.post<CommentResponse>(QStringLiteral("task/%1/comment").arg(taskID), request);
}

QString attachmentPath(const QString& taskID) {
    return QStringLiteral("task/%1/attachment").arg(taskID);
}

} // namespace Endpoints
