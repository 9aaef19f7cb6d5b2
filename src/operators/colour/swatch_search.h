#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <vector>

#include "operators/colour/color_swatch.h"

namespace orv {

/// Finds the swatch whose score comes nearest to that of a pixel.
///
///     index = argmin over k of (score - score k)^2, the earliest of equals
///
/// The search of a plain scan: it starts with swatch 0 and no best value, and a difference that
/// is NaN never wins. Scores are kept in order, and a grid over their range tells where among
/// them a score falls; rounding makes the squared difference grow on both sides of that place,
/// never fall, so that all swatches that tie for the least stand in one run around it.
///
/// Cost:    one look into a table for most pixels and a few comparisons for the others, whatever
///          the number of swatches; a run of swatches that tie by rounding is walked.
class SwatchSearch {
  public:
    explicit SwatchSearch(std::span<const std::unique_ptr<ColorSwatch>> swatches);
    /// The same from the scores alone.
    explicit SwatchSearch(std::span<const double> scores);

    /// The index of the nearest swatch; 0 for a NaN and when there is no swatch.
    int nearest(double score) const;
    /// indices[i] = nearest(scores[i]).
    void nearest(const double* scores, int* indices, std::size_t n) const;

  private:
    void build();
    void settleCells();
    int settledFor(double lowest, double highest) const;
    int search(double score) const;
    std::size_t cellOf(double score) const;
    std::size_t firstNotBelow(double score) const;
    int scan(double score) const;

    std::vector<double> scores_;  ///< as the swatches stand
    std::vector<double> order_;   ///< without NaN, rising, each value once
    std::vector<int> earliest_;   ///< the first swatch of each value
    std::vector<int> cells_;    ///< first place in order_ of each cell of the grid, and the end
    std::vector<int> settled_;  ///< the answer of a cell that has one alone, else -1
    double low_ = 0.0;
    double cellsPerUnit_ = 0.0;
};

}  // namespace orv
