#pragma once

#include "core/platform/SecretStore.h"

#include <QString>
#include <optional>
#include <qcoro/qcorotask.h>

// One item of the desktop's secret store, named by a service and an account word. A value that
// holds no state: copies name the same item, and an operation keeps its own copy, so the value may
// go before the operation ends. The store is not owned and must outlive every operation.
struct KeychainStore {
    // The service word of every item of NorvaneBar.
    static inline const QString appService = QStringLiteral("com.norvanebar.app");

    QString service;
    QString account;
    SecretStore* backend = nullptr;

    // The item as UTF-8 text. Absent when the item is missing, when the store fails or doesn't
    // answer in time, and when the bytes aren't UTF-8. An empty item gives an empty string.
    QCoro::Task<std::optional<QString>> read() const;
    // Removes the item, then adds the UTF-8 bytes of value. Throws KeychainStoreError::writeFailed
    // with the store's status; by then the old value is gone.
    QCoro::Task<> write(QString value) const;
    // Removes the item; removing what isn't there, and any failure, go unnoticed.
    QCoro::Task<> remove() const;

    bool operator==(const KeychainStore&) const = default;
};
