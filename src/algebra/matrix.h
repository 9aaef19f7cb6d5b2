#pragma once

#include <cstdio>
#include <memory>

#include "algebra/index_list.h"
#include "algebra/real_vector.h"

namespace orv {

/// The abstract square matrix of floats that every solver and every semi-implicit scheme uses.
///
/// Elements are addressed by (column, row): Get(i, j) is the element in column i of row j, and
/// y = A x means y[j] = sum over i of Get(i, j) x[i]. Get(i + 1, i) is the superdiagonal.
///
/// Every operation that a storage class does not replace works through Get and Set alone, so a
/// class is correct with those, the copies and the size, and becomes fast one operation after
/// the other. A sum over k accumulates in double with k rising and is rounded once to float;
/// what follows it, as the subtraction and division in (b - s) / d, is float arithmetic.
///
/// Shapes:  all matrices are n by n. A result argument is used if it isn't null and otherwise
///          made; it may not be the matrix itself.
/// Fails:   sizes that don't fit give null (or change nothing) and print nothing. A zero on the
///          diagonal is not tested and travels on as infinity.
class Matrix {
  public:
    virtual ~Matrix() = default;
    Matrix& operator=(const Matrix&) = delete;

    /// A new matrix of the same class and values.
    virtual std::unique_ptr<Matrix> Clone() const = 0;
    /// The transpose, in `result` if given. Fails: null in classes that don't have it.
    virtual std::unique_ptr<Matrix> CloneTransposed(std::unique_ptr<Matrix> result) const = 0;

    /// Number of stored elements; n times n unless a class stores fewer.
    virtual int Size() const;
    /// The order n.
    virtual int Rows() const;
    /// The order n.
    virtual int Cols() const;

    /// Writes column i of row j, counted from 0; does nothing outside the pattern.
    virtual void Set(int i, int j, float value) = 0;
    /// Reads column i of row j, counted from 0; 0 outside the pattern.
    virtual float Get(int i, int j) const = 0;
    /// Columns stored in row i, counted from 0. Fails: null in classes without a pattern.
    virtual std::unique_ptr<IndexList> RowPattern(int i, std::unique_ptr<IndexList> list) const;
    /// Rows stored in column j, counted from 0. Fails: null in classes without a pattern.
    virtual std::unique_ptr<IndexList> ColumnPattern(int j,
                                                     std::unique_ptr<IndexList> list) const;
    /// Set with both indices counted from 1.
    virtual void Set1(int i, int j, float value) = 0;
    /// Get with both indices counted from 1.
    virtual float Get1(int i, int j) const = 0;
    /// RowPattern with argument and values counted from 1.
    virtual std::unique_ptr<IndexList> RowPattern1(int i,
                                                   std::unique_ptr<IndexList> list) const;
    /// ColumnPattern with argument and values counted from 1.
    virtual std::unique_ptr<IndexList> ColumnPattern1(int j,
                                                      std::unique_ptr<IndexList> list) const;

    /// Sets every position of the pattern to `value`.
    virtual void Fill(float value);
    /// Copies element by element: flag 0 the same layout, any other flag transposed.
    /// Fails:   does nothing for flags 0 and 1 if `other` is not n by n; others don't test.
    /// Quirk:   assign-unknown-flag
    virtual void Assign(const Matrix& other, int transposed);

    /// 0 in every class.
    virtual double ReservedMeasure() const;
    /// A measure of the main diagonal, different from class to class; 0 by default.
    /// Quirk:   diagonal-measure-differs
    virtual double DiagonalMeasure() const;
    /// Root of the sum of the squares of the stored elements where a class gives it, else 0.
    virtual double FrobeniusNorm() const;
    /// Sum of the stored elements where a class gives it, else 0.
    virtual double Sum() const;
    /// Smallest stored element where a class gives it, else 0.
    virtual double Min() const;
    /// Largest stored element where a class gives it, else 0.
    virtual double Max() const;
    /// Sum() / Size(): a mean over the stored elements.
    virtual double Mean() const;
    /// sqrt(mean square - squared mean) of the stored elements where a class gives it, else 0.
    virtual double StdDev() const;

    /// this + other in place, within this pattern.
    virtual void AddMatrix(const Matrix& other);
    /// Every stored element plus a.
    virtual void AddScalar(float a);
    /// this - other in place, within this pattern.
    virtual void SubtractMatrix(const Matrix& other);
    /// Every stored element less a.
    virtual void SubtractScalar(float a);
    /// Every stored element times a.
    virtual void Scale(float a);
    /// Every stored element over a.
    virtual void Divide(float a);

    /// Adds A x' to y', with x' = x[xFrom...] and y' = y[yFrom...]; `accumulate` of 0 first
    /// zeroes y'. A new y has the size of x.
    /// Fails:   null if n exceeds the size of x.
    virtual std::unique_ptr<RealVector> MultiplyRange(const RealVector& x, int xFrom, int yFrom,
                                                      unsigned char accumulate,
                                                      std::unique_ptr<RealVector> y) const;
    /// y = A x; a given y is zeroed as a whole first.
    virtual std::unique_ptr<RealVector> Multiply(const RealVector& x,
                                                 std::unique_ptr<RealVector> y) const;
    /// MultiplyRange with the transpose.
    virtual std::unique_ptr<RealVector> MultiplyTransposedRange(
        const RealVector& x, int xFrom, int yFrom, unsigned char accumulate,
        std::unique_ptr<RealVector> y) const;
    /// y = A-transposed x; a given y is zeroed as a whole first.
    virtual std::unique_ptr<RealVector> MultiplyTransposed(const RealVector& x,
                                                           std::unique_ptr<RealVector> y) const;
    /// MultiplyTransposedRange with the start in y first: matrices are real.
    virtual std::unique_ptr<RealVector> MultiplyAdjointRange(
        const RealVector& x, int yFrom, int xFrom, unsigned char accumulate,
        std::unique_ptr<RealVector> y) const;
    /// MultiplyTransposed: matrices are real.
    virtual std::unique_ptr<RealVector> MultiplyAdjoint(const RealVector& x,
                                                        std::unique_ptr<RealVector> y) const;
    /// MultiplyRange with the start in y first: matrices are real.
    virtual std::unique_ptr<RealVector> MultiplyConjugateRange(
        const RealVector& x, int yFrom, int xFrom, unsigned char accumulate,
        std::unique_ptr<RealVector> y) const;
    /// Multiply: matrices are real.
    virtual std::unique_ptr<RealVector> MultiplyConjugate(const RealVector& x,
                                                          std::unique_ptr<RealVector> y) const;

    /// Element-wise sum; a flag of 1 transposes its operand. A null result is made by Clone()
    /// or, with `transposeThis` of 1, by CloneTransposed().
    /// Fails:   null if the sizes differ or no result could be made; a flag other than 0 and 1
    ///          leaves the result as it stands.
    virtual std::unique_ptr<Matrix> Add(const Matrix& other, int transposeThis,
                                        int transposeOther,
                                        std::unique_ptr<Matrix> result) const;
    /// other.Add(*this, ...) with the flags as they are.
    virtual std::unique_ptr<Matrix> AddReversed(const Matrix& other, int transposeThis,
                                                int transposeOther,
                                                std::unique_ptr<Matrix> result) const;
    /// this - other by the rules of Add.
    virtual std::unique_ptr<Matrix> Subtract(const Matrix& other, int transposeThis,
                                             int transposeOther,
                                             std::unique_ptr<Matrix> result) const;
    /// other - this by the rules of Add.
    virtual std::unique_ptr<Matrix> SubtractFrom(const Matrix& other, int transposeThis,
                                                 int transposeOther,
                                                 std::unique_ptr<Matrix> result) const;
    /// Keeps its place in the table; does nothing.
    virtual void ReservedProduct1();
    /// Keeps its place in the table; does nothing.
    virtual void ReservedProduct2();

    /// Writes the header and the elements row by row to the file, or to the standard output if
    /// `file` is null. Every class has its form here.
    /// Quirk:   shared-print-names
    virtual void PrintTo(std::FILE* file) const;
    /// PrintTo the standard output, which is flushed.
    virtual void Print() const;

    /// A new copy where a class gives it, else null.
    virtual std::unique_ptr<Matrix> Duplicate() const;
    /// A new FullMatrix with the same values.
    virtual std::unique_ptr<Matrix> ToFull() const;
    /// A new DiagonalMatrix with the main diagonal.
    virtual std::unique_ptr<Matrix> ToDiagonal() const;
    /// The part below the diagonal, as a new matrix.
    virtual std::unique_ptr<Matrix> ToStrictLower() const;
    /// The part above the diagonal, as a new matrix.
    virtual std::unique_ptr<Matrix> ToStrictUpper() const;
    /// The part on and below the diagonal, as a new matrix.
    virtual std::unique_ptr<Matrix> ToLower() const;
    /// The part on and above the diagonal, as a new matrix.
    virtual std::unique_ptr<Matrix> ToUpper() const;
    /// The part below the diagonal with ones on it, as a new matrix.
    virtual std::unique_ptr<Matrix> ToUnitLower() const;
    /// The part above the diagonal with ones on it, as a new matrix.
    virtual std::unique_ptr<Matrix> ToUnitUpper() const;

    /// this + other, element by element; a null result is made as a FullMatrix.
    /// Fails:   null if `other` has another size; the same for the five that follow.
    virtual std::unique_ptr<Matrix> Sum2(const Matrix& other,
                                         std::unique_ptr<Matrix> result) const;
    /// other.Sum2(*this, result).
    virtual std::unique_ptr<Matrix> Sum2Reversed(const Matrix& other,
                                                 std::unique_ptr<Matrix> result) const;
    /// this - other, element by element.
    virtual std::unique_ptr<Matrix> Difference2(const Matrix& other,
                                                std::unique_ptr<Matrix> result) const;
    /// other - this, element by element.
    virtual std::unique_ptr<Matrix> DifferenceFrom2(const Matrix& other,
                                                    std::unique_ptr<Matrix> result) const;
    /// The transpose of this times other.
    ///
    ///     result(j, i) = sum over k of other(i, k) this(k, j)
    ///
    /// Quirk:   product-transposed
    virtual std::unique_ptr<Matrix> Product(const Matrix& other,
                                            std::unique_ptr<Matrix> result) const;
    /// The transpose of other times this.
    ///
    ///     result(j, i) = sum over k of other(k, j) this(i, k)
    ///
    /// Quirk:   product-transposed
    virtual std::unique_ptr<Matrix> ProductReversed(const Matrix& other,
                                                    std::unique_ptr<Matrix> result) const;

    /// x = A-inverse b in classes that solve directly, else null.
    virtual std::unique_ptr<RealVector> Solve(const RealVector& b,
                                              std::unique_ptr<RealVector> x) const;
    /// A new inverse in classes that solve directly, else null.
    virtual std::unique_ptr<Matrix> Inverse() const;
    /// The iteration matrix of Jacobi's method.
    ///
    ///     result(i, j) = -A(i, j) / A(j, j)   off the diagonal, 0 on it
    virtual std::unique_ptr<Matrix> JacobiMatrix() const;
    /// b divided by the diagonal, element by element, as a new vector.
    virtual std::unique_ptr<RealVector> JacobiVector(const RealVector& b) const;

    /// Back substitution on the leading m by m block.
    /// Domain:  m from 1 to n; b and x hold at least m elements.
    virtual std::unique_ptr<RealVector> SolveUpperTo(const RealVector& b, int m,
                                                     std::unique_ptr<RealVector> x) const;
    /// Back substitution on the upper part.
    ///
    ///     x[i] = (b[i] - sum over k > i of A(k, i) x[k]) / A(i, i)
    ///
    /// Shapes:  n elements each; b and x may hold the same values but not be one vector.
    virtual std::unique_ptr<RealVector> SolveUpper(const RealVector& b,
                                                   std::unique_ptr<RealVector> x) const;
    /// SolveUpper with ones on the diagonal.
    virtual std::unique_ptr<RealVector> SolveUnitUpper(const RealVector& b,
                                                       std::unique_ptr<RealVector> x) const;
    /// Forward substitution on the lower part.
    ///
    ///     x[i] = (b[i] - sum over k < i of A(k, i) x[k]) / A(i, i)
    virtual std::unique_ptr<RealVector> SolveLower(const RealVector& b,
                                                   std::unique_ptr<RealVector> x) const;
    /// SolveLower with ones on the diagonal.
    virtual std::unique_ptr<RealVector> SolveUnitLower(const RealVector& b,
                                                       std::unique_ptr<RealVector> x) const;
    /// InvertFactor(FactorInPlace(result)) followed by the product of the two factors in place.
    /// Quirk:   inverse-from-factors
    virtual std::unique_ptr<Matrix> InverseFromFactors(std::unique_ptr<Matrix> result) const;

    /// SolveUnitLower, then SolveUpper, on a matrix that holds the factors of FactorLU().
    virtual std::unique_ptr<RealVector> SolveLU(const RealVector& b,
                                                std::unique_ptr<RealVector> x) const;
    /// SolveLower, then SolveUnitUpper, on a matrix that holds the factors of FactorLU1().
    virtual std::unique_ptr<RealVector> SolveLU1(const RealVector& b,
                                                 std::unique_ptr<RealVector> x) const;
    /// L L-transposed x = b, with L in the lower part.
    virtual std::unique_ptr<RealVector> SolveCholeskyLower(const RealVector& b,
                                                           std::unique_ptr<RealVector> x) const;
    /// U U-transposed x = b, with U in the upper part.
    virtual std::unique_ptr<RealVector> SolveCholeskyUpper(const RealVector& b,
                                                           std::unique_ptr<RealVector> x) const;
    /// L D L-transposed x = b, with unit L below and D on the diagonal.
    virtual std::unique_ptr<RealVector> SolveLdl(const RealVector& b,
                                                 std::unique_ptr<RealVector> x) const;
    /// U D U-transposed x = b, with unit U above and D on the diagonal.
    virtual std::unique_ptr<RealVector> SolveUdu(const RealVector& b,
                                                 std::unique_ptr<RealVector> x) const;

    /// Doolittle's factors: unit lower, and upper with the diagonal. No pivoting.
    virtual std::unique_ptr<Matrix> FactorLU() const;
    /// Crout's factors: lower with the diagonal, and unit upper. No pivoting.
    virtual std::unique_ptr<Matrix> FactorLU1() const;
    /// L of A = L L-transposed from the first row down, read from the lower part.
    virtual std::unique_ptr<Matrix> FactorCholesky() const;
    /// U of A = U U-transposed from the last row up, read from the upper part.
    virtual std::unique_ptr<Matrix> FactorCholeskyUpper() const;
    /// L and D of A = L D L-transposed from the first row down, read from the lower part.
    virtual std::unique_ptr<Matrix> FactorLdl() const;
    /// U and D of A = U D U-transposed from the last row up, read from the upper part.
    virtual std::unique_ptr<Matrix> FactorUdu() const;
    /// Eliminates from the last row up in a clone or in `result`, which receives this matrix.
    ///
    ///     for i = n-1 ... 0, k = 0 ... i-1, with a = R(i, k):
    ///         R(i, k) = a (1 / R(i, i));  R(k, m) -= R(i, m) a for m = 0 ... k;  R(k, i) = 0
    virtual std::unique_ptr<Matrix> FactorInPlace(std::unique_ptr<Matrix> result) const;
    /// Inverts a factor of FactorInPlace in a clone or in `result`, which is taken as it is.
    ///
    ///     for b = 0 ... n-1, e = b+1 ... n-1:
    ///         R(e, b) = -R(e, b);  R(e, b) -= R(p, b) R(e, p) for p = b+1 ... e;  R(b, e) = 0
    ///     then R(b, b) = 1 / R(b, b)
    virtual std::unique_ptr<Matrix> InvertFactor(std::unique_ptr<Matrix> result) const;

    /// Incomplete LU factors without fill-in where a class gives them, else null.
    virtual std::unique_ptr<Matrix> IncompleteLU0() const;
    /// Keeps its place in the table; null in every class.
    virtual std::unique_ptr<Matrix> IncompleteFactor1() const;
    /// Keeps its place in the table; null in every class.
    virtual std::unique_ptr<Matrix> IncompleteFactor2() const;
    /// Incomplete LU factors with a drop tolerance where a class gives them, else null.
    virtual std::unique_ptr<Matrix> IncompleteFactor3(double tolerance) const;
    /// Keeps its place in the table; null in every class.
    virtual std::unique_ptr<Matrix> IncompleteFactor4() const;
    /// Keeps its place in the table; null in every class.
    virtual std::unique_ptr<Matrix> IncompleteFactor5() const;
    /// Keeps its place in the table; null in every class.
    virtual std::unique_ptr<Matrix> IncompleteFactor6() const;
    /// Releases `old` and yields ToDiagonal().
    virtual std::unique_ptr<Matrix> MakeDiagonalPreconditioner(
        std::unique_ptr<Matrix> old) const;

    /// One sweep of successive over-relaxation in place; a null x starts from zeros.
    ///
    ///     x[i] = (1 - omega) x[i] + omega (b[i] - l - u) / A(i, i)
    ///
    /// with l and u the sums of A(k, i) x[k] over k below and above i.
    virtual std::unique_ptr<RealVector> SorSweep(const RealVector& b, float omega,
                                                 std::unique_ptr<RealVector> x) const;
    /// Keeps its place in the table; does nothing.
    virtual void ReservedSweep();
    /// A new ExplicitSsor on this matrix, with an omega that it estimates and prints.
    virtual std::unique_ptr<Matrix> MakeExplicitSsor() const;
    /// The three factors of symmetric successive over-relaxation, each new.
    ///
    ///     v = d / omega;  lower(i, i) = v - lower(i, i);  upper likewise;
    ///     diagonal(i, i) = (2 - omega) / v
    virtual void SsorFactorsFull(float omega, std::unique_ptr<Matrix>& lower,
                                 std::unique_ptr<Matrix>& diagonal,
                                 std::unique_ptr<Matrix>& upper) const;
    /// SsorFactorsFull without the upper factor.
    virtual void SsorFactors(float omega, std::unique_ptr<Matrix>& lower,
                             std::unique_ptr<Matrix>& diagonal) const;
    /// SsorFactorsFull with v = 1 / omega, and the number (2 - omega) omega for the diagonal.
    virtual void SsorScaledFull(float omega, float& scale, std::unique_ptr<Matrix>& lower,
                                std::unique_ptr<Matrix>& upper) const;
    /// SsorScaledFull without the upper factor.
    virtual void SsorScaled(float omega, float& scale, std::unique_ptr<Matrix>& lower) const;
    /// Keeps its place in the table; null in every class.
    virtual std::unique_ptr<Matrix> FullOnlyFactor() const;

    /// `count` times GaussSeidelSweep.
    virtual std::unique_ptr<RealVector> GaussSeidelIterate(int count, const RealVector& b,
                                                           std::unique_ptr<RealVector> x) const;
    /// `count` times JacobiSweep through one extra vector.
    virtual std::unique_ptr<RealVector> JacobiIterate(int count, const RealVector& b,
                                                      std::unique_ptr<RealVector> x) const;
    /// `count` times SorSweep.
    virtual std::unique_ptr<RealVector> SorIterate(int count, const RealVector& b, float omega,
                                                   std::unique_ptr<RealVector> x) const;
    /// SorSweep with omega left out: x[i] = (b[i] - l - u) / A(i, i), in place.
    virtual std::unique_ptr<RealVector> GaussSeidelSweep(const RealVector& b,
                                                         std::unique_ptr<RealVector> x) const;
    /// The Gauss-Seidel formula with both sums from x, written to y.
    virtual std::unique_ptr<RealVector> JacobiSweep(const RealVector& b, const RealVector& x,
                                                    std::unique_ptr<RealVector> y) const;
    /// `count` steps y = A x, m = max |y|, x = y / m; `eigenvalue` receives m.
    ///
    /// Domain:  x not null: a null x is made of zeros, on which every step divides 0 by 0.
    virtual std::unique_ptr<RealVector> PowerIteration(int count, std::unique_ptr<RealVector> x,
                                                       double& eigenvalue) const;
    /// Keeps its place in the table; null in every class.
    virtual std::unique_ptr<RealVector> ReservedIteration(const RealVector* a,
                                                          const RealVector* b,
                                                          const RealVector* c,
                                                          const RealVector* d) const;
    /// (A x . x) / (x . x). Fails: NaN if the sizes differ.
    virtual double RayleighQuotient(const RealVector& x) const;

  protected:
    /// A matrix of order n without elements.
    explicit Matrix(int n) : n_(n) {}
    Matrix(const Matrix&) = default;

    /// The elements by rows, without a header; to the standard output if `file` is null.
    void printElements(std::FILE* file) const;

    int n_;
};

}  // namespace orv
