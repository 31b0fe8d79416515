#include "desktop/shell/ColorSchemePalette.h"

#include "desktop/shell/DarkPalette.h"

#include <QGuiApplication>

ColorSchemePalette::ColorSchemePalette(ColorSchemeSource& source, QObject* parent)
    : QObject(parent) {
    connect(&source, &ColorSchemeSource::colorSchemeChanged, this, &ColorSchemePalette::follow);
    follow(source.colorScheme());
}

void ColorSchemePalette::follow(ColorSchemeSource::ColorScheme scheme) {
    if (scheme == ColorSchemeSource::ColorScheme::dark) {
        const QPalette platform = QGuiApplication::palette();
        if (!m_darkened && DarkPalette::isLight(platform)) {
            m_darkened = true;
            QGuiApplication::setPalette(DarkPalette::make(platform.color(QPalette::Active, QPalette::Highlight)));
        }
    } else if (m_darkened) {
        m_darkened = false;
        // A palette that sets no role is the platform's palette.
        QGuiApplication::setPalette(QPalette());
    }
}
