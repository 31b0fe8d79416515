#include "sandbox/store/SeedLoader.h"

#include "sandbox/service/JsonBody.h"

#include <QJsonArray>

namespace {

struct SeedError {
    QString message;
};

// Reads one object of the seed; a wrong or missing value stops the load with the object's place.
class SeedObject {
public:
    SeedObject(const QJsonValue& value, QString where)
        : m_where(std::move(where)) {
        if (!value.isObject()) {
            throw SeedError{m_where + QStringLiteral(" must be an object")};
        }
        m_object = value.toObject();
    }

    QString where() const { return m_where; }
    QJsonObject object() const { return m_object; }

    QString requiredString(const QString& key) const {
        const std::optional<QString> value = string(key);
        if (!value) {
            fail(key, QStringLiteral("a string"));
        }
        return *value;
    }

    std::optional<QString> string(const QString& key) const {
        const QJsonValue value = m_object.value(key);
        if (value.isUndefined() || value.isNull()) {
            return std::nullopt;
        }
        if (!value.isString()) {
            fail(key, QStringLiteral("a string"));
        }
        return value.toString();
    }

    std::optional<qint64> integer(const QString& key) const {
        const QJsonValue value = m_object.value(key);
        if (value.isUndefined() || value.isNull()) {
            return std::nullopt;
        }
        if (!JsonBody::isInteger(value)) {
            fail(key, QStringLiteral("an integer"));
        }
        return value.toInteger();
    }

    bool boolean(const QString& key) const {
        const QJsonValue value = m_object.value(key);
        if (!value.isUndefined() && !value.isNull() && !value.isBool()) {
            fail(key, QStringLiteral("a boolean"));
        }
        return value.toBool();
    }

    QJsonArray array(const QString& key) const {
        const QJsonValue value = m_object.value(key);
        if (value.isUndefined() || value.isNull()) {
            return {};
        }
        if (!value.isArray()) {
            fail(key, QStringLiteral("an array"));
        }
        return value.toArray();
    }

    std::optional<QJsonArray> optionalArray(const QString& key) const {
        return m_object.contains(key) && !m_object.value(key).isNull() ? std::optional(array(key)) : std::nullopt;
    }

    // true, false, null or missing, kept as given.
    QJsonValue archived() const {
        QJsonValue value = m_object.value(QStringLiteral("archived"));
        if (!value.isUndefined() && !value.isNull() && !value.isBool()) {
            fail(QStringLiteral("archived"), QStringLiteral("a boolean or null"));
        }
        return value;
    }

    [[noreturn]] void fail(const QString& key, const QString& expected) const {
        throw SeedError{QStringLiteral("%1.%2 must be %3").arg(m_where, key, expected)};
    }

private:
    QString m_where;
    QJsonObject m_object;
};

class Loader {
public:
    explicit Loader(qint64 nowMs)
        : m_nowMs(nowMs) {}

    StoreData load(const QJsonObject& seed) {
        const SeedObject root(seed, QStringLiteral("seed"));
        const QJsonArray users = root.array(QStringLiteral("users"));
        for (qsizetype index = 0; index < users.size(); ++index) {
            readUser(SeedObject(users[index], QStringLiteral("users[%1]").arg(index)));
        }
        const QJsonArray workspaces = root.array(QStringLiteral("workspaces"));
        for (qsizetype index = 0; index < workspaces.size(); ++index) {
            readWorkspace(SeedObject(workspaces[index], QStringLiteral("workspaces[%1]").arg(index)));
        }
        checkReferences();
        return std::move(m_data);
    }

private:
    void readUser(const SeedObject& object) {
        const std::optional<qint64> id = object.integer(QStringLiteral("id"));
        if (!id) {
            object.fail(QStringLiteral("id"), QStringLiteral("an integer"));
        }
        m_data.users.push_back(
            User{*id, object.string(QStringLiteral("username")), object.string(QStringLiteral("email")),
                 object.string(QStringLiteral("color")), object.string(QStringLiteral("initials")),
                 object.string(QStringLiteral("profilePicture")), object.string(QStringLiteral("token"))});
    }

    void readWorkspace(const SeedObject& object) {
        Workspace workspace{object.requiredString(QStringLiteral("id")), object.requiredString(QStringLiteral("name")),
                            object.string(QStringLiteral("color")), object.string(QStringLiteral("avatar"))};
        for (const auto& member : object.array(QStringLiteral("members"))) {
            if (!JsonBody::isInteger(member)) {
                object.fail(QStringLiteral("members"), QStringLiteral("an array of user ids"));
            }
            workspace.memberIDs.push_back(member.toInteger());
        }
        workspace.customTaskIDPrefix = object.string(QStringLiteral("customTaskIdPrefix"));
        const QString idForm = object.string(QStringLiteral("attachmentIds")).value_or(QStringLiteral("string"));
        if (idForm != QLatin1String("string") && idForm != QLatin1String("number")) {
            object.fail(QStringLiteral("attachmentIds"), QStringLiteral("\"string\" or \"number\""));
        }
        workspace.attachmentIDForm =
            idForm == QLatin1String("number") ? AttachmentIDForm::Number : AttachmentIDForm::String;
        m_data.workspaces.push_back(workspace);
        const QJsonArray spaces = object.array(QStringLiteral("spaces"));
        for (qsizetype index = 0; index < spaces.size(); ++index) {
            readSpace(SeedObject(spaces[index], object.where() + QStringLiteral(".spaces[%1]").arg(index)),
                      workspace.id);
        }
    }

    void readSpace(const SeedObject& object, const QString& workspaceID) {
        Space space{object.requiredString(QStringLiteral("id")), workspaceID,
                    object.requiredString(QStringLiteral("name")), readStatuses(object), object.archived()};
        for (const auto& value : object.array(QStringLiteral("tags"))) {
            const SeedObject tag(value, object.where() + QStringLiteral(".tags[]"));
            space.tags.push_back(Tag{tag.requiredString(QStringLiteral("name")), tag.string(QStringLiteral("tag_fg")),
                                     tag.string(QStringLiteral("tag_bg"))});
        }
        m_data.spaces.push_back(space);
        readLists(object, space.id, std::nullopt);
        const QJsonArray folders = object.array(QStringLiteral("folders"));
        for (qsizetype index = 0; index < folders.size(); ++index) {
            const SeedObject folder(folders[index], object.where() + QStringLiteral(".folders[%1]").arg(index));
            m_data.folders.push_back(Folder{folder.requiredString(QStringLiteral("id")), space.id,
                                            folder.requiredString(QStringLiteral("name")), folder.archived()});
            readLists(folder, space.id, m_data.folders.back().id);
        }
    }

    void readLists(const SeedObject& owner, const QString& spaceID, const std::optional<QString>& folderID) {
        const QJsonArray lists = owner.array(QStringLiteral("lists"));
        for (qsizetype index = 0; index < lists.size(); ++index) {
            const SeedObject object(lists[index], owner.where() + QStringLiteral(".lists[%1]").arg(index));
            TaskList list{object.requiredString(QStringLiteral("id")),
                          spaceID,
                          folderID,
                          object.requiredString(QStringLiteral("name")),
                          readStatuses(object),
                          object.archived()};
            for (const auto& value : object.array(QStringLiteral("fields"))) {
                list.fields.push_back(readField(SeedObject(value, object.where() + QStringLiteral(".fields[]"))));
            }
            m_data.lists.push_back(list);
            const QJsonArray tasks = object.array(QStringLiteral("tasks"));
            for (qsizetype taskIndex = 0; taskIndex < tasks.size(); ++taskIndex) {
                readTask(SeedObject(tasks[taskIndex], object.where() + QStringLiteral(".tasks[%1]").arg(taskIndex)),
                         m_data.lists.back());
            }
        }
    }

    std::optional<std::vector<Status>> readStatuses(const SeedObject& owner) {
        const std::optional<QJsonArray> array = owner.optionalArray(QStringLiteral("statuses"));
        if (!array) {
            return std::nullopt;
        }
        std::vector<Status> statuses;
        for (const auto& value : *array) {
            const SeedObject status(value, owner.where() + QStringLiteral(".statuses[]"));
            statuses.push_back(Status{status.requiredString(QStringLiteral("status")),
                                      status.string(QStringLiteral("color")), status.string(QStringLiteral("type"))});
        }
        return statuses;
    }

    FieldDefinition readField(const SeedObject& object) {
        FieldDefinition field{object.requiredString(QStringLiteral("id")),
                              object.requiredString(QStringLiteral("name")),
                              object.requiredString(QStringLiteral("type")),
                              object.object(),
                              {}};
        const QJsonObject typeConfig = object.object().value(QStringLiteral("type_config")).toObject();
        for (const auto& option : typeConfig.value(QStringLiteral("options")).toArray()) {
            field.optionIDs.append(option.toObject().value(QStringLiteral("id")).toString());
        }
        return field;
    }

    void readTask(const SeedObject& object, const TaskList& list) {
        Task task;
        task.id = object.requiredString(QStringLiteral("id"));
        task.customID = object.string(QStringLiteral("custom_id"));
        task.name = object.requiredString(QStringLiteral("name"));
        task.description = object.string(QStringLiteral("description")).value_or(QString());
        task.listID = list.id;
        task.status = object.string(QStringLiteral("status")).value_or(m_data.statusesOf(list).front().status);
        if (!m_data.findStatus(list, task.status)) {
            object.fail(QStringLiteral("status"), QStringLiteral("a status of its list"));
        }
        task.dueDateMs = object.integer(QStringLiteral("due_date"));
        task.dueDateTime = object.boolean(QStringLiteral("due_date_time"));
        const std::optional<qint64> priority = object.integer(QStringLiteral("priority"));
        task.priority = priority ? std::optional(static_cast<int>(*priority)) : std::nullopt;
        for (const auto& assignee : object.array(QStringLiteral("assignees"))) {
            if (!JsonBody::isInteger(assignee)) {
                object.fail(QStringLiteral("assignees"), QStringLiteral("an array of user ids"));
            }
            task.assignees.push_back(assignee.toInteger());
        }
        for (const auto& tag : object.array(QStringLiteral("tags"))) {
            task.tags.append(tag.toString());
        }
        task.parentID = object.string(QStringLiteral("parent"));
        task.customFields = object.array(QStringLiteral("custom_fields"));
        task.creatorID = object.integer(QStringLiteral("creator")).value_or(0);
        task.createdMs = object.integer(QStringLiteral("date_created")).value_or(m_nowMs);
        task.updatedMs = task.createdMs;
        m_data.tasks.push_back(task);
    }

    void checkReferences() const {
        for (const Workspace& workspace : m_data.workspaces) {
            for (const qint64 member : workspace.memberIDs) {
                if (!m_data.user(member)) {
                    throw SeedError{
                        QStringLiteral("workspace %1 names the unknown member %2").arg(workspace.id).arg(member)};
                }
            }
        }
        for (const Task& task : m_data.tasks) {
            if (task.parentID && !m_data.task(*task.parentID)) {
                throw SeedError{QStringLiteral("task %1 names the unknown parent %2").arg(task.id, *task.parentID)};
            }
            for (const qint64 assignee : task.assignees) {
                if (!m_data.user(assignee)) {
                    throw SeedError{QStringLiteral("task %1 names the unknown assignee %2").arg(task.id).arg(assignee)};
                }
            }
        }
    }

    qint64 m_nowMs;
    StoreData m_data;
};

} // namespace

namespace SeedLoader {

std::variant<StoreData, QString> load(const QJsonObject& seed, qint64 nowMs) {
    try {
        return Loader(nowMs).load(seed);
    } catch (const SeedError& error) {
        return error.message;
    }
}

} // namespace SeedLoader
