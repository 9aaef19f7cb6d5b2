#pragma once

#include <memory>

#include "solvers/linear_solver.h"

namespace orv {

/// Direct solution by triangular factors without pivoting; O(n) on tridiagonal matrices, where
/// it is the Thomas algorithm.
///
/// The factors are kept between calls, so a caller that changes A has to call `Reset` first.
///
/// Fails:   a zero pivot is not tested: u fills with infinities or NaN. Sizes that don't fit
///          give null, as the matrix operations do.
/// Source:  [Deriche1993]
class ThomasSolver : public LinearSolver {
  public:
    /// How A is split in two triangles.
    enum class Method {
        Doolittle = 0,  ///< unit lower times upper
        Crout = 1,      ///< lower times unit upper
    };

    /// The solver list makes Doolittle's form alone.
    explicit ThomasSolver(Method method = Method::Doolittle);
    ~ThomasSolver() override;

    /// Raises `refactorise`: the next `Solve` makes new factors.
    void Reset() override;

    /// Factorises if there is need and solves the two triangles.
    ///
    /// There is need after construction, after `Reset`, and when A has another order than the
    /// factors. `rebuild` drops the factors afterwards, so that the next call makes new ones.
    ///
    /// Shapes:  b and u of A.Rows() floats; a null u is made.
    /// Cost:    the factorisation and the two solves of A's class.
    std::unique_ptr<RealVector> Solve(const Matrix& A, const RealVector& b, bool rebuild,
                                      std::unique_ptr<RealVector> u) override;

    /// Solves and keeps the factors.
    std::unique_ptr<RealVector> Solve(const Matrix& A, const RealVector& b,
                                      std::unique_ptr<RealVector> u) override;

    /// Replaces the factors by those of A.
    virtual void Factorise(const Matrix& A);

    /// Whether factors stand for the next call.
    bool hasFactors() const { return factors_ != nullptr; }

  private:
    void prepareWork(const Matrix& A);

    Method method_;
    bool refactorise_ = true;
    std::unique_ptr<Matrix> factors_;
    std::unique_ptr<RealVector> work_;
};

}  // namespace orv
