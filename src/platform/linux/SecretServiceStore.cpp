#include "platform/linux/SecretServiceStore.h"

#include "core/support/StrictUtf8.h"

#include <QPointer>
#include <qcoro/qcorosignal.h>
#include <qt6keychain/keychain.h>

namespace {
// Starts a job and waits for it at most `timeout`. True when it finished in time; its result is
// then still readable. A job that times out is left running: it frees itself when it ends (qtkeychain
// deletes finished jobs), and deleting it earlier would leave its pending callback a dangling pointer.
QCoro::Task<bool> finishes(QKeychain::Job* job, QString account, std::chrono::milliseconds timeout) {
    job->setKey(account);
    job->setInsecureFallback(false); // never a plain-text file
    const QPointer<QKeychain::Job> watched(job);
    job->start();
    const auto finished = co_await qCoro(job, &QKeychain::Job::finished, timeout);
    co_return finished.has_value() && !watched.isNull();
}

// libsecret stores secrets as C strings: text with a NUL, or bytes that aren't UTF-8, can only go
// base64-encoded.
bool storableAsText(const QByteArray& value) {
    return !value.contains('\0') && strictUtf8(value).has_value();
}
} // namespace

SecretServiceStore::SecretServiceStore(std::chrono::milliseconds timeout)
    : m_timeout(timeout) {}

QCoro::Task<std::optional<QByteArray>> SecretServiceStore::read(QString service, QString account) {
    auto* job = new QKeychain::ReadPasswordJob(service);
    QCoro::Task<bool> reading = finishes(job, account, m_timeout);
    if (!co_await std::move(reading) || job->error() != QKeychain::NoError) {
        co_return std::nullopt;
    }
    co_return job->binaryData();
}

QCoro::Task<int> SecretServiceStore::write(QString service, QString account, QByteArray value) {
    auto* job = new QKeychain::WritePasswordJob(service);
    if (storableAsText(value)) {
        job->setTextData(QString::fromUtf8(value));
    } else {
        job->setBinaryData(value);
    }
    QCoro::Task<bool> writing = finishes(job, account, m_timeout);
    if (!co_await std::move(writing)) {
        co_return timedOutStatus;
    }
    co_return static_cast<int>(job->error());
}

QCoro::Task<> SecretServiceStore::remove(QString service, QString account) {
    QCoro::Task<bool> removal = finishes(new QKeychain::DeletePasswordJob(service), account, m_timeout);
    co_await std::move(removal);
}
