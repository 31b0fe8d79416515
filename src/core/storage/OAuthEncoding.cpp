#include "core/storage/OAuthEncoding.h"

#include <QCryptographicHash>
#include <QRandomGenerator>
#include <QUrl>
#include <array>

namespace OAuthEncoding {
namespace {
QString base64url(const QByteArray& bytes) {
    return QString::fromLatin1(bytes.toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals));
}

// What a URL query allows unencoded, less "+", "&" and "=": letters, digits and these.
const QByteArray queryCharactersKept = QByteArrayLiteral("-._~!$'()*,;:@/?");
} // namespace

QString makeCodeVerifier() {
    std::array<quint32, 8> words{};
    QRandomGenerator::system()->fillRange(words.data(), words.size());
    return base64url(QByteArray(reinterpret_cast<const char*>(words.data()), sizeof(words)));
}

QString codeChallenge(const QString& verifier) {
    return base64url(QCryptographicHash::hash(verifier.toUtf8(), QCryptographicHash::Sha256));
}

QByteArray formEncode(const FormFields& fields) {
    QByteArrayList pairs;
    for (const auto& [name, value] : fields) {
        pairs.append(name.toUtf8() + '=' + value.toUtf8().toPercentEncoding(queryCharactersKept));
    }
    return pairs.join('&');
}

} // namespace OAuthEncoding
