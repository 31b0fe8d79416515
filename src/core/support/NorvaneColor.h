#pragma once

#include <QString>
#include <optional>

// A colour as the service writes it ("#7B68EE", "7b68ee"): red, green and blue in sRGB from 0 to 1,
// fully opaque.
struct NorvaneColor {
    double red = 0;
    double green = 0;
    double blue = 0;

    // Absent or empty text, or text that is not a base-16 number after one leading "#", is no
    // colour. Red is bits 16 to 23 of the number, green 8 to 15, blue 0 to 7; higher bits are
    // ignored.
    static std::optional<NorvaneColor> fromHex(const std::optional<QString>& hex);

    // "#rrggbb", the form QML takes.
    QString name() const;
    // The name of the colour the service wrote, or empty text for none.
    static QString nameOf(const std::optional<QString>& hex);

    bool operator==(const NorvaneColor&) const = default;
};
