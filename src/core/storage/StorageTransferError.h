#pragma once

#include <QNetworkReply>
#include <QString>
#include <stdexcept>

// A request to a storage provider that got no answer: the network layer's own error and its text,
// passed on as the platform reports it (a refused connection, a name that doesn't resolve, a timeout).
class StorageTransferError : public std::runtime_error {
public:
    StorageTransferError(QNetworkReply::NetworkError error, QString errorString)
        : std::runtime_error(errorString.toStdString())
        , m_error(error)
        , m_errorString(std::move(errorString)) {}

    QNetworkReply::NetworkError error() const { return m_error; }
    const QString& errorString() const { return m_errorString; }

private:
    QNetworkReply::NetworkError m_error;
    QString m_errorString;
};
