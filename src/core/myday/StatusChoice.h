#pragma once

#include <QObject>
#include <QString>

// One entry of a row's status menu: a status of the task's list and its colour.
struct StatusChoice {
    Q_GADGET
    Q_PROPERTY(QString name MEMBER name)
    // "#rrggbb", or empty for none or one unreadable.
    Q_PROPERTY(QString color MEMBER color)

public:
    QString name;
    QString color;

    bool operator==(const StatusChoice&) const = default;
};
