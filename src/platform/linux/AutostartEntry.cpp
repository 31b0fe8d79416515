#include "platform/linux/AutostartEntry.h"

#include "platform/linux/DesktopEntryText.h"

#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <QStandardPaths>

namespace {
bool switchedOff(const QByteArray& line) {
    const QByteArray entry = line.trimmed();
    return entry == "Hidden=true" || entry == "X-GNOME-Autostart-enabled=false";
}
} // namespace

AutostartEntry::AutostartEntry()
    : AutostartEntry(defaultFolder(), QCoreApplication::applicationFilePath()) {}

AutostartEntry::AutostartEntry(QString folder, QString executable)
    : m_folder(std::move(folder))
    , m_executable(std::move(executable)) {}

QString AutostartEntry::defaultFolder() {
    // GenericConfigLocation is $XDG_CONFIG_HOME, or ~/.config without it.
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + QStringLiteral("/autostart");
}

QString AutostartEntry::filePath() const {
    return m_folder + u'/' + DesktopEntryText::entryFileName;
}

QByteArray AutostartEntry::contents(const QString& executable) {
    return QStringLiteral("[Desktop Entry]\n"
                          "Type=Application\n"
                          "Name=NorvaneBar\n"
                          "Comment=Create Norvane tasks from the panel\n"
                          "Exec=%1\n"
                          "Icon=%2\n"
                          "Terminal=false\n"
                          "X-GNOME-Autostart-enabled=true\n")
        .arg(DesktopEntryText::execArgument(executable), DesktopEntryText::desktopId)
        .toUtf8();
}

bool AutostartEntry::isEnabled() const {
    QFile file(filePath());
    if (!file.open(QIODevice::ReadOnly)) {
        return false;
    }
    const QList<QByteArray> lines = file.readAll().split('\n');
    return std::none_of(lines.begin(), lines.end(), switchedOff);
}

std::optional<QString> AutostartEntry::setEnabled(bool enabled) {
    if (!enabled) {
        QFile file(filePath());
        if (file.exists() && !file.remove()) {
            return tr("Could not remove %1: %2").arg(QDir::toNativeSeparators(filePath()), file.errorString());
        }
        return std::nullopt;
    }
    if (!QDir().mkpath(m_folder)) {
        return tr("Could not create the folder %1.").arg(QDir::toNativeSeparators(m_folder));
    }
    QSaveFile file(filePath());
    if (!file.open(QIODevice::WriteOnly) || file.write(contents(m_executable)) < 0 || !file.commit()) {
        return tr("Could not write %1: %2").arg(QDir::toNativeSeparators(filePath()), file.errorString());
    }
    return std::nullopt;
}
