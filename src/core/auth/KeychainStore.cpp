#include "core/auth/KeychainStore.h"

#include "core/auth/KeychainStoreError.h"
#include "core/support/StrictUtf8.h"

namespace {
// Coroutines of their own over a copy of the item, so that nothing refers to the caller's value
// once they suspend.
QCoro::Task<std::optional<QString>> readItem(KeychainStore item) {
    QCoro::Task<std::optional<QByteArray>> reading = item.backend->read(item.service, item.account);
    const std::optional<QByteArray> bytes = co_await std::move(reading);
    if (!bytes) {
        co_return std::nullopt;
    }
    co_return strictUtf8(*bytes);
}

QCoro::Task<> writeItem(KeychainStore item, QString value) {
    QCoro::Task<> removal = item.backend->remove(item.service, item.account);
    co_await std::move(removal);
    QCoro::Task<int> writing = item.backend->write(item.service, item.account, value.toUtf8());
    const int status = co_await std::move(writing);
    if (status != 0) {
        throw KeychainStoreError::writeFailed(status);
    }
}

QCoro::Task<> removeItem(KeychainStore item) {
    QCoro::Task<> removal = item.backend->remove(item.service, item.account);
    co_await std::move(removal);
}
} // namespace

QCoro::Task<std::optional<QString>> KeychainStore::read() const {
    return readItem(*this);
}

QCoro::Task<> KeychainStore::write(QString value) const {
    return writeItem(*this, std::move(value));
}

QCoro::Task<> KeychainStore::remove() const {
    return removeItem(*this);
}
