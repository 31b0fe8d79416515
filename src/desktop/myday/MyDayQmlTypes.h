#pragma once

#include "core/myday/MyDayRowModel.h"

#include <QtQml/qqml.h>

// The Tasks tab's core types that its pages read, as types of the NorvaneBar module.
struct MyDayRowModelForeign {
    Q_GADGET
    QML_FOREIGN(MyDayRowModel)
    QML_NAMED_ELEMENT(MyDayRowModel)
    QML_UNCREATABLE("The Tasks tab's view model fills it.")
};

struct StatusChoiceForeign {
    Q_GADGET
    QML_FOREIGN(StatusChoice)
    QML_VALUE_TYPE(statusChoice)
};
