#include "desktop/shell/DarkPalette.h"

namespace DarkPalette {

QPalette make(const QColor& accent) {
    const QColor window(0x32, 0x32, 0x32);
    const QColor text(0xe8, 0xe8, 0xe8);
    // Fields are wells darker than the window, cards and buttons lighter than it.
    const QColor base(0x1e, 0x1e, 0x1e);
    const QColor button(0x3c, 0x3c, 0x3c);
    const QColor disabledText(0x80, 0x80, 0x80);

    QPalette palette;
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        const bool disabled = group == QPalette::Disabled;
        palette.setColor(group, QPalette::Window, window);
        palette.setColor(group, QPalette::WindowText, disabled ? disabledText : text);
        palette.setColor(group, QPalette::Base, disabled ? window : base);
        palette.setColor(group, QPalette::AlternateBase, QColor(0x3a, 0x3a, 0x3a));
        palette.setColor(group, QPalette::Text, disabled ? disabledText : text);
        palette.setColor(group, QPalette::PlaceholderText,
                         disabled ? QColor(0x60, 0x60, 0x60) : QColor(0x96, 0x96, 0x96));
        palette.setColor(group, QPalette::Button, button);
        palette.setColor(group, QPalette::ButtonText, disabled ? disabledText : text);
        palette.setColor(group, QPalette::BrightText, Qt::white);
        palette.setColor(group, QPalette::Light, QColor(0x4a, 0x4a, 0x4a));
        palette.setColor(group, QPalette::Midlight, QColor(0x44, 0x44, 0x44));
        palette.setColor(group, QPalette::Mid, QColor(0x5e, 0x5e, 0x5e));
        palette.setColor(group, QPalette::Dark, QColor(0x1c, 0x1c, 0x1c));
        palette.setColor(group, QPalette::Shadow, QColor(0x12, 0x12, 0x12));
        palette.setColor(group, QPalette::Highlight, disabled ? QColor(0x50, 0x50, 0x50) : accent);
        palette.setColor(group, QPalette::HighlightedText, disabled ? disabledText : QColor(Qt::white));
        palette.setColor(group, QPalette::Link, QColor(0x7c, 0xb8, 0xf0));
        palette.setColor(group, QPalette::LinkVisited, QColor(0xb8, 0x9c, 0xec));
        palette.setColor(group, QPalette::ToolTipBase, QColor(0x45, 0x45, 0x45));
        palette.setColor(group, QPalette::ToolTipText, text);
    }
    return palette;
}

bool isLight(const QPalette& palette) {
    return palette.color(QPalette::Window).lightness() > palette.color(QPalette::WindowText).lightness();
}

} // namespace DarkPalette
