// Substitutions and sweeps of the band matrix, row by row over the stored diagonals.
#include <utility>

#include "algebra/result_arguments.h"
#include "algebra/storage/band_matrix.h"
#include "base/rounding.h"

namespace orv {

namespace {

enum class Diagonal { Divide, Unit };

// One row of a sweep or a substitution reads its diagonal through here: 0 if there is none.
float mainElement(const RealVector* main, int i) {
    return main != nullptr ? (*main)[i] : 0.0f;
}

void substitute(BandRows& rows, const RealVector* main, Diagonal diagonal, bool upwards,
                const RealVector& b, RealVector& x) {
    const int n = b.size();
    for (int step = 0; step < n; ++step) {
        const int i = upwards ? n - 1 - step : step;
        const float rest = b[i] - toFloat(rows.sum(i, x.data()));
        x[i] = diagonal == Diagonal::Divide ? rest / mainElement(main, i) : rest;
    }
}

// The off-diagonal sums of the sweeps, in the order of a dense row.
class Sweep {
  public:
    explicit Sweep(const BandMatrix& A)
        : lower_(A.triangleRows(BandSide::Lower, BandOrder::ColumnRising)),
          upper_(A.triangleRows(BandSide::Upper, BandOrder::ColumnRising)),
          main_(A.diagonal(A.Rows() - 1)) {}

    // b[i] - l - u
    float withoutDiagonal(const RealVector& b, const float* x, int i) {
        const float l = toFloat(lower_.sum(i, x));
        const float u = toFloat(upper_.sum(i, x));
        return b[i] - l - u;
    }

    float diagonal(int i) const { return mainElement(main_, i); }

  private:
    BandRows& lower_;
    BandRows& upper_;
    const RealVector* main_;
};

}  // namespace

std::unique_ptr<RealVector> BandMatrix::SolveUpper(const RealVector& b,
                                                   std::unique_ptr<RealVector> x) const {
    x = solutionVector(b, n_, std::move(x));
    if (x == nullptr) {
        return nullptr;
    }
    substitute(triangleRows(BandSide::Upper, BandOrder::AsStored), diagonal(center_),
               Diagonal::Divide,
               /*upwards=*/true, b, *x);
    return x;
}

std::unique_ptr<RealVector> BandMatrix::SolveUnitUpper(const RealVector& b,
                                                       std::unique_ptr<RealVector> x) const {
    x = solutionVector(b, n_, std::move(x));
    if (x == nullptr) {
        return nullptr;
    }
    substitute(triangleRows(BandSide::Upper, BandOrder::ColumnRising), nullptr, Diagonal::Unit,
               /*upwards=*/true, b, *x);
    return x;
}

std::unique_ptr<RealVector> BandMatrix::SolveLower(const RealVector& b,
                                                   std::unique_ptr<RealVector> x) const {
    x = solutionVector(b, n_, std::move(x));
    if (x == nullptr) {
        return nullptr;
    }
    substitute(triangleRows(BandSide::Lower, BandOrder::AsStored), diagonal(center_),
               Diagonal::Divide,
               /*upwards=*/false, b, *x);
    return x;
}

std::unique_ptr<RealVector> BandMatrix::SolveUnitLower(const RealVector& b,
                                                       std::unique_ptr<RealVector> x) const {
    x = solutionVector(b, n_, std::move(x));
    if (x == nullptr) {
        return nullptr;
    }
    substitute(triangleRows(BandSide::Lower, BandOrder::ColumnRising), nullptr, Diagonal::Unit,
               /*upwards=*/false, b, *x);
    return x;
}

std::unique_ptr<Matrix> BandMatrix::JacobiMatrix() const {
    std::vector<int> chosen;
    for (const int position : positions_) {
        if (position != center_) {
            chosen.push_back(position);
        }
    }
    auto result =
        std::make_unique<BandMatrix>(n_, static_cast<int>(chosen.size()), chosen.data());
    const RealVector* main = diagonal(center_);
    for (const int position : chosen) {
        const RealVector& from = *diagonal(position);
        RealVector& to = *result->diagonal(position);
        const int firstRow = position < center_ ? center_ - position : 0;
        for (int t = 0; t < from.size(); ++t) {
            to[t] = -(from[t] / mainElement(main, firstRow + t));
        }
    }
    return result;
}

std::unique_ptr<RealVector> BandMatrix::SorSweep(const RealVector& b, float omega,
                                                 std::unique_ptr<RealVector> x) const {
    x = solutionVector(b, n_, std::move(x));
    if (x == nullptr) {
        return nullptr;
    }
    Sweep sweep(*this);
    float* u = x->data();
    for (int i = 0; i < n_; ++i) {
        const float rest = sweep.withoutDiagonal(b, u, i);
        u[i] = (1.0f - omega) * u[i] + omega * rest / sweep.diagonal(i);
    }
    return x;
}

std::unique_ptr<RealVector> BandMatrix::GaussSeidelSweep(const RealVector& b,
                                                         std::unique_ptr<RealVector> x) const {
    x = solutionVector(b, n_, std::move(x));
    if (x == nullptr) {
        return nullptr;
    }
    Sweep sweep(*this);
    float* u = x->data();
    for (int i = 0; i < n_; ++i) {
        u[i] = sweep.withoutDiagonal(b, u, i) / sweep.diagonal(i);
    }
    return x;
}

std::unique_ptr<RealVector> BandMatrix::JacobiSweep(const RealVector& b, const RealVector& x,
                                                    std::unique_ptr<RealVector> y) const {
    y = resultVector(std::move(y), n_);
    if (b.size() != n_ || x.size() != n_ || y == nullptr) {
        return nullptr;
    }
    Sweep sweep(*this);
    for (int i = 0; i < n_; ++i) {
        (*y)[i] = sweep.withoutDiagonal(b, x.data(), i) / sweep.diagonal(i);
    }
    return y;
}

}  // namespace orv
