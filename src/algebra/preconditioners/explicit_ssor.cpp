#include "algebra/preconditioners/explicit_ssor.h"

#include <cmath>
#include <cstddef>
#include <limits>
#include <utility>

#include "algebra/preconditioners/explicit_preconditioned_product.h"
#include "algebra/result_arguments.h"
#include "base/rounding.h"
#include "base/text_output.h"

namespace orv {

namespace {

constexpr int kLower = 0;
constexpr int kDiagonal = 1;
constexpr int kUpper = 2;
constexpr int kTrials = 3;
constexpr float kSmallestTrial = 0.000001F;

// x.(A x), with a work vector for the product; NaN if there is no product.
double quadraticForm(const Matrix& A, const RealVector& x, std::unique_ptr<RealVector>& work) {
    work = A.Multiply(x, std::move(work));
    return work != nullptr ? x.Dot(*work) : std::numeric_limits<double>::quiet_NaN();
}

}  // namespace

ExplicitSsor::ExplicitSsor(const Matrix& A) : ExplicitSsor(&A, A, OptimiseOmega(A, kTrials)) {}

ExplicitSsor::ExplicitSsor(const Matrix& A, double omega) : ExplicitSsor(nullptr, A, omega) {}

ExplicitSsor::ExplicitSsor(const Matrix* source, const Matrix& A, double omega)
    : PreconditionerMatrix(A.Rows(), kFactors),
      source_(source),
      omega_(omega),
      factors_{A.ToLower(), A.ToDiagonal(), A.ToUpper()} {
    Matrix& lower = *factors_[kLower];
    Matrix& diagonal = *factors_[kDiagonal];
    Matrix& upper = *factors_[kUpper];
    for (int i = 0; i < n_; ++i) {
        const double v = double{diagonal.Get(i, i)} / omega_;
        lower.Set(i, i, toFloat(v));
        upper.Set(i, i, toFloat(v));
        diagonal.Set(i, i, toFloat(1.0 / ((2.0 - omega_) * v)));
    }
}

ExplicitSsor::ExplicitSsor(const ExplicitSsor& other)
    : PreconditionerMatrix(other),
      source_(other.source_),
      omega_(other.omega_),
      factors_{cloneOf(other.GetFactor(kLower)), cloneOf(other.GetFactor(kDiagonal)),
               cloneOf(other.GetFactor(kUpper))} {}

std::unique_ptr<Matrix> ExplicitSsor::Clone() const {
    return std::make_unique<ExplicitSsor>(*this);
}

void ExplicitSsor::PrintTo(std::FILE* file) const {
    put(file, "%s", "Explicit SSOR for full matrices\n");
    for (int k = 0; k < kFactors; ++k) {
        if (const Matrix* const factor = GetFactor(k)) {
            factor->PrintTo(file);
        }
    }
}

std::unique_ptr<RealVector> ExplicitSsor::Solve(const RealVector& b,
                                                std::unique_ptr<RealVector> x) const {
    const Matrix* const lower = GetFactor(kLower);
    const Matrix* const diagonal = GetFactor(kDiagonal);
    const Matrix* const upper = GetFactor(kUpper);
    if (lower == nullptr || diagonal == nullptr || upper == nullptr) {
        return nullptr;
    }
    work_ = lower->SolveLower(b, std::move(work_));
    if (work_ == nullptr) {
        return nullptr;
    }
    for (int i = 0; i < n_; ++i) {
        (*work_)[i] = (*work_)[i] / diagonal->Get(i, i);
    }
    return upper->SolveUpper(*work_, std::move(x));
}

std::unique_ptr<Matrix> ExplicitSsor::Inverse() const {
    auto inverse = std::make_unique<ExplicitPreconditionedProduct>(n_, kFactors);
    for (int k = 0; k < kFactors; ++k) {
        if (const Matrix* const factor = GetFactor(k)) {
            // The chain takes factor 0 first: the inverse of upper, where Solve begins with lower.
            // quirk: ssor-chain-order
            inverse->SetFactor(kFactors - 1 - k, factor->Inverse());
        }
    }
    return inverse;
}

const Matrix* ExplicitSsor::GetFactor(int k) const {
    return k >= 0 && k < kFactors ? factors_[static_cast<std::size_t>(k)].get() : nullptr;
}

void ExplicitSsor::SetFactor(int k, std::unique_ptr<Matrix> factor) {
    if (k >= 0 && k < kFactors) {
        factors_[static_cast<std::size_t>(k)] = std::move(factor);
    }
}

std::unique_ptr<Matrix> ExplicitSsor::SourceClone() const {
    return cloneOf(source_);
}

double ExplicitSsor::OptimiseOmega(const Matrix& A, int trials) {
    const std::unique_ptr<Matrix> D = A.ToDiagonal();
    // quirk: ssor-omega-clone
    const std::unique_ptr<Matrix> C = A.Clone();
    RealVector x(A.Rows(), 1.0F);
    std::unique_ptr<RealVector> work;
    double r1 = 0.0;
    double r2 = 0.0;
    for (int trial = 0; trial == 0 || trial < trials; ++trial) {
        if (trial > 0) {
            x.Randomize(kSmallestTrial, 1.0F);
        }
        const double a = quadraticForm(*D, x, work);
        const double b = quadraticForm(*C, x, work);
        const double c = quadraticForm(A, x, work);
        if (trial == 0 || !(a / c < r1)) {
            r1 = a / c;
        }
        if (trial == 0 || !(b / c < r2)) {
            r2 = b / c;
        }
    }
    const double omega = 2.0 / (1.0 + (2.0 / std::sqrt(r1)) * std::sqrt(r2 + 0.5));
    printText("Optimised omega is %f\n", omega);
    return omega;
}

}  // namespace orv
