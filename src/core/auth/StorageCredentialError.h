#pragma once

#include <QByteArray>
#include <QString>
#include <exception>
#include <variant>

// A credential of an external storage provider that couldn't be stored.
class StorageCredentialError : public std::exception {
public:
    // The keychain failed; its text is the underlying error's.
    struct KeychainFailed {
        QString underlyingDescription;
        bool operator==(const KeychainFailed&) const = default;
    };
    using Case = std::variant<KeychainFailed>;

    static StorageCredentialError keychainFailed(QString underlyingDescription) {
        return StorageCredentialError(KeychainFailed{std::move(underlyingDescription)});
    }

    const Case& failure() const { return m_failure; }
    QString errorDescription() const { return std::get<KeychainFailed>(m_failure).underlyingDescription; }
    const char* what() const noexcept override { return m_what.constData(); }

private:
    explicit StorageCredentialError(Case failure)
        : m_failure(std::move(failure))
        , m_what(errorDescription().toUtf8()) {}

    Case m_failure;
    QByteArray m_what;
};
