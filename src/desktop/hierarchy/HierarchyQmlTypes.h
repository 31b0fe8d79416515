#pragma once

#include "core/hierarchy/LocationRowModel.h"

#include <QtQml/qqml.h>

// The hierarchy's core types that the pages read, as types of the NorvaneBar module.
struct LocationRowModelForeign {
    Q_GADGET
    QML_FOREIGN(LocationRowModel)
    QML_NAMED_ELEMENT(LocationRowModel)
    QML_UNCREATABLE("The location picker's view model fills it.")
};
