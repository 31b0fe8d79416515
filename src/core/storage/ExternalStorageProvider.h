#pragma once

#include <QCoroTask>
#include <QString>
#include <QUrl>

// A storage service outside Norvane that takes a task's files and gives each a public address; the
// submitter writes the addresses into the task. A provider is made fresh for each job from the
// settings of that moment and holds its configuration unchanged. Failures are StorageProviderError,
// or the platform's own errors (a file that can't be read, a failed connection).
class ExternalStorageProvider {
public:
    virtual ~ExternalStorageProvider() = default;

    // The provider's name in messages.
    virtual QString displayName() const = 0;
    // Checks what can be known without a transfer; throws StorageProviderError when something is
    // missing. Called before any upload.
    virtual void validateConfiguration() const = 0;
    // Sends the local file under `filename` and gives its public URL. The provider must outlive the
    // task.
    virtual QCoro::Task<QUrl> upload(QUrl fileURL, QString filename) const = 0;
};
