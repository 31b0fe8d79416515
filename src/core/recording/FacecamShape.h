#pragma once

// The camera overlay's outline as the person picks it; the style keeps its roundness.
enum class FacecamShape {
    square,
    rounded,
    circle,
};

// A roundness of 0.99 or more is a circle, 0.01 or less a square, anything between rounded.
FacecamShape facecamShape(double cornerRadius);
// The roundness a shape is kept as: 0, 0.35 or 1.
double cornerRadius(FacecamShape shape);
