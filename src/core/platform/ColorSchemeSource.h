#pragma once

#include <QObject>

// Whether the desktop prefers light or dark windows. A desktop that doesn't say, or can't be asked,
// has no preference. The numbers are the desktop's own (the Settings portal's "color-scheme").
class ColorSchemeSource : public QObject {
    Q_OBJECT

public:
    enum class ColorScheme { noPreference = 0, dark = 1, light = 2 };
    Q_ENUM(ColorScheme)

    using QObject::QObject;

    virtual ColorScheme colorScheme() const = 0;

signals:
    void colorSchemeChanged(ColorSchemeSource::ColorScheme scheme);
};
