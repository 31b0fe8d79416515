#include "core/api/TaskRequests.h"

#include "core/json/JsonEncoding.h"

QJsonObject CreateTaskRequest::CustomFieldValue::toJson() const {
    return Json::ObjectBuilder().set(QStringLiteral("id"), id).set(QStringLiteral("value"), value).object();
}

QJsonObject CreateTaskRequest::toJson() const {
    return Json::ObjectBuilder()
        .set(QStringLiteral("name"), name)
        .set(QStringLiteral("markdown_description"), markdownDescription)
        .set(QStringLiteral("assignees"), assignees)
        .set(QStringLiteral("tags"), tags)
        .set(QStringLiteral("status"), status)
        .set(QStringLiteral("priority"), priority)
        .set(QStringLiteral("due_date"), dueDate)
        .set(QStringLiteral("due_date_time"), dueDateTime)
        .set(QStringLiteral("notify_all"), notifyAll)
        .set(QStringLiteral("custom_fields"), customFields)
        .object();
}

QJsonObject UpdateTaskRequest::toJson() const {
    return Json::ObjectBuilder()
        .set(QStringLiteral("status"), status)
        .set(QStringLiteral("due_date"), dueDate)
        .set(QStringLiteral("due_date_time"), dueDateTime)
        .object();
}

QJsonObject CommentRequest::toJson() const {
    return Json::ObjectBuilder().set(QStringLiteral("comment_text"), commentText).object();
}
