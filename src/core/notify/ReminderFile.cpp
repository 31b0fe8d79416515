#include "core/notify/ReminderFile.h"

#include "core/json/JsonEncoding.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSaveFile>
#include <QStandardPaths>

namespace ReminderFile {
namespace {
const QString remindersKey = QStringLiteral("reminders");
}

QString defaultPath() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/NorvaneBar/reminders.json");
}

QList<Reminder> decode(const QByteArray& bytes) {
    const QJsonArray entries = QJsonDocument::fromJson(bytes).object().value(remindersKey).toArray();
    QList<Reminder> reminders;
    for (qsizetype i = 0; i < entries.size(); ++i) {
        try {
            reminders.append(Json::decode<Reminder>(entries.at(i), remindersKey + u'[' + QString::number(i) + u']'));
        } catch (const DecodingError&) {
            // This entry is lost; the others stand.
        }
    }
    return reminders;
}

QByteArray encode(const QList<Reminder>& reminders) {
    return Json::serializeIndented(QJsonObject{{remindersKey, Json::encode(reminders)}});
}

QList<Reminder> read(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? decode(file.readAll()) : QList<Reminder>{};
}

void write(const QString& path, const QList<Reminder>& reminders) {
    QDir().mkpath(QFileInfo(path).absolutePath());
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly)) {
        file.write(encode(reminders));
        file.commit();
    }
}

} // namespace ReminderFile
