#include "operators/colour/simple_color_transfer_operator.h"

#include <utility>

#include "exports/progress_window.h"
#include "exports/work_window.h"
#include "images/discrete_image.h"
#include "operators/colour/colour_pass.h"
#include "operators/colour/plane_samples.h"

namespace orv {

namespace {

/// Keeps the logarithm of a black sample finite.
constexpr double kOffset = 1.0;

}  // namespace

SimpleColorTransferOperator::SimpleColorTransferOperator(std::unique_ptr<ColorSpaceChain> chain)
    : chain_(std::move(chain)), styleMean_{}, styleDeviation_{} {}

std::unique_ptr<RealImage3> SimpleColorTransferOperator::runPlanes(
    const RealImage3& planes, std::unique_ptr<RealImage3> target) {
    target = targetLike(planes, std::move(target));
    std::array<ChannelStatistics, 3> source;
    {
        const WorkSlice firstPass(0, 2);
        source = enterSpace(planes, *target, /*firstReport=*/20);
    }
    if (workCancelled()) {
        return target;
    }
    const WorkSlice secondPass(1, 2);
    leaveSpace(source, *target);
    return target;
}

std::unique_ptr<RealImage3> SimpleColorTransferOperator::runPlanesAlt(
    const RealImage3& planes, std::unique_ptr<RealImage3> target) {
    return runPlanes(planes, std::move(target));
}

void SimpleColorTransferOperator::setStyle(const DiscreteImage& image) {
    setStylePlanes(*channelPlanes(image));
}

void SimpleColorTransferOperator::setStylePlanes(RealImage3& planes) {
    reportProgress(0);
    const std::array<ChannelStatistics, 3> style = enterSpace(planes, planes, 0);
    for (std::size_t k = 0; k < 3; ++k) {
        styleMean_[k] = style[k].mean;
        styleDeviation_[k] = style[k].deviation;
    }
    reportProgress(20);
}

/// One pass: planes to l, alpha, beta in the target, and the statistics of each. A report for
/// each channel goes out at the start of a third.
std::array<ChannelStatistics, 3> SimpleColorTransferOperator::enterSpace(
    const RealImage3& planes, RealImage3& target, int firstReport) const {
    const ColourKernels& kernels = colourKernels();
    const auto from = samplesOf(planes);
    const auto to = samplesOf(target);
    const ThirdsReport report{firstReport, 20};
    std::array<LaneSums, 3> sums{};
    const auto block = [&](std::size_t start, std::size_t count) {
        const std::array<double*, 3> samples = at(to, start);
        for (std::size_t k = 0; k < 3; ++k) {
            kernels.scaleIn(from[k] + start, kOffset, samples[k], count);
        }
        chain_->forwardSamples(samples.data(), samples.data(), count);
        for (std::size_t k = 0; k < 3; ++k) {
            kernels.addSums(samples[k], count, sums[k]);
        }
    };
    const std::size_t n = planes.plane(0).sampleCount();
    forEachBlock(n, &report, block);
    return {statisticsOf(sums[0], n, kLeastVariance), statisticsOf(sums[1], n, kLeastVariance),
            statisticsOf(sums[2], n, kLeastVariance)};
}

/// The other pass: the transfer in l, alpha, beta and the way back to grey levels, in place. The
/// offset of the way in isn't taken off.
void SimpleColorTransferOperator::leaveSpace(const std::array<ChannelStatistics, 3>& source,
                                             RealImage3& planes) const {
    const ColourKernels& kernels = colourKernels();
    const auto all = samplesOf(planes);
    std::array<double, 3> ratio{};
    for (std::size_t k = 0; k < 3; ++k) {
        const bool flat = source[k].deviation == 0.0;
        ratio[k] = flat ? 0.0 : styleDeviation_[k] / source[k].deviation;
    }
    const auto block = [&](std::size_t start, std::size_t count) {
        const std::array<double*, 3> samples = at(all, start);
        for (std::size_t k = 0; k < 3; ++k) {
            kernels.transfer(samples[k], ratio[k], source[k].mean, styleMean_[k], count);
        }
        chain_->inverseSamples(samples.data(), samples.data(), count);
        for (double* const channel : samples) {
            kernels.scaleOut(channel, count);  // quirk: colour-offset-stays
        }
    };
    reportProgress(40);
    const ThirdsReport report{40, 30};
    if (!forEachBlock(planes.plane(0).sampleCount(), &report, block)) {
        return;
    }
    reportProgress(70);
    for (int k = 0; k < 3; ++k) {
        reportProgress(70 + 30 * k / 3);
    }
}

}  // namespace orv
