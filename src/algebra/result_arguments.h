#pragma once

#include <cstdio>
#include <memory>
#include <utility>

#include "algebra/matrix.h"
#include "base/text_output.h"

namespace orv {

/// The vector that an operation writes its n results to: y, or a new one of zeros.
/// Fails:   null if y is given and holds fewer than n elements.
inline std::unique_ptr<RealVector> resultVector(std::unique_ptr<RealVector> y, int n) {
    if (y == nullptr) {
        return std::make_unique<RealVector>(n);
    }
    return y->size() < n ? nullptr : std::move(y);
}

/// The vector that a solve or a sweep of order n writes to, for the right side b.
/// Fails:   null if b has another size or x holds fewer than n elements.
inline std::unique_ptr<RealVector> solutionVector(const RealVector& b, int n,
                                                  std::unique_ptr<RealVector> x) {
    return b.size() != n ? nullptr : resultVector(std::move(x), n);
}

/// The vector that a range product of order n adds to: a new one of the size of x, or y, whose
/// target range is zeroed unless `accumulate` is set.
/// Fails:   null if n exceeds the size of x.
inline std::unique_ptr<RealVector> rangeTarget(const RealVector& x, int n, int yFrom,
                                               unsigned char accumulate,
                                               std::unique_ptr<RealVector> y) {
    if (n > x.size()) {
        return nullptr;
    }
    if (y == nullptr) {
        return std::make_unique<RealVector>(x.size());
    }
    if (accumulate == 0) {
        y->FillRange(yFrom, n, 0.0f);
    }
    return y;
}

/// printf-style text with values, to the file, or to the standard output if `file` is null.
template <class First, class... Rest>
void put(std::FILE* file, const char* format, First first, Rest... rest) {
    if (file != nullptr) {
        printTextTo(file, format, first, rest...);
    } else {
        printText(format, first, rest...);
    }
}

/// A label and the vector's own print form, to the file, or to the standard output if `file`
/// is null.
inline void putVector(std::FILE* file, const char* label, const RealVector& v) {
    put(file, "%s", label);
    if (file != nullptr) {
        v.PrintTo(file);
    } else {
        v.Print();
    }
}

}  // namespace orv
