#include "filters/kernels/recursive_blur_passes.h"

#include <algorithm>
#include <utility>

#include "base/aligned_block.h"
#include "exports/work_window.h"
#include "filters/kernels/column_strip.h"

namespace orv {

namespace {

/// Copies of three columns, a second set for those that replace them.
template <class Sample>
class SavedColumns {
  public:
    explicit SavedColumns(int length)
        : length_(length),
          stride_((static_cast<std::size_t>(length) + 15) / 16 * 16),
          block_(6 * stride_ * sizeof(Sample), /*alignment=*/64) {}

    RecursionHistory<Sample> save(const Sample* near, const Sample* middle, const Sample* far) {
        const Sample* const columns[] = {near, middle, far};
        Sample* const copies =
            static_cast<Sample*>(block_.data()) + (second_ ? 3 * stride_ : 0);
        for (std::size_t i = 0; i < 3; ++i) {
            std::copy_n(columns[i], length_, copies + i * stride_);
        }
        second_ = !second_;
        return {copies, copies + stride_, copies + 2 * stride_};
    }

  private:
    int length_;
    std::size_t stride_;
    AlignedBlock block_;
    bool second_ = false;
};

template <class Image, class Sample>
class Blur {
  public:
    Blur(const RecursionCoefficients<Sample>& coefficients, const Image& source, Image& target)
        : coefficients_(coefficients),
          source_(source),
          target_(target),
          width_(source.width()),
          height_(source.height()),
          rows_(static_cast<std::size_t>(height_)),
          saved_(height_),
          strip_(width_, height_, /*extra=*/3, sizeof(Sample)) {}

    void run() {
        if (forwardAlongX()) {
            backwardBlocks();
        }
    }

  private:
    // The recursion over a run of columns, to the right with `direction` 1, to the left with -1;
    // the history becomes that of the column behind it.
    void runAlongX(const Image& in, int first, int columns, int direction,
                   RecursionHistory<Sample>& history) {
        const ColumnRun<Sample> run = {in.row(first), target_.row(first),
                                       direction * static_cast<std::ptrdiff_t>(rows_), columns,
                                       height_};
        kernels_.runAlongX(coefficients_, run, history);
        for (int i = std::max(0, columns - 3); i < columns; ++i) {
            history = {target_.row(first + direction * i), history.near, history.middle};
        }
    }

    bool forwardAlongX() {
        // The target may be the source: its first columns are kept.
        // quirk: blur-line-start
        RecursionHistory<Sample> history =
            saved_.save(source_.row(0), source_.row(1), source_.row(2));
        for (int first = 0; first < width_; first += strip_.lanes()) {
            if (!reportWork(first, 3 * width_)) {
                return false;
            }
            runAlongX(source_, first, std::min(strip_.lanes(), width_ - first), 1, history);
        }
        return true;
    }

    void backwardBlocks() {
        RecursionHistory<Sample> history = saved_.save(
            target_.row(width_ - 1), target_.row(width_ - 2), target_.row(width_ - 3));
        for (int end = width_; end > 0;) {
            if (!reportWork(3 * width_ - 2 * end, 3 * width_)) {
                return;
            }
            const int columns = std::min(strip_.lanes(), end);
            runAlongX(target_, end - 1, columns, -1, history);
            history = saved_.save(history.near, history.middle, history.far);
            end -= columns;
            kernels_.blurColumns(coefficients_, {target_.row(end), rows_, columns, height_},
                                 static_cast<Sample*>(strip_.data()), strip_.lanes());
        }
    }

    static const RecursionKernels<float>& kernelsOf(float) {
        return recursiveBlurKernels().floats;
    }
    static const RecursionKernels<double>& kernelsOf(double) {
        return recursiveBlurKernels().doubles;
    }

    const RecursionKernels<Sample>& kernels_ = kernelsOf(Sample());
    RecursionCoefficients<Sample> coefficients_;
    const Image& source_;
    Image& target_;
    int width_;
    int height_;
    std::size_t rows_;
    SavedColumns<Sample> saved_;
    ColumnStrip strip_;
};

}  // namespace

void blurPlane(const RecursionCoefficients<float>& coefficients, const FloatImage& source,
               FloatImage& target) {
    Blur<FloatImage, float>(coefficients, source, target).run();
}

void blurPlane(const RecursionCoefficients<double>& coefficients, const RealImage& source,
               RealImage& target) {
    Blur<RealImage, double>(coefficients, source, target).run();
}

}  // namespace orv
