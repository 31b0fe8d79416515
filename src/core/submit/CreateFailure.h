#pragma once

#include <QString>
#include <exception>

// What a failed creation leaves on the service, which decides what a retry does first.
enum class CreateFailure {
    // The service refused the task, or never got the whole request: no task exists, and a retry
    // creates it.
    notCreated,
    // The request went out whole and no answer came, or a 2xx answer could not be read: the task may
    // exist. A retry looks for it in the list before creating it again.
    answerLost,
    // After a lost answer, an open task of that name was found in the list. A retry creates another
    // one: the person chose to.
    taskFound,
};

namespace CreateFailures {

// The kind of a failure of the request that creates a task.
CreateFailure of(std::exception_ptr failure);
// What the user reads of a failed creation: `message`, followed for a lost answer by a line that
// says that the task may have been created.
QString described(const QString& message, CreateFailure failure);
// Why a task was not created again: one of that name is in the list already.
QString taskFoundMessage();

} // namespace CreateFailures
