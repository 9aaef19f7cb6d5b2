#pragma once

#include <array>
#include <memory>
#include <vector>

#include "algebra/matrix.h"
#include "algebra/storage/band_rows.h"

namespace orv {

/// The part of a band beside its main diagonal.
enum class BandSide { Lower, Upper };

/// In which order the diagonals of a row are summed.
enum class BandOrder { AsStored, ColumnRising };

/// A set of whole diagonals: the sparse system of the two-dimensional schemes.
///
/// A position p stands for the offset d = p - center with center = n - 1; its vector has
/// n - |d| elements. d below 0 lies below the main diagonal, element t at column t, row t +
/// |d|; d above 0 lies above it, element t at column t + d, row t. Positions are expected with
/// the lower ones first, then the main one, then the upper ones; sweeps, solves and factors add
/// up with the column rising if each of these parts is ascending.
class BandMatrix final : public Matrix {
  public:
    /// Order n with `count` diagonals of zeros at the given positions; a position outside 0 to
    /// 2n - 2 is left out.
    BandMatrix(int n, int count, const int* positions);
    /// Deep copy.
    BandMatrix(const BandMatrix& other);

    std::unique_ptr<Matrix> Clone() const override;
    std::unique_ptr<Matrix> CloneTransposed(std::unique_ptr<Matrix> result) const override;
    int Size() const override;
    void Set(int i, int j, float value) override;
    float Get(int i, int j) const override;
    /// Columns of row i in the order of the positions; a new list has room for all diagonals.
    std::unique_ptr<IndexList> RowPattern(int i,
                                          std::unique_ptr<IndexList> list) const override;
    /// An empty list: no caller needs the pattern of a column.
    /// Quirk:   column-pattern-empty
    std::unique_ptr<IndexList> ColumnPattern(int j,
                                             std::unique_ptr<IndexList> list) const override;
    void Set1(int i, int j, float value) override;
    float Get1(int i, int j) const override;
    std::unique_ptr<IndexList> RowPattern1(int i,
                                           std::unique_ptr<IndexList> list) const override;
    std::unique_ptr<IndexList> ColumnPattern1(int j,
                                              std::unique_ptr<IndexList> list) const override;
    void Fill(float value) override;
    /// Sum of the main diagonal, which must be stored.
    double DiagonalMeasure() const override;
    double Sum() const override;
    double Min() const override;
    double Max() const override;
    double StdDev() const override;
    void Scale(float a) override;
    void Divide(float a) override;
    /// Row by row, the terms in the order of the positions, in float.
    std::unique_ptr<RealVector> MultiplyRange(const RealVector& x, int xFrom, int yFrom,
                                              unsigned char accumulate,
                                              std::unique_ptr<RealVector> y) const override;
    /// Row by row, the terms in the order of the positions, in float; fills y beyond with 0.
    std::unique_ptr<RealVector> Multiply(const RealVector& x,
                                         std::unique_ptr<RealVector> y) const override;
    /// Row by row, the terms against the order of the positions, in float.
    std::unique_ptr<RealVector> MultiplyTransposedRange(
        const RealVector& x, int xFrom, int yFrom, unsigned char accumulate,
        std::unique_ptr<RealVector> y) const override;
    /// Row by row, the terms against the order of the positions; fills y beyond with 0.
    std::unique_ptr<RealVector> MultiplyTransposed(
        const RealVector& x, std::unique_ptr<RealVector> y) const override;
    void PrintTo(std::FILE* file) const override;
    std::unique_ptr<Matrix> ToStrictLower() const override;
    std::unique_ptr<Matrix> ToStrictUpper() const override;
    std::unique_ptr<Matrix> ToLower() const override;
    std::unique_ptr<Matrix> ToUpper() const override;
    /// The strict part and a main diagonal of zeros.
    /// Quirk:   unit-band-diagonal
    std::unique_ptr<Matrix> ToUnitLower() const override;
    /// The strict part and a main diagonal of zeros.
    /// Quirk:   unit-band-diagonal
    std::unique_ptr<Matrix> ToUnitUpper() const override;
    std::unique_ptr<Matrix> JacobiMatrix() const override;
    std::unique_ptr<RealVector> SolveUpper(const RealVector& b,
                                           std::unique_ptr<RealVector> x) const override;
    std::unique_ptr<RealVector> SolveUnitUpper(const RealVector& b,
                                               std::unique_ptr<RealVector> x) const override;
    std::unique_ptr<RealVector> SolveLower(const RealVector& b,
                                           std::unique_ptr<RealVector> x) const override;
    std::unique_ptr<RealVector> SolveUnitLower(const RealVector& b,
                                               std::unique_ptr<RealVector> x) const override;
    /// Doolittle's factors in a BandMatrix that stores every diagonal from -w to w, with w the
    /// largest |d| of this matrix: without pivoting nothing fills in outside the band.
    /// Cost:    2 n w w operations, n (2 w + 1) floats for the result.
    std::unique_ptr<Matrix> FactorLU() const override;
    /// Crout's factors, stored in the same way.
    std::unique_ptr<Matrix> FactorLU1() const override;
    /// Factors in the pattern of this matrix; prints each row as it is worked on.
    /// Cost:    n d d operations for d diagonals, and more than n n printed numbers unless a
    ///          SilencedOutput stands.
    /// Quirk:   incomplete-lu0-prints
    std::unique_ptr<Matrix> IncompleteLU0() const override;
    /// Factors in the pattern of this matrix; drops elements below `tolerance` in magnitude.
    /// Quirk:   incomplete-factor3-sign
    std::unique_ptr<Matrix> IncompleteFactor3(double tolerance) const override;
    std::unique_ptr<RealVector> SorSweep(const RealVector& b, float omega,
                                         std::unique_ptr<RealVector> x) const override;
    std::unique_ptr<RealVector> GaussSeidelSweep(const RealVector& b,
                                                 std::unique_ptr<RealVector> x) const override;
    std::unique_ptr<RealVector> JacobiSweep(const RealVector& b, const RealVector& x,
                                            std::unique_ptr<RealVector> y) const override;

    /// Number of stored diagonals.
    virtual int DiagonalCount() const;
    /// Number of stored diagonals below the main one.
    virtual int LowerCount() const;
    /// 1 if the main diagonal is stored, else 0.
    virtual int MainCount() const;
    /// Number of stored diagonals above the main one.
    virtual int UpperCount() const;
    /// The k-th stored position, k from 0.
    virtual int Position(int k) const;
    /// Copies `vector` into the diagonal at `position`; does nothing if the lengths differ.
    virtual void SetDiagonal(int position, const RealVector& vector);
    /// Writes element i of the main diagonal, if there is one.
    virtual void SetMain(int i, float value);
    /// Reads element i of the main diagonal; 0 if there is none.
    virtual float GetMain(int i) const;
    /// Writes element t of the diagonal k above the main one, if there is one.
    virtual void SetUpper(int k, int t, float value);
    /// Reads element t of the diagonal k above the main one; 0 if there is none.
    virtual float GetUpper(int k, int t) const;
    /// Writes element t of the diagonal k below the main one, if there is one.
    virtual void SetLower(int k, int t, float value);
    /// Reads element t of the diagonal k below the main one; 0 if there is none.
    virtual float GetLower(int k, int t) const;
    /// SetMain with i counted from 1.
    virtual void SetMain1(int i, float value);
    /// GetMain with i counted from 1.
    virtual float GetMain1(int i) const;
    /// SetUpper with t counted from 1.
    virtual void SetUpper1(int k, int t, float value);
    /// GetUpper with t counted from 1.
    virtual float GetUpper1(int k, int t) const;
    /// SetLower with t counted from 1.
    virtual void SetLower1(int k, int t, float value);
    /// GetLower with t counted from 1.
    virtual float GetLower1(int k, int t) const;

    /// The diagonal at `position` for direct access; null where nothing is stored.
    RealVector* diagonal(int position);
    /// The diagonal at `position` for direct access; null where nothing is stored.
    const RealVector* diagonal(int position) const;
    /// The stored diagonals below the main one, in the order of the positions.
    std::vector<BandStrand> lowerStrands() const;
    /// The stored diagonals above the main one, in the order of the positions.
    std::vector<BandStrand> upperStrands() const;
    /// All stored diagonals, in the order of the positions.
    std::vector<BandStrand> allStrands() const;
    /// Reads the rows of one triangle without the main diagonal, from whichever end.
    ///
    /// Owns:    the matrix keeps one reader a side and order, made at the first call, so that
    ///          later solves and sweeps allocate nothing; two of them must not run at a time.
    BandRows& triangleRows(BandSide side, BandOrder order) const;

  private:
    /// The k-th diagonal of a product with the matrix or with its transpose.
    BandStrand productStrand(int k, bool transposed) const;
    /// The end of the rows from `row` on that the same diagonals reach, a block at the most.
    int sameStrandsUntil(int row, bool transposed) const;
    /// The rows from first to last - 1, which the same diagonals reach.
    void multiplyRows(int first, int last, bool transposed, bool accumulate, const float* x,
                      float* y) const;
    void multiply(bool transposed, bool accumulate, const float* x, float* y) const;
    std::unique_ptr<RealVector> multiplyAll(const RealVector& x, bool transposed,
                                            std::unique_ptr<RealVector> y) const;
    std::unique_ptr<BandMatrix> part(int from, int count, bool addMain) const;
    std::vector<BandStrand> strands(int from, int count) const;

    int diagonalCount_;
    int center_;
    int slotCount_;
    int lowerCount_ = 0;
    int mainCount_ = 0;
    int upperCount_ = 0;
    std::vector<int> positions_;
    std::vector<std::unique_ptr<RealVector>> diagonals_;
    mutable std::array<std::unique_ptr<BandRows>, 4> readers_;
};

}  // namespace orv
