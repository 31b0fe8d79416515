#include "core/api/NVError.h"

#include "core/support/Overloaded.h"

#include <QCoreApplication>

namespace {

QString unexpectedResponse() {
    return QCoreApplication::translate("NVError", "Unexpected response from Norvane.");
}

QString describe(const NVError::Case& failure) {
    return std::visit(
        Overloaded{
            [](const NVError::Unauthorized& error) {
                return error.detail && !error.detail->isEmpty() ? *error.detail : NVError::rejectedTokenText();
            },
            [](const NVError::RateLimited&) {
                return QCoreApplication::translate("NVError", "Norvane rate limit reached. Try again in a moment.");
            },
            [](const NVError::Server& error) { return error.message; },
            [](const NVError::Network&) {
                return QCoreApplication::translate("NVError", "Couldn't reach Norvane. Check your connection.");
            },
            [](const NVError::Decoding&) { return unexpectedResponse(); },
            [](const NVError::NotAuthenticated&) {
                return QCoreApplication::translate("NVError",
                                                   "You're not signed in. Add your Norvane API token in Settings.");
            },
            [](const NVError::StorageLimitExceeded&) {
                return QCoreApplication::translate("NVError",
                                                   "Your Norvane workspace storage limit has been reached. Upgrade "
                                                   "your plan or free up space, then try again.");
            },
            [](const NVError::InvalidResponse&) { return unexpectedResponse(); },
        },
        failure);
}
} // namespace

QString NVError::rejectedTokenText() {
    return QCoreApplication::translate("NVError", "Norvane rejected the API token. Check it in Settings.");
}

NVError::NVError(Case failure)
    : m_failure(std::move(failure))
    , m_what(describe(m_failure).toUtf8()) {}

bool NVError::outcomeUnknown() const {
    const Network* network = as<Network>();
    return is<Decoding>() || (network && network->requestSent);
}

QString NVError::errorDescription() const {
    return describe(m_failure);
}
