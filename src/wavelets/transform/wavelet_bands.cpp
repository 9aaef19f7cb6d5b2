#include "wavelets/transform/wavelet_bands.h"

#include <algorithm>
#include <cstdio>

#include "base/text_output.h"
#include "images/real_image.h"
#include "wavelets/transform/wavelet_transform.h"

namespace orv {

void BoundingBox(int height, int width, int level, int detail, int* xStart, int* xEnd,
                 int* yStart, int* yEnd) {
    if (detail < 0 || detail > 2) {
        printTextTo(stderr, "BoundingBox: unexpected detail value (%d)\n", detail);
        return;
    }
    const int parts = power2(level);
    const int w = width / parts;
    const int h = height / parts;
    const bool highX = detail != 1;
    const bool highY = detail != 0;
    *xStart = highX ? w : 0;
    *xEnd = highX ? 2 * w : w;
    *yStart = highY ? h : 0;
    *yEnd = highY ? 2 * h : h;
}

std::unique_ptr<RealImage> ExtractBand(const RealImage& coefficients, int height, int width,
                                       int level, int detail) {
    int xStart = 0;
    int xEnd = 0;
    int yStart = 0;
    int yEnd = 0;
    BoundingBox(height, width, level, detail, &xStart, &xEnd, &yStart, &yEnd);
    auto band = RealImage::uninitialised(xEnd - xStart, yEnd - yStart);
    for (int x = xStart; x < xEnd; ++x) {
        const double* from = coefficients.row(x);
        std::copy(from + yStart, from + yEnd, band->row(x - xStart));
    }
    return band;
}

}  // namespace orv
