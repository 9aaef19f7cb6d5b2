#include "wavelets/wavelet_shrinkage_operator.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "base/text_output.h"
#include "exports/work_window.h"
#include "images/real_image.h"
#include "wavelets/mirror_extension.h"
#include "wavelets/shrinkage/brownian_shrink.h"
#include "wavelets/shrinkage/coefficient_bands.h"
#include "wavelets/shrinkage/sure_shrink.h"
#include "wavelets/shrinkage/visu_shrink.h"
#include "wavelets/transform/band_pyramid.h"
#include "wavelets/transform/wavelet_filter_banks.h"
#include "wavelets/transform/wavelet_transform.h"

namespace orv {

namespace {

std::unique_ptr<RealImage> copyInto(const RealImage& source,
                                    std::unique_ptr<RealImage> target) {
    if (target == nullptr) {
        return source.clone();
    }
    target->assign(source);
    return target;
}

std::unique_ptr<RealImage> targetOrCopy(const RealImage& source,
                                        std::unique_ptr<RealImage> target) {
    return target != nullptr ? std::move(target) : source.clone();
}

int roundedUp(int n, int unit) {
    return (n + unit - 1) / unit * unit;
}

}  // namespace

WaveletShrinkageOperator::WaveletShrinkageOperator(int algorithm, int levels, int wavelet)
    : algorithm_(algorithm),
      levels_(levels),
      wavelet_(wavelet),
      analysisLow_(std::make_unique<WaveletFilter[]>(kWaveletCount)),
      analysisHigh_(std::make_unique<WaveletFilter[]>(kWaveletCount)),
      synthesisLow_(std::make_unique<WaveletFilter[]>(kWaveletCount)),
      synthesisHigh_(std::make_unique<WaveletFilter[]>(kWaveletCount)) {
    InitWaveletFilters(analysisLow_.get(), analysisHigh_.get(), synthesisLow_.get(),
                       synthesisHigh_.get());
    if (knownWavelet()) {
        const auto number = static_cast<std::size_t>(wavelet_);
        filterLength_ = std::max({analysisLow_[number].length, analysisHigh_[number].length,
                                  synthesisLow_[number].length, synthesisHigh_[number].length});
    }
}

WaveletShrinkageOperator::~WaveletShrinkageOperator() = default;

void WaveletShrinkageOperator::printName(std::FILE* file) const {
    // quirk: shared-gradient-name
    printTextTo(file, "Real Gradient Operator\n");
}

int WaveletShrinkageOperator::workingSide(int longer) {
    const int power = orv::power2(orv::floorLog2(longer));
    return longer == power ? longer : 2 * power;
}

int WaveletShrinkageOperator::levelLimit(int minSide) const {
    return orv::floorLog2(minSide) - orv::floorLog2(filterLength_);
}

void WaveletShrinkageOperator::limitLevels() {
    maxLevels_ = levelLimit(minSide_);
    if (levels_ < 0) {
        levels_ = maxLevels_;
    } else if (levels_ > maxLevels_) {
        printTextTo(stderr, "Requested too many levels, setting levels to %d\n", maxLevels_);
        levels_ = maxLevels_;
    }
}

bool WaveletShrinkageOperator::runRule(CoefficientBands& bands) const {
    switch (algorithm_) {
        case kSureShrink:
            sureShrink(bands, verbose_ != 0);
            return true;
        case kVisuShrink:
            visuShrink(bands, verbose_ != 0);
            return true;
        case kBrownianShrink:
            brownianShrink(bands, alpha_, verbose_ != 0);
            return true;
        default:
            printTextTo(stderr, "Unknown denoising algorithm (%d); return image copy\n",
                        algorithm_);
            return false;
    }
}

bool WaveletShrinkageOperator::runRuleForTexts(const RealImage& source, int width,
                                               int height) const {
    // Without levels the coefficients are the samples.
    RealImage coefficients(width, height);
    for (int x = 0; x < source.width(); ++x) {
        std::copy_n(source.row(x), static_cast<std::size_t>(source.height()),
                    coefficients.row(x));
    }
    PlaneBands bands(coefficients, height, width, levels_);
    return runRule(bands);
}

std::unique_ptr<BandPyramid> WaveletShrinkageOperator::shrunkBands(const RealImage& source,
                                                                   int width,
                                                                   int height) const {
    const auto number = static_cast<std::size_t>(wavelet_);
    std::unique_ptr<BandPyramid> pyramid;
    {
        const WorkSlice slice(0, 3);
        pyramid = std::make_unique<BandPyramid>(source, width, height, levels_,
                                                analysisLow_[number], analysisHigh_[number]);
        reportWork(1, 1);
    }
    PyramidBands bands(*pyramid, height, width, noise_);
    const WorkSlice slice(1, 3);
    if (workCancelled() || !runRule(bands)) {
        return nullptr;
    }
    return pyramid;
}

std::unique_ptr<RealImage> WaveletShrinkageOperator::rebuilt(
    const BandPyramid& pyramid, std::unique_ptr<RealImage> target) const {
    const auto number = static_cast<std::size_t>(wavelet_);
    const WorkSlice slice(2, 3);
    pyramid.inverse(*target, synthesisLow_[number], synthesisHigh_[number]);
    return target;
}

std::unique_ptr<RealImage> WaveletShrinkageOperator::apply(const RealImage& source,
                                                           std::unique_ptr<RealImage> target) {
    if (!knownWavelet()) {
        return targetOrCopy(source, std::move(target));
    }
    planeWidth_ = source.width();
    planeHeight_ = source.height();
    const int longer = std::max(planeWidth_, planeHeight_);
    const int side = workingSide(longer);
    int width = side != longer ? side : planeWidth_;
    int height = side != longer ? side : planeHeight_;
    minSide_ = std::min(width, height);
    limitLevels();
    if (verbose_ != 0) {
        printText("Using wavelet %d; decomposing %d levels.\n", wavelet_, levels_);
    }
    if (levels_ < 1) {
        return runRuleForTexts(source, width, height) ? copyInto(source, std::move(target))
                                                      : targetOrCopy(source, std::move(target));
    }
    if (!BandPyramid::fits(width, height, levels_)) {
        // A pass over an odd line would lose coefficients; a square of zeros has none.
        width = longer;
        height = longer;
    }
    const std::unique_ptr<BandPyramid> pyramid = shrunkBands(source, width, height);
    if (pyramid == nullptr) {
        return targetOrCopy(source, std::move(target));
    }
    if (target == nullptr) {
        target = RealImage::uninitialised(planeWidth_, planeHeight_);
        target->setFlag(source.flag());
    }
    return rebuilt(*pyramid, std::move(target));
}

std::unique_ptr<RealImage> WaveletShrinkageOperator::mirrored(const RealImage& source) {
    if (!knownWavelet()) {
        return source.clone();
    }
    planeWidth_ = source.width();
    planeHeight_ = source.height();
    minSide_ = std::min(planeWidth_, planeHeight_);
    limitLevels();
    if (levels_ < 1) {
        return source.clone();
    }
    const int longSide = workingSide(std::max(planeWidth_, planeHeight_));
    const int shortSide = roundedUp(minSide_, orv::power2(levels_));
    const bool wide = planeWidth_ >= planeHeight_;
    std::unique_ptr<BandPyramid> pyramid;
    {
        const std::unique_ptr<RealImage> extended =
            mirrorExtended(source, wide ? longSide : shortSide, wide ? shortSide : longSide);
        pyramid = shrunkBands(*extended, extended->width(), extended->height());
    }
    if (pyramid == nullptr) {
        return source.clone();
    }
    return rebuilt(*pyramid, RealImage::uninitialised(planeWidth_, planeHeight_));
}

}  // namespace orv
