#include "sandbox/server/SandboxOptions.h"

#include "sandbox/store/DemoSeed.h"

#include <QCommandLineParser>
#include <QFile>
#include <QJsonDocument>

std::variant<SandboxOptions, QString> SandboxOptions::parse(const QStringList& arguments) {
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("A local service that speaks the Norvane REST contract."));
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Show this help."));
    const QCommandLineOption port(QStringLiteral("port"), QStringLiteral("Port on 127.0.0.1, 0 for a free one."),
                                  QStringLiteral("N"), QStringLiteral("0"));
    const QCommandLineOption seed(QStringLiteral("seed"), QStringLiteral("demo, empty or a seed FILE.json."),
                                  QStringLiteral("SEED"), QStringLiteral("demo"));
    const QCommandLineOption data(QStringLiteral("data"),
                                  QStringLiteral("Folder for uploaded files (a temporary one by default)."),
                                  QStringLiteral("DIR"));
    const QCommandLineOption admin(QStringLiteral("admin"),
                                   QStringLiteral("Offer the test endpoints under /_sandbox."));
    const QCommandLineOption quota(QStringLiteral("storage-quota"),
                                   QStringLiteral("Attachment bytes each workspace may hold."),
                                   QStringLiteral("BYTES"));
    parser.addOptions({help, port, seed, data, admin, quota});
    if (!parser.parse(arguments)) {
        return parser.errorText();
    }
    if (parser.isSet(help) || !parser.positionalArguments().isEmpty()) {
        return parser.helpText();
    }
    SandboxOptions options;
    bool ok = false;
    options.port = parser.value(port).toInt(&ok);
    if (!ok || options.port < 0 || options.port > 65535) {
        return QStringLiteral("--port takes a port number from 0 to 65535");
    }
    options.seed = parser.value(seed);
    options.dataFolder = parser.value(data);
    options.admin = parser.isSet(admin);
    if (parser.isSet(quota)) {
        options.storageQuota = parser.value(quota).toLongLong(&ok);
        if (!ok || *options.storageQuota < 0) {
            return QStringLiteral("--storage-quota takes a number of bytes");
        }
    }
    return options;
}

std::variant<std::function<QJsonObject()>, QString> SandboxOptions::seedSource(const QString& webBase) const {
    if (seed == QLatin1String("demo")) {
        return std::function<QJsonObject()>(
            [webBase] { return DemoSeed::demo(QDateTime::currentDateTime(), webBase); });
    }
    if (seed == QLatin1String("empty")) {
        return std::function<QJsonObject()>(DemoSeed::empty);
    }
    QFile file(seed);
    if (!file.open(QIODevice::ReadOnly)) {
        return QStringLiteral("cannot read the seed file %1: %2").arg(seed, file.errorString());
    }
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    if (!document.isObject()) {
        return QStringLiteral("the seed file %1 is no JSON object: %2").arg(seed, error.errorString());
    }
    return std::function<QJsonObject()>([object = document.object()] { return object; });
}
