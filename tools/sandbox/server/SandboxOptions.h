#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <functional>

#include <optional>
#include <variant>

// The command line of norvane-sandbox:
//   --port N                 port on 127.0.0.1; 0 (the default) picks a free one
//   --seed demo|empty|FILE   the data to start with (demo by default)
//   --data DIR               where uploaded files go; a temporary folder, removed on exit, by default
//   --admin                  offer the test endpoints under /_sandbox
//   --storage-quota BYTES    attachment bytes each workspace may hold
struct SandboxOptions {
    int port = 0;
    QString seed = QStringLiteral("demo");
    QString dataFolder;
    bool admin = false;
    std::optional<qint64> storageQuota;

    // The options, or the message to print: an error or the help text.
    static std::variant<SandboxOptions, QString> parse(const QStringList& arguments);
    // The seed document by --seed: the demo's is made anew each time, a file's is read once. The
    // demo's hostile names point at webBase, the address the sandbox listens on.
    std::variant<std::function<QJsonObject()>, QString> seedSource(const QString& webBase) const;
};
