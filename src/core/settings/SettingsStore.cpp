#include "core/settings/SettingsStore.h"

#include "core/json/DecodingError.h"
#include "core/json/JsonDecoding.h"
#include "core/json/JsonEncoding.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>

namespace {
// Defaults when the file is missing, unreadable or fails to decode in any part.
AppSettings readSettings(const QString& filePath) {
    QFile file(filePath);
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    try {
        return Json::decode<AppSettings>(Json::parse(file.readAll()), QStringLiteral("$"));
    } catch (const DecodingError&) {
        return {};
    }
}
} // namespace

SettingsStore::SettingsStore(QObject* parent)
    : SettingsStore(defaultFilePath(), parent) {}

SettingsStore::SettingsStore(QString filePath, QObject* parent)
    : QObject(parent)
    , m_filePath(std::move(filePath)) {
    // The folder is made now so that the first save can write; a failure shows only as a failed save.
    QDir().mkpath(QFileInfo(m_filePath).absolutePath());
    m_settings = readSettings(m_filePath);
}

QString SettingsStore::defaultFilePath() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/NorvaneBar/settings.json");
}

void SettingsStore::setSettings(AppSettings settings) {
    m_settings = std::move(settings);
    changed();
}

void SettingsStore::save() const {
    QSaveFile file(m_filePath);
    if (!file.open(QIODevice::WriteOnly)) {
        return;
    }
    file.write(Json::serializeIndented(m_settings.toJson()));
    file.commit();
}

void SettingsStore::changed() {
    save();
    emit settingsChanged();
}
