#pragma once

#include "core/platform/SecretStore.h"

#include <chrono>

// The freedesktop Secret Service (gnome-keyring, KeePassXC, …) through qtkeychain. Items carry the
// attributes server = service word and user = account word, so `secret-tool lookup server
// com.norvanebar.app user norvane-token-42` finds them. Text that is valid UTF-8 is stored as it
// stands (type "plaintext"); other bytes go base64-encoded (type "base64").
//
// A frozen daemon keeps a D-Bus call waiting about 50 s, and a locked keyring may wait on a password
// prompt: each operation gives up after its own timeout. Then a read gives absent, a write
// timedOutStatus, and a remove nothing. qtkeychain runs its jobs one at a time, so operations
// started behind a stuck one time out as well. A job that gave up can't be called back: it still
// reaches the daemon when it answers again, so a write reported as failed may land later.
class SecretServiceStore : public SecretStore {
public:
    static constexpr std::chrono::milliseconds defaultTimeout{5000};
    // The status of a write that got no answer in time; qtkeychain's own errors are positive.
    static constexpr int timedOutStatus = -1;

    explicit SecretServiceStore(std::chrono::milliseconds timeout = defaultTimeout);

    QCoro::Task<std::optional<QByteArray>> read(QString service, QString account) override;
    QCoro::Task<int> write(QString service, QString account, QByteArray value) override;
    QCoro::Task<> remove(QString service, QString account) override;

private:
    std::chrono::milliseconds m_timeout;
};
