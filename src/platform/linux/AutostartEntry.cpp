#include "platform/linux/AutostartEntry.h"

#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <QStandardPaths>

namespace {
// One argument of an Exec line: in double quotes, with ", `, $ and \ escaped by a backslash and
// % doubled; then the value as a whole escapes its backslashes once more and spells out the
// characters a line may not hold.
QString quotedArgument(const QString& argument) {
    QString quoted;
    for (const QChar character : argument) {
        if (character == u'"' || character == u'`' || character == u'$' || character == u'\\') {
            quoted += u'\\';
        } else if (character == u'%') {
            quoted += u'%';
        }
        quoted += character;
    }
    QString value;
    for (const QChar character : u'"' + quoted + u'"') {
        switch (character.unicode()) {
        case '\\':
            value += QStringLiteral("\\\\");
            break;
        case '\n':
            value += QStringLiteral("\\n");
            break;
        case '\t':
            value += QStringLiteral("\\t");
            break;
        case '\r':
            value += QStringLiteral("\\r");
            break;
        default:
            value += character;
        }
    }
    return value;
}

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
    return m_folder + QStringLiteral("/norvanebar.desktop");
}

QByteArray AutostartEntry::contents(const QString& executable) {
    return QStringLiteral("[Desktop Entry]\n"
                          "Type=Application\n"
                          "Name=NorvaneBar\n"
                          "Comment=Create Norvane tasks from the panel\n"
                          "Exec=%1\n"
                          "Terminal=false\n"
                          "X-GNOME-Autostart-enabled=true\n")
        .arg(quotedArgument(executable))
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
