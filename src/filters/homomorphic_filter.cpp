#include "filters/homomorphic_filter.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "base/elementary.h"
#include "base/kernels/elementary_kernels.h"
#include "base/text_output.h"
#include "exports/progress_window.h"
#include "exports/work_window.h"
#include "filters/kernels/homomorphic_kernels.h"
#include "filters/real_recursive_2d_blur_operator.h"
#include "schemes/plane_operators/progress_share.h"

namespace orv {

namespace {

constexpr int kLogarithmOfReflectance = 2;
constexpr int kIllumination = 4;
constexpr int kLogarithmOfIllumination = 5;
constexpr int kCompressed = 8;

/// What a column is cut into, so that the steps of mode 8 stay in cache.
constexpr std::size_t kChunk = 512;

/// The parts of the work, for the account of it: logarithm, blur, the rest.
constexpr int kParts = 3;

void logarithms(const RealImage& source, RealImage& target) {
    std::array<double, 256> table;
    for (std::size_t i = 0; i < table.size(); ++i) {
        table[i] = elementaryLog(static_cast<double>(i));
    }
    homomorphicKernels().logarithm(source.data(), table.data(), target.data(),
                                   target.sampleCount());
}

void compressChunk(const double* source, double* samples, std::size_t count,
                   double inverseGamma) {
    double share[kChunk];
    const ElementaryKernels& elementary = elementaryKernels();
    const HomomorphicKernels& kernels = homomorphicKernels();
    elementary.exp(samples, samples, count);
    kernels.split(source, samples, samples, share, count);
    elementary.pow(samples, inverseGamma, samples, count);
    kernels.join(samples, share, samples, count);
}

}  // namespace

HomomorphicFilter::HomomorphicFilter(int mode, double sigma, double gamma)
    : mode_(mode), sigma_(sigma), gamma_(gamma) {}

HomomorphicFilter::~HomomorphicFilter() = default;

std::unique_ptr<RealImage> HomomorphicFilter::apply(const RealImage& source,
                                                    std::unique_ptr<RealImage> target) {
    if (target == nullptr) {
        // Every sample is written, so that a copy of the source would be thrown away.
        target = RealImage::uninitialised(source.width(), source.height());
        target->setFlag(source.flag());
    }
    logarithms(source, *target);
    if (!reportWork(1, kParts)) {
        return target;
    }

    RealRecursive2dBlurOperator blur(sigma_);
    const bool needsBoth =
        mode_ != kIllumination && mode_ != kLogarithmOfIllumination && mode_ != kCompressed;
    std::unique_ptr<RealImage> low;
    {
        const WorkSlice slice(1, kParts);
        if (needsBoth) {
            low = blur.apply(*target, nullptr);
        } else {
            blur.blurInPlace(*target);
        }
    }
    if (workCancelled()) {
        return target;
    }

    const WorkSlice slice(2, kParts);
    if (mode_ == kCompressed) {
        compress(source, *target);
        return target;
    }
    if (needsBoth) {
        homomorphicKernels().difference(target->data(), low->data(), target->data(),
                                        target->sampleCount());
    }
    if (mode_ != kLogarithmOfReflectance && mode_ != kLogarithmOfIllumination) {
        target->expOf();
    }
    return target;
}

void HomomorphicFilter::compress(const RealImage& source, RealImage& target) const {
    const double inverseGamma = 1.0 / gamma_;
    const ProgressWindow& window = progressWindow();
    const int width = source.width();
    const auto height = static_cast<std::size_t>(source.height());
    for (int x = 0; x < width; ++x) {
        // quirk: homomorphic-progress
        reportProgress(progressShare(progressWidth(window), x, width));
        if (!reportLine(x, width)) {
            return;
        }
        for (std::size_t y = 0; y < height; y += kChunk) {
            compressChunk(source.row(x) + y, target.row(x) + y, std::min(kChunk, height - y),
                          inverseGamma);
        }
    }
}

void HomomorphicFilter::printName(std::FILE* file) const {
    printTextTo(file, "Real Homomorphic filter\n");
}

}  // namespace orv
