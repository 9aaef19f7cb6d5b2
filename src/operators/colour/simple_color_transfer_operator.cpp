#include "operators/colour/simple_color_transfer_operator.h"

#include <utility>

#include "exports/progress_window.h"
#include "exports/work_window.h"
#include "images/discrete_image.h"
#include "operators/colour/colour_pass.h"
#include "operators/colour/column_slabs.h"
#include "operators/colour/plane_samples.h"

namespace orv {

namespace {

/// Keeps the logarithm of a black sample finite.
constexpr double kOffset = 1.0;

constexpr int kStatisticsSpan = 20;
constexpr ThirdsReport kTransferReport{40, 30};

using ChannelSums = std::array<LaneSums, 3>;

void addSums(const std::array<double*, 3>& samples, std::size_t count, ChannelSums& sums) {
    for (std::size_t k = 0; k < 3; ++k) {
        colourKernels().addSums(samples[k], count, sums[k]);
    }
}

std::array<ChannelStatistics, 3> statisticsOf(const ChannelSums& sums, std::size_t n) {
    return {orv::statisticsOf(sums[0], n, kLeastVariance),
            orv::statisticsOf(sums[1], n, kLeastVariance),
            orv::statisticsOf(sums[2], n, kLeastVariance)};
}

/// What follows the second pass, unless it was stopped.
void reportEnd(bool whole) {
    if (whole) {
        reportProgress(70);
        for (int k = 0; k < 3; ++k) {
            reportProgress(70 + 30 * k / 3);
        }
    }
}

}  // namespace

SimpleColorTransferOperator::SimpleColorTransferOperator(std::unique_ptr<ColorSpaceChain> chain)
    : chain_(std::move(chain)), styleMean_{}, styleDeviation_{} {}

std::unique_ptr<DiscreteImage> SimpleColorTransferOperator::apply(
    const DiscreteImage& source, std::unique_ptr<DiscreteImage> target) {
    if (target == nullptr) {
        target = source.clone();
    }
    const bool packed = source.packedRgb() != nullptr && target->packedRgb() != nullptr &&
                        target->width() == source.width() &&
                        target->height() == source.height();
    if (!packed || source.channels() != 3 || colorPath() > 1) {
        return RealPlaneImageOperator::apply(source, std::move(target));
    }
    Statistics statistics;
    {
        const WorkSlice firstPass(0, 2);
        statistics = packedStatistics(source.packedRgb(), source.width(), source.height(),
                                      /*firstReport=*/20);
    }
    if (!workCancelled()) {
        const WorkSlice secondPass(1, 2);
        packedTransfer(statistics, source, target->data());
    }
    return target;
}

std::unique_ptr<RealImage3> SimpleColorTransferOperator::runPlanes(
    const RealImage3& planes, std::unique_ptr<RealImage3> target) {
    target = targetLike(planes, std::move(target));
    Statistics source;
    {
        const WorkSlice firstPass(0, 2);
        source = enterSpace(planes, *target, /*firstReport=*/20);
    }
    if (!workCancelled()) {
        const WorkSlice secondPass(1, 2);
        leaveSpace(source, *target);
    }
    return target;
}

std::unique_ptr<RealImage3> SimpleColorTransferOperator::runPlanesAlt(
    const RealImage3& planes, std::unique_ptr<RealImage3> target) {
    return runPlanes(planes, std::move(target));
}

void SimpleColorTransferOperator::setStyle(const DiscreteImage& image) {
    if (image.packedRgb() == nullptr) {
        setStylePlanes(*channelPlanes(image));
        return;
    }
    reportProgress(0);
    setStyleStatistics(
        packedStatistics(image.packedRgb(), image.width(), image.height(), /*firstReport=*/0));
}

void SimpleColorTransferOperator::setStylePlanes(RealImage3& planes) {
    reportProgress(0);
    setStyleStatistics(enterSpace(planes, planes, /*firstReport=*/0));
}

void SimpleColorTransferOperator::setStyleStatistics(const Statistics& style) {
    for (std::size_t k = 0; k < 3; ++k) {
        styleMean_[k] = style[k].mean;
        styleDeviation_[k] = style[k].deviation;
    }
    reportProgress(20);
}

/// Grey levels to l, alpha, beta.
void SimpleColorTransferOperator::enterBlock(const std::array<const double*, 3>& from,
                                             const std::array<double*, 3>& to,
                                             std::size_t count) const {
    for (std::size_t k = 0; k < 3; ++k) {
        colourKernels().scaleIn(from[k], kOffset, to[k], count);
    }
    chain_->forwardSamples(to.data(), to.data(), count);
}

/// The transfer in l, alpha, beta and the way back to grey levels, in place. The offset of the
/// way in isn't taken off.
void SimpleColorTransferOperator::leaveBlock(const Statistics& source,
                                             const std::array<double*, 3>& samples,
                                             std::size_t count) const {
    const ColourKernels& kernels = colourKernels();
    for (std::size_t k = 0; k < 3; ++k) {
        const bool flat = source[k].deviation == 0.0;
        const double ratio = flat ? 0.0 : styleDeviation_[k] / source[k].deviation;
        kernels.transfer(samples[k], ratio, source[k].mean, styleMean_[k], count);
    }
    chain_->inverseSamples(samples.data(), samples.data(), count);
    for (double* const channel : samples) {
        kernels.scaleOut(channel, count);  // quirk: colour-offset-stays
    }
}

/// One pass: planes to l, alpha, beta in the target, and the statistics of each. A report for
/// each channel goes out at the start of a third.
SimpleColorTransferOperator::Statistics SimpleColorTransferOperator::enterSpace(
    const RealImage3& planes, RealImage3& target, int firstReport) const {
    const auto from = samplesOf(planes);
    const auto to = samplesOf(target);
    const ThirdsReport report{firstReport, kStatisticsSpan};
    ChannelSums sums{};
    const std::size_t n = planes.plane(0).sampleCount();
    forEachBlock(n, &report, [&](std::size_t start, std::size_t count) {
        const std::array<double*, 3> samples = at(to, start);
        enterBlock(at(from, start), samples, count);
        addSums(samples, count, sums);
    });
    return statisticsOf(sums, n);
}

/// The other pass, in place.
void SimpleColorTransferOperator::leaveSpace(const Statistics& source,
                                             RealImage3& planes) const {
    const auto all = samplesOf(planes);
    reportProgress(40);
    const bool whole = forEachBlock(planes.plane(0).sampleCount(), &kTransferReport,
                                    [&](std::size_t start, std::size_t count) {
                                        leaveBlock(source, at(all, start), count);
                                    });
    reportEnd(whole);
}

/// The statistics of packed pixels, slab by slab; l, alpha and beta aren't kept.
SimpleColorTransferOperator::Statistics SimpleColorTransferOperator::packedStatistics(
    const unsigned char* pixels, int width, int height, int firstReport) const {
    ColumnSlabs slabs(width, height);
    const std::array<double*, 3> all = slabs.samples();
    const ThirdsReport report{firstReport, kStatisticsSpan};
    ChannelSums sums{};
    forEachPart(slabs.count(), &report, [&](std::size_t i) {
        slabs.read(pixels, i);
        inBlocks(slabs.sampleCount(i), [&](std::size_t start, std::size_t count) {
            const std::array<double*, 3> samples = at(all, start);
            enterBlock({samples[0], samples[1], samples[2]}, samples, count);
            addSums(samples, count, sums);
        });
    });
    return statisticsOf(sums,
                        static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
}

/// The other pass over packed pixels, which goes through l, alpha, beta a second time: cheaper
/// than to fetch the memory that would keep them.
void SimpleColorTransferOperator::packedTransfer(const Statistics& source,
                                                 const DiscreteImage& from,
                                                 unsigned char* to) const {
    ColumnSlabs slabs(from.width(), from.height());
    const std::array<double*, 3> all = slabs.samples();
    reportProgress(40);
    const bool whole = forEachPart(slabs.count(), &kTransferReport, [&](std::size_t i) {
        slabs.read(from.packedRgb(), i);
        inBlocks(slabs.sampleCount(i), [&](std::size_t start, std::size_t count) {
            const std::array<double*, 3> samples = at(all, start);
            enterBlock({samples[0], samples[1], samples[2]}, samples, count);
            leaveBlock(source, samples, count);
        });
        slabs.write(to, i);
    });
    reportEnd(whole);
}

}  // namespace orv
