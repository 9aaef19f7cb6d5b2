#pragma once

#include <memory>

#include "solvers/preconditioned/preconditioned_solver.h"
#include "solvers/preconditioned/ssor_preconditioned.h"

namespace orv {

/// Conjugate gradients with an SSOR preconditioner M, ids 34 ("SGS-CG") and 38 ("SSOR-CG"), for a
/// symmetric positive definite A.
///
///     q = A p                gz = g.z, in single precision
///     alpha = gz / p.q       u = u + alpha p        g = g + alpha q
///     z = M-inverse g        beta = g.z / gz        p = beta p - z
///
/// with g = A u - b, z = M-inverse g and p = -z at the start.
///
/// Shapes:  A n x n; b, u and the work vectors g, p, q, z n floats.
/// Stops:   sqrt(g.g) < tol (absolute), on the start vector and after the update of g; at most
///          maxIter iterations.
/// Fails:   p.q = 0 and gz = 0 are not tested: u fills with NaN and the loop runs to maxIter.
/// Cost:    one product, one application of M, three dot products and three updates an
///          iteration; 4 n floats kept, M made at each `Solve`.
/// Source:  [HestenesStiefel1952]; [Saad2003], algorithm 9.1
class PreconditionedCgSolver : public SsorPreconditioned<PreconditionedSolver> {
  public:
    /// At most `maxIter` steps; `sgs` relaxes M by 1 instead of 1.1.
    PreconditionedCgSolver(int maxIter, double tol, bool sgs);
    ~PreconditionedCgSolver() override;

    /// One step.
    std::unique_ptr<RealVector> Iterate(const Matrix& A, const RealVector& b,
                                        std::unique_ptr<RealVector> u) override;

  protected:
    void PrepareVectors(int n) override;
    bool Start(const Matrix& A, const RealVector& b, const RealVector& u) override;

  private:
    double alpha_ = 0.0;
    double beta_ = 0.0;
    double gz_ = 0.0;  ///< g.z of the current g and z
    std::unique_ptr<RealVector> g_;
    std::unique_ptr<RealVector> p_;
    std::unique_ptr<RealVector> q_;
    std::unique_ptr<RealVector> z_;
};

}  // namespace orv
