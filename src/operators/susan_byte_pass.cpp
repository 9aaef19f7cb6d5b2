#include "operators/susan_byte_pass.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "base/rounding.h"
#include "exports/work_window.h"
#include "operators/kernels/susan_kernels.h"

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
        const float exponent = toFloat(std::log2(mask.weights[k]));
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
            const int difference = centre[offsets_[k]] - c;
            sums.take(difference,
                      similarities_[sizeOf(std::abs(difference))] * mask_.weights[k]);
        }
        picture_.to[i] = toLowByte(toInt(sums.around(c)));
    }

    /// Writes the samples of the pixels (x, y) of one row, x from `begin` to `end` - 1.
    void writeNearBorder(int y, int begin, int end) const {
        for (int x = begin; x < end; ++x) {
            for (int c = 0; c < picture_.channels; ++c) {
                const double value = susanValue(
                    mask_, x, y, picture_.width, picture_.height,
                    [&](int nx, int ny) {
                        return static_cast<double>(picture_.from[indexOf(nx, ny, c)]);
                    },
                    [&](double difference) {
                        return similarities_[sizeOf(std::abs(toInt(difference)))];
                    });
                picture_.to[indexOf(x, y, c)] = toLowByte(toInt(value));
            }
        }
    }

    std::size_t indexOf(int x, int y, int c) const {
        return (sizeOf(y) * sizeOf(picture_.width) + sizeOf(x)) * sizeOf(picture_.channels) +
               sizeOf(c);
    }

  private:
    const SusanMask& mask_;
    const SusanBytes& picture_;
    std::array<double, 256> similarities_;
    std::vector<std::ptrdiff_t> offsets_;
};

/// The part of the picture whose whole mask lies inside, lanes side by side.
class LaneRows {
  public:
    LaneRows(const SusanExponents& exponents, const SusanBytes& picture)
        : exponents_(exponents),
          picture_(picture),
          rowBytes_(sizeOf(picture.width) * sizeOf(picture.channels)),
          lines_(kLines * rowBytes_),
          unsure_(rowBytes_),
          run_(picture.channels == 3 ? susanKernels().rgbRow : susanKernels().greyRow) {}

    /// Writes row y but for three pixels at both ends; rows come in rising order.
    void write(int y, const ExactBytes& exact) {
        for (; widened_ <= y + kSusanReach; ++widened_) {
            const unsigned char* const row = picture_.from + sizeOf(widened_) * rowBytes_;
            float* const line = lineOf(widened_);
            for (std::size_t i = 0; i < rowBytes_; ++i) {
                line[i] = row[i];
            }
        }
        const std::size_t edge = sizeOf(kSusanReach * picture_.channels);
        const std::size_t count = rowBytes_ - 2 * edge;
        std::array<const float*, kLines> lines;
        for (int j = 0; j < kLines; ++j) {
            lines[sizeOf(j)] = lineOf(y - kSusanReach + j) + edge;
        }
        const std::size_t first = sizeOf(y) * rowBytes_ + edge;
        run_(lines.data(), static_cast<int>(count), exponents_, picture_.to + first,
             unsure_.data());
        redo(first, count, exact);
    }

  private:
    float* lineOf(int y) { return lines_.data() + sizeOf(y % kLines) * rowBytes_; }

    void redo(std::size_t first, std::size_t count, const ExactBytes& exact) const {
        const unsigned char* const begin = unsure_.data();
        const unsigned char* const end = begin + count;
        const unsigned char* mark = begin;
        while (mark < end) {
            mark = static_cast<const unsigned char*>(
                std::memchr(mark, 1, static_cast<std::size_t>(end - mark)));
            if (mark == nullptr) {
                return;
            }
            exact.writeInside(first + static_cast<std::size_t>(mark - begin));
            ++mark;
        }
    }

    const SusanExponents& exponents_;
    const SusanBytes& picture_;
    std::size_t rowBytes_;
    std::vector<float> lines_;
    std::vector<unsigned char> unsure_;
    SusanKernels::ByteRow run_;
    int widened_ = 0;
};

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
    LaneRows rows(exponents, picture);

    for (int y = 0; y < height; ++y) {
        progress.columnsBelow(static_cast<int>(static_cast<long long>(y) * width / height) + 1);
        if (!reportLine(y, height)) {
            return;
        }
        if (!hasInside || y < kSusanReach || y >= height - kSusanReach) {
            exact.writeNearBorder(y, 0, width);
            continue;
        }
        exact.writeNearBorder(y, 0, kSusanReach);
        exact.writeNearBorder(y, width - kSusanReach, width);
        if (inLanes) {
            rows.write(y, exact);
            continue;
        }
        const std::size_t end = exact.indexOf(width - kSusanReach, y, 0);
        for (std::size_t i = exact.indexOf(kSusanReach, y, 0); i < end; ++i) {
            exact.writeInside(i);
        }
    }
    progress.columnsBelow(width);
}

}  // namespace orv
