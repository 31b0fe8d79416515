#pragma once

#include "core/api/FieldRecords.h"
#include "core/api/UserRecords.h"
#include "core/json/JsonDecoding.h"

#include <QJsonObject>
#include <QList>
#include <QString>
#include <QUrl>
#include <optional>

// Tasks as the service answers with them.

struct NVTaskSummary {
    // The list a task is in.
    struct ListRef {
        QString id;
        std::optional<QString> name;

        static ListRef fromJson(const Json::JsonObject& json);
        QJsonObject toJson() const;
        bool operator==(const ListRef&) const = default;
    };

    QString id;
    QString name;
    std::optional<NVStatus> status;
    // Milliseconds since 1970 as decimal text, exactly as the service sends it.
    std::optional<QString> dueDate;
    std::optional<QString> url;
    std::optional<ListRef> list;
    std::optional<QList<NVUser>> assignees;
    std::optional<QString> parentTaskID;
    std::optional<QString> customTaskID;

    // Where the task opens in a browser: its own url, else "/t/" and the id under the web base.
    QString browserURL(const QUrl& webBaseURL) const;

    static NVTaskSummary fromJson(const Json::JsonObject& json);
    QJsonObject toJson() const;
    bool operator==(const NVTaskSummary&) const = default;
};

// One page of GET team/{id}/task.
struct TeamTasksResponse {
    QList<NVTaskSummary> tasks;
    std::optional<bool> lastPage;

    static TeamTasksResponse fromJson(const Json::JsonObject& json);
    QJsonObject toJson() const;
    bool operator==(const TeamTasksResponse&) const = default;
};

// The answer to creating a task.
struct CreatedTask {
    QString id;
    QString name;
    std::optional<QString> url;
    std::optional<QString> customTaskID;

    static CreatedTask fromJson(const Json::JsonObject& json);
    QJsonObject toJson() const;
    bool operator==(const CreatedTask&) const = default;
};

// The answer to adding a comment: any object will do, and nothing in it is read.
struct CommentResponse {
    static CommentResponse fromJson(const Json::JsonObject& json);
    QJsonObject toJson() const;
    bool operator==(const CommentResponse&) const = default;
};
