#pragma once

#include "core/platform/SecretStore.h"

#include <QMap>
#include <QObject>
#include <QPair>
#include <QSet>
#include <QStringList>
#include <chrono>

// The accounts whose reads wait, and the signal that lets them look again.
class HeldReads : public QObject {
    Q_OBJECT

public:
    void hold(const QString& account) { m_accounts.insert(account); }
    void release(const QString& account) {
        m_accounts.remove(account);
        emit released();
    }
    bool holds(const QString& account) const { return m_accounts.contains(account); }

signals:
    void released();

private:
    QSet<QString> m_accounts;
};

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
    // Reads of this account answer only once released; releasing answers the waiting ones.
    void holdReads(const QString& account);
    void releaseReads(const QString& account);

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
    HeldReads m_heldReads;
    QStringList m_log;
    int m_inFlight = 0;
};
