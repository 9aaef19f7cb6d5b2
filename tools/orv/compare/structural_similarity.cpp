#include "compare/structural_similarity.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

namespace orv::cli {

namespace {

constexpr double kSigma = 1.5;
constexpr double kC1 = (0.01 * 255.0) * (0.01 * 255.0);
constexpr double kC2 = (0.03 * 255.0) * (0.03 * 255.0);
constexpr int kRadius = StructuralSimilarity::kWindow / 2;

}  // namespace

StructuralSimilarity::StructuralSimilarity(int width) : taps_{} {
    double sum = 0.0;
    for (int i = -kRadius; i <= kRadius; ++i) {
        const double tap = std::exp(-0.5 * i * i / (kSigma * kSigma));
        taps_[static_cast<std::size_t>(i + kRadius)] = tap;
        sum += tap;
    }
    for (double& tap : taps_) {
        tap /= sum;
    }
    const auto samples = static_cast<std::size_t>(width);
    const auto windows = static_cast<std::size_t>(std::max(0, width - 2 * kRadius));
    for (std::size_t m = 0; m < products_.size(); ++m) {
        products_[m].resize(samples);
        window_[m].resize(windows);
        for (Moments& row : rows_) {
            row[m].resize(windows);
        }
    }
}

void StructuralSimilarity::addRow(const std::vector<double>& a, const std::vector<double>& b) {
    for (std::size_t x = 0; x < a.size(); ++x) {
        products_[0][x] = a[x];
        products_[1][x] = b[x];
        products_[2][x] = a[x] * a[x] + b[x] * b[x];
        products_[3][x] = a[x] * b[x];
    }
    Moments& row = rows_[static_cast<std::size_t>(rowsTaken_ % kWindow)];
    for (std::size_t m = 0; m < products_.size(); ++m) {
        const double* const in = products_[m].data();
        double* const out = row[m].data();
        for (std::size_t x = 0; x < row[m].size(); ++x) {
            // The taps are symmetric: the outermost pair first.
            double sum = taps_[kRadius] * in[x + kRadius];
            for (std::size_t k = 0; k < kRadius; ++k) {
                sum += taps_[k] * (in[x + k] + in[x + kTaps - 1 - k]);
            }
            out[x] = sum;
        }
    }
    ++rowsTaken_;
    if (rowsTaken_ >= kWindow) {
        sum_ += rowOfWindows();
        count_ += static_cast<double>(row[0].size());
    }
}

double StructuralSimilarity::rowOfWindows() {
    const std::size_t windows = window_[0].size();
    const auto oldest = static_cast<std::size_t>(rowsTaken_ % kWindow);
    for (std::size_t m = 0; m < window_.size(); ++m) {
        std::array<const double*, kTaps> in{};
        for (std::size_t k = 0; k < kTaps; ++k) {
            in[k] = rows_[(oldest + k) % kTaps][m].data();
        }
        double* const out = window_[m].data();
        for (std::size_t x = 0; x < windows; ++x) {
            double sum = taps_[kRadius] * in[kRadius][x];
            for (std::size_t k = 0; k < kRadius; ++k) {
                sum += taps_[k] * (in[k][x] + in[kTaps - 1 - k][x]);
            }
            out[x] = sum;
        }
    }
    double sum = 0.0;
    for (std::size_t x = 0; x < windows; ++x) {
        const double product = window_[0][x] * window_[1][x];
        const double squares = window_[0][x] * window_[0][x] + window_[1][x] * window_[1][x];
        const double covariance = window_[3][x] - product;
        const double variances = window_[2][x] - squares;
        sum += (2.0 * product + kC1) * (2.0 * covariance + kC2) /
               ((squares + kC1) * (variances + kC2));
    }
    return sum;
}

double StructuralSimilarity::mean() const {
    return count_ > 0.0 ? sum_ / count_ : std::numeric_limits<double>::quiet_NaN();
}

}  // namespace orv::cli
