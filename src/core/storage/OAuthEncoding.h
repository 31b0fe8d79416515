#pragma once

#include <QByteArray>
#include <QList>
#include <QPair>
#include <QString>

// The pieces of an OAuth 2.0 sign-in with PKCE (RFC 7636) and of its token requests.
namespace OAuthEncoding {

using FormFields = QList<QPair<QString, QString>>;

// 32 bytes of the system's secure random source in base64url without padding: 43 characters of
// letters, digits, "-" and "_".
QString makeCodeVerifier();
// The S256 challenge: SHA-256 of the verifier's UTF-8 bytes in base64url without padding.
QString codeChallenge(const QString& verifier);
// "name=value" pairs joined by "&", as UTF-8. Values are percent-encoded as in a URL query, and "+",
// "&" and "=" as well; names go as they are.
QByteArray formEncode(const FormFields& fields);

} // namespace OAuthEncoding
