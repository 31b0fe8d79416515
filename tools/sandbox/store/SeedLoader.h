#pragma once

#include "sandbox/store/StoreData.h"

#include <QJsonObject>

#include <variant>

// Turns a seed document into the sandbox's data. The demo seed and a --seed FILE.json share this
// form: users (a token makes a user able to sign in) and workspaces, each holding its spaces, a
// space its folders and lists, a list its custom fields and tasks. Due dates are milliseconds.
namespace SeedLoader {

// The data, or a message that says what in the document is wrong.
std::variant<StoreData, QString> load(const QJsonObject& seed, qint64 nowMs);

} // namespace SeedLoader
