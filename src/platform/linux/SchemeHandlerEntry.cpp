#include "platform/linux/SchemeHandlerEntry.h"

#include "platform/linux/DesktopEntryText.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QSaveFile>
#include <QStandardPaths>

namespace {
const QString& entryName = DesktopEntryText::entryFileName;
const QByteArray defaultsGroup = QByteArrayLiteral("[Default Applications]");

QByteArray mimeType(const QString& scheme) {
    return QByteArrayLiteral("x-scheme-handler/") + scheme.toUtf8();
}
} // namespace

SchemeHandlerEntry::SchemeHandlerEntry()
    : SchemeHandlerEntry(
          QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/applications"),
          QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + QStringLiteral("/mimeapps.list"),
          QCoreApplication::applicationFilePath()) {}

SchemeHandlerEntry::SchemeHandlerEntry(QString applicationsFolder, QString mimeAppsFile, QString executable)
    : m_applicationsFolder(std::move(applicationsFolder))
    , m_mimeAppsFile(std::move(mimeAppsFile))
    , m_executable(std::move(executable)) {}

QString SchemeHandlerEntry::filePath() const {
    return m_applicationsFolder + u'/' + entryName;
}

QByteArray SchemeHandlerEntry::contents(const QString& executable, const QString& scheme) {
    return QStringLiteral("[Desktop Entry]\n"
                          "Type=Application\n"
                          "Name=NorvaneBar\n"
                          "Comment=Create Norvane tasks from the panel\n"
                          "Exec=%1 %u\n"
                          "Icon=%2\n"
                          "Terminal=false\n"
                          "MimeType=%3;\n")
        .arg(DesktopEntryText::execArgument(executable), DesktopEntryText::desktopId,
             QString::fromUtf8(mimeType(scheme)))
        .toUtf8();
}

bool SchemeHandlerEntry::isInstalled(const QString& executable) {
    return QFileInfo::exists(DesktopEntryText::installedEntryPath(executable));
}

bool SchemeHandlerEntry::isOurs(const QByteArray& entry, const QString& scheme) {
    // Line for line what contents() writes, whichever program its Exec line starts.
    const QList<QByteArray> lines = entry.split('\n');
    const QList<QByteArray> ours = contents(QString(), scheme).split('\n');
    if (lines.size() != ours.size()) {
        return false;
    }
    for (qsizetype index = 0; index < ours.size(); ++index) {
        const bool same = ours[index].startsWith("Exec=")
                              ? lines[index].startsWith("Exec=") && lines[index].endsWith(" %u")
                              : lines[index] == ours[index];
        if (!same) {
            return false;
        }
    }
    return true;
}

QByteArray SchemeHandlerEntry::withDefaultHandler(const QByteArray& mimeApps, const QString& scheme) {
    const QByteArray key = mimeType(scheme);
    const QByteArray line = key + '=' + entryName.toUtf8();
    QList<QByteArray> lines = mimeApps.split('\n');
    if (!lines.isEmpty() && lines.last().isEmpty()) {
        lines.removeLast();
    }
    bool inDefaults = false;
    qsizetype defaultsHeader = -1;
    for (qsizetype index = 0; index < lines.size(); ++index) {
        const QByteArray trimmed = lines[index].trimmed();
        if (trimmed.startsWith('[')) {
            inDefaults = trimmed == defaultsGroup;
            defaultsHeader = inDefaults && defaultsHeader < 0 ? index : defaultsHeader;
        } else if (inDefaults && trimmed.startsWith(key + '=')) {
            lines[index] = line;
            return lines.join('\n') + '\n';
        }
    }
    if (defaultsHeader < 0) {
        if (!lines.isEmpty()) {
            lines.append(QByteArray());
        }
        lines.append(defaultsGroup);
        lines.append(line);
    } else {
        lines.insert(defaultsHeader + 1, line);
    }
    return lines.join('\n') + '\n';
}

std::optional<QString> SchemeHandlerEntry::write(const QString& path, const QByteArray& contents) {
    if (!QDir().mkpath(QFileInfo(path).absolutePath())) {
        return tr("Could not create the folder %1.").arg(QDir::toNativeSeparators(QFileInfo(path).absolutePath()));
    }
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(contents) < 0 || !file.commit()) {
        return tr("Could not write %1: %2").arg(QDir::toNativeSeparators(path), file.errorString());
    }
    return std::nullopt;
}

std::optional<QString> SchemeHandlerEntry::registerHandler(const QString& scheme) {
    // An installed program already has its entry among the system's (or the prefix's) applications:
    // one of the same name in the user's folder would hide it, so only the default is set, and an
    // entry left there by a run from a build tree goes.
    std::optional<QString> problem;
    if (!isInstalled(m_executable)) {
        problem = write(filePath(), contents(m_executable, scheme));
    } else if (QFile ours(filePath()); ours.open(QIODevice::ReadOnly) && isOurs(ours.readAll(), scheme)) {
        ours.close();
        if (!ours.remove()) {
            problem = tr("Could not remove %1: %2").arg(QDir::toNativeSeparators(filePath()), ours.errorString());
        }
    }
    if (!problem) {
        QFile current(m_mimeAppsFile);
        const QByteArray mimeApps = current.open(QIODevice::ReadOnly) ? current.readAll() : QByteArray();
        problem = write(m_mimeAppsFile, withDefaultHandler(mimeApps, scheme));
    }
    if (problem) {
        return tr("NorvaneBar could not make itself the handler of the browser's answer to sign-in, so the "
                  "sign-in can't finish. %1")
            .arg(*problem);
    }
    // The desktop's cache of handlers, where the tool to refresh it is installed; the default above
    // already holds without it.
    if (const QString tool = QStandardPaths::findExecutable(QStringLiteral("update-desktop-database"));
        !tool.isEmpty()) {
        QProcess::startDetached(tool, {m_applicationsFolder});
    }
    return std::nullopt;
}
