#pragma once

#include "core/async/Clock.h"

#include <QByteArray>
#include <QDateTime>
#include <QNetworkRequest>
#include <QString>
#include <QUrl>

// AWS Signature Version 4 for the one request the R2 uploads make: a single-shot PUT, signed for
// the region "auto" and the service "s3" over the headers content-type, host, x-amz-content-sha256
// and x-amz-date.
namespace AWSV4Signer {

// A PUT of `payload` to `url` with a timeout of 60 seconds, its Content-Type, x-amz-content-sha256
// and x-amz-date headers and, when the URL has a host, the Authorization header. The clock is read
// once. The host is signed without its port and the path as the URL decodes it, not encoded again.
// The caller sends `payload` as the body.
QNetworkRequest signedPUT(const QUrl& url, const QString& accessKeyID, const QString& secretAccessKey,
                          const QByteArray& payload, const QString& contentType, const Clock& clock = Clocks::system());

// "yyyyMMdd'T'HHmmss'Z'" in UTC.
QString amzDate(const QDateTime& date);
// "yyyyMMdd" in UTC.
QString dateStamp(const QDateTime& date);
// The raw HMAC-SHA-256 of `data` under `key`.
QByteArray hmac(const QByteArray& key, const QByteArray& data);

} // namespace AWSV4Signer
