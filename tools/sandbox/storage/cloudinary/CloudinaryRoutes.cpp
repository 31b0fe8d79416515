#include "sandbox/storage/cloudinary/CloudinaryRoutes.h"

#include "sandbox/storage/cloudinary/CloudinaryAssets.h"

#include <QFile>

#include <memory>

namespace {

// A refusal as Cloudinary words it.
ServiceResponse refusal(int status, const QString& message) {
    return ServiceResponse::json({{QStringLiteral("error"), QJsonObject{{QStringLiteral("message"), message}}}},
                                 status);
}

const QString presetMissing = QStringLiteral("Upload preset must be specified when using unsigned upload");

// The refusal of a form with everything in place but the preset or the file, if any.
std::optional<ServiceResponse> formRefusal(const CloudinaryForm& form) {
    switch (form.problem) {
    case CloudinaryForm::Problem::Malformed:
        return refusal(400, QStringLiteral("Invalid multipart/form-data body"));
    case CloudinaryForm::Problem::WriteFailed:
        return refusal(500, QStringLiteral("The file could not be stored"));
    case CloudinaryForm::Problem::None:
        break;
    }
    const std::optional<QByteArray> preset = form.field("upload_preset");
    if (!preset || preset->isEmpty()) {
        return refusal(400, presetMissing);
    }
    if (*preset == SandboxCloudinary::signedPreset.toUtf8()) {
        return refusal(400, QStringLiteral("Upload preset must be whitelisted for unsigned uploads"));
    }
    if (*preset != SandboxCloudinary::unsignedPreset.toUtf8()) {
        return refusal(400, QStringLiteral("Upload preset not found"));
    }
    if (!form.file) {
        return refusal(400, QStringLiteral("Missing required parameter - file"));
    }
    if (form.file->size == 0) {
        return refusal(400, QStringLiteral("Empty file"));
    }
    return std::nullopt;
}

ServiceResponse upload(const RouteCall& call, CloudinaryAssets& assets, const QString& webBase,
                       const QString& dataFolder) {
    if (call.param(0) != SandboxCloudinary::cloudName) {
        call.request.discardBody();
        return refusal(401, QStringLiteral("Invalid cloud_name ") + call.param(0));
    }
    if (!call.request.streamedBody) {
        return refusal(400, presetMissing);
    }
    const CloudinaryForm form = CloudinaryForm::receive(*call.request.streamedBody, dataFolder);
    if (std::optional<ServiceResponse> refused = formRefusal(form)) {
        if (form.file) {
            QFile::remove(form.file->storedPath);
        }
        return *refused;
    }
    return ServiceResponse::json(assets.add(call.param(0), *form.file).toJson(webBase));
}

ServiceResponse delivery(const RouteCall& call, const CloudinaryAssets& assets) {
    const std::optional<CloudinaryAssets::Asset> asset =
        assets.find(call.param(0), call.param(1), call.param(2), call.param(3));
    if (!asset) {
        // Cloudinary answers a missing file with an empty body and the reason in a header.
        ServiceResponse missing;
        missing.status = 404;
        missing.contentType = "text/plain";
        missing.headers.append({"x-cld-error", "Resource not found - " + call.param(3).toUtf8()});
        return missing;
    }
    return ServiceResponse::file(asset->storedPath, asset->contentType);
}

} // namespace

void addCloudinaryRoutes(WebRoutes& routes, const QString& webBase, const QString& dataFolder) {
    auto assets = std::make_shared<CloudinaryAssets>();
    routes.add(
        "POST", u"v1_1/{}/auto/upload",
        [assets, webBase, dataFolder](const RouteCall& call) { return upload(call, *assets, webBase, dataFolder); },
        BodyMode::Streamed);
    routes.add("GET", u"{}/{}/upload/{}/{}", [assets](const RouteCall& call) { return delivery(call, *assets); });
}
