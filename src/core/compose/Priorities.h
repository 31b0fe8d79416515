#pragma once

#include "core/support/NorvaneColor.h"

#include <QList>
#include <QString>
#include <optional>

// The priorities the composer offers, as the service numbers them.
struct Priority {
    int value = 0;
    QString name;
    NorvaneColor color;

    bool operator==(const Priority&) const = default;
};

namespace Priorities {

// "Urgent" (1, red), "High" (2, orange), "Normal" (3, blue), "Low" (4, grey), in this order.
QList<Priority> all();

// The priority of that number, if the composer offers it.
std::optional<Priority> withValue(std::optional<int> value);

} // namespace Priorities
