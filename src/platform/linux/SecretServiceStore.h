#pragma once

#include "core/platform/SecretStore.h"

#include <chrono>
#include <memory>

// The freedesktop Secret Service (gnome-keyring, KeePassXC, KWallet, …), spoken to directly over the
// session bus. Items carry the attributes server = service word, user = account word, type =
// "plaintext" or "base64" and xdg:schema = "org.qt.keychain", as earlier versions of the program gave
// their items, so that old and new versions read each other's items, and `secret-tool lookup server
// com.norvanebar.app user norvane-token-42` finds them. Text that is valid UTF-8 without a NUL is
// stored as it stands (type "plaintext"); other bytes go base64-encoded (type "base64").
//
// A frozen daemon keeps a D-Bus call waiting about 25 s, and a locked keyring may wait on a password
// prompt: each operation gives up after its own timeout (each D-Bus call gets what is left of it).
// Then a read gives absent, a write timedOutStatus, and a remove nothing. A call that gave up can't
// be taken back: it still reaches the daemon when it answers again, so a write reported as failed
// may land later. Waiting on a password prompt has a longer limit of its own, promptTimeout.
class SecretServiceStore : public SecretStore {
public:
    static constexpr std::chrono::milliseconds defaultTimeout{5000};
    // How long a person may take to answer the keyring's password prompt.
    static constexpr std::chrono::milliseconds promptTimeout{std::chrono::minutes(2)};

    // The statuses of a write; earlier versions gave the same numbers, which people may have seen.
    static constexpr int successStatus = 0;
    // The person dismissed the keyring's prompt.
    static constexpr int accessDeniedStatus = 3;
    // No Secret Service on the bus, a D-Bus error, or an answer that makes no sense.
    static constexpr int otherErrorStatus = 7;
    // No answer in time.
    static constexpr int timedOutStatus = -1;

    explicit SecretServiceStore(std::chrono::milliseconds timeout = defaultTimeout);
    ~SecretServiceStore() override;

    QCoro::Task<std::optional<QByteArray>> read(QString service, QString account) override;
    QCoro::Task<int> write(QString service, QString account, QByteArray value) override;
    QCoro::Task<> remove(QString service, QString account) override;

private:
    // The client of the service: its session and default collection, shared with the operations
    // still running, which may outlive the store.
    class Client;

    std::shared_ptr<Client> m_client;
};
