#pragma once

#include <QByteArray>
#include <QString>
#include <optional>
#include <qcoro/qcorotask.h>

// The desktop's store of secrets, items named by a service and an account word. Operations never
// block the caller's thread and end within a bounded time, even when the store hangs.
class SecretStore {
public:
    virtual ~SecretStore() = default;

    // Absent when the item is missing, and also when the store fails or doesn't answer.
    virtual QCoro::Task<std::optional<QByteArray>> read(QString service, QString account) = 0;
    // 0 on success, else a non-zero status of the store.
    virtual QCoro::Task<int> write(QString service, QString account, QByteArray value) = 0;
    // Removing what isn't there is no failure; failures are not reported.
    virtual QCoro::Task<> remove(QString service, QString account) = 0;
};
