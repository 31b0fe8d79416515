#pragma once

#include "core/api/JSONValue.h"

#include <QJsonObject>
#include <QList>
#include <QString>
#include <optional>

// Bodies the client sends about tasks. They are only ever written; absent fields are left out.

// The body of creating a task.
struct CreateTaskRequest {
    // What was entered for one custom field.
    struct CustomFieldValue {
        QString id;
        JSONValue value;

        QJsonObject toJson() const;
        bool operator==(const CustomFieldValue&) const = default;
    };

    QString name;
    std::optional<QString> markdownDescription;
    // User ids.
    std::optional<QList<qint64>> assignees;
    // Tag names.
    std::optional<QList<QString>> tags;
    std::optional<QString> status;
    std::optional<int> priority;
    // Milliseconds since 1970.
    std::optional<qint64> dueDate;
    std::optional<bool> dueDateTime;
    std::optional<bool> notifyAll;
    std::optional<QList<CustomFieldValue>> customFields;

    QJsonObject toJson() const;
    bool operator==(const CreateTaskRequest&) const = default;
};

// The body of changing a task: only what is to change. A status change sends the status alone; a
// new due date sends the date with dueDateTime true.
struct UpdateTaskRequest {
    std::optional<QString> status;
    // Milliseconds since 1970.
    std::optional<qint64> dueDate;
    std::optional<bool> dueDateTime;

    QJsonObject toJson() const;
    bool operator==(const UpdateTaskRequest&) const = default;
};

// The body of adding a comment to a task.
struct CommentRequest {
    QString commentText;

    QJsonObject toJson() const;
    bool operator==(const CommentRequest&) const = default;
};
