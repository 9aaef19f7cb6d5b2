#include "algebra/storage/bi_diagonal_matrix.h"

#include <algorithm>
#include <utility>

#include "algebra/result_arguments.h"
#include "algebra/storage/stored_measures.h"
#include "algebra/storage/triangular_inverse.h"
#include "base/rounding.h"

namespace orv {

BiDiagonalMatrix::BiDiagonalMatrix(int n, Side side, Main main, float value)
    : Matrix(n),
      vectors_{RealVector(main == Main::Stored ? n : 0, value),
               RealVector(std::max(n - 1, 0), value)},
      side_(side),
      main_(main) {}

int BiDiagonalMatrix::Size() const {
    return 2 * n_ - 1;
}

std::unique_ptr<Matrix> BiDiagonalMatrix::CloneTransposed(std::unique_ptr<Matrix>) const {
    return nullptr;
}

bool BiDiagonalMatrix::inOffDiagonal(int i, int j) const {
    return side_ == Side::Lower ? j == i + 1 : i == j + 1;
}

void BiDiagonalMatrix::Set(int i, int j, float value) {
    if (std::min(i, j) < 0 || std::max(i, j) >= n_) {
        return;
    }
    if (i == j && main_ == Main::Stored) {
        vectors_[0][i] = value;
    } else if (inOffDiagonal(i, j)) {
        vectors_[1][std::min(i, j)] = value;
    }
}

float BiDiagonalMatrix::Get(int i, int j) const {
    if (std::min(i, j) < 0 || std::max(i, j) >= n_) {
        return 0.0f;
    }
    if (i == j) {
        return diagonal(i);
    }
    return inOffDiagonal(i, j) ? vectors_[1][std::min(i, j)] : 0.0f;
}

void BiDiagonalMatrix::Set1(int i, int j, float value) {
    Set(i - 1, j - 1, value);
}

float BiDiagonalMatrix::Get1(int i, int j) const {
    return Get(i - 1, j - 1);
}

void BiDiagonalMatrix::Fill(float value) {
    vectors_[0].Fill(value);
    vectors_[1].Fill(value);
}

double BiDiagonalMatrix::Sum() const {
    return vectors_[0].Sum() + vectors_[1].Sum();
}

double BiDiagonalMatrix::Min() const {
    const RealVector& first = vectors_[0].size() > 0 ? vectors_[0] : vectors_[1];
    return first.size() > 0 ? smallestOf(first[0], {&vectors_[0], &vectors_[1]}) : 0.0;
}

double BiDiagonalMatrix::Max() const {
    const RealVector& first = vectors_[0].size() > 0 ? vectors_[0] : vectors_[1];
    return first.size() > 0 ? largestOf(first[0], {&vectors_[0], &vectors_[1]}) : 0.0;
}

double BiDiagonalMatrix::StdDev() const {
    const double squares = vectors_[0].SumOfSquares() + vectors_[1].SumOfSquares();
    return standardDeviation(Sum(), squares, Size());
}

void BiDiagonalMatrix::Scale(float a) {
    vectors_[0].MultiplyScalar(a);
    vectors_[1].MultiplyScalar(a);
}

void BiDiagonalMatrix::Divide(float a) {
    vectors_[0].DivideScalar(a);
    vectors_[1].DivideScalar(a);
}

// y[j] += the two terms of row j, the lower column first; `below` takes the off-diagonal as
// lying below the main one.
void BiDiagonalMatrix::addProduct(bool below, const float* x, float* y) const {
    for (int j = 0; j < n_; ++j) {
        double sum = 0.0;
        if (below && j > 0) {
            sum += double{vectors_[1][j - 1]} * double{x[j - 1]};
        }
        sum += double{diagonal(j)} * double{x[j]};
        if (!below && j + 1 < n_) {
            sum += double{vectors_[1][j]} * double{x[j + 1]};
        }
        y[j] = toFloat(double{y[j]} + sum);
    }
}

std::unique_ptr<RealVector> BiDiagonalMatrix::MultiplyRange(
    const RealVector& x, int xFrom, int yFrom, unsigned char accumulate,
    std::unique_ptr<RealVector> y) const {
    y = rangeTarget(x, n_, yFrom, accumulate, std::move(y));
    if (y != nullptr) {
        addProduct(side_ == Side::Lower, x.data() + xFrom, y->data() + yFrom);
    }
    return y;
}

std::unique_ptr<RealVector> BiDiagonalMatrix::MultiplyTransposedRange(
    const RealVector& x, int xFrom, int yFrom, unsigned char accumulate,
    std::unique_ptr<RealVector> y) const {
    y = rangeTarget(x, n_, yFrom, accumulate, std::move(y));
    if (y != nullptr) {
        addProduct(side_ == Side::Upper, x.data() + xFrom, y->data() + yFrom);
    }
    return y;
}

void BiDiagonalMatrix::PrintTo(std::FILE* file) const {
    const bool lower = side_ == Side::Lower;
    // quirk: shared-print-names
    put(file, lower ? "Lower BiDiagonal(%d)\n" : "Upper BiDiagonal(%d)\n", n_);
    if (main_ == Main::Stored) {
        putVector(file, "D: ", vectors_[0]);
    }
    putVector(file, lower ? "L1:" : "U1:", vectors_[1]);
    printElements(file);
}

std::unique_ptr<RealVector> BiDiagonalMatrix::Solve(const RealVector& b,
                                                    std::unique_ptr<RealVector> x) const {
    x = solutionVector(b, n_, std::move(x));
    if (x == nullptr) {
        return nullptr;
    }
    const bool lower = side_ == Side::Lower;
    for (int step = 0; step < n_; ++step) {
        const int i = lower ? step : n_ - 1 - step;
        float rest = b[i];
        if (step > 0) {
            rest -= lower ? vectors_[1][i - 1] * (*x)[i - 1] : vectors_[1][i] * (*x)[i + 1];
        }
        (*x)[i] = rest / diagonal(i);
    }
    return x;
}

// `zeros` sums what the zeros of a row contribute: nothing, or NaN beyond an infinity.
std::unique_ptr<RealVector> BiDiagonalMatrix::substitute(Side part, const RealVector& b,
                                                         std::unique_ptr<RealVector> x) const {
    x = solutionVector(b, n_, std::move(x));
    if (x == nullptr) {
        return nullptr;
    }
    const int step = part == Side::Lower ? 1 : -1;
    float* const u = x->data();
    double zeros = 0.0;
    for (int row = 0; row < n_; ++row) {
        const int i = part == Side::Lower ? row : n_ - 1 - row;
        double sum = zeros;
        if (row > 0) {
            const float before = u[i - step];
            const float a = part == side_ ? vectors_[1][std::min(i, i - step)] : 0.0f;
            sum += double{a} * double{before};
            zeros += 0.0 * double{before};
        }
        u[i] = (b[i] - toFloat(sum)) / diagonal(i);
    }
    return x;
}

std::unique_ptr<RealVector> BiDiagonalMatrix::SolveUpper(const RealVector& b,
                                                         std::unique_ptr<RealVector> x) const {
    return substitute(Side::Upper, b, std::move(x));
}

std::unique_ptr<RealVector> BiDiagonalMatrix::SolveLower(const RealVector& b,
                                                         std::unique_ptr<RealVector> x) const {
    return substitute(Side::Lower, b, std::move(x));
}

std::unique_ptr<Matrix> BiDiagonalMatrix::Inverse() const {
    return side_ == Side::Lower ? inverseOfLower(*this, 1) : inverseOfUpper(*this, 1);
}

}  // namespace orv
