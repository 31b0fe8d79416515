#pragma once

#include "sandbox/store/Records.h"

#include <QJsonArray>

#include <optional>

// Checks the custom field values of a new task against the fields of its list, as the service
// does: every id must be a field of the list, of a type that takes values, and every value must
// fit its type. A drop-down takes an option id or an option's index, labels an array of option ids.
namespace CustomFieldValues {

// What is wrong with the values, or nothing. On success `stored` holds them as the task keeps them.
std::optional<QString> check(const TaskList& list, const QJsonArray& values, QJsonArray& stored);

} // namespace CustomFieldValues
