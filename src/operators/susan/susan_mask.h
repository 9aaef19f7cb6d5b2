#pragma once

#include "base/elementary.h"

namespace orv {

/// The neighbours that weigh in, and how much by their distance alone.
///
/// Shapes:  three lists of `size` entries, not owned. An entry whose y lies outside every
///          picture is never met.
struct SusanMask {
    int size;
    const int* xs;
    const int* ys;
    const double* weights;
};

/// The weighted mean around a centre.
///
///     value = c + sum of w (n - c) / sum of w
///
/// The sums run over differences from the centre, so that a constant picture gives exactly its
/// own grey level, whatever the weights. Where they sum up to 0 the value is 0.
class SusanSums {
  public:
    /// Adds a neighbour that differs from the centre by `difference`.
    void take(double difference, double weight) {
        weights_ += weight;
        differences_ += weight * difference;
    }
    /// The mean of the neighbours.
    double around(double centre) const {
        // quirk: susan-black
        return weights_ == 0.0 ? 0.0 : centre + differences_ / weights_;
    }

  private:
    double weights_ = 0.0;
    double differences_ = 0.0;
};

/// exp(-(difference inverse)^2), inverse being 1 / threshold.
inline double susanSimilarity(double difference, double inverse) {
    const double d = difference * inverse;
    return elementaryExp(-(d * d));
}

/// The new value at (x, y) of a picture of width x height samples.
///
/// `sampleAt(x, y)` gives a sample as a double and `similarity(difference)` its weight; the
/// neighbours outside the picture don't count.
template <class Sample, class Similarity>
double susanValue(const SusanMask& mask, int x, int y, int width, int height, Sample sampleAt,
                  Similarity similarity) {
    const double centre = sampleAt(x, y);
    SusanSums sums;
    for (int k = 0; k < mask.size; ++k) {
        const int nx = x + mask.xs[k];
        const int ny = y + mask.ys[k];
        if (0 <= nx && nx < width && 0 <= ny && ny < height) {
            const double difference = sampleAt(nx, ny) - centre;
            sums.take(difference, similarity(difference) * mask.weights[k]);
        }
    }
    return sums.around(centre);
}

}  // namespace orv
