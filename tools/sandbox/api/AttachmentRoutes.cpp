#include "sandbox/api/ApiRoutes.h"
#include "sandbox/api/AttachmentUpload.h"
#include "sandbox/api/Visibility.h"
#include "sandbox/api/WireJson.h"
#include "sandbox/service/ApiErrors.h"
#include "sandbox/web/WebRoutes.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QUuid>

namespace {

ServiceResponse uploadProblem(AttachmentUpload::Problem problem) {
    switch (problem) {
    case AttachmentUpload::Problem::NotMultipart:
        return ApiErrors::error(400, QStringLiteral("Content-Type must be multipart/form-data"),
                                QStringLiteral("UPLOAD_001"));
    case AttachmentUpload::Problem::NoAttachmentPart:
        return ApiErrors::error(400, QStringLiteral("No part named attachment"), QStringLiteral("UPLOAD_002"));
    case AttachmentUpload::Problem::Malformed:
        return ApiErrors::error(400, QStringLiteral("Malformed multipart body"), QStringLiteral("UPLOAD_003"));
    case AttachmentUpload::Problem::StorageFull:
        return ApiErrors::storageLimitReached();
    case AttachmentUpload::Problem::WriteFailed:
    case AttachmentUpload::Problem::None:
        break;
    }
    return ApiErrors::error(500, QStringLiteral("The attachment could not be stored"), QStringLiteral("UPLOAD_004"));
}

// How much the task's workspace may still store, when the user may see the task.
struct UploadTarget {
    std::optional<qint64> allowedBytes;
};

} // namespace

void addAttachmentRoutes(ApiRoutes& routes, const ApiEnvironment& environment) {
    routes.add(
        "POST", u"task/{}/attachment",
        [&environment](const ApiCall& call) {
            const std::optional<UploadTarget> target =
                environment.store.read([&](const StoreData& data) -> std::optional<UploadTarget> {
                    if (!Visibility::task(data, call.param(0), call.user)) {
                        return std::nullopt;
                    }
                    const std::optional<qint64> quota = environment.config.storageQuota();
                    if (!quota) {
                        return UploadTarget{};
                    }
                    return UploadTarget{*quota - data.storageUsed(data.workspaceOfTask(call.param(0))->id)};
                });
            if (!target) {
                call.request.discardBody();
                return ApiErrors::notFound(QStringLiteral("Task"));
            }
            if (!call.request.streamedBody) {
                return uploadProblem(AttachmentUpload::Problem::NoAttachmentPart);
            }
            const AttachmentUpload::Outcome outcome =
                AttachmentUpload(environment.dataFolder, target->allowedBytes).receive(*call.request.streamedBody);
            if (outcome.problem != AttachmentUpload::Problem::None) {
                return uploadProblem(outcome.problem);
            }
            return environment.store.write([&](StoreData& data) {
                Task* task = data.task(call.param(0));
                if (!task) {
                    QFile::remove(outcome.storedPath);
                    return ApiErrors::notFound(QStringLiteral("Task"));
                }
                const Workspace& workspace = *data.workspaceOfTask(task->id);
                const QString extension = QFileInfo(outcome.filename).suffix();
                Attachment attachment{QUuid::createUuid().toString(QUuid::WithoutBraces) +
                                          (extension.isEmpty() ? QString() : QLatin1Char('.') + extension),
                                      outcome.filename,
                                      extension,
                                      outcome.size,
                                      QDateTime::currentMSecsSinceEpoch(),
                                      outcome.storedPath};
                if (workspace.attachmentIDForm == AttachmentIDForm::Number) {
                    attachment.id = QString::number(480'000 + data.nextNumber++);
                }
                task->attachments.push_back(attachment);
                return ServiceResponse::json(WireJson(data, environment.webBase).attachment(workspace, attachment));
            });
        },
        BodyMode::Streamed);
}

void addAttachmentDownloads(WebRoutes& routes, const SandboxStore& store) {
    routes.add("GET", u"attachments/{}/{}", [&store](const RouteCall& call) {
        return store.read([&](const StoreData& data) {
            for (const Task& task : data.tasks) {
                for (const Attachment& attachment : task.attachments) {
                    if (attachment.id == call.param(0)) {
                        return ServiceResponse::file(attachment.storedPath, "application/octet-stream");
                    }
                }
            }
            return ApiErrors::notFound(QStringLiteral("Attachment"));
        });
    });
}
