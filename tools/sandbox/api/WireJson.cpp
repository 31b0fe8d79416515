#include "sandbox/api/WireJson.h"

#include <QUrl>

#include <array>

namespace {
QJsonValue orNull(const std::optional<QString>& value) {
    return value ? QJsonValue(*value) : QJsonValue();
}

QJsonValue msText(std::optional<qint64> ms) {
    return ms ? QJsonValue(QString::number(*ms)) : QJsonValue();
}

void insertArchived(QJsonObject& object, const QJsonValue& archived) {
    if (!archived.isUndefined()) {
        object.insert(QStringLiteral("archived"), archived);
    }
}

QJsonValue priority(std::optional<int> level) {
    static const std::array<const char*, 4> names{"urgent", "high", "normal", "low"};
    static const std::array<const char*, 4> colors{"#f50000", "#ffcc00", "#6fddff", "#d8d8d8"};
    if (!level || *level < 1 || *level > 4) {
        return {};
    }
    const auto index = static_cast<size_t>(*level - 1);
    return QJsonObject{{QStringLiteral("id"), QString::number(*level)},
                       {QStringLiteral("priority"), QLatin1String(names[index])},
                       {QStringLiteral("color"), QLatin1String(colors[index])},
                       {QStringLiteral("orderindex"), QString::number(*level)}};
}
} // namespace

QJsonObject WireJson::user(const User& user) const {
    return {{QStringLiteral("id"), user.id},
            {QStringLiteral("username"), orNull(user.username)},
            {QStringLiteral("email"), orNull(user.email)},
            {QStringLiteral("color"), orNull(user.color)},
            {QStringLiteral("initials"), orNull(user.initials)},
            {QStringLiteral("profilePicture"), orNull(user.profilePicture)}};
}

QJsonObject WireJson::status(const Status& status, int orderIndex) const {
    QJsonObject object{{QStringLiteral("status"), status.status}, {QStringLiteral("orderindex"), orderIndex}};
    if (status.color) {
        object.insert(QStringLiteral("color"), *status.color);
    }
    if (status.type) {
        object.insert(QStringLiteral("type"), *status.type);
    }
    return object;
}

QJsonArray WireJson::statuses(const std::vector<Status>& statuses) const {
    QJsonArray array;
    for (const Status& each : statuses) {
        array.append(status(each, static_cast<int>(array.size())));
    }
    return array;
}

QJsonObject WireJson::tag(const Tag& tag) const {
    return {{QStringLiteral("name"), tag.name},
            {QStringLiteral("tag_fg"), orNull(tag.foreground)},
            {QStringLiteral("tag_bg"), orNull(tag.background)}};
}

QJsonObject WireJson::field(const FieldDefinition& field) const {
    return field.wire;
}

QJsonObject WireJson::workspace(const Workspace& workspace) const {
    QJsonArray members;
    for (const qint64 memberID : workspace.memberIDs) {
        if (const User* member = m_data.user(memberID)) {
            members.append(QJsonObject{{QStringLiteral("user"), user(*member)}});
        }
    }
    return {{QStringLiteral("id"), workspace.id},
            {QStringLiteral("name"), workspace.name},
            {QStringLiteral("color"), orNull(workspace.color)},
            {QStringLiteral("avatar"), orNull(workspace.avatar)},
            {QStringLiteral("members"), members}};
}

QJsonObject WireJson::space(const Space& space) const {
    QJsonObject object{{QStringLiteral("id"), space.id},
                       {QStringLiteral("name"), space.name},
                       {QStringLiteral("private"), false},
                       {QStringLiteral("multiple_assignees"), true}};
    if (space.statuses) {
        object.insert(QStringLiteral("statuses"), statuses(*space.statuses));
    }
    insertArchived(object, space.archived);
    return object;
}

QJsonObject WireJson::folder(const Folder& folder) const {
    QJsonArray lists;
    for (const TaskList& each : m_data.lists) {
        if (each.folderID == folder.id) {
            lists.append(list(each, false));
        }
    }
    QJsonObject object{{QStringLiteral("id"), folder.id},
                       {QStringLiteral("name"), folder.name},
                       {QStringLiteral("hidden"), false},
                       {QStringLiteral("space"), QJsonObject{{QStringLiteral("id"), folder.spaceID}}},
                       {QStringLiteral("lists"), lists}};
    insertArchived(object, folder.archived);
    return object;
}

QJsonObject WireJson::list(const TaskList& list, bool alone) const {
    QJsonObject object{{QStringLiteral("id"), list.id},
                       {QStringLiteral("name"), list.name},
                       {QStringLiteral("content"), QString()},
                       {QStringLiteral("override_statuses"), list.statuses.has_value()},
                       {QStringLiteral("space"), QJsonObject{{QStringLiteral("id"), list.spaceID}}},
                       {QStringLiteral("permission_level"), QStringLiteral("create")}};
    if (list.folderID) {
        const Folder* folder = m_data.folder(*list.folderID);
        object.insert(QStringLiteral("folder"),
                      QJsonObject{{QStringLiteral("id"), *list.folderID},
                                  {QStringLiteral("name"), folder ? folder->name : QString()}});
    }
    if (alone) {
        object.insert(QStringLiteral("statuses"), statuses(m_data.statusesOf(list)));
    } else if (list.statuses) {
        object.insert(QStringLiteral("statuses"), statuses(*list.statuses));
    }
    insertArchived(object, list.archived);
    return object;
}

QString WireJson::taskURL(const Task& task) const {
    return m_webBase + QStringLiteral("/t/") + task.id;
}

QJsonObject WireJson::task(const Task& task) const {
    const TaskList* list = m_data.list(task.listID);
    QJsonObject status{{QStringLiteral("status"), task.status}};
    if (list) {
        const std::vector<Status> statuses = m_data.statusesOf(*list);
        for (size_t index = 0; index < statuses.size(); ++index) {
            if (statuses[index].status.compare(task.status, Qt::CaseInsensitive) == 0) {
                status = this->status(statuses[index], static_cast<int>(index));
            }
        }
    }
    QJsonArray assignees;
    for (const qint64 assigneeID : task.assignees) {
        if (const User* assignee = m_data.user(assigneeID)) {
            assignees.append(user(*assignee));
        }
    }
    QJsonArray tags;
    for (const QString& name : task.tags) {
        tags.append(QJsonObject{{QStringLiteral("name"), name}});
    }
    const Space* space = list ? m_data.space(list->spaceID) : nullptr;
    QJsonObject object{{QStringLiteral("id"), task.id},
                       {QStringLiteral("custom_id"), orNull(task.customID)},
                       {QStringLiteral("name"), task.name},
                       {QStringLiteral("text_content"), task.description},
                       {QStringLiteral("description"), task.description},
                       {QStringLiteral("status"), status},
                       {QStringLiteral("date_created"), QString::number(task.createdMs)},
                       {QStringLiteral("date_updated"), QString::number(task.updatedMs)},
                       {QStringLiteral("archived"), false},
                       {QStringLiteral("creator"), QJsonObject{{QStringLiteral("id"), task.creatorID}}},
                       {QStringLiteral("assignees"), assignees},
                       {QStringLiteral("tags"), tags},
                       {QStringLiteral("parent"), orNull(task.parentID)},
                       {QStringLiteral("priority"), priority(task.priority)},
                       {QStringLiteral("due_date"), msText(task.dueDateMs)},
                       {QStringLiteral("custom_fields"), task.customFields},
                       {QStringLiteral("url"), taskURL(task)},
                       {QStringLiteral("list"), QJsonObject{{QStringLiteral("id"), task.listID},
                                                            {QStringLiteral("name"), list ? list->name : QString()}}},
                       {QStringLiteral("space"), QJsonObject{{QStringLiteral("id"), space ? space->id : QString()}}},
                       {QStringLiteral("team_id"), space ? space->workspaceID : QString()}};
    if (list && list->folderID) {
        object.insert(QStringLiteral("folder"), QJsonObject{{QStringLiteral("id"), *list->folderID}});
    }
    return object;
}

QString WireJson::attachmentURL(const Attachment& attachment) const {
    return m_webBase + QStringLiteral("/attachments/") + QString::fromLatin1(QUrl::toPercentEncoding(attachment.id)) +
           QLatin1Char('/') + QString::fromLatin1(QUrl::toPercentEncoding(attachment.title));
}

QJsonObject WireJson::attachment(const Workspace& workspace, const Attachment& attachment) const {
    QJsonObject object{{QStringLiteral("title"), attachment.title},
                       {QStringLiteral("extension"), attachment.extension},
                       {QStringLiteral("url"), attachmentURL(attachment)},
                       {QStringLiteral("thumbnail_small"), QJsonValue()}};
    // The two forms the service answers with: a string id with a version in text and a numeric
    // date, or a numeric id with a numeric version and a date in text.
    if (workspace.attachmentIDForm == AttachmentIDForm::Number) {
        object.insert(QStringLiteral("id"), attachment.id.toLongLong());
        object.insert(QStringLiteral("version"), 1);
        object.insert(QStringLiteral("date"), QString::number(attachment.dateMs));
    } else {
        object.insert(QStringLiteral("id"), attachment.id);
        object.insert(QStringLiteral("version"), QStringLiteral("0"));
        object.insert(QStringLiteral("date"), attachment.dateMs);
    }
    return object;
}
