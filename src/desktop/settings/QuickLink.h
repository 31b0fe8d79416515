#pragma once

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

// One quick link of the settings' list as QML shows it. Name and address are the person's own text:
// plain text.
struct QuickLink {
    Q_GADGET
    QML_VALUE_TYPE(quickLink)
    // The bookmark's id without braces.
    Q_PROPERTY(QString id MEMBER id)
    Q_PROPERTY(QString name MEMBER name)
    Q_PROPERTY(QString urlString MEMBER urlString)

public:
    QString id;
    QString name;
    QString urlString;

    bool operator==(const QuickLink&) const = default;
};
