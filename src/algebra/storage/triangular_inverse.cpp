#include "algebra/storage/triangular_inverse.h"

#include <algorithm>

#include "algebra/storage/lower_triangular_matrix.h"
#include "algebra/storage/upper_triangular_matrix.h"
#include "base/rounding.h"

namespace orv {

std::unique_ptr<Matrix> inverseOfLower(const Matrix& A, int width) {
    const int n = A.Rows();
    auto X = std::make_unique<LowerTriangularMatrix>(n);
    for (int i = 0; i < n; ++i) {
        X->Set(i, i, 1.0f / A.Get(i, i));
        for (int j = i + 1; j < n; ++j) {
            double sum = 0.0;
            for (int k = std::max(i, j - width); k < j; ++k) {
                sum += double{A.Get(k, j)} * double{X->Get(i, k)};
            }
            X->Set(i, j, -toFloat(sum) / A.Get(j, j));
        }
    }
    return X;
}

std::unique_ptr<Matrix> inverseOfUpper(const Matrix& A, int width) {
    const int n = A.Rows();
    auto X = std::make_unique<UpperTriangularMatrix>(n);
    for (int i = n - 1; i >= 0; --i) {
        X->Set(i, i, 1.0f / A.Get(i, i));
        for (int j = i - 1; j >= 0; --j) {
            double sum = 0.0;
            for (int k = j + 1; k <= std::min(i, j + width); ++k) {
                sum += double{A.Get(k, j)} * double{X->Get(i, k)};
            }
            X->Set(i, j, -toFloat(sum) / A.Get(j, j));
        }
    }
    return X;
}

}  // namespace orv
