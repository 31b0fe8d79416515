#include "core/submit/CreateFailure.h"

#include "core/api/NVError.h"

#include <QCoreApplication>

namespace CreateFailures {

CreateFailure of(std::exception_ptr failure) {
    try {
        std::rethrow_exception(std::move(failure));
    } catch (const NVError& error) {
        return error.outcomeUnknown() ? CreateFailure::answerLost : CreateFailure::notCreated;
    } catch (...) {
    }
    return CreateFailure::notCreated;
}

QString described(const QString& message, CreateFailure failure) {
    if (failure != CreateFailure::answerLost) {
        return message;
    }
    return message + QLatin1Char('\n') +
           QCoreApplication::translate("CreateFailure",
                                       "The task may have been created: the request was sent in full, but no "
                                       "readable answer came back. Retry looks for it in the list before creating "
                                       "it again.");
}

QString taskFoundMessage() {
    return QCoreApplication::translate("CreateFailure",
                                       "An open task of this name is already in the list: it was probably created "
                                       "before its answer was lost. Retry creates another one.");
}

} // namespace CreateFailures
