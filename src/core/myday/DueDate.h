#pragma once

#include <QString>
#include <optional>

// A task's due date as the service writes it: milliseconds since 1970 in decimal text.
namespace DueDate {

// The due date in milliseconds since 1970. The text must parse whole as a floating-point number
// and must not begin with a NUL, a blank or a control character from U+0009 to U+000D; anything
// else, infinities and NaN included, counts as no due date.
std::optional<double> milliseconds(const std::optional<QString>& dueDate);

} // namespace DueDate
