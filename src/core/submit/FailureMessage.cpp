#include "core/submit/FailureMessage.h"

#include "core/api/NVError.h"
#include "core/storage/StorageProviderError.h"
#include "core/submit/AttachmentUploadError.h"

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
