#include "support/MemorySecretStore.h"

#include <qcoro/qcorosignal.h>
#include <qcoro/qcorotimer.h>

using namespace std::chrono_literals;

QCoro::Task<std::optional<QByteArray>> MemorySecretStore::read(QString service, QString account) {
    m_log.append(QStringLiteral("read ") + account);
    const InFlight operation(m_inFlight);
    co_await QCoro::sleepFor(m_readDelays.value(account, 0ms));
    while (m_heldReads.holds(account)) {
        co_await qCoro(&m_heldReads, &HeldReads::released);
    }
    co_return item(service, account);
}

QCoro::Task<int> MemorySecretStore::write(QString service, QString account, QByteArray value) {
    m_log.append(QStringLiteral("write ") + account);
    const InFlight operation(m_inFlight);
    co_await QCoro::sleepFor(m_writeDelays.value(account, 0ms));
    if (const auto failure = m_writeFailures.constFind(account); failure != m_writeFailures.cend()) {
        co_return *failure;
    }
    setItem(service, account, std::move(value));
    co_return 0;
}

QCoro::Task<> MemorySecretStore::remove(QString service, QString account) {
    m_log.append(QStringLiteral("remove ") + account);
    const InFlight operation(m_inFlight);
    co_await QCoro::sleepFor(0ms);
    m_items.remove({service, account});
}

std::optional<QByteArray> MemorySecretStore::item(const QString& service, const QString& account) const {
    const auto found = m_items.constFind({service, account});
    if (found == m_items.cend()) {
        return std::nullopt;
    }
    return *found;
}

void MemorySecretStore::setItem(const QString& service, const QString& account, QByteArray value) {
    m_items.insert({service, account}, std::move(value));
}

void MemorySecretStore::failWrites(const QString& account, int status) {
    m_writeFailures.insert(account, status);
}

void MemorySecretStore::delayReads(const QString& account, std::chrono::milliseconds delay) {
    m_readDelays.insert(account, delay);
}

void MemorySecretStore::holdReads(const QString& account) {
    m_heldReads.hold(account);
}

void MemorySecretStore::releaseReads(const QString& account) {
    m_heldReads.release(account);
}

void MemorySecretStore::delayWrites(const QString& account, std::chrono::milliseconds delay) {
    m_writeDelays.insert(account, delay);
}
