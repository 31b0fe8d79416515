#pragma once

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

// One entry of a field chip's menu, or of the tags popover's list, as QML shows it. The label may be
// the service's text (a status, a member, an option): plain text.
struct ChipMenuEntry {
    Q_GADGET
    QML_VALUE_TYPE(chipMenuEntry)
    Q_PROPERTY(QString label MEMBER label)
    Q_PROPERTY(bool checked MEMBER checked)
    // False for the entries that clear the field ("Default status", "Clear").
    Q_PROPERTY(bool checkable MEMBER checkable)
    // "#rrggbb", or empty for none.
    Q_PROPERTY(QString tint MEMBER tint)

public:
    QString label;
    bool checked = false;
    bool checkable = true;
    QString tint;

    bool operator==(const ChipMenuEntry&) const = default;
};
