#pragma once

#include <QColor>
#include <QObject>
#include <QtQml/qqmlregistration.h>

// How well one colour stands out from another, as WCAG 2 measures it; for views that choose a text
// colour against a colour the service or the desktop gives.
class Contrast : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    // The contrast ratio of two colours, from 1 (the same) to 21 (black on white).
    Q_INVOKABLE static double ratio(const QColor& one, const QColor& other);
};
