#include "core/myday/DueDate.h"

#include "core/support/DoubleText.h"

namespace DueDate {

std::optional<double> milliseconds(const std::optional<QString>& dueDate) {
    if (!dueDate) {
        return std::nullopt;
    }
    // DoubleText refuses leading white space and a NUL, and reads the whole text or nothing.
    return DoubleText::parse(*dueDate);
}

} // namespace DueDate
