#pragma once

#include <QString>
#include <optional>

// Numbers in text as people type them and as the keychain keeps them, the same in every locale.
namespace DoubleText {

// The double that the whole text spells as the C library's strtod reads it in the C locale, so that
// forms such as "1e3" and "0x10" count; white space before it is not allowed. Absent for anything
// else, and for infinities and NaN, which neither a JSON number nor a date can hold.
std::optional<double> parse(const QString& text);

// The shortest decimal text without an exponent that reads back as the same double:
// "1700000000", "1700000000.25".
QString shortest(double value);

} // namespace DoubleText
