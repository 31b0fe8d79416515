#pragma once

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

// Reading back what a change wrote into a settings file.
namespace SettingsFileTesting {

// The file's JSON object; empty when there is no file or it isn't one.
inline QJsonObject stored(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object() : QJsonObject();
}

// The strings of the array under `key`, sorted: the file keeps sets in no fixed order.
inline QStringList storedSet(const QString& path, const QString& key) {
    QStringList values;
    for (const QJsonValue value : stored(path).value(key).toArray()) {
        values.append(value.toString());
    }
    values.sort();
    return values;
}

} // namespace SettingsFileTesting
