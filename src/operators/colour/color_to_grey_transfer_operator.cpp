#include "operators/colour/color_to_grey_transfer_operator.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "base/runtime_random.h"
#include "exports/work_window.h"
#include "images/rgb_discrete_image.h"
#include "operators/colour/channel_statistics.h"
#include "operators/colour/colour_pass.h"
#include "operators/colour/column_slabs.h"
#include "operators/colour/plane_samples.h"
#include "operators/colour/swatch_search.h"

namespace orv {

namespace {

/// A random number from 0 to `length`, both included.
int randomUpTo(int length) {
    return static_cast<int>(std::int64_t{runtimeRandom()} * length / 32767);
}

/// Finds alpha and beta of the swatches that suit the windows of a column.
class ColumnMatch {
  public:
    ColumnMatch(std::span<const std::unique_ptr<ColorSwatch>> swatches, int half, int height)
        : search_(swatches),
          half_(half),
          scores_(static_cast<std::size_t>(height)),
          matches_(static_cast<std::size_t>(height)) {
        for (const auto& swatch : swatches) {
            colours_.push_back({swatch->alpha(), swatch->beta()});
        }
    }

    /// Writes alpha and beta of column x of a plane of l.
    void match(const RealImage& light, int x, double* alpha, double* beta) {
        colourKernels().windowScores({light.data(), light.width(), light.height(), x, half_},
                                     scores_.data());
        search_.nearest(scores_.data(), matches_.data(), scores_.size());
        for (std::size_t y = 0; y < matches_.size(); ++y) {
            const Colour& colour = colours_[static_cast<std::size_t>(matches_[y])];
            alpha[y] = colour.alpha;
            beta[y] = colour.beta;
        }
    }

  private:
    struct Colour {
        double alpha;
        double beta;
    };

    SwatchSearch search_;
    int half_;
    std::vector<double> scores_;
    std::vector<int> matches_;
    std::vector<Colour> colours_;
};

}  // namespace

ColorToGreyTransferOperator::ColorToGreyTransferOperator(std::unique_ptr<ColorSpaceChain> chain,
                                                         int swatchSize)
    : chain_(std::move(chain)),
      styleMean_{},
      styleDeviation_{},
      swatchCount_(0),
      swatchSize_(swatchSize) {}

ColorToGreyTransferOperator::~ColorToGreyTransferOperator() = default;

std::unique_ptr<DiscreteImage> ColorToGreyTransferOperator::apply(
    const DiscreteImage& source, std::unique_ptr<DiscreteImage> target) {
    if (swatches_.empty()) {
        return nullptr;
    }
    if (target == nullptr) {
        target = std::make_unique<RgbDiscreteImage>(source.width(), source.height());
    }
    if (source.packedRgb() != nullptr && target->packedRgb() != nullptr &&
        target->width() == source.width() && target->height() == source.height()) {
        colourPacked(source, target->data());
    } else {
        target->setFromReal3(*runPlanes(channelPlanes(source)));
    }
    return target;
}

void ColorToGreyTransferOperator::learnSwatches(const DiscreteImage& image) {
    learnSwatchPlanes(*channelPlanes(image));
}

void ColorToGreyTransferOperator::learnSwatchPlanes(RealImage3& planes) {
    std::array<LaneSums, 3> sums{};
    enterSpace(planes, &sums);
    for (std::size_t k = 0; k < 3; ++k) {
        const ChannelStatistics channel =
            statisticsOf(sums[k], planes.plane(0).sampleCount(), /*leastVariance=*/0.0);
        styleMean_[k] = channel.mean;
        styleDeviation_[k] = channel.deviation;
    }
    swatches_.clear();
    swatchCount_ = (planes.width() + planes.height()) / 2;
    swatches_.reserve(static_cast<std::size_t>(swatchCount_));
    for (int k = 0; k < swatchCount_; ++k) {
        swatches_.push_back(drawSwatch(planes));
    }
}

std::unique_ptr<ColorSwatch> ColorToGreyTransferOperator::drawSwatch(
    const RealImage3& lab) const {
    int x = 0;
    int y = 0;
    do {  // quirk: swatches-go-on
        x = randomUpTo(lab.width());
        y = randomUpTo(lab.height());
    } while (x < swatchSize_ || x >= lab.width() - swatchSize_ || y < swatchSize_ ||
             y >= lab.height() - swatchSize_);
    const ChannelStatistics light =
        windowStatistics(lab.plane(0), x, y, swatchSize_, swatchSize_);
    const int middleX = x + swatchSize_ / 2;
    const int middleY = y + swatchSize_ / 2;
    return std::make_unique<ColorSwatch>(x, y, swatchSize_, swatchSize_, light.mean,
                                         light.deviation, lab.plane(1).row(middleX)[middleY],
                                         lab.plane(2).row(middleX)[middleY]);
}

std::unique_ptr<RealImage3> ColorToGreyTransferOperator::runPlanes(
    std::unique_ptr<RealImage3> planes) const {
    if (swatches_.empty()) {
        return nullptr;
    }
    {
        const WorkSlice firstPass(0, 2);
        enterSpace(*planes, nullptr);
    }
    if (workCancelled()) {
        return planes;
    }
    const WorkSlice secondPass(1, 2);
    planes->setPlane(0, leaveSpace(*planes));
    return planes;
}

/// Grey levels to l, alpha, beta, in place.
void ColorToGreyTransferOperator::enterBlock(const std::array<double*, 3>& samples,
                                             std::size_t count) const {
    for (double* const channel : samples) {
        colourKernels().scaleIn(channel, /*offset=*/0.0, channel, count);
    }
    chain_->forwardSamples(samples.data(), samples.data(), count);
}

/// l, alpha, beta to grey levels; the result may take the place of what it comes from.
void ColorToGreyTransferOperator::leaveColumn(const std::array<const double*, 3>& from,
                                              const std::array<double*, 3>& to,
                                              std::size_t count) const {
    chain_->inverseSamples(from.data(), to.data(), count);
    for (double* const channel : to) {
        colourKernels().scaleOut(channel, count);
    }
}

/// The side of a window is twice this.
int ColorToGreyTransferOperator::halfWindow() const {
    return swatchSize_ / 2 + swatchSize_ % 2;  // quirk: swatch-window
}

/// One pass: planes to l, alpha, beta in place, and their sums when these are asked for.
void ColorToGreyTransferOperator::enterSpace(RealImage3& planes,
                                             std::array<LaneSums, 3>* sums) const {
    const auto all = samplesOf(planes);
    const auto block = [&](std::size_t start, std::size_t count) {
        const std::array<double*, 3> samples = at(all, start);
        enterBlock(samples, count);
        for (std::size_t k = 0; k < 3 && sums != nullptr; ++k) {
            colourKernels().addSums(samples[k], count, (*sums)[k]);
        }
    };
    forEachBlock(planes.plane(0).sampleCount(), nullptr, block);
}

/// The other pass, column by column: the swatches' colours and the way back to grey levels.
/// Green and blue take the places of alpha and beta; red is a plane of its own, as later windows
/// still look at l.
std::unique_ptr<RealImage> ColorToGreyTransferOperator::leaveSpace(RealImage3& planes) const {
    const RealImage& light = planes.plane(0);
    ColumnMatch column(swatches_, halfWindow(), planes.height());
    auto red = RealImage::uninitialised(planes.width(), planes.height());
    for (int x = 0; x < planes.width() && reportLine(x, planes.width()); ++x) {
        double* const alpha = planes.plane(1).row(x);
        double* const beta = planes.plane(2).row(x);
        column.match(light, x, alpha, beta);
        leaveColumn({light.row(x), alpha, beta}, {red->row(x), alpha, beta},
                    static_cast<std::size_t>(planes.height()));
    }
    return red;
}

/// Both passes over packed pixels, slab by slab, with one plane for l.
void ColorToGreyTransferOperator::colourPacked(const DiscreteImage& source,
                                               unsigned char* to) const {
    ColumnSlabs slabs(source.width(), source.height());
    const std::array<double*, 3> all = slabs.samples();
    const std::size_t height = static_cast<std::size_t>(source.height());
    const auto light = RealImage::uninitialised(source.width(), source.height());
    {
        const WorkSlice firstPass(0, 2);
        forEachPart(slabs.count(), nullptr, [&](std::size_t i) {
            slabs.read(source.packedRgb(), i);
            inBlocks(slabs.sampleCount(i), [&](std::size_t start, std::size_t count) {
                enterBlock(at(all, start), count);
            });
            std::copy_n(all[0], slabs.sampleCount(i), light->row(slabs.firstColumn(i)));
        });
    }
    if (workCancelled()) {
        return;
    }
    const WorkSlice secondPass(1, 2);
    ColumnMatch column(swatches_, halfWindow(), source.height());
    forEachPart(slabs.count(), nullptr, [&](std::size_t i) {
        for (int k = 0; k < slabs.columns(i); ++k) {
            const int x = slabs.firstColumn(i) + k;
            const std::array<double*, 3> out = at(all, static_cast<std::size_t>(k) * height);
            column.match(*light, x, out[1], out[2]);
            leaveColumn({light->row(x), out[1], out[2]}, out, height);
        }
        slabs.write(to, i);
    });
}

}  // namespace orv
