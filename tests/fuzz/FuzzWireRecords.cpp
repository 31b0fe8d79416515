// Every record the service answers with, decoded from the same bytes. Decoding may fail, but only
// with DecodingError; whatever decodes must be written and read back as the same record.
#include "core/api/APIErrorBody.h"
#include "core/api/FieldRecords.h"
#include "core/api/HierarchyRecords.h"
#include "core/api/TaskAttachment.h"
#include "core/api/TaskRecords.h"
#include "core/api/UserRecords.h"
#include "core/json/JsonDecoding.h"
#include "core/json/JsonEncoding.h"
#include "support/FuzzJson.h"

#include <cstdint>
#include <cstdlib>

namespace {
template <typename Record> void tryRecord(const QJsonValue& json) {
    const QString root = QStringLiteral("$");
    Record record;
    try {
        record = Json::decode<Record>(json, root);
    } catch (const DecodingError&) {
        return;
    }
    const QJsonValue written = Json::parse(Json::serialize(record.toJson()));
    if (Json::decode<Record>(written, root) != record) {
        std::abort();
    }
}

template <typename... Records> void tryRecords(const QJsonValue& json) {
    (tryRecord<Records>(json), ...);
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::optional<QJsonValue> parsed = fuzzedJson(data, size);
    if (!parsed) {
        return 0;
    }
    const QJsonValue& json = *parsed;
    tryRecords<UserResponse, MembersResponse, TeamsResponse, SpacesResponse, FoldersResponse, ListsResponse, NVList,
               TagsResponse, FieldsResponse, TeamTasksResponse, NVTaskSummary, CreatedTask, CommentResponse,
               APIErrorBody, TaskAttachment>(json);
    return 0;
}
