#include "sandbox/api/ApiRoutes.h"
#include "sandbox/api/CustomFieldValues.h"
#include "sandbox/api/Visibility.h"
#include "sandbox/api/WireJson.h"
#include "sandbox/service/ApiErrors.h"
#include "sandbox/service/JsonBody.h"

#include <QDateTime>

namespace {

// A status of the list, written as the list writes it, or a problem noted in the body.
QString statusOf(JsonBody& body, const StoreData& data, const TaskList& list, const QString& name) {
    const std::optional<Status> status = data.findStatus(list, name);
    if (!status) {
        body.fail(QStringLiteral("Status %1 does not exist in this list").arg(name));
        return {};
    }
    return status->status;
}

std::optional<int> priorityOf(JsonBody& body) {
    const std::optional<qint64> priority = body.integer(QStringLiteral("priority"));
    if (priority && (*priority < 1 || *priority > 4)) {
        body.fail(QStringLiteral("priority must be from 1 (urgent) to 4 (low)"));
    }
    return priority ? std::optional(static_cast<int>(*priority)) : std::nullopt;
}

// The task that POST list/{id}/task asks for; problems are noted in the body.
Task newTask(JsonBody& body, StoreData& data, const TaskList& list, const User& creator) {
    const Workspace* workspace = data.workspaceOfList(list.id);
    Task task;
    task.listID = list.id;
    task.creatorID = creator.id;
    task.name = body.string(QStringLiteral("name")).value_or(QString());
    if (task.name.trimmed().isEmpty()) {
        body.fail(QStringLiteral("Task name invalid"));
    }
    task.description = body.string(QStringLiteral("markdown_description"))
                           .value_or(body.string(QStringLiteral("description")).value_or(QString()));
    for (const qint64 assignee : body.integers(QStringLiteral("assignees")).value_or(QList<qint64>())) {
        if (!data.isMember(workspace, assignee)) {
            body.fail(QStringLiteral("Assignee %1 is not a member of this workspace").arg(assignee));
        }
        task.assignees.push_back(assignee);
    }
    task.tags = body.strings(QStringLiteral("tags")).value_or(QStringList());
    const std::optional<QString> status = body.string(QStringLiteral("status"));
    task.status = status ? statusOf(body, data, list, *status) : data.statusesOf(list).front().status;
    task.priority = priorityOf(body);
    task.dueDateMs = body.integer(QStringLiteral("due_date"));
    task.dueDateTime = body.boolean(QStringLiteral("due_date_time")).value_or(false);
    body.boolean(QStringLiteral("notify_all"));
    task.parentID = body.string(QStringLiteral("parent"));
    if (task.parentID && data.workspaceOfTask(*task.parentID) != workspace) {
        body.fail(QStringLiteral("Parent task %1 not found in this workspace").arg(*task.parentID));
    }
    if (const std::optional<QJsonArray> values = body.array(QStringLiteral("custom_fields"))) {
        if (const std::optional<QString> problem = CustomFieldValues::check(list, *values, task.customFields)) {
            body.fail(*problem);
        }
    }
    if (body.problem().isEmpty()) {
        task.id = data.newID(QStringLiteral("86c"));
        task.customID = data.nextCustomTaskID(*workspace);
    }
    task.createdMs = QDateTime::currentMSecsSinceEpoch();
    task.updatedMs = task.createdMs;
    return task;
}

// Applies PUT task/{id}: the fields present change, a null due date clears it.
void update(JsonBody& body, const StoreData& data, Task& task) {
    const TaskList* list = data.list(task.listID);
    if (const std::optional<QString> name = body.string(QStringLiteral("name"))) {
        if (name->trimmed().isEmpty()) {
            body.fail(QStringLiteral("Task name invalid"));
        }
        task.name = *name;
    }
    if (const std::optional<QString> status = body.string(QStringLiteral("status")); status && list) {
        task.status = statusOf(body, data, *list, *status);
    }
    if (body.isNull(QStringLiteral("due_date"))) {
        task.dueDateMs.reset();
    } else if (const std::optional<qint64> due = body.integer(QStringLiteral("due_date"))) {
        task.dueDateMs = due;
    }
    if (const std::optional<bool> withTime = body.boolean(QStringLiteral("due_date_time"))) {
        task.dueDateTime = *withTime;
    }
    if (body.isNull(QStringLiteral("priority"))) {
        task.priority.reset();
    } else if (body.isPresent(QStringLiteral("priority"))) {
        task.priority = priorityOf(body);
    }
    if (const std::optional<QString> description = body.string(QStringLiteral("markdown_description"))) {
        task.description = *description;
    }
    task.updatedMs = QDateTime::currentMSecsSinceEpoch();
}

// Parses the JSON body and runs `change` under the store's write lock, or answers 400.
template <typename Change>
ServiceResponse withBody(const ApiEnvironment& environment, const ApiCall& call, Change change) {
    auto parsed = JsonBody::parse(call.request.body);
    if (const ServiceResponse* invalid = std::get_if<ServiceResponse>(&parsed)) {
        return *invalid;
    }
    return environment.store.write([&](StoreData& data) { return change(std::get<JsonBody>(parsed), data); });
}

} // namespace

void addTaskRoutes(ApiRoutes& routes, const ApiEnvironment& environment) {
    routes.add("POST", u"list/{}/task", [&environment](const ApiCall& call) {
        return withBody(environment, call, [&](JsonBody& body, StoreData& data) {
            const TaskList* list = Visibility::list(data, call.param(0), call.user);
            if (!list) {
                return ApiErrors::notFound(QStringLiteral("List"));
            }
            Task task = newTask(body, data, *list, call.user);
            if (std::optional<ServiceResponse> invalid = body.failure()) {
                return *invalid;
            }
            data.tasks.push_back(task);
            return ServiceResponse::json(WireJson(data, environment.webBase).task(data.tasks.back()));
        });
    });

    routes.add("PUT", u"task/{}", [&environment](const ApiCall& call) {
        return withBody(environment, call, [&](JsonBody& body, StoreData& data) {
            if (!Visibility::task(data, call.param(0), call.user)) {
                return ApiErrors::notFound(QStringLiteral("Task"));
            }
            Task changed = *data.task(call.param(0));
            update(body, data, changed);
            if (std::optional<ServiceResponse> invalid = body.failure()) {
                return *invalid;
            }
            Task& task = *data.task(call.param(0));
            task = changed;
            return ServiceResponse::json(WireJson(data, environment.webBase).task(task));
        });
    });

    routes.add("POST", u"task/{}/comment", [&environment](const ApiCall& call) {
        return withBody(environment, call, [&](JsonBody& body, StoreData& data) {
            if (!Visibility::task(data, call.param(0), call.user)) {
                return ApiErrors::notFound(QStringLiteral("Task"));
            }
            const std::optional<QString> text = body.string(QStringLiteral("comment_text"));
            if (!text && body.problem().isEmpty()) {
                body.fail(QStringLiteral("comment_text must be a string"));
            }
            if (std::optional<ServiceResponse> invalid = body.failure()) {
                return *invalid;
            }
            const Comment comment{data.newID(QStringLiteral("9015")), *text, call.user.id,
                                  QDateTime::currentMSecsSinceEpoch()};
            data.task(call.param(0))->comments.push_back(comment);
            return ServiceResponse::json({{QStringLiteral("id"), comment.id},
                                          {QStringLiteral("hist_id"), comment.id},
                                          {QStringLiteral("date"), comment.dateMs}});
        });
    });
}
