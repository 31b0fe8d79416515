#pragma once

#include "core/json/JsonDecoding.h"
#include "core/json/RawValue.h"

#include <QJsonObject>
#include <QString>
#include <optional>

// Where the camera overlay sits in the frame.
enum class FacecamCorner {
    topLeft,
    topRight,
    bottomLeft,
    bottomRight,
};

template <> struct RawValues<FacecamCorner> {
    static constexpr std::array cases{
        std::pair{FacecamCorner::topLeft, "topLeft"},
        std::pair{FacecamCorner::topRight, "topRight"},
        std::pair{FacecamCorner::bottomLeft, "bottomLeft"},
        std::pair{FacecamCorner::bottomRight, "bottomRight"},
    };
};

// What replaces the background behind the person in the camera overlay.
enum class FacecamBackgroundKind {
    none,
    blur,
    customImage,
};

template <> struct RawValues<FacecamBackgroundKind> {
    static constexpr std::array cases{
        std::pair{FacecamBackgroundKind::none, "none"},
        std::pair{FacecamBackgroundKind::blur, "blur"},
        std::pair{FacecamBackgroundKind::customImage, "customImage"},
    };
};

// How the camera overlay of a recording looks. Stored as an object of the same names; every key but
// customImagePath is required when read.
struct FacecamStyle {
    // Roundness: the radius in pixels is side × 0.5 × this, so 0 is a square and 1 a circle.
    double cornerRadius = 1.0;
    FacecamCorner corner = FacecamCorner::bottomRight;
    // Side of the square overlay as a fraction of the shorter frame edge.
    double sizeFraction = 0.18;
    bool isVisible = true;
    FacecamBackgroundKind backgroundKind = FacecamBackgroundKind::none;
    // Radius of the Gaussian blur, in pixels.
    double blurRadius = 20.0;
    // The image behind the person for customImage.
    std::optional<QString> customImagePath;

    static FacecamStyle fromJson(const Json::JsonObject& json);
    QJsonObject toJson() const;

    bool operator==(const FacecamStyle&) const = default;
};
