// norvane-sandbox: a local service that speaks the Norvane REST contract, with demo data, for
// demos, development and integration tests. Start-up lines on stdout, the first one always
// "listening http://127.0.0.1:PORT" and the last one "ready", tell tests and scripts where it is
// and which tokens work.
#include "sandbox/server/SandboxOptions.h"
#include "sandbox/server/SandboxServer.h"
#include "sandbox/server/ShutdownSignals.h"
#include "sandbox/service/SandboxService.h"

#include <QCoreApplication>
#include <QDir>
#include <QTemporaryDir>

#include <cstdio>

namespace {
void printLine(const QString& line) {
    std::fputs(qPrintable(line + QLatin1Char('\n')), stdout);
    std::fflush(stdout);
}

int fail(const QString& message, int code) {
    std::fputs(qPrintable(QStringLiteral("norvane-sandbox: ") + message + QLatin1Char('\n')), stderr);
    return code;
}

int run(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const auto parsed = SandboxOptions::parse(QCoreApplication::arguments());
    if (const QString* message = std::get_if<QString>(&parsed)) {
        return fail(*message, 2);
    }
    const auto& options = std::get<SandboxOptions>(parsed);

    QTemporaryDir temporaryFolder(QDir::temp().filePath(QStringLiteral("norvane-sandbox-XXXXXX")));
    const QString dataFolder = options.dataFolder.isEmpty() ? temporaryFolder.path() : options.dataFolder;
    if (!QDir().mkpath(dataFolder)) {
        return fail(QStringLiteral("cannot create the data folder %1").arg(dataFolder), 1);
    }

    SandboxServer server;
    const ShutdownSignals shutdown([&server] { server.stop(); });
    const int port = server.bind(options.port);
    if (port < 0) {
        return fail(QStringLiteral("cannot listen on 127.0.0.1:%1").arg(options.port), 1);
    }
    const QString webBase = QStringLiteral("http://127.0.0.1:%1").arg(port);
    auto seed = options.seedSource(webBase);
    if (const QString* problem = std::get_if<QString>(&seed)) {
        return fail(*problem, 2);
    }
    auto created = SandboxService::create(SandboxSettings{webBase, dataFolder, options.admin, options.storageQuota,
                                                          std::get<std::function<QJsonObject()>>(std::move(seed))});
    if (const QString* problem = std::get_if<QString>(&created)) {
        return fail(QStringLiteral("the seed does not load: ") + *problem, 2);
    }
    SandboxService& service = *std::get<std::unique_ptr<SandboxService>>(created);

    printLine(QStringLiteral("listening ") + webBase);
    printLine(QStringLiteral("api ") + webBase + QStringLiteral("/api/v2"));
    printLine(QStringLiteral("web ") + webBase);
    if (options.admin) {
        printLine(QStringLiteral("admin ") + webBase + QStringLiteral("/_sandbox"));
    }
    printLine(QStringLiteral("data ") + dataFolder);
    for (const User& user : service.tokenUsers()) {
        printLine(QStringLiteral("token %1 user %2 %3").arg(*user.token).arg(user.id).arg(user.displayName()));
    }
    printLine(QStringLiteral("ready"));
    server.run(service);
    return 0;
}
} // namespace

int main(int argc, char** argv) {
    try {
        return run(argc, argv);
    } catch (const std::exception& error) {
        std::fputs(error.what(), stderr);
        return 1;
    }
}
