#include "studies/double_band.h"

#include <algorithm>
#include <cstdlib>

#include "algebra/storage/band_matrix.h"
#include "algebra/storage/f_tri_diagonal_matrix.h"

namespace orv {

DoubleBand::DoubleBand(const FTriDiagonalMatrix& matrix) : n_(matrix.Rows()) {
    add(matrix.lower().data(), -1);
    add(matrix.main().data(), 0);
    add(matrix.upper().data(), 1);
}

DoubleBand::DoubleBand(const BandMatrix& matrix) : n_(matrix.Rows()) {
    for (const BandStrand& strand : matrix.allStrands()) {
        add(strand.values, strand.offset);
    }
}

void DoubleBand::add(const float* values, int offset) {
    if (std::abs(offset) < n_) {
        diagonals_.push_back({values, offset});
    }
}

bool DoubleBand::isTriDiagonal() const {
    return std::all_of(diagonals_.begin(), diagonals_.end(),
                       [](const Diagonal& d) { return std::abs(d.offset) <= 1; });
}

double DoubleBand::main(int i) const {
    return element(i, 0);
}

double DoubleBand::element(int i, int d) const {
    if (i + d < 0 || i + d >= n_) {
        return 0.0;
    }
    for (const Diagonal& diagonal : diagonals_) {
        if (diagonal.offset == d) {
            return diagonal.values[std::min(i, i + d)];
        }
    }
    return 0.0;
}

void DoubleBand::addProduct(double factor, const double* x, double* y) const {
    for (const Diagonal& diagonal : diagonals_) {
        const int d = diagonal.offset;
        const int count = n_ - std::abs(d);
        const double* const from = x + std::max(d, 0);
        double* const to = y + std::max(-d, 0);
        for (int i = 0; i < count; ++i) {
            to[i] += factor * (static_cast<double>(diagonal.values[i]) * from[i]);
        }
    }
}

void DoubleBand::residual(const float* b, const double* u, double* r) const {
    std::copy_n(b, n_, r);
    addProduct(-1.0, u, r);
}

void DoubleBand::multiply(const double* x, double* y) const {
    std::fill_n(y, n_, 0.0);
    addProduct(1.0, x, y);
}

}  // namespace orv
