#pragma once

#include "core/api/FieldRecords.h"
#include "core/api/NorvaneClient.h"
#include "core/api/UserRecords.h"
#include "core/hierarchy/ListEntry.h"

#include <QCoroTask>
#include <QList>
#include <QObject>
#include <optional>

// What the composer knows of the selected list: its statuses, the people who can be assigned, the
// tags of its space and the custom fields it can edit. One object per selection; it is never
// reloaded for another list. Main thread only.
class ListContext : public QObject {
    Q_OBJECT
    Q_PROPERTY(QList<NVStatus> statuses READ statuses NOTIFY statusesChanged)
    Q_PROPERTY(QList<Member> members READ members NOTIFY membersChanged)
    Q_PROPERTY(QList<NVTag> tags READ tags NOTIFY tagsChanged)
    Q_PROPERTY(QList<CustomField> fields READ fields NOTIFY fieldsChanged)
    Q_PROPERTY(bool isLoading READ isLoading NOTIFY isLoadingChanged)
    Q_PROPERTY(std::optional<QString> error READ error NOTIFY errorChanged)

public:
    // The statuses start as the space's; the rest starts empty.
    explicit ListContext(ListEntry entry, QObject* parent = nullptr);

    static QString loadFailedText();

    const ListEntry& entry() const { return m_entry; }
    const QList<NVStatus>& statuses() const { return m_statuses; }
    const QList<Member>& members() const { return m_members; }
    const QList<NVTag>& tags() const { return m_tags; }
    // Only fields of a type the composer can edit.
    const QList<CustomField>& fields() const { return m_fields; }
    bool isLoading() const { return m_isLoading; }
    const std::optional<QString>& error() const { return m_error; }

    // Reads the list's details, members, space tags and fields side by side; each failed read
    // counts as nothing. The list's own statuses win over the space's. Never throws.
    QCoro::Task<> load(NorvaneClient client);

signals:
    void statusesChanged();
    void membersChanged();
    void tagsChanged();
    void fieldsChanged();
    void isLoadingChanged();
    void errorChanged();

private:
    template <typename T> void assign(T& field, const T& value, void (ListContext::*changed)()) {
        if (field == value) {
            return;
        }
        field = value;
        emit(this->*changed)();
    }

    const ListEntry m_entry;
    QList<NVStatus> m_statuses;
    QList<Member> m_members;
    QList<NVTag> m_tags;
    QList<CustomField> m_fields;
    bool m_isLoading = false;
    std::optional<QString> m_error;
};
