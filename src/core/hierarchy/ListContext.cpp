#include "core/hierarchy/ListContext.h"

#include "core/api/Endpoints.h"
#include "core/async/LoadGuard.h"

namespace {
// A read whose failure counts as an absent result.
template <typename T> QCoro::Task<std::optional<T>> orAbsent(QCoro::Task<T> read) {
    try {
        co_return co_await std::move(read);
    } catch (...) {
        co_return std::nullopt;
    }
}

// What the reads of one load brought; a failed read is absent.
struct Reads {
    std::optional<NVList> details;
    std::optional<MembersResponse> members;
    std::optional<TagsResponse> tags;
    std::optional<FieldsResponse> fields;
};

// The list's details, members, space tags and fields, read side by side.
QCoro::Task<Reads> readAll(NorvaneClient client, ListEntry entry) {
    // All four go out now, in this order: QCoro's tasks start at once.
    QCoro::Task<std::optional<NVList>> detailsRead = orAbsent(Endpoints::getList(client, entry.list.id));
    QCoro::Task<std::optional<MembersResponse>> membersRead =
        orAbsent(Endpoints::getListMembers(client, entry.list.id));
    QCoro::Task<std::optional<TagsResponse>> tagsRead = orAbsent(Endpoints::getSpaceTags(client, entry.spaceID));
    QCoro::Task<std::optional<FieldsResponse>> fieldsRead = orAbsent(Endpoints::getListFields(client, entry.list.id));
    Reads read;
    read.details = co_await std::move(detailsRead);
    read.members = co_await std::move(membersRead);
    read.tags = co_await std::move(tagsRead);
    read.fields = co_await std::move(fieldsRead);
    co_return read;
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

QString ListContext::loadFailedText() {
    return tr("Couldn't load list details. Check your connection.");
}

QCoro::Task<> ListContext::load(NorvaneClient client) {
    const ListEntry entry = m_entry;
    assign(m_isLoading, true, &ListContext::isLoadingChanged);
    assign(m_error, std::optional<QString>(), &ListContext::errorChanged);
    QCoro::Task<std::optional<Reads>> reading = awaitGuarded(LoadGuard(this), readAll(client, entry));
    const std::optional<Reads> read = co_await std::move(reading);
    if (!read) {
        co_return;
    }
    const auto& [details, members, tags, fields] = *read;

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
