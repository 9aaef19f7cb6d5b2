#include "algebra/preconditioners/explicit_preconditioned_product.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "algebra/result_arguments.h"

namespace orv {

ExplicitPreconditionedProduct::ExplicitPreconditionedProduct(int n, int factorCount)
    : PreconditionerMatrix(n, factorCount),
      factors_(static_cast<std::size_t>(std::max(factorCount, 0))) {}

ExplicitPreconditionedProduct::ExplicitPreconditionedProduct(
    const ExplicitPreconditionedProduct& other)
    : PreconditionerMatrix(other) {
    factors_.reserve(other.factors_.size());
    for (const std::unique_ptr<Matrix>& factor : other.factors_) {
        factors_.push_back(cloneOf(factor.get()));
    }
}

std::unique_ptr<Matrix> ExplicitPreconditionedProduct::Clone() const {
    return std::make_unique<ExplicitPreconditionedProduct>(*this);
}

void ExplicitPreconditionedProduct::PrintTo(std::FILE* file) const {
    put(file, "Explicit Preconditioned product of %d matrix\n", FactorCount());
    for (const std::unique_ptr<Matrix>& factor : factors_) {
        if (factor != nullptr) {
            factor->PrintTo(file);
        }
    }
}

const Matrix* ExplicitPreconditionedProduct::GetFactor(int k) const {
    return k >= 0 && k < factorCount_ ? factors_[static_cast<std::size_t>(k)].get() : nullptr;
}

void ExplicitPreconditionedProduct::SetFactor(int k, std::unique_ptr<Matrix> factor) {
    if (k >= 0 && k < factorCount_) {
        factors_[static_cast<std::size_t>(k)] = std::move(factor);
    }
}

std::unique_ptr<Matrix> ExplicitPreconditionedProduct::SourceClone() const {
    return nullptr;
}

}  // namespace orv
