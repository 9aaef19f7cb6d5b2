#pragma once

#include <array>
#include <vector>

namespace orv::cli {

/// The mean structural similarity of two planes that come row by row.
///
///     s = (2 ma mb + C1)(2 cab + C2) / ((ma^2 + mb^2 + C1)(va + vb + C2))
///
/// with means m, variances v and covariance c under a Gaussian window of 11 x 11 samples with
/// standard deviation 1.5, C1 = (0.01 L)^2 and C2 = (0.03 L)^2 for L = 255. The mean is taken
/// over the windows that lie wholly inside the planes: no border is made up, and a plane of
/// less than 11 samples a side has none.
///
/// Units:   grey levels from 0 to 255; the result is 1 for equal planes.
/// Cost:    four moments filtered along x and y, 44 multiplications each way; 44 rows are kept.
/// Source:  [WangBovikSheikhSimoncelli2004], with the constants of its section III.
class StructuralSimilarity {
  public:
    /// Samples of the window along x and y.
    static constexpr int kWindow = 11;

    /// Room for rows of `width` samples.
    explicit StructuralSimilarity(int width);

    /// Takes the next row of both planes.
    void addRow(const std::vector<double>& a, const std::vector<double>& b);

    /// The mean over all windows so far; NaN when there was none.
    double mean() const;

  private:
    static constexpr std::size_t kTaps = static_cast<std::size_t>(kWindow);
    /// The mean of a, of b, of a^2 + b^2 and of a b.
    using Moments = std::array<std::vector<double>, 4>;

    double rowOfWindows();

    std::array<double, kTaps> taps_;
    Moments products_;
    std::array<Moments, kTaps> rows_;  ///< filtered along x; row y is at y modulo 11
    Moments window_;                   ///< filtered along y as well
    long rowsTaken_ = 0;
    double sum_ = 0.0;
    double count_ = 0.0;
};

}  // namespace orv::cli
