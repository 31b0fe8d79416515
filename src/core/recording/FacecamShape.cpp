#include "core/recording/FacecamShape.h"

FacecamShape facecamShape(double cornerRadius) {
    if (cornerRadius >= 0.99) {
        return FacecamShape::circle;
    }
    if (cornerRadius <= 0.01) {
        return FacecamShape::square;
    }
    return FacecamShape::rounded;
}

double cornerRadius(FacecamShape shape) {
    switch (shape) {
    case FacecamShape::square:
        return 0.0;
    case FacecamShape::rounded:
        return 0.35;
    case FacecamShape::circle:
        return 1.0;
    }
    return 1.0;
}
