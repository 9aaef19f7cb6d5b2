#include "wavelets/shrinkage/brownian_threshold.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <span>
#include <vector>

#include "images/real_image.h"
#include "wavelets/kernels/shrink_kernels.h"
#include "wavelets/shrinkage/removal_order.h"

namespace orv {

namespace {

// Columns that are summed side by side.
constexpr int kGroup = 4;

void cumulateFirstColumn(double* column, std::size_t height) {
    for (std::size_t y = 1; y < height; ++y) {
        column[y] += column[y - 1];
    }
}

/// The position of the sheet's largest magnitude, where it was built, and its value since.
struct Witness {
    int x = 0;
    int y = 0;
    double value = 0.0;
};

/// What is known of the sheet of a band.
struct Sheet {
    double largest = 0.0;  ///< magnitude
    double sum = 0.0;      ///< of the band's squares
    Witness witness;
};

/// Builds the sheet column by column, without a plane for it.
class SheetBuilder {
  public:
    explicit SheetBuilder(const RealImage& band)
        : band_(band), height_(static_cast<std::size_t>(band.height())) {
        for (std::vector<double>& group : groups_) {
            group.resize(height_ * kGroup);
        }
    }

    Sheet build() {
        const ShrinkKernels& kernels = shrinkKernels();
        Sheet sheet;
        sheet.sum = kernels.sumOfSquares(band_.data(), band_.sampleCount());
        const double mean = sheet.sum / static_cast<double>(band_.sampleCount());
        const double* previous = nullptr;
        for (int x = 0; x < band_.width(); x += kGroup) {
            const int columns = std::min(kGroup, band_.width() - x);
            const std::size_t count = height_ * static_cast<std::size_t>(columns);
            double* const sums = groups_[static_cast<std::size_t>(x / kGroup % 2)].data();
            kernels.centredSquares(band_.row(x), mean, static_cast<double>(band_.height()),
                                   sums, count);
            if (previous == nullptr) {
                cumulateFirstColumn(sums, height_);
                kernels.cumulateColumns(sums, sums + height_, height_, columns - 1);
            } else {
                kernels.cumulateColumns(previous, sums, height_, columns);
            }
            const double largest = kernels.largestMagnitude(sums, count);
            if (largest > sheet.largest) {
                sheet.largest = largest;
                sheet.witness = find(sums, count, largest, x);
            }
            previous = sums + count - height_;
        }
        return sheet;
    }

  private:
    Witness find(const double* sums, std::size_t count, double largest, int x) const {
        std::size_t i = 0;
        while (i + 1 < count && std::fabs(sums[i]) != largest) {
            ++i;
        }
        return {x + static_cast<int>(i / height_), static_cast<int>(i % height_), sums[i]};
    }

    const RealImage& band_;
    std::size_t height_;
    std::array<std::vector<double>, 2> groups_;
};

/// Follows the witness while squares leave the band.
class WitnessAccount {
  public:
    WitnessAccount(const RealImage& band, double critical)
        : height_(static_cast<double>(band.height())),
          count_(static_cast<double>(band.sampleCount())),
          critical_(critical) {}

    /// Starts from a sheet as it was built.
    void restart(const Sheet& sheet) {
        witness_ = sheet.witness;
        share_ = (static_cast<double>(witness_.x) + 1.0) *
                 (static_cast<double>(witness_.y) + 1.0) / count_;
        // With T = sum / height no entry of a sheet, exact or rounded, exceeds T by more than
        // its rounding. An entry sums up three roundings of at most 2T each for every position,
        // and those of the mean: (6 + 1/8) n of them. That holds for the sheet as built and for
        // the one that is not; following it costs another rounding a removal. 32 n covers all,
        // and the smallest normal number what quotients lose that are no normal numbers.
        bound_ = 32.0 * (count_ + 64.0) *
                 (std::numeric_limits<double>::epsilon() * (sheet.sum / height_) +
                  std::numeric_limits<double>::min());
    }

    /// Whether the largest magnitude of the sheet, were it built, would exceed the critical
    /// value.
    bool exceeds() const { return std::fabs(witness_.value) - bound_ > critical_; }

    /// Removes one square.
    void remove(const PlacedMagnitude& removed) {
        const double square = removed.magnitude * removed.magnitude;
        move(holds(removed) ? square : 0.0, square);
    }

    /// Removes a whole bucket if exceeds() holds before each of the removals, in any order, and
    /// after the last.
    bool removeAll(std::span<const PlacedMagnitude> bucket) {
        double inside = 0.0;
        double all = 0.0;
        for (const PlacedMagnitude& removed : bucket) {
            const double square = removed.magnitude * removed.magnitude;
            all += square;
            inside += holds(removed) ? square : 0.0;
        }
        // A square inside the witness's rectangle lowers the value, one outside raises it.
        const double worst = witness_.value > 0.0
                                 ? witness_.value - inside * (1.0 - share_) / height_
                                 : -(witness_.value + (all - inside) * share_ / height_);
        if (!(worst - bound_ > critical_)) {
            return false;
        }
        move(inside, all);
        return true;
    }

  private:
    bool holds(const PlacedMagnitude& removed) const {
        return removed.x <= witness_.x && removed.y <= witness_.y;
    }
    void move(double inside, double all) {
        witness_.value += (all * share_ - inside) / height_;
    }

    double height_;
    double count_;
    double critical_;
    Witness witness_;
    double share_ = 0.0;  ///< of the band's positions, inside the witness's rectangle
    double bound_ = 0.0;
};

/// Removes coefficients for as long as the sheet surely exceeds the critical value.
///
/// Gives how many were removed, at least one and at most `most`; 0 when only zeros are left.
long long removeWhileExceeding(RealImage& band, RemovalOrder& order, WitnessAccount& account,
                               long long most) {
    long long removed = 0;
    // The sheet as built exceeds the critical value, so that one removal needs no witness.
    while (removed < most && (removed == 0 || account.exceeds()) && order.hasNext()) {
        const std::span<const PlacedMagnitude> bucket = order.bucket();
        const long long count = static_cast<long long>(bucket.size());
        if (count <= most - removed && account.removeAll(bucket)) {
            for (const PlacedMagnitude& gone : bucket) {
                band.row(gone.x)[gone.y] = 0.0;
            }
            order.takeBucket();
            removed += count;
            continue;
        }
        const PlacedMagnitude next = order.takeNext();
        account.remove(next);
        band.row(next.x)[next.y] = 0.0;
        ++removed;
    }
    return removed;
}

}  // namespace

void brownianSheet(RealImage& plane, int bandHeight, int bandWidth) {
    const ShrinkKernels& kernels = shrinkKernels();
    const std::size_t height = static_cast<std::size_t>(bandHeight);
    const std::size_t count = height * static_cast<std::size_t>(bandWidth);
    if (count == 0) {
        return;
    }
    double* const values = plane.data();
    const double mean = kernels.sumOfSquares(values, count) / static_cast<double>(count);
    kernels.centredSquares(values, mean, static_cast<double>(bandHeight), values, count);
    cumulateFirstColumn(values, height);
    for (int x = 1; x < bandWidth; x += kGroup) {
        double* const column = values + static_cast<std::size_t>(x) * height;
        kernels.cumulateColumns(column - height, column, height,
                                std::min(kGroup, bandWidth - x));
    }
}

double brownianThreshold(RealImage& band, int bandHeight, int bandWidth, double critical) {
    const ShrinkKernels& kernels = shrinkKernels();
    long long remaining = static_cast<long long>(bandHeight) * bandWidth;
    if (remaining <= 1) {
        return 0.0;
    }
    SheetBuilder builder(band);
    Sheet sheet = builder.build();
    const double largest = kernels.largestMagnitude(band.data(), band.sampleCount());
    if (!(sheet.largest > critical)) {
        return largest;
    }
    if (std::isnan(sheet.sum)) {
        // No sheet of this band has an entry that is a number, whatever is removed.
        return 0.0;
    }
    RemovalOrder order(band, largest);
    WitnessAccount account(band, critical);
    while (remaining > 1) {
        if (!(sheet.largest > critical)) {
            return kernels.largestMagnitude(band.data(), band.sampleCount());
        }
        account.restart(sheet);
        const long long removed = removeWhileExceeding(band, order, account, remaining - 1);
        if (removed == 0) {
            return 0.0;
        }
        remaining -= removed;
        sheet = builder.build();
    }
    return 0.0;
}

}  // namespace orv
