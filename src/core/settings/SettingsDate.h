#pragma once

#include <QDateTime>
#include <QJsonValue>
#include <QString>

// The settings file's form of an instant: a JSON floating-point number of seconds since
// 2001-01-01 00:00:00 UTC. Instants keep millisecond precision.
namespace SettingsDate {

QJsonValue toJson(const QDateTime& date);
// Fails with DecodingError for anything but a number, and for a number too far from today to be a
// date.
QDateTime fromJson(const QJsonValue& value, const QString& path);

} // namespace SettingsDate
