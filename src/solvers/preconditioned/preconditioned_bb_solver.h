#pragma once

#include <memory>

#include "solvers/preconditioned/preconditioned_solver.h"
#include "solvers/preconditioned/ssor_preconditioned.h"

namespace orv {

/// Barzilai-Borwein descent with an SSOR preconditioner M, ids 33 ("SGS-BB") and 37 ("SSOR-BB"),
/// for a symmetric positive definite A.
///
///     z = M-inverse g        gz = g.z, in single precision
///     w = A z                step = -1 / alpha, in single precision
///     u = u + step z         g = g + step w
///     alpha = z.w / gz
///
/// with g = A u - b and alpha = 0.5 at the start: the first step is -2 z. Unlike the plain
/// method, g is carried on and not formed again from u.
///
/// Shapes:  A n x n; b, u and the work vectors g, w, z n floats.
/// Stops:   sqrt(g.g) < tol (absolute), after the update of g and not on the start vector; at
///          most maxIter iterations.
/// Fails:   gz = 0 and alpha = 0 are not tested: u fills with NaN and the loop runs to maxIter.
/// Cost:    one product, one application of M, three dot products and two updates an iteration;
///          3 n floats kept, M made at each `Solve`.
/// Source:  [MolinaRaydan1996], [BarzilaiBorwein1988]
class PreconditionedBbSolver : public SsorPreconditioned<PreconditionedSolver> {
  public:
    /// At most `maxIter` steps; `sgs` relaxes M by 1 instead of 1.1.
    PreconditionedBbSolver(int maxIter, double tol, bool sgs);
    ~PreconditionedBbSolver() override;

    /// One step.
    std::unique_ptr<RealVector> Iterate(const Matrix& A, const RealVector& b,
                                        std::unique_ptr<RealVector> u) override;

  protected:
    void PrepareVectors(int n) override;
    bool Start(const Matrix& A, const RealVector& b, const RealVector& u) override;

  private:
    double alpha_ = 0.0;
    std::unique_ptr<RealVector> g_;
    std::unique_ptr<RealVector> w_;
    std::unique_ptr<RealVector> z_;
};

}  // namespace orv
