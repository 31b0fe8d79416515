#pragma once

#include <QByteArray>
#include <QString>
#include <exception>
#include <variant>

// Every way an external storage provider fails, as one exception with the text the user sees.
class StorageProviderError : public std::exception {
public:
    // The provider's settings are incomplete or unusable; the message says what to fix.
    struct MissingConfiguration {
        QString message;
        bool operator==(const MissingConfiguration&) const = default;
    };
    // The provider refused or lost the file; the message says why.
    struct UploadFailed {
        QString message;
        bool operator==(const UploadFailed&) const = default;
    };
    // The provider answered with something that isn't what it documents.
    struct InvalidResponse {
        bool operator==(const InvalidResponse&) const = default;
    };

    using Case = std::variant<MissingConfiguration, UploadFailed, InvalidResponse>;

    explicit StorageProviderError(Case failure);
    static StorageProviderError missingConfiguration(QString message) {
        return StorageProviderError(MissingConfiguration{std::move(message)});
    }
    static StorageProviderError uploadFailed(QString message) {
        return StorageProviderError(UploadFailed{std::move(message)});
    }
    static StorageProviderError invalidResponse() { return StorageProviderError(InvalidResponse{}); }

    const Case& failure() const { return m_failure; }
    template <typename T> bool is() const { return std::holds_alternative<T>(m_failure); }

    // What the user is shown.
    QString errorDescription() const;
    const char* what() const noexcept override { return m_what.constData(); }

private:
    Case m_failure;
    QByteArray m_what;
};
