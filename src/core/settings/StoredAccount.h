#pragma once

#include "core/json/JsonDecoding.h"

#include <QJsonObject>
#include <QString>
#include <optional>

// What the account menu shows of an account that isn't active. Its token stands in the keychain
// under the id.
struct StoredAccount {
    qint64 id = 0;
    QString displayName;
    std::optional<QString> email;
    std::optional<QString> color;
    std::optional<QString> initials;

    static StoredAccount fromJson(const Json::JsonObject& json);
    QJsonObject toJson() const;

    bool operator==(const StoredAccount&) const = default;
};
