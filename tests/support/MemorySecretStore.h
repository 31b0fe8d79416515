#pragma once

#include "platform/SecretStore.h"

#include <QMap>
#include <QPair>
#include <QStringList>
#include <chrono>

// A secret store in memory for tests: items by service and account word, write failures and slow
// reads and writes on demand, and a log of what was asked. Each operation yields to the event loop before it
// acts, as a real store answers later.
class MemorySecretStore : public SecretStore {
public:
    QCoro::Task<std::optional<QByteArray>> read(QString service, QString account) override;
    QCoro::Task<int> write(QString service, QString account, QByteArray value) override;
    QCoro::Task<> remove(QString service, QString account) override;

    // Arranging and checking items directly, without the event loop.
    std::optional<QByteArray> item(const QString& service, const QString& account) const;
    void setItem(const QString& service, const QString& account, QByteArray value);

    // From now on writes of this account store nothing and answer status.
    void failWrites(const QString& account, int status);
    // From now on reads of this account answer only after the delay.
    void delayReads(const QString& account, std::chrono::milliseconds delay);
    // From now on writes of this account store their value only after the delay.
    void delayWrites(const QString& account, std::chrono::milliseconds delay);

    // Operations in the order asked: "read <account>", "write <account>", "remove <account>".
    const QStringList& log() const { return m_log; }
    // Operations that have not answered yet.
    int inFlight() const { return m_inFlight; }

private:
    using Key = QPair<QString, QString>;
    // Counts an operation from its start to its answer.
    struct InFlight {
        explicit InFlight(int& count)
            : m_count(count) {
            ++m_count;
        }
        ~InFlight() { --m_count; }
        InFlight(const InFlight&) = delete;
        InFlight& operator=(const InFlight&) = delete;
        int& m_count;
    };

    QMap<Key, QByteArray> m_items;
    QMap<QString, int> m_writeFailures;
    QMap<QString, std::chrono::milliseconds> m_readDelays;
    QMap<QString, std::chrono::milliseconds> m_writeDelays;
    QStringList m_log;
    int m_inFlight = 0;
};
