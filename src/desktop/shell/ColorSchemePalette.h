#pragma once

#include "core/platform/ColorSchemeSource.h"

#include <QObject>

// Puts the application's palette in step with the desktop's colour scheme where the platform theme
// does not: while the desktop prefers dark and the platform's palette is light, the application has
// our dark palette; when it prefers light, or no longer says, the platform's palette comes back.
class ColorSchemePalette : public QObject {
    Q_OBJECT

public:
    explicit ColorSchemePalette(ColorSchemeSource& source, QObject* parent = nullptr);

    // Whether the application has our dark palette now.
    bool isDarkened() const { return m_darkened; }

private:
    void follow(ColorSchemeSource::ColorScheme scheme);

    bool m_darkened = false;
};
