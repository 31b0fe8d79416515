#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

// The service's records as the sandbox keeps them. Wire shapes are made from them in WireJson.

struct User {
    qint64 id = 0;
    std::optional<QString> username;
    std::optional<QString> email;
    std::optional<QString> color;
    std::optional<QString> initials;
    std::optional<QString> profilePicture;
    // Users with a token can sign in; the others are only members.
    std::optional<QString> token;

    QString displayName() const;
};

struct Status {
    QString status;
    std::optional<QString> color;
    std::optional<QString> type;
};

struct Tag {
    QString name;
    std::optional<QString> foreground;
    std::optional<QString> background;
};

// A custom field definition. The wire object is kept as the seed gave it; the option ids are
// read out of it to check the values of new tasks.
struct FieldDefinition {
    QString id;
    QString name;
    QString type;
    QJsonObject wire;
    QStringList optionIDs;
};

// How a workspace's attachment answers write the attachment id: both occur on the real service.
enum class AttachmentIDForm { String, Number };

struct Workspace {
    QString id;
    QString name;
    std::optional<QString> color;
    std::optional<QString> avatar;
    std::vector<qint64> memberIDs;
    std::optional<QString> customTaskIDPrefix;
    AttachmentIDForm attachmentIDForm = AttachmentIDForm::String;
};

// `archived` is kept as a JSON value because the service sends true, false, null or nothing.
struct Space {
    QString id;
    QString workspaceID;
    QString name;
    std::optional<std::vector<Status>> statuses;
    QJsonValue archived = QJsonValue::Undefined;
    std::vector<Tag> tags;
};

struct Folder {
    QString id;
    QString spaceID;
    QString name;
    QJsonValue archived = QJsonValue::Undefined;
};

struct TaskList {
    QString id;
    QString spaceID;
    std::optional<QString> folderID;
    QString name;
    std::optional<std::vector<Status>> statuses;
    QJsonValue archived = QJsonValue::Undefined;
    std::vector<FieldDefinition> fields;
};

struct Comment {
    QString id;
    QString text;
    qint64 userID = 0;
    qint64 dateMs = 0;
};

struct Attachment {
    QString id;
    QString title;
    QString extension;
    qint64 size = 0;
    qint64 dateMs = 0;
    QString storedPath;
};

struct Task {
    QString id;
    std::optional<QString> customID;
    QString name;
    QString description;
    QString listID;
    QString status;
    std::optional<qint64> dueDateMs;
    bool dueDateTime = false;
    std::optional<int> priority;
    std::vector<qint64> assignees;
    QStringList tags;
    std::optional<QString> parentID;
    QJsonArray customFields;
    qint64 creatorID = 0;
    qint64 createdMs = 0;
    qint64 updatedMs = 0;
    std::vector<Comment> comments;
    std::vector<Attachment> attachments;
};
