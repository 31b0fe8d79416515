#include "core/async/StartTask.h"

#include <QtGlobal>
#include <atomic>

namespace {
void writeToStandardError(const QString& description) {
    qWarning("NorvaneBar: a background task failed: %s", qUtf8Printable(description));
}

std::atomic<EscapedExceptionHandler> escapedExceptionHandler{&writeToStandardError};

QString describe(std::exception_ptr exception) {
    try {
        std::rethrow_exception(std::move(exception));
    } catch (const std::exception& error) {
        return QString::fromUtf8(error.what());
    } catch (...) {
        return QStringLiteral("an exception that is not a std::exception");
    }
}
} // namespace

EscapedExceptionHandler setEscapedExceptionHandler(EscapedExceptionHandler handler) {
    return escapedExceptionHandler.exchange(handler);
}

void reportEscapedException(std::exception_ptr exception) {
    escapedExceptionHandler.load()(describe(std::move(exception)));
}
