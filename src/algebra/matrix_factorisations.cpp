// Direct and incomplete factorisations, and inverses built from factors.
#include <algorithm>
#include <cmath>
#include <utility>

#include "algebra/matrix.h"
#include "algebra/storage/full_matrix.h"
#include "base/rounding.h"

namespace orv {

namespace {

// Doolittle's factors, or Crout's if the ones stand on the diagonal of U. Each row is finished
// before the next, with the columns rising.
std::unique_ptr<Matrix> factorDense(const Matrix& A, bool unitUpper) {
    const int n = A.Rows();
    auto F = std::make_unique<FullMatrix>(n);
    for (int j = 0; j < n; ++j) {
        for (int i = 0; i < n; ++i) {
            double sum = 0.0;
            for (int k = 0; k < std::min(i, j); ++k) {
                sum += double{F->Get(k, j)} * double{F->Get(i, k)};
            }
            float value = A.Get(i, j) - toFloat(sum);
            if (unitUpper && i > j) {
                value /= F->Get(j, j);
            } else if (!unitUpper && i < j) {
                value /= F->Get(i, i);
            }
            F->Set(i, j, value);
        }
    }
    return F;
}

// The symmetric factors with one triangle stored. The lower forms run down the rows and sum over
// k below i, the upper ones run up and sum over k above; `roots` takes square roots, otherwise
// D stands on the diagonal and weighs the terms.
std::unique_ptr<Matrix> factorSymmetric(const Matrix& A, bool lower, bool roots) {
    const int n = A.Rows();
    auto F = std::make_unique<FullMatrix>(n);
    for (int step = 0; step < n; ++step) {
        const int i = lower ? step : n - 1 - step;
        const int from = lower ? 0 : i + 1;
        const int to = lower ? i : n;
        for (int other = step; other < n; ++other) {
            const int j = lower ? other : n - 1 - other;
            double sum = 0.0;
            for (int k = from; k < to; ++k) {
                const double product = double{F->Get(k, j)} * double{F->Get(k, i)};
                sum += roots ? product : product * double{F->Get(k, k)};
            }
            const float rest = A.Get(i, j) - toFloat(sum);
            if (j == i) {
                F->Set(i, i, roots ? std::sqrt(rest) : rest);
            } else {
                F->Set(i, j, rest / F->Get(i, i));
            }
        }
    }
    return F;
}

// The clone or the given matrix that an in-place operation starts from; a given one receives
// the values of A.
std::unique_ptr<Matrix> startFrom(const Matrix& A, std::unique_ptr<Matrix> result) {
    if (result == nullptr) {
        return A.Clone();
    }
    result->Assign(A, 0);
    return result;
}

}  // namespace

std::unique_ptr<Matrix> Matrix::Inverse() const {
    return nullptr;
}

std::unique_ptr<Matrix> Matrix::FactorLU() const {
    return factorDense(*this, /*unitUpper=*/false);
}

std::unique_ptr<Matrix> Matrix::FactorLU1() const {
    return factorDense(*this, /*unitUpper=*/true);
}

std::unique_ptr<Matrix> Matrix::FactorCholesky() const {
    return factorSymmetric(*this, /*lower=*/true, /*roots=*/true);
}

std::unique_ptr<Matrix> Matrix::FactorCholeskyUpper() const {
    return factorSymmetric(*this, /*lower=*/false, /*roots=*/true);
}

std::unique_ptr<Matrix> Matrix::FactorLdl() const {
    return factorSymmetric(*this, /*lower=*/true, /*roots=*/false);
}

std::unique_ptr<Matrix> Matrix::FactorUdu() const {
    return factorSymmetric(*this, /*lower=*/false, /*roots=*/false);
}

std::unique_ptr<Matrix> Matrix::FactorInPlace(std::unique_ptr<Matrix> result) const {
    std::unique_ptr<Matrix> R = startFrom(*this, std::move(result));
    for (int i = n_ - 1; i >= 0; --i) {
        const float d = 1.0f / R->Get(i, i);
        for (int k = 0; k < i; ++k) {
            const float a = R->Get(i, k);
            R->Set(i, k, a * d);
            for (int m = 0; m <= k; ++m) {
                R->Set(k, m, R->Get(k, m) - R->Get(i, m) * a);
            }
            R->Set(k, i, 0.0f);
        }
    }
    return R;
}

std::unique_ptr<Matrix> Matrix::InvertFactor(std::unique_ptr<Matrix> result) const {
    std::unique_ptr<Matrix> R = result != nullptr ? std::move(result) : Clone();
    for (int b = 0; b < n_; ++b) {
        for (int e = b + 1; e < n_; ++e) {
            R->Set(e, b, -R->Get(e, b));
            for (int p = b + 1; p <= e; ++p) {
                R->Set(e, b, R->Get(e, b) - R->Get(p, b) * R->Get(e, p));
            }
            R->Set(b, e, 0.0f);
        }
        R->Set(b, b, 1.0f / R->Get(b, b));
    }
    return R;
}

std::unique_ptr<Matrix> Matrix::InverseFromFactors(std::unique_ptr<Matrix> result) const {
    std::unique_ptr<Matrix> R = InvertFactor(FactorInPlace(std::move(result)));
    for (int i = n_ - 1; i >= 0; --i) {
        double s = R->Get(i, i);
        for (int k = 0; k < i; ++k) {
            const float g = R->Get(i, k);
            R->Set(i, k, R->Get(k, k) * g);
            s += double{R->Get(i, k)} * double{g};
        }
        for (int j = i - 1; j >= 0; --j) {
            double c = R->Get(i, j);
            // quirk: inverse-from-factors
            // The sum counts up from j while k is above 0; it is cut where it leaves the matrix.
            for (int k = j; k > 0 && k < n_; ++k) {
                c += double{R->Get(k, 0)} * double{R->Get(i, 0)};
            }
            R->Set(i, j, toFloat(c));
        }
        R->Set(i, i, toFloat(s));
    }
    return R;
}

std::unique_ptr<Matrix> Matrix::IncompleteLU0() const {
    return nullptr;
}

std::unique_ptr<Matrix> Matrix::IncompleteFactor1() const {
    return nullptr;
}

std::unique_ptr<Matrix> Matrix::IncompleteFactor2() const {
    return nullptr;
}

std::unique_ptr<Matrix> Matrix::IncompleteFactor3(double) const {
    return nullptr;
}

std::unique_ptr<Matrix> Matrix::IncompleteFactor4() const {
    return nullptr;
}

std::unique_ptr<Matrix> Matrix::IncompleteFactor5() const {
    return nullptr;
}

std::unique_ptr<Matrix> Matrix::IncompleteFactor6() const {
    return nullptr;
}

std::unique_ptr<Matrix> Matrix::FullOnlyFactor() const {
    return nullptr;
}

}  // namespace orv
