#pragma once

#include "sandbox/store/StoreData.h"

#include <QJsonArray>
#include <QJsonObject>

// Writes the sandbox's records in the shapes the service sends. Absent values are written as null
// where the service does so, and left out where it leaves them out.
class WireJson {
public:
    WireJson(const StoreData& data, QString webBase)
        : m_data(data)
        , m_webBase(std::move(webBase)) {}

    QJsonObject user(const User& user) const;
    QJsonArray statuses(const std::vector<Status>& statuses) const;
    QJsonObject tag(const Tag& tag) const;
    QJsonObject field(const FieldDefinition& field) const;
    QJsonObject workspace(const Workspace& workspace) const;
    QJsonObject space(const Space& space) const;
    QJsonObject folder(const Folder& folder) const;
    // In listings a list carries statuses only when it has its own; alone it carries those in force.
    QJsonObject list(const TaskList& list, bool alone) const;
    QJsonObject task(const Task& task) const;
    QJsonObject attachment(const Workspace& workspace, const Attachment& attachment) const;

    QString taskURL(const Task& task) const;
    QString attachmentURL(const Attachment& attachment) const;

private:
    QJsonObject status(const Status& status, int orderIndex) const;

    const StoreData& m_data;
    QString m_webBase;
};
