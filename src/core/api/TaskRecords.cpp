#include "core/api/TaskRecords.h"

#include "core/json/JsonEncoding.h"

NVTaskSummary::ListRef NVTaskSummary::ListRef::fromJson(const Json::JsonObject& json) {
    return {json.required<QString>(QStringLiteral("id")), json.optional<QString>(QStringLiteral("name"))};
}

QJsonObject NVTaskSummary::ListRef::toJson() const {
    return Json::ObjectBuilder().set(QStringLiteral("id"), id).set(QStringLiteral("name"), name).object();
}

QString NVTaskSummary::browserURL(const QUrl& webBaseURL) const {
    if (url) {
        return *url;
    }
    QUrl address = webBaseURL;
    QString path = address.path();
    if (!path.endsWith(u'/')) {
        path += u'/';
    }
    address.setPath(path + QStringLiteral("t/") + id);
    return address.toString();
}

NVTaskSummary NVTaskSummary::fromJson(const Json::JsonObject& json) {
    return {json.required<QString>(QStringLiteral("id")),
            json.required<QString>(QStringLiteral("name")),
            json.optional<NVStatus>(QStringLiteral("status")),
            json.optional<QString>(QStringLiteral("due_date")),
            json.optional<QString>(QStringLiteral("url")),
            json.optional<ListRef>(QStringLiteral("list")),
            json.optional<QList<NVUser>>(QStringLiteral("assignees")),
            json.optional<QString>(QStringLiteral("parent")),
            json.optional<QString>(QStringLiteral("custom_id"))};
}

QJsonObject NVTaskSummary::toJson() const {
    return Json::ObjectBuilder()
        .set(QStringLiteral("id"), id)
        .set(QStringLiteral("name"), name)
        .set(QStringLiteral("status"), status)
        .set(QStringLiteral("due_date"), dueDate)
        .set(QStringLiteral("url"), url)
        .set(QStringLiteral("list"), list)
        .set(QStringLiteral("assignees"), assignees)
        .set(QStringLiteral("parent"), parentTaskID)
        .set(QStringLiteral("custom_id"), customTaskID)
        .object();
}

TeamTasksResponse TeamTasksResponse::fromJson(const Json::JsonObject& json) {
    return {json.required<QList<NVTaskSummary>>(QStringLiteral("tasks")),
            json.optional<bool>(QStringLiteral("last_page"))};
}

QJsonObject TeamTasksResponse::toJson() const {
    return Json::ObjectBuilder()
        .set(QStringLiteral("tasks"), tasks)
        .set(QStringLiteral("last_page"), lastPage)
        .object();
}

CreatedTask CreatedTask::fromJson(const Json::JsonObject& json) {
    return {json.required<QString>(QStringLiteral("id")), json.required<QString>(QStringLiteral("name")),
            json.optional<QString>(QStringLiteral("url")), json.optional<QString>(QStringLiteral("custom_id"))};
}

QJsonObject CreatedTask::toJson() const {
    return Json::ObjectBuilder()
        .set(QStringLiteral("id"), id)
        .set(QStringLiteral("name"), name)
        .set(QStringLiteral("url"), url)
        .set(QStringLiteral("custom_id"), customTaskID)
        .object();
}

CommentResponse CommentResponse::fromJson(const Json::JsonObject& /*json*/) {
    return {};
}

QJsonObject CommentResponse::toJson() const {
    return {};
}
