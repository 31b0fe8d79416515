#pragma once

#include "core/api/FieldRecords.h"
#include "core/api/HierarchyRecords.h"
#include "core/api/NorvaneClient.h"
#include "core/api/TaskRecords.h"
#include "core/api/TaskRequests.h"
#include "core/api/UserRecords.h"

#include <QCoroTask>
#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>
#include <functional>
#include <optional>

// Every call NorvaneBar makes to the service, with its path, query and result, in one place. Paths
// are relative to the client's base; ids are put in as they are, and the URL layer escapes them.
//
// The client must outlive each call. Callers in a coroutine make the task a named local before
// awaiting it (`auto task = Endpoints::getList(client, id); co_await std::move(task);`): GCC 12
// destroys the temporaries of a call that stands inside a co_await expression twice.
namespace Endpoints {

// What the task search is narrowed to. An absent array and an empty one both narrow nothing.
struct TeamTasksFilter {
    std::optional<QList<qint64>> assigneeIDs;
    std::optional<QStringList> listIDs;
    std::optional<QStringList> statuses;
    // Only tasks due before this instant. The My Day walk never sets it.
    std::optional<QDateTime> dueBefore;

    bool operator==(const TeamTasksFilter&) const = default;
};

// A page of the task search holds at most this many tasks; a walk reads at most maxTaskPages.
inline constexpr qsizetype taskPageSize = 100;
inline constexpr int maxTaskPages = 10;

QCoro::Task<UserResponse> getUser(const NorvaneClient& client);
QCoro::Task<TeamsResponse> getWorkspaces(const NorvaneClient& client);

// The three tree reads leave out the records whose `archived` is true, keeping the order; the lists
// nested in a folder are left as the service sent them.
QCoro::Task<QList<Space>> getSpaces(const NorvaneClient& client, QString teamID);
QCoro::Task<QList<Folder>> getFolders(const NorvaneClient& client, QString spaceID);
QCoro::Task<QList<NVList>> getFolderlessLists(const NorvaneClient& client, QString spaceID);
// The paths getFolders and getFolderlessLists read, so that a caller can single their requests out.
QString foldersPath(const QString& spaceID);
QString folderlessListsPath(const QString& spaceID);

QCoro::Task<NVList> getList(const NorvaneClient& client, const QString& listID);
QCoro::Task<MembersResponse> getListMembers(const NorvaneClient& client, const QString& listID);
QCoro::Task<TagsResponse> getSpaceTags(const NorvaneClient& client, const QString& spaceID);
QCoro::Task<FieldsResponse> getListFields(const NorvaneClient& client, const QString& listID);

// The query of one page of the task search, its items in the order the service is sent them.
NorvaneClient::QueryItems teamTasksQuery(const TeamTasksFilter& filter, int page);
// One page, decoded off the main thread: a page of a hundred tasks is a large answer.
QCoro::Task<TeamTasksResponse> getTeamTasks(const NorvaneClient& client, const QString& teamID,
                                            const TeamTasksFilter& filter, int page);
// Told the 0-based number of the page a walk is about to request, from the second page on.
using NextPageHandler = std::function<void(int page)>;
// Walks the pages from 0 and gathers their tasks. It stops after a page marked last, after a page
// of fewer than taskPageSize tasks, or after page 9; tasks beyond that are left out. A failed page
// fails the whole walk.
QCoro::Task<QList<NVTaskSummary>> getAllTeamTasks(const NorvaneClient& client, QString teamID, TeamTasksFilter filter,
                                                  NextPageHandler onNextPage = {});

QCoro::Task<CreatedTask> createTask(const NorvaneClient& client, const QString& listID,
                                    const CreateTaskRequest& request);
QCoro::Task<NVTaskSummary> updateTask(const NorvaneClient& client, const QString& taskID,
                                      const UpdateTaskRequest& request);
QCoro::Task<CommentResponse> addComment(const NorvaneClient& client, const QString& taskID,
                                        const CommentRequest& request);
// Where a task's attachments are posted, for the upload operations.
QString attachmentPath(const QString& taskID);

} // namespace Endpoints
