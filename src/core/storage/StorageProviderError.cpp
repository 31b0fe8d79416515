#include "core/storage/StorageProviderError.h"

#include "core/support/Overloaded.h"

#include <QCoreApplication>

StorageProviderError::StorageProviderError(Case failure)
    : m_failure(std::move(failure))
    , m_what(errorDescription().toUtf8()) {}

QString StorageProviderError::errorDescription() const {
    return std::visit(Overloaded{
                          [](const MissingConfiguration& failure) { return failure.message; },
                          [](const UploadFailed& failure) { return failure.message; },
                          [](const InvalidResponse&) {
                              return QCoreApplication::translate("StorageProviderError",
                                                                 "Unexpected response from storage provider.");
                          },
                      },
                      m_failure);
}
