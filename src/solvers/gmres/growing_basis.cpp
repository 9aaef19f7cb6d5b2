#include "solvers/gmres/growing_basis.h"

#include <cstddef>

namespace orv {

void GrowingBasis::prepare(int n) {
    if (n != n_) {
        vectors_.clear();
        n_ = n;
    }
}

void GrowingBasis::reach(int i) {
    while (made() <= i) {
        vectors_.push_back(std::make_unique<RealVector>(n_));
    }
}

RealVector& GrowingBasis::operator[](int i) {
    return *owner(i);
}

std::unique_ptr<RealVector>& GrowingBasis::owner(int i) {
    return vectors_[static_cast<std::size_t>(i)];
}

}  // namespace orv
