#include "sandbox/storage/google/GoogleRoutes.h"
#include "sandbox/storage/google/MultipartRelated.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {
// Drive's answer to a refused request: {"error": {"code", "message", "errors", "status"}}.
ServiceResponse driveError(int status, const QString& message, const QString& reason, const QString& statusName) {
    const QJsonObject detail{{QStringLiteral("message"), message},
                             {QStringLiteral("domain"), QStringLiteral("global")},
                             {QStringLiteral("reason"), reason}};
    return ServiceResponse::json({{QStringLiteral("error"), QJsonObject{{QStringLiteral("code"), status},
                                                                        {QStringLiteral("message"), message},
                                                                        {QStringLiteral("errors"), QJsonArray{detail}},
                                                                        {QStringLiteral("status"), statusName}}}},
                                 status);
}

ServiceResponse badRequest(const QString& message) {
    return driveError(400, message, QStringLiteral("badRequest"), QStringLiteral("INVALID_ARGUMENT"));
}

ServiceResponse unauthenticated() {
    return driveError(401,
                      QStringLiteral("Request had invalid authentication credentials. Expected OAuth 2 access token, "
                                     "login cookie or other valid authentication credential."),
                      QStringLiteral("authError"), QStringLiteral("UNAUTHENTICATED"));
}

ServiceResponse fileNotFound(const QString& id) {
    return driveError(404, QStringLiteral("File not found: %1.").arg(id), QStringLiteral("notFound"),
                      QStringLiteral("NOT_FOUND"));
}

// The file's name and folders from the metadata part, which names nothing else.
std::variant<GoogleSandbox::File, ServiceResponse> metadataOf(const MultipartRelated::Part& part) {
    if (!part.headers.value("content-type").startsWith("application/json")) {
        return badRequest(QStringLiteral("The metadata part must be application/json"));
    }
    const QJsonDocument document = QJsonDocument::fromJson(part.content);
    const QJsonObject metadata = document.object();
    const QStringList keys = metadata.keys();
    const QJsonValue parents = metadata.value(QStringLiteral("parents"));
    if (!document.isObject() || !metadata.value(QStringLiteral("name")).isString() ||
        !(keys == QStringList{QStringLiteral("name")} ||
          keys == QStringList{QStringLiteral("name"), QStringLiteral("parents")})) {
        return badRequest(QStringLiteral("The metadata must be an object of a name and, if any, parents"));
    }
    if (!parents.isUndefined() && (parents.toArray().size() != 1 || !parents.toArray().first().isString() ||
                                   parents.toArray().first().toString().isEmpty())) {
        return badRequest(QStringLiteral("parents must hold one folder id"));
    }
    GoogleSandbox::File file;
    file.name = metadata.value(QStringLiteral("name")).toString();
    if (!parents.isUndefined()) {
        file.parents = {parents.toArray().first().toString()};
    }
    return file;
}

// The uploaded file, or the answer to an upload that isn't Drive's multipart form.
std::variant<GoogleSandbox::File, ServiceResponse> uploadedFile(const ServiceRequest& request) {
    if (request.queryValues(u"uploadType") != QStringList{QStringLiteral("multipart")}) {
        return badRequest(QStringLiteral("uploadType must be multipart"));
    }
    const std::optional<QByteArray> boundary = MultipartRelated::boundaryOf(request.header("Content-Type"));
    const auto parts = boundary ? MultipartRelated::parse(request.body, *boundary) : std::nullopt;
    if (!parts || parts->size() != 2) {
        return badRequest(QStringLiteral("The body must be multipart/related of metadata and media"));
    }
    auto metadata = metadataOf(parts->at(0));
    if (auto* file = std::get_if<GoogleSandbox::File>(&metadata)) {
        if (parts->at(1).headers.value("content-type") != "application/octet-stream") {
            return badRequest(QStringLiteral("The media part must be application/octet-stream"));
        }
        file->content = parts->at(1).content;
    }
    return metadata;
}

// The fields of the file that `fields` asks for; all of them when it asks for none.
QJsonObject answeredFields(const QJsonObject& file, const QString& fields) {
    if (fields.isEmpty()) {
        return file;
    }
    QJsonObject answer;
    for (const QString& field : fields.split(u',')) {
        if (file.contains(field.trimmed())) {
            answer.insert(field.trimmed(), file.value(field.trimmed()));
        }
    }
    return answer;
}

ServiceResponse upload(GoogleSandbox& state, const ServiceRequest& request, const QString& webBase) {
    const std::optional<QString> grant =
        state.grantOf(request.header("Authorization"), QDateTime::currentMSecsSinceEpoch());
    if (!grant) {
        return unauthenticated();
    }
    auto received = uploadedFile(request);
    if (ServiceResponse* refused = std::get_if<ServiceResponse>(&received)) {
        return *refused;
    }
    GoogleSandbox::File file = std::get<GoogleSandbox::File>(std::move(received));
    file.refreshToken = *grant;
    const QString id = GoogleSandbox::newID(33);
    QJsonObject answer{{QStringLiteral("kind"), QStringLiteral("drive#file")},
                       {QStringLiteral("id"), id},
                       {QStringLiteral("name"), file.name},
                       {QStringLiteral("mimeType"), QStringLiteral("application/octet-stream")}};
    if (state.webViewLink) {
        answer.insert(QStringLiteral("webViewLink"),
                      webBase + QStringLiteral("/google/file/d/") + id + QStringLiteral("/view?usp=drivesdk"));
    }
    state.files.insert(id, std::move(file));
    return ServiceResponse::json(answeredFields(answer, request.queryValues(u"fields").value(0)));
}

// The file `id` of the request's grant, or the answer to a request without a valid token or for a
// file the grant can't see: the drive.file scope sees only the files its grant made.
std::variant<GoogleSandbox::File*, ServiceResponse> fileOfGrant(GoogleSandbox& state, const ServiceRequest& request,
                                                                const QString& id) {
    const std::optional<QString> grant =
        state.grantOf(request.header("Authorization"), QDateTime::currentMSecsSinceEpoch());
    if (!grant) {
        return unauthenticated();
    }
    const auto file = state.files.find(id);
    if (file == state.files.end() || file->refreshToken != *grant) {
        return fileNotFound(id);
    }
    return &*file;
}

ServiceResponse share(GoogleSandbox& state, const ServiceRequest& request, const QString& id) {
    const auto found = fileOfGrant(state, request, id);
    if (const ServiceResponse* refused = std::get_if<ServiceResponse>(&found)) {
        return *refused;
    }
    GoogleSandbox::File* file = std::get<GoogleSandbox::File*>(found);
    const QJsonObject permission{{QStringLiteral("type"), QStringLiteral("anyone")},
                                 {QStringLiteral("role"), QStringLiteral("reader")}};
    if (!request.header("Content-Type").startsWith("application/json") ||
        QJsonDocument::fromJson(request.body).object() != permission) {
        return badRequest(QStringLiteral("The permission must be {\"type\": \"anyone\", \"role\": \"reader\"}"));
    }
    file->shared = true;
    QJsonObject answer = permission;
    answer.insert(QStringLiteral("kind"), QStringLiteral("drive#permission"));
    answer.insert(QStringLiteral("id"), QStringLiteral("anyoneWithLink"));
    answer.insert(QStringLiteral("allowFileDiscovery"), false);
    return ServiceResponse::json(answer);
}

ServiceResponse content(GoogleSandbox& state, const ServiceRequest& request, const QString& id) {
    const auto found = fileOfGrant(state, request, id);
    if (const ServiceResponse* refused = std::get_if<ServiceResponse>(&found)) {
        return *refused;
    }
    const GoogleSandbox::File* file = std::get<GoogleSandbox::File*>(found);
    if (request.queryValues(u"alt") != QStringList{QStringLiteral("media")}) {
        return ServiceResponse::json({{QStringLiteral("kind"), QStringLiteral("drive#file")},
                                      {QStringLiteral("id"), id},
                                      {QStringLiteral("name"), file->name},
                                      {QStringLiteral("parents"), QJsonArray::fromStringList(file->parents)}});
    }
    ServiceResponse response;
    response.contentType = "application/octet-stream";
    response.body = file->content;
    return response;
}

// The page behind a shared link: the file's name and size; a file not shared asks for access.
ServiceResponse page(const GoogleSandbox& state, const QString& id) {
    const auto file = state.files.constFind(id);
    if (file == state.files.constEnd() || !file->shared) {
        ServiceResponse response = ServiceResponse::html(QStringLiteral("<h1>You need access</h1>"));
        response.status = file == state.files.constEnd() ? 404 : 403;
        return response;
    }
    return ServiceResponse::html(
        QStringLiteral("<h1>%1</h1><p>%2 bytes</p>").arg(file->name.toHtmlEscaped()).arg(file->content.size()));
}
} // namespace

void addDriveRoutes(RouteTable<RouteCall>& web, const std::shared_ptr<LockedGoogleSandbox>& google,
                    const QString& webBase) {
    web.add("POST", u"google/upload/drive/v3/files", [google, webBase](const RouteCall& call) {
        return google->with([&](GoogleSandbox& state) { return upload(state, call.request, webBase); });
    });
    web.add("POST", u"google/drive/v3/files/{}/permissions", [google](const RouteCall& call) {
        return google->with([&](GoogleSandbox& state) { return share(state, call.request, call.param(0)); });
    });
    web.add("GET", u"google/drive/v3/files/{}", [google](const RouteCall& call) {
        return google->with([&](GoogleSandbox& state) { return content(state, call.request, call.param(0)); });
    });
    web.add("GET", u"google/file/d/{}/view", [google](const RouteCall& call) {
        return google->with([&](const GoogleSandbox& state) { return page(state, call.param(0)); });
    });
}
