#pragma once

#include <QByteArray>
#include <QString>
#include <exception>
#include <variant>

// Why a personal API token couldn't be taken.
class PersonalTokenError : public std::exception {
public:
    // The keychain failed; its text is the underlying error's.
    struct KeychainFailed {
        QString underlyingDescription;
        bool operator==(const KeychainFailed&) const = default;
    };
    // The text doesn't look like a token.
    struct InvalidFormat {
        bool operator==(const InvalidFormat&) const = default;
    };
    using Case = std::variant<KeychainFailed, InvalidFormat>;

    static PersonalTokenError keychainFailed(QString underlyingDescription) {
        return PersonalTokenError(KeychainFailed{std::move(underlyingDescription)});
    }
    static PersonalTokenError invalidFormat() { return PersonalTokenError(InvalidFormat{}); }

    const Case& failure() const { return m_failure; }
    template <typename T> bool is() const { return std::holds_alternative<T>(m_failure); }
    QString errorDescription() const;
    const char* what() const noexcept override { return m_what.constData(); }

private:
    explicit PersonalTokenError(Case failure);

    Case m_failure;
    QByteArray m_what;
};
