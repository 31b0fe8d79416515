#include "sandbox/service/SandboxService.h"

#include "sandbox/service/ApiErrors.h"
#include "sandbox/storage/cloudinary/CloudinaryRoutes.h"
#include "sandbox/storage/google/GoogleRoutes.h"
#include "sandbox/store/SeedLoader.h"

#include <QDateTime>
#include <QFile>

#include <thread>

namespace {
const QString apiPrefix = QStringLiteral("api");
const QString apiVersion = QStringLiteral("v2");
const QString adminPrefix = QStringLiteral("_sandbox");

bool isAPI(const QStringList& segments) {
    return segments.size() >= 2 && segments[0] == apiPrefix && segments[1] == apiVersion;
}

bool isAdmin(const QStringList& segments) {
    return !segments.isEmpty() && segments[0] == adminPrefix;
}

// Counts the requests being handled for the log's in-flight figure.
class InFlight {
public:
    explicit InFlight(std::atomic<int>& count)
        : m_count(count)
        , m_atArrival(++count) {}
    ~InFlight() { --m_count; }
    InFlight(const InFlight&) = delete;
    InFlight& operator=(const InFlight&) = delete;
    int atArrival() const { return m_atArrival; }

private:
    std::atomic<int>& m_count;
    int m_atArrival;
};
} // namespace

std::variant<std::unique_ptr<SandboxService>, QString> SandboxService::create(SandboxSettings settings) {
    auto data = SeedLoader::load(settings.seed(), QDateTime::currentMSecsSinceEpoch());
    if (QString* problem = std::get_if<QString>(&data)) {
        return *problem;
    }
    return std::unique_ptr<SandboxService>(
        new SandboxService(std::move(settings), std::get<StoreData>(std::move(data))));
}

SandboxService::SandboxService(SandboxSettings settings, StoreData data)
    : m_settings(std::move(settings))
    , m_store(std::move(data))
    , m_config(m_settings.storageQuota)
    , m_apiEnvironment{m_store, m_config, m_settings.webBase, m_settings.dataFolder}
    , m_adminEnvironment{m_faults, m_log, m_config, [this] { resetData(); }} {
    addUserRoutes(m_api, m_apiEnvironment);
    addTeamRoutes(m_api, m_apiEnvironment);
    addSpaceRoutes(m_api, m_apiEnvironment);
    addListRoutes(m_api, m_apiEnvironment);
    addTaskRoutes(m_api, m_apiEnvironment);
    addAttachmentRoutes(m_api, m_apiEnvironment);
    addWebPages(m_web, m_store, m_settings.webBase);
    addAttachmentDownloads(m_web, m_store);
    addCloudinaryRoutes(m_web, m_settings.webBase, m_settings.dataFolder);
    addAdminRoutes(m_admin, m_adminEnvironment);
    addGoogleRoutes(m_web, m_admin, m_settings.webBase);
}

bool SandboxService::streamsBody(const ServiceRequest& request) const {
    if (isAPI(request.segments)) {
        return m_api.streams(request.method, request.segments.mid(2));
    }
    return !isAdmin(request.segments) && m_web.streams(request.method, request.segments);
}

ServiceResponse SandboxService::handle(const ServiceRequest& request) {
    if (isAdmin(request.segments)) {
        request.discardBody();
        return m_settings.admin ? answerAdmin(request) : ApiErrors::routeNotFound();
    }
    const InFlight inFlight(m_inFlight);
    const qint64 seq = m_log.begin(request, inFlight.atArrival());
    std::optional<int> faultID;
    ServiceResponse response = answer(request, faultID);
    m_log.finish(seq, request, response.status, faultID);
    return response;
}

ServiceResponse SandboxService::answer(const ServiceRequest& request, std::optional<int>& faultID) {
    if (const std::optional<FaultRule> fault = m_faults.take(request.method, request.path)) {
        faultID = fault->id;
        std::this_thread::sleep_for(std::chrono::milliseconds(fault->delayMs));
        if (fault->hold) {
            m_faults.waitUntilReleased(*fault);
        }
        if (fault->drop) {
            return ServiceResponse::dropped();
        }
        if (fault->answer && fault->answerAfter) {
            route(request);
            return *fault->answer;
        }
        if (fault->answer) {
            request.discardBody();
            return *fault->answer;
        }
        if (fault->dropAfter) {
            route(request);
            return ServiceResponse::dropped();
        }
    }
    return route(request);
}

ServiceResponse SandboxService::route(const ServiceRequest& request) {
    if (request.bodyTooLarge) {
        return ApiErrors::bodyTooLarge();
    }
    if (isAPI(request.segments)) {
        return answerAPI(request);
    }
    QStringList params;
    if (const WebRoutes::Handler* handler = m_web.find(request.method, request.segments, params)) {
        return (*handler)(RouteCall{request, params});
    }
    request.discardBody();
    return ApiErrors::routeNotFound();
}

ServiceResponse SandboxService::answerAPI(const ServiceRequest& request) {
    const QByteArray token = request.header("Authorization");
    const std::optional<User> user = m_store.read([&](const StoreData& data) -> std::optional<User> {
        const User* found = data.userWithToken(token);
        return found ? std::optional(*found) : std::nullopt;
    });
    if (!user) {
        request.discardBody();
        return token.isEmpty() ? ApiErrors::missingToken() : ApiErrors::invalidToken();
    }
    QStringList params;
    const ApiRoutes::Handler* handler = m_api.find(request.method, request.segments.mid(2), params);
    if (!handler) {
        request.discardBody();
        return ApiErrors::routeNotFound();
    }
    return (*handler)(ApiCall{request, *user, params});
}

ServiceResponse SandboxService::answerAdmin(const ServiceRequest& request) {
    QStringList params;
    const AdminRoutes::Handler* handler = m_admin.find(request.method, request.segments.mid(1), params);
    return handler ? (*handler)(RouteCall{request, params}) : ApiErrors::routeNotFound();
}

void SandboxService::resetData() {
    auto data = SeedLoader::load(m_settings.seed(), QDateTime::currentMSecsSinceEpoch());
    // The seed loaded once at start, so it loads again; the check keeps a failure harmless.
    if (StoreData* fresh = std::get_if<StoreData>(&data)) {
        m_store.write([&](StoreData& old) {
            for (const Task& task : old.tasks) {
                for (const Attachment& attachment : task.attachments) {
                    QFile::remove(attachment.storedPath);
                }
            }
            old = std::move(*fresh);
        });
    }
}

std::vector<User> SandboxService::tokenUsers() const {
    return m_store.read([](const StoreData& data) {
        std::vector<User> users;
        std::copy_if(data.users.begin(), data.users.end(), std::back_inserter(users),
                     [](const User& user) { return user.token.has_value(); });
        return users;
    });
}
