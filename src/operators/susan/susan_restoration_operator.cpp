#include "operators/susan/susan_restoration_operator.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "base/elementary.h"
#include "base/rounding.h"
#include "exports/work_window.h"
#include "images/discrete_image.h"
#include "operators/susan/susan_byte_pass.h"
#include "operators/susan/susan_plane_pass.h"
#include "operators/susan/susan_progress.h"

namespace orv {

namespace {

/// How far the disc reaches up and down at the x offsets -3 to 3.
constexpr std::array<int, 7> kHalfHeights = {1, 2, 3, 3, 3, 2, 1};
constexpr int kMissingEntry = 28;
/// A y offset that leads out of every picture.
constexpr int kNowhere = INT_MIN;

bool isPacked(const DiscreteImage& image) {
    return image.channels() == 3 && image.packedRgb() != nullptr;
}

/// The samples of a grey picture of bytes; empty if it holds anything else.
std::vector<unsigned char> greyBytes(const DiscreteImage& image) {
    std::vector<unsigned char> bytes;
    bytes.reserve(static_cast<std::size_t>(image.width()) *
                  static_cast<std::size_t>(image.height()));
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const int v = image.value(x, y);
            if (v < 0 || v > 255) {
                return {};
            }
            bytes.push_back(static_cast<unsigned char>(v));
        }
    }
    return bytes;
}

/// One pass over one channel by the accessors of any picture.
template <class Read, class Write>
void passByAccessors(const SusanMask& mask, double inverse, const DiscreteImage& from, int x,
                     Read read, Write write) {
    for (int y = 0; y < from.height(); ++y) {
        const double value = susanValue(
            mask, x, y, from.width(), from.height(),
            [&](int nx, int ny) { return static_cast<double>(read(nx, ny)); },
            [&](double difference) { return susanSimilarity(difference, inverse); });
        write(y, toInt(value));
    }
}

void greyPass(const SusanMask& mask, double inverse, const DiscreteImage& from,
              DiscreteImage& to, SusanProgress& progress) {
    const std::vector<unsigned char> bytes = greyBytes(from);
    if (bytes.empty()) {
        for (int x = 0; x < from.width() && reportLine(x, from.width()); ++x) {
            passByAccessors(
                mask, inverse, from, x, [&](int nx, int ny) { return from.value(nx, ny); },
                [&](int y, int v) { to.setPacked(x, y, v); });
        }
        return;
    }
    std::vector<unsigned char> result(bytes.size());
    susanBytePass(mask, inverse,
                  {bytes.data(), result.data(), from.width(), from.height(), /*channels=*/1},
                  progress);
    auto next = result.begin();
    for (int y = 0; y < from.height(); ++y) {
        for (int x = 0; x < from.width(); ++x) {
            to.setPacked(x, y, *next++);
        }
    }
}

void colourPass(const SusanMask& mask, double inverse, const DiscreteImage& from,
                DiscreteImage& to, SusanProgress& progress) {
    if (isPacked(from) && isPacked(to) && from.width() == to.width() &&
        from.height() == to.height()) {
        susanBytePass(mask, inverse,
                      {from.packedRgb(), to.data(), from.width(), from.height(),
                       /*channels=*/3},
                      progress);
        return;
    }
    for (int x = 0; x < from.width() && reportLine(x, from.width()); ++x) {
        progress.columnsBelow(x + 1);
        passByAccessors(
            mask, inverse, from, x, [&](int nx, int ny) { return from.red(nx, ny); },
            [&](int y, int v) { to.setRed(x, y, v); });
        passByAccessors(
            mask, inverse, from, x, [&](int nx, int ny) { return from.green(nx, ny); },
            [&](int y, int v) { to.setGreen(x, y, v); });
        passByAccessors(
            mask, inverse, from, x, [&](int nx, int ny) { return from.blue(nx, ny); },
            [&](int y, int v) { to.setBlue(x, y, v); });
    }
}

/// work.copyFrom(target), in one piece where both are packed.
void copyPixels(const DiscreteImage& target, DiscreteImage& work) {
    if (isPacked(target) && isPacked(work) && target.width() == work.width() &&
        target.height() == work.height()) {
        const std::size_t bytes = std::size_t{3} * static_cast<std::size_t>(work.width()) *
                                  static_cast<std::size_t>(work.height());
        if (bytes > 0) {
            std::memcpy(work.data(), target.packedRgb(), bytes);
        }
        return;
    }
    work.copyFrom(target);
}

}  // namespace

SusanRestorationOperator::SusanRestorationOperator(int iterations, double threshold,
                                                   double sigma)
    : iterations_(iterations), maskSize_(36), threshold_(threshold), sigma_(sigma) {
    for (int x = -3; x <= 3; ++x) {
        const int half = kHalfHeights[static_cast<std::size_t>(x + 3)];
        for (int y = -half; y <= half; ++y) {
            if (x != 0 || y != 0) {
                maskX_.push_back(x);
                maskY_.push_back(y);
            }
        }
    }
    // quirk: susan-missing-neighbour
    maskY_[kMissingEntry] = kNowhere;

    for (std::size_t k = 0; k < maskX_.size(); ++k) {
        const double x = maskX_[k];
        const double y = maskY_[k];
        maskWeights_.push_back(elementaryExp(-(x * x + y * y) / (2.0 * (sigma * sigma))));
    }
}

std::unique_ptr<DiscreteImage> SusanRestorationOperator::apply(
    const DiscreteImage& source, std::unique_ptr<DiscreteImage> target) {
    if (target == nullptr) {
        target = source.clone();
    }
    // The first pass reads the source itself: a work picture of its own would hold the same.
    std::unique_ptr<DiscreteImage> work;
    for (int i = 0; i < iterations_ && !workCancelled(); ++i) {
        const WorkSlice slice(i, iterations_);
        runPass(i, work != nullptr ? *work : source, *target);
        if (i + 1 < iterations_) {
            if (work == nullptr) {
                work = source.clone();
            }
            copyPixels(*target, *work);
        }
    }
    return target;
}

void SusanRestorationOperator::runPass(int pass, const DiscreteImage& from,
                                       DiscreteImage& to) const {
    const double inverse = 1.0 / threshold_;
    if (from.channels() == 1) {
        SusanProgress progress(pass, iterations_, /*columns=*/0);
        greyPass(mask(), inverse, from, to, progress);
        return;
    }
    SusanProgress progress(pass, iterations_, from.width());
    if (from.channels() == 3) {
        colourPass(mask(), inverse, from, to, progress);
    }
}

std::unique_ptr<FloatImage> SusanRestorationOperator::runPlane(const FloatImage& plane) const {
    if (iterations_ < 1) {
        return plane.clone();
    }
    const double inverse = 1.0 / threshold_;
    auto result = FloatImage::uninitialised(plane.width(), plane.height());
    std::unique_ptr<FloatImage> work;
    for (int i = 0; i < iterations_ && !workCancelled(); ++i) {
        const WorkSlice slice(i, iterations_);
        if (i > 0) {
            std::swap(work, result);
            if (result == nullptr) {
                result = FloatImage::uninitialised(plane.width(), plane.height());
            }
        }
        susanPlanePass(mask(), inverse, i > 0 ? *work : plane, *result);
    }
    return result;
}

std::unique_ptr<FloatImage3> SusanRestorationOperator::runPlanes(
    const FloatImage3& planes, std::unique_ptr<FloatImage3> target) const {
    if (target == nullptr || target->width() != planes.width() ||
        target->height() != planes.height()) {
        target = FloatImage3::withoutPlanes(planes.width(), planes.height());
    }
    for (int c = 0; c < 3; ++c) {
        const WorkSlice slice(c, 3);
        target->setPlane(c, runPlane(planes.plane(c)));
        reportWork(1, 1);
    }
    return target;
}

}  // namespace orv
