#include "wavelets/shrinkage/coefficient_bands.h"

#include <array>

#include "images/real_image.h"
#include "wavelets/shrinkage/wavelet_noise.h"
#include "wavelets/transform/band_pyramid.h"
#include "wavelets/transform/wavelet_bands.h"

namespace orv {

CoefficientBands::~CoefficientBands() = default;

CoefficientView PlaneBands::box(int xStart, int xEnd, int yStart, int yEnd) const {
    const std::size_t step = static_cast<std::size_t>(coefficients_.height());
    if (xEnd <= xStart || yEnd <= yStart) {
        return {coefficients_.data(), 0, 0, step, 0};
    }
    return {coefficients_.row(xStart) + yStart, xEnd - xStart, yEnd - yStart, step, 0};
}

CoefficientView PlaneBands::band(int level, int detail) {
    int xStart = 0;
    int xEnd = 0;
    int yStart = 0;
    int yEnd = 0;
    BoundingBox(height_, width_, level, detail, &xStart, &xEnd, &yStart, &yEnd);
    return box(xStart, xEnd, yStart, yEnd);
}

std::unique_ptr<RealImage> PlaneBands::wholeBand(int level, int detail) const {
    return ExtractBand(coefficients_, height_, width_, level, detail);
}

std::vector<CoefficientView> PlaneBands::rest() {
    std::vector<CoefficientView> views;
    int w = width_;
    int h = height_;
    for (int level = 1; level <= levels_; ++level) {
        // Odd sizes leave a last column and a last row that no band holds.
        const int evenWidth = 2 * (w / 2);
        const int evenHeight = 2 * (h / 2);
        views.push_back(box(evenWidth, w, 0, h));
        views.push_back(box(0, evenWidth, evenHeight, h));
        w /= 2;
        h /= 2;
    }
    views.push_back(box(0, w, 0, h));
    return views;
}

double PlaneBands::noise() const {
    return estimateNoise2D(coefficients_, height_, width_);
}

int PyramidBands::levels() const {
    return pyramid_.levels();
}

CoefficientView PyramidBands::band(int level, int detail) {
    RealImage& plane = pyramid_.band(level, detail);
    const long long whole =
        static_cast<long long>(pyramid_.bandWidth(level)) * pyramid_.bandHeight(level);
    return {plane.data(), plane.width(), plane.height(),
            static_cast<std::size_t>(plane.height()),
            whole - static_cast<long long>(plane.sampleCount())};
}

std::unique_ptr<RealImage> PyramidBands::wholeBand(int level, int detail) const {
    return pyramid_.wholeBand(level, detail);
}

std::vector<CoefficientView> PyramidBands::rest() {
    RealImage& plane = pyramid_.approximation();
    return {{plane.data(), plane.width(), plane.height(),
             static_cast<std::size_t>(plane.height()), 0}};
}

double PyramidBands::noise() const {
    if (knownNoise_ >= 0.0) {
        return knownNoise_;
    }
    std::array<Coefficients, 3> bands{};
    for (int detail = 0; detail < 3; ++detail) {
        const RealImage& plane = pyramid_.band(1, detail);
        bands[static_cast<std::size_t>(detail)] = {plane.data(), plane.sampleCount()};
    }
    return noiseOfDetails(bands, height_, width_);
}

}  // namespace orv
