#pragma once

#include <QString>
#include <exception>

// The text a user reads for a failure that a submission step turned into a value: the description
// of the program's own error types, or else what the exception says of itself.
namespace FailureMessage {

QString of(std::exception_ptr failure);

} // namespace FailureMessage
