#pragma once

#include <algorithm>
#include <cmath>
#include <initializer_list>

#include "algebra/real_vector.h"

namespace orv {

/// sqrt(sumOfSquares / m - (sum / m)^2): the deviation of m elements.
inline double standardDeviation(double sum, double sumOfSquares, int m) {
    const double mean = sum / m;
    return std::sqrt(sumOfSquares / m - mean * mean);
}

/// Largest element of the vectors that aren't empty, searched from `start` on.
inline double largestOf(double start, std::initializer_list<const RealVector*> vectors) {
    for (const RealVector* v : vectors) {
        start = v->size() > 0 ? std::max(start, v->Max()) : start;
    }
    return start;
}

/// Smallest element of the vectors that aren't empty, searched from `start` on.
inline double smallestOf(double start, std::initializer_list<const RealVector*> vectors) {
    for (const RealVector* v : vectors) {
        start = v->size() > 0 ? std::min(start, v->Min()) : start;
    }
    return start;
}

}  // namespace orv
