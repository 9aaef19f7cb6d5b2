#include "solvers/gmres/growing_matrix.h"

#include <algorithm>
#include <climits>
#include <utility>

namespace orv {

namespace {

/// The order below which growing isn't worth a copy.
constexpr long long kLeastOrder = 8;

}  // namespace

GrowingMatrix::GrowingMatrix(int m) : m_(m), block_(std::make_unique<FullMatrix>(0)) {}

void GrowingMatrix::reach(int index) {
    const int present = order();
    if (index < present) {
        return;
    }
    // m + 1 may not fit an int; nothing gets there before the memory ends.
    const long long most = std::min(m_ + 1LL, static_cast<long long>(INT_MAX));
    const long long wanted = std::max({2LL * present, index + 1LL, kLeastOrder});
    auto grown = std::make_unique<FullMatrix>(static_cast<int>(std::min(wanted, most)));
    for (int i = 0; i < present; ++i) {
        std::copy_n(block_->column(i), present, grown->column(i));
    }
    block_ = std::move(grown);
}

void lengthen(std::unique_ptr<RealVector>& v, int size) {
    if (v->size() >= size) {
        return;
    }
    auto longer = std::make_unique<RealVector>(size);
    std::copy_n(v->data(), v->size(), longer->data());
    v = std::move(longer);
}

}  // namespace orv
