#include "submit/FailureMessage.h"

#include "api/NVError.h"
#include "storage/StorageProviderError.h"
#include "submit/AttachmentUploadError.h"

#include <QCoreApplication>

namespace FailureMessage {

QString of(std::exception_ptr failure) {
    try {
        std::rethrow_exception(std::move(failure));
    } catch (const NVError& error) {
        return error.errorDescription();
    } catch (const StorageProviderError& error) {
        return error.errorDescription();
    } catch (const AttachmentUploadError& error) {
        return error.errorDescription();
    } catch (const std::exception& error) {
        return QString::fromUtf8(error.what());
    } catch (...) {
    }
    return QCoreApplication::translate("FailureMessage", "An unknown error occurred.");
}

} // namespace FailureMessage
