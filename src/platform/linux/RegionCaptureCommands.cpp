#include "platform/linux/RegionCaptureCommands.h"

#include <QList>
#include <QProcess>
#include <QStandardPaths>
#include <optional>
#include <qcoro/qcoroprocess.h>

namespace {
struct RegionCommand {
    QString program;
    // The output path follows them.
    QStringList arguments;
};

const QList<RegionCommand>& regionCommands() {
    static const QList<RegionCommand> commands{
        {QStringLiteral("gnome-screenshot"), {QStringLiteral("-a"), QStringLiteral("-f")}},
        {QStringLiteral("spectacle"),
         {QStringLiteral("-r"), QStringLiteral("-b"), QStringLiteral("-n"), QStringLiteral("-o")}},
        {QStringLiteral("maim"), {QStringLiteral("-s")}},
    };
    return commands;
}

// Runs the program to its end and gives what it wrote to its standard output; absent when it could
// not be started.
QCoro::Task<std::optional<QByteArray>> run(QString program, QStringList arguments) {
    QProcess process;
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    auto watched = qCoro(process);
    QCoro::Task<bool> starting = watched.start(program, arguments, QIODevice::ReadOnly);
    if (!co_await std::move(starting)) {
        co_return std::nullopt;
    }
    QCoro::Task<bool> finishing = watched.waitForFinished(-1);
    co_await std::move(finishing);
    co_return process.readAllStandardOutput();
}

// grim takes the region slurp lets the user mark: slurp's output is grim's -g argument. A selection
// cancelled in slurp prints nothing, and grim is not started.
QCoro::Task<bool> grimWithSlurp(QString grim, QString slurp, QString outputPath) {
    QCoro::Task<std::optional<QByteArray>> selecting = run(slurp, {});
    const std::optional<QByteArray> region = co_await std::move(selecting);
    if (!region) {
        co_return false;
    }
    const QString geometry = QString::fromUtf8(*region).trimmed();
    if (!geometry.isEmpty()) {
        QCoro::Task<std::optional<QByteArray>> grabbing = run(grim, {QStringLiteral("-g"), geometry, outputPath});
        co_await std::move(grabbing);
    }
    co_return true;
}
} // namespace

QCoro::Task<bool> RegionCaptureCommands::runFirstInstalled(QString outputPath) {
    for (const RegionCommand& command : regionCommands()) {
        const QString program = QStandardPaths::findExecutable(command.program);
        if (!program.isEmpty()) {
            QCoro::Task<std::optional<QByteArray>> running = run(program, command.arguments + QStringList{outputPath});
            const std::optional<QByteArray> ran = co_await std::move(running);
            co_return ran.has_value();
        }
    }
    const QString grim = QStandardPaths::findExecutable(QStringLiteral("grim"));
    const QString slurp = QStandardPaths::findExecutable(QStringLiteral("slurp"));
    if (grim.isEmpty() || slurp.isEmpty()) {
        co_return false;
    }
    QCoro::Task<bool> capturing = grimWithSlurp(grim, slurp, outputPath);
    co_return co_await std::move(capturing);
}
