#include "operators/susan/susan_byte_pass.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "base/elementary.h"
#include "base/rounding.h"
#include "exports/work_window.h"
#include "operators/susan/susan_strips.h"

namespace orv {

namespace {

constexpr int kLines = 2 * kSusanReach + 1;
constexpr double kLog2E = 1.4426950408889634;

std::size_t sizeOf(int n) {
    return static_cast<std::size_t>(n);
}

/// The weights as powers of two; false where single precision can't hold them.
bool exponentsOf(const SusanMask& mask, double inverse, SusanExponents& exponents) {
    exponents = SusanExponents{};
    exponents.quadratic = toFloat(-(inverse * inverse) * kLog2E);
    bool fit = exponents.quadratic >= -1.0e30f;  // not so for NaN
    for (int k = 0; k < mask.size; ++k) {
        const int squared = mask.xs[k] * mask.xs[k] + mask.ys[k] * mask.ys[k];
        const float exponent = toFloat(elementaryLog(mask.weights[k]) * kLog2E);
        exponents.spatial[squared] = exponent;
        fit = fit && exponent >= -100.0f;
    }
    return fit;
}

/// The picture of one pass, sample by sample.
class ExactBytes {
  public:
    ExactBytes(const SusanMask& mask, double inverse, const SusanBytes& picture)
        : mask_(mask), picture_(picture), offsets_(sizeOf(mask.size)) {
        for (int d = 0; d < 256; ++d) {
            similarities_[sizeOf(d)] = susanSimilarity(d, inverse);
        }
        for (int k = 0; k < mask.size; ++k) {
            offsets_[sizeOf(k)] =
                (static_cast<std::ptrdiff_t>(mask.ys[k]) * picture.width + mask.xs[k]) *
                picture.channels;
        }
    }

    /// Writes byte `i` of the picture, whose whole mask lies inside.
    void writeInside(std::size_t i) const {
        const unsigned char* const centre = picture_.from + i;
        const int c = *centre;
        SusanSums sums;
        for (std::size_t k = 0; k < offsets_.size(); ++k) {
            take(sums, centre[offsets_[k]] - c, k);
        }
        picture_.to[i] = toLowByte(toInt(sums.around(c)));
    }

    /// Writes the samples of the pixels (x, y) of one row, x from `begin` to `end` - 1.
    void writeNearBorder(int y, int begin, int end) const {
        for (int x = begin; x < end; ++x) {
            for (int c = 0; c < picture_.channels; ++c) {
                writeWithin(x, y, indexOf(x, y, c));
            }
        }
    }

    std::size_t indexOf(int x, int y, int c) const {
        return (sizeOf(y) * sizeOf(picture_.width) + sizeOf(x)) * sizeOf(picture_.channels) +
               sizeOf(c);
    }

  private:
    /// Writes byte `i`, which is at (x, y), by the neighbours inside the picture.
    void writeWithin(int x, int y, std::size_t i) const {
        const unsigned char* const centre = picture_.from + i;
        const int c = *centre;
        SusanSums sums;
        for (std::size_t k = 0; k < offsets_.size(); ++k) {
            const int nx = x + mask_.xs[k];
            const int ny = y + mask_.ys[k];
            if (0 <= nx && nx < picture_.width && 0 <= ny && ny < picture_.height) {
                take(sums, centre[offsets_[k]] - c, k);
            }
        }
        picture_.to[i] = toLowByte(toInt(sums.around(c)));
    }

    void take(SusanSums& sums, int difference, std::size_t k) const {
        sums.take(difference, similarities_[sizeOf(std::abs(difference))] * mask_.weights[k]);
    }

    const SusanMask& mask_;
    const SusanBytes& picture_;
    std::array<double, 256> similarities_;
    std::vector<std::ptrdiff_t> offsets_;
};

/// Does the marked ones of `count` samples again.
void redo(const ExactBytes& exact, const unsigned char* unsure, std::size_t first,
          std::size_t count) {
    const unsigned char* const end = unsure + count;
    const unsigned char* mark = unsure;
    while (mark < end) {
        mark = static_cast<const unsigned char*>(
            std::memchr(mark, 1, static_cast<std::size_t>(end - mark)));
        if (mark == nullptr) {
            return;
        }
        exact.writeInside(first + static_cast<std::size_t>(mark - unsure));
        ++mark;
    }
}

/// Counts lines done as columns of the picture, for the host, and as work.
class LineCount {
  public:
    LineCount(int lines, int width, SusanProgress& progress)
        : lines_(lines), width_(width), progress_(progress) {}

    /// Call at the head of each line; false once the run shall stop.
    bool next() {
        const long long columns = static_cast<long long>(done_) * width_ / lines_;
        progress_.columnsBelow(static_cast<int>(columns) + 1);
        const bool goOn = reportLine(done_, lines_);
        ++done_;
        return goOn;
    }

  private:
    int done_ = 0;
    int lines_;
    int width_;
    SusanProgress& progress_;
};

/// The samples whose whole mask lies inside, lanes side by side.
void writeInLanes(const SusanExponents& exponents, const SusanBytes& picture,
                  const ExactBytes& exact, SusanProgress& progress) {
    const SusanKernels& kernels = susanKernels();
    const bool rgb = picture.channels == 3;
    const SusanKernels::ByteWeights weigh = rgb ? kernels.rgbWeights : kernels.greyWeights;
    const SusanKernels::ByteRow run = rgb ? kernels.rgbRow : kernels.greyRow;
    constexpr int kStrip = SusanStrip<float>::kStrip;
    std::array<unsigned char, kStrip> unsure;

    const SusanInside inside = {picture.height, picture.width * picture.channels,
                                picture.channels};
    const int rows = picture.height - 2 * kSusanReach;
    const int strips = (inside.along - 2 * inside.edge() + kStrip - 1) / kStrip;
    LineCount lineCount(rows * strips, picture.width, progress);
    runSusanStrips<float>(
        inside,
        [&](int y, int first, int count, float* to) {
            std::copy_n(picture.from + exact.indexOf(0, y, first), count, to);
        },
        [&](const float* const* lines, int count, float* slot) {
            weigh(lines, count, exponents, slot);
        },
        [&](int y, int first, int count, const float* const* lines, const float* const* slots) {
            if (!lineCount.next()) {
                return false;
            }
            const std::size_t at = exact.indexOf(0, y, first);
            run(lines, slots, count, picture.to + at, unsure.data());
            redo(exact, unsure.data(), at, sizeOf(count));
            return true;
        });
}

/// The mask without the entries that no picture meets.
struct InnerMask {
    explicit InnerMask(const SusanMask& mask) {
        for (int k = 0; k < mask.size; ++k) {
            if (std::abs(mask.xs[k]) <= kSusanReach && mask.ys[k] >= -kSusanReach &&
                mask.ys[k] <= kSusanReach) {
                xs.push_back(mask.xs[k]);
                ys.push_back(mask.ys[k]);
                weights.push_back(mask.weights[k]);
            }
        }
    }
    SusanMask view() const {
        return {static_cast<int>(xs.size()), xs.data(), ys.data(), weights.data()};
    }

    std::vector<int> xs;
    std::vector<int> ys;
    std::vector<double> weights;
};

}  // namespace

void susanBytePass(const SusanMask& mask, double inverse, const SusanBytes& picture,
                   SusanProgress& progress) {
    const InnerMask inner(mask);
    const SusanMask met = inner.view();
    const ExactBytes exact(met, inverse, picture);
    SusanExponents exponents;
    const bool inLanes = exponentsOf(met, inverse, exponents);
    const int width = picture.width;
    const int height = picture.height;
    const bool hasInside = width >= kLines && height >= kLines;

    if (hasInside && inLanes) {
        writeInLanes(exponents, picture, exact, progress);
    }
    LineCount rows(height, width, progress);
    for (int y = 0; y < height && !workCancelled(); ++y) {
        if (!hasInside || y < kSusanReach || y >= height - kSusanReach) {
            exact.writeNearBorder(y, 0, width);
            continue;
        }
        exact.writeNearBorder(y, 0, kSusanReach);
        exact.writeNearBorder(y, width - kSusanReach, width);
        if (!inLanes) {
            rows.next();
            const std::size_t end = exact.indexOf(width - kSusanReach, y, 0);
            for (std::size_t i = exact.indexOf(kSusanReach, y, 0); i < end; ++i) {
                exact.writeInside(i);
            }
        }
    }
    progress.columnsBelow(width);
}

}  // namespace orv
