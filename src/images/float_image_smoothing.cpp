#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

#include "images/float_image.h"
#include "images/kernels/smoothing_kernels.h"

namespace orv {

namespace {

/// Smooths planes by N weights.
template <std::size_t N>
class Smoothing {
  public:
    Smoothing(const std::array<int, N>& weights, int height)
        : height_(static_cast<std::size_t>(height)), kept_((kReach + 2) * height_) {
        int sum = 0;
        for (std::size_t k = 0; k < N; ++k) {
            weights_[k] = static_cast<float>(weights[k]);
            sum += weights[k] < 0 ? -weights[k] : weights[k];
        }
        divisor_ = static_cast<float>(sum);
        const SmoothingKernels& kernels = smoothingKernels();
        sum_ = N == 3 ? kernels.three : N == 5 ? kernels.five : kernels.seven;
    }

    /// Smooths along x and, as soon as a column has its new samples, along y. The last columns
    /// stand aside as they were, so that every sum along x reads unsmoothed samples.
    void apply(FloatImage& plane) {
        const int reach = static_cast<int>(kReach);
        const int width = plane.width();
        for (int x = 0; x < width; ++x) {
            std::copy_n(plane.row(x), height_, keptColumn(x));
            if (x >= reach && x < width - reach) {
                std::array<const float*, N> taps;
                for (int k = 0; k < static_cast<int>(N); ++k) {
                    const int at = x - reach + k;
                    taps[static_cast<std::size_t>(k)] =
                        at <= x ? keptColumn(at) : plane.row(at);
                }
                sum_(taps.data(), weights_.data(), divisor_, height_, plane.row(x));
            }
            smoothColumn(plane.row(x));
        }
    }

  private:
    static constexpr std::size_t kReach = N / 2;

    float* keptColumn(int x) {
        return kept_.data() + static_cast<std::size_t>(x) % (kReach + 1) * height_;
    }

    void smoothColumn(float* column) {
        if (height_ < N) {
            return;
        }
        float* const line = kept_.data() + (kReach + 1) * height_;
        std::copy_n(column, height_, line);
        std::array<const float*, N> taps;
        for (std::size_t k = 0; k < N; ++k) {
            taps[k] = line + k;
        }
        sum_(taps.data(), weights_.data(), divisor_, height_ - 2 * kReach, column + kReach);
    }

    std::size_t height_;
    std::vector<float> kept_;
    std::array<float, N> weights_;
    float divisor_;
    SmoothingKernels::Sum sum_;
};

template <std::size_t N>
void smooth(FloatImage& plane, const std::array<int, N>& weights) {
    Smoothing<N>(weights, plane.height()).apply(plane);
}

}  // namespace

void FloatImage::smooth3(int a, int b, int c) {
    smooth(*this, std::array<int, 3>{a, b, c});
}

void FloatImage::smooth5(int a, int b, int c, int d, int e) {
    smooth(*this, std::array<int, 5>{a, b, c, d, e});
}

void FloatImage::smooth7(int a, int b, int c, int d, int e, int f, int g) {
    smooth(*this, std::array<int, 7>{a, b, c, d, e, f, g});
}

}  // namespace orv
