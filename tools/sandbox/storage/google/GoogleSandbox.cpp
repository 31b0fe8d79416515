#include "sandbox/storage/google/GoogleSandbox.h"

#include <QCryptographicHash>
#include <QJsonArray>
#include <QRandomGenerator>

namespace {
const QStringList authorizationNames{QStringLiteral("grant"), QStringLiteral("deny"), QStringLiteral("wrongState")};
}

QString GoogleSandbox::newID(int length) {
    static const QString alphabet = QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789");
    QString id;
    for (int index = 0; index < length; ++index) {
        id += alphabet.at(QRandomGenerator::global()->bounded(alphabet.size()));
    }
    return id;
}

std::optional<QString> GoogleSandbox::grantOf(const QByteArray& authorization, qint64 nowMs) const {
    if (!authorization.startsWith("Bearer ")) {
        return std::nullopt;
    }
    const auto token = accessTokens.find(QString::fromUtf8(authorization.mid(7)));
    if (token == accessTokens.end() || token->expiresAtMs <= nowMs || grants.value(token->refreshToken).revoked) {
        return std::nullopt;
    }
    return token->refreshToken;
}

QString GoogleSandbox::issueAccessToken(const QString& refreshToken, qint64 nowMs) {
    const QString token = QStringLiteral("ya29.sandbox-") + newID(40);
    accessTokens.insert(token, AccessToken{refreshToken, nowMs + accessTokenSeconds * 1000});
    return token;
}

QJsonObject GoogleSandbox::toJson() const {
    QJsonArray fileList;
    for (auto file = files.begin(); file != files.end(); ++file) {
        fileList.append(QJsonObject{
            {QStringLiteral("id"), file.key()},
            {QStringLiteral("name"), file->name},
            {QStringLiteral("parents"), QJsonArray::fromStringList(file->parents)},
            {QStringLiteral("size"), file->content.size()},
            {QStringLiteral("sha256"),
             QString::fromLatin1(QCryptographicHash::hash(file->content, QCryptographicHash::Sha256).toHex())},
            {QStringLiteral("shared"), file->shared},
        });
    }
    QJsonArray grantList;
    for (auto grant = grants.begin(); grant != grants.end(); ++grant) {
        grantList.append(QJsonObject{{QStringLiteral("refreshToken"), grant.key()},
                                     {QStringLiteral("clientID"), grant->clientID},
                                     {QStringLiteral("revoked"), grant->revoked}});
    }
    return {
        {QStringLiteral("clientID"), clientID},
        {QStringLiteral("authorization"), authorizationNames.at(static_cast<int>(authorization))},
        {QStringLiteral("webViewLink"), webViewLink},
        {QStringLiteral("accessTokenSeconds"), accessTokenSeconds},
        {QStringLiteral("rotateRefreshTokens"), rotateRefreshTokens},
        {QStringLiteral("files"), fileList},
        {QStringLiteral("grants"), grantList},
        {QStringLiteral("accessTokens"), QJsonArray::fromStringList(accessTokens.keys())},
    };
}

std::optional<QString> GoogleSandbox::configure(const QJsonObject& settings) {
    const QJsonValue id = settings.value(QStringLiteral("clientID"));
    const QJsonValue answer = settings.value(QStringLiteral("authorization"));
    const QJsonValue link = settings.value(QStringLiteral("webViewLink"));
    const QJsonValue seconds = settings.value(QStringLiteral("accessTokenSeconds"));
    const QJsonValue rotate = settings.value(QStringLiteral("rotateRefreshTokens"));
    if ((!id.isUndefined() && (!id.isString() || id.toString().isEmpty())) ||
        (!answer.isUndefined() && !authorizationNames.contains(answer.toString())) ||
        (!link.isUndefined() && !link.isBool()) || (!seconds.isUndefined() && !seconds.isDouble()) ||
        (!rotate.isUndefined() && !rotate.isBool())) {
        return QStringLiteral("clientID is a text, authorization one of grant, deny and wrongState, webViewLink and "
                              "rotateRefreshTokens true or false, accessTokenSeconds a number");
    }
    clientID = id.toString(clientID);
    if (!answer.isUndefined()) {
        authorization = static_cast<Authorization>(authorizationNames.indexOf(answer.toString()));
    }
    webViewLink = link.toBool(webViewLink);
    accessTokenSeconds = seconds.toInteger(accessTokenSeconds);
    rotateRefreshTokens = rotate.toBool(rotateRefreshTokens);
    return std::nullopt;
}

void GoogleSandbox::revokeGrants() {
    for (Grant& grant : grants) {
        grant.revoked = true;
    }
}
