#pragma once

#include <QByteArray>
#include <QString>
#include <exception>
#include <variant>

// A keychain item that couldn't be written. The type knows nothing of its item, so its words speak
// of an API token whatever was written.
class KeychainStoreError : public std::exception {
public:
    // The store answered a write with a non-zero status.
    struct WriteFailed {
        qint32 status = 0;
        bool operator==(const WriteFailed&) const = default;
    };
    using Case = std::variant<WriteFailed>;

    static KeychainStoreError writeFailed(qint32 status) { return KeychainStoreError(WriteFailed{status}); }

    const Case& failure() const { return m_failure; }
    // "Couldn't save your API token to the system keyring (error <status>)."
    QString errorDescription() const;
    const char* what() const noexcept override { return m_what.constData(); }

private:
    explicit KeychainStoreError(Case failure);

    Case m_failure;
    QByteArray m_what;
};
