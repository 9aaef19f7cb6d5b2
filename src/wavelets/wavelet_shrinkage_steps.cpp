// The steps of the shrinkage operator, which stand as free functions beside it.
#include <memory>

#include "images/real_image.h"
#include "wavelets/shrinkage/brownian_shrink.h"
#include "wavelets/shrinkage/brownian_threshold.h"
#include "wavelets/shrinkage/shrink_band.h"
#include "wavelets/shrinkage/sure_shrink.h"
#include "wavelets/shrinkage/sure_threshold.h"
#include "wavelets/shrinkage/visu_shrink.h"
#include "wavelets/shrinkage/wavelet_noise.h"
#include "wavelets/transform/wavelet_bands.h"
#include "wavelets/transform/wavelet_transform.h"
#include "wavelets/wavelet_shrinkage_operator.h"

namespace orv {

int WaveletShrinkageOperator::power2(int n) const {
    return orv::power2(n);
}

int WaveletShrinkageOperator::floorLog2(int n) const {
    return orv::floorLog2(n);
}

void WaveletShrinkageOperator::FwtVector(const double* input, double* output, int length,
                                         int levels, const WaveletFilter& low,
                                         const WaveletFilter& high) const {
    orv::FwtVector(input, output, length, levels, low, high);
}

void WaveletShrinkageOperator::IwtVector(const double* input, double* output, int length,
                                         int levels, const WaveletFilter& low,
                                         const WaveletFilter& high) const {
    orv::IwtVector(input, output, length, levels, low, high);
}

void WaveletShrinkageOperator::FwtImage(const RealImage& source, RealImage& coefficients,
                                        int height, int width, int levels,
                                        const WaveletFilter& low,
                                        const WaveletFilter& high) const {
    orv::FwtImage(source, coefficients, height, width, levels, low, high);
}

void WaveletShrinkageOperator::IwtImage(const RealImage& coefficients, RealImage& target,
                                        int height, int width, int levels,
                                        const WaveletFilter& low,
                                        const WaveletFilter& high) const {
    orv::IwtImage(coefficients, target, height, width, levels, low, high);
}

void WaveletShrinkageOperator::BoundingBox(int height, int width, int level, int detail,
                                           int* xStart, int* xEnd, int* yStart,
                                           int* yEnd) const {
    orv::BoundingBox(height, width, level, detail, xStart, xEnd, yStart, yEnd);
}

std::unique_ptr<RealImage> WaveletShrinkageOperator::ExtractBand(const RealImage& coefficients,
                                                                 int height, int width,
                                                                 int level, int detail) const {
    return orv::ExtractBand(coefficients, height, width, level, detail);
}

double WaveletShrinkageOperator::estimateNoise2D(const RealImage& coefficients, int height,
                                                 int width) const {
    return orv::estimateNoise2D(coefficients, height, width);
}

double WaveletShrinkageOperator::sureThreshold(const double* values, int count) const {
    return orv::sureThreshold(values, count);
}

void WaveletShrinkageOperator::SureShrink2D(RealImage& coefficients, int height, int width,
                                            int levels) const {
    orv::SureShrink2D(coefficients, height, width, levels, verbose_ != 0);
}

void WaveletShrinkageOperator::VisuShrink2D(RealImage& coefficients, int height, int width,
                                            int levels) const {
    orv::VisuShrink2D(coefficients, height, width, levels, verbose_ != 0);
}

void WaveletShrinkageOperator::BrownianShrink2D(RealImage& coefficients, int height, int width,
                                                int levels, float alpha) const {
    orv::BrownianShrink2D(coefficients, height, width, levels, alpha, verbose_ != 0);
}

void WaveletShrinkageOperator::ShrinkBand(RealImage& coefficients, int height, int width,
                                          int level, int detail, double threshold) const {
    orv::ShrinkBand(coefficients, height, width, level, detail, threshold, verbose_ != 0);
}

double WaveletShrinkageOperator::brownianThreshold(RealImage& band, int bandHeight,
                                                   int bandWidth, double critical) const {
    return orv::brownianThreshold(band, bandHeight, bandWidth, critical);
}

void WaveletShrinkageOperator::brownianSheet(RealImage& plane, int bandHeight,
                                             int bandWidth) const {
    orv::brownianSheet(plane, bandHeight, bandWidth);
}

int WaveletShrinkageOperator::compareMagnitudes(const double* a, const double* b) const {
    return orv::compareMagnitudes(a, b);
}

}  // namespace orv
