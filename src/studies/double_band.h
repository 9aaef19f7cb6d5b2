#pragma once

#include <vector>

namespace orv {

class BandMatrix;
class FTriDiagonalMatrix;

/// A banded matrix of floats in double arithmetic, to judge what float arithmetic makes of it.
///
/// Owns:    nothing; the matrix outlives it.
class DoubleBand {
  public:
    /// A line of a splitting scheme.
    explicit DoubleBand(const FTriDiagonalMatrix& matrix);
    /// A whole plane.
    explicit DoubleBand(const BandMatrix& matrix);

    /// Order of the matrix.
    int size() const { return n_; }
    /// Whether there is no diagonal beside the main one and its two neighbours.
    bool isTriDiagonal() const;
    /// The element of the main diagonal in row i.
    double main(int i) const;
    /// The element in row i and column i + d; 0 where nothing is stored.
    double element(int i, int d) const;

    /// r = b - A u, each element summed in double in the order of the diagonals.
    void residual(const float* b, const double* u, double* r) const;
    /// y = A x.
    void multiply(const double* x, double* y) const;

  private:
    /// A diagonal: the element of row i and column i + offset is values[min(i, i + offset)].
    struct Diagonal {
        const float* values;
        int offset;
    };

    void add(const float* values, int offset);
    void addProduct(double factor, const double* x, double* y) const;

    int n_;
    std::vector<Diagonal> diagonals_;
};

}  // namespace orv
