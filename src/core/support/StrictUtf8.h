#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

// The text that bytes hold as UTF-8, taken as they are (a leading byte-order mark included), or
// absent when any sequence is malformed or cut off.
std::optional<QString> strictUtf8(const QByteArray& bytes);
