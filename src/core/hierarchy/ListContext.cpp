#include "hierarchy/ListContext.h"

#include "api/Endpoints.h"

#include <QPointer>

namespace {
// A read whose failure counts as an absent result.
template <typename T> QCoro::Task<std::optional<T>> orAbsent(QCoro::Task<T> read) {
    try {
        co_return co_await std::move(read);
    } catch (...) {
        co_return std::nullopt;
    }
}

template <typename T, typename Response>
QList<T> listOf(const std::optional<Response>& response, QList<T> Response::*field) {
    return response ? (*response).*field : QList<T>();
}
} // namespace

ListContext::ListContext(ListEntry entry, QObject* parent)
    : QObject(parent)
    , m_entry(std::move(entry))
    , m_statuses(m_entry.spaceStatuses) {}

const QString& ListContext::loadFailedText() {
    static const QString text = tr("Couldn't load list details. Check your connection.");
    return text;
}

QCoro::Task<> ListContext::load(NorvaneClient client) {
    QPointer<ListContext> self(this);
    const ListEntry entry = m_entry;
    assign(m_isLoading, true, &ListContext::isLoadingChanged);
    assign(m_error, std::optional<QString>(), &ListContext::errorChanged);

    // All four go out now, in this order: QCoro's tasks start at once.
    QCoro::Task<std::optional<NVList>> detailsRead = orAbsent(Endpoints::getList(client, entry.list.id));
    QCoro::Task<std::optional<MembersResponse>> membersRead =
        orAbsent(Endpoints::getListMembers(client, entry.list.id));
    QCoro::Task<std::optional<TagsResponse>> tagsRead = orAbsent(Endpoints::getSpaceTags(client, entry.spaceID));
    QCoro::Task<std::optional<FieldsResponse>> fieldsRead = orAbsent(Endpoints::getListFields(client, entry.list.id));
    const std::optional<NVList> details = co_await std::move(detailsRead);
    const std::optional<MembersResponse> members = co_await std::move(membersRead);
    const std::optional<TagsResponse> tags = co_await std::move(tagsRead);
    const std::optional<FieldsResponse> fields = co_await std::move(fieldsRead);
    if (!self) {
        co_return;
    }

    const QList<NVStatus> listStatuses = details ? details->statuses.value_or(QList<NVStatus>()) : QList<NVStatus>();
    if (!listStatuses.isEmpty()) {
        assign(m_statuses, listStatuses, &ListContext::statusesChanged);
    } else if (!entry.spaceStatuses.isEmpty()) {
        assign(m_statuses, entry.spaceStatuses, &ListContext::statusesChanged);
    }
    assign(m_members, listOf(members, &MembersResponse::members), &ListContext::membersChanged);
    assign(m_tags, listOf(tags, &TagsResponse::tags), &ListContext::tagsChanged);
    QList<CustomField> editable = listOf(fields, &FieldsResponse::fields);
    editable.removeIf([](const CustomField& field) { return !CustomField::editableTypes().contains(field.type); });
    assign(m_fields, editable, &ListContext::fieldsChanged);
    // Tags play no part: they can fail or not without an error being shown.
    if (!details && !members && !fields) {
        assign(m_error, std::optional(loadFailedText()), &ListContext::errorChanged);
    }
    assign(m_isLoading, false, &ListContext::isLoadingChanged);
}
