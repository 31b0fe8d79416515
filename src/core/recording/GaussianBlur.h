#pragma once

#include <QImage>

// `image` blurred as by a Gaussian of standard deviation `radius` pixels, its edge pixels repeated
// outward so the border doesn't darken. Three box blurs in a row make the Gaussian: as close, and as
// fast for any radius. Premultiplied ARGB, the size of `image`; a radius of 0 or less blurs nothing.
QImage gaussianBlurred(const QImage& image, double radius);
