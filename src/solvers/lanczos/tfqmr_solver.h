#pragma once

#include <memory>

#include "solvers/lanczos/counting_solver.h"

namespace orv {

/// Transpose-free quasi-minimal residuals, started with the image of u in place of that of the
/// residual: a solver for comparisons, not for results.
///
///     start:      y = b - A u,  rTilde = w = y,  v = z = A u,  d = 0
///     sigma = rTilde.z             alpha = rho / sigma
///     y = y - alpha z              w = w - alpha v      half step
///     v = A y                      w = w - alpha v      half step
///     rhoOld = rho                 rho = rTilde.w       beta = rho / rhoOld
///     y = beta y + w               z = beta^2 z + beta v + A y         v = A y
///
///     half step:  thetaOld = theta, theta = |w| / tau   c = 1 / sqrt(theta^2 + 1)
///                 tau = theta tau c                     etaOld = eta,  eta = c^2 alpha
///                 d = (etaOld thetaOld^2 / alpha) d + y
///                 u = u + eta d
///
/// Shapes:  A n x n; b, u and the work vectors y, rTilde, v, z, w, d n floats.
/// Stops:   sqrt(y.y) < tol (absolute) on the start residual and after the half steps; y is a
///          search vector then, no residual. At most maxIter iterations.
/// Fails:   sigma = 0, so every start with A u = 0, leaves u as it is in each iteration; rhoOld
///          = 0 ends the iteration after its half steps. `converged` stays low in both.
/// Cost:    two products and 15 vector passes an iteration; 6 n floats kept.
/// Quirk:   tfqmr-start-image
/// Source:  [Freund1993]
class TfqmrSolver : public CountingSolver {
  public:
    /// At most `maxIter` iterations, each of two half steps.
    TfqmrSolver(int maxIter, double tol);
    ~TfqmrSolver() override;

    using IterativeLinearSolver::Solve;
    /// Forms the start vectors and runs the loop.
    std::unique_ptr<RealVector> Solve(const Matrix& A, const RealVector& b,
                                      std::unique_ptr<RealVector> u) override;

    /// Two half steps.
    std::unique_ptr<RealVector> Iterate(const Matrix& A, const RealVector& b,
                                        std::unique_ptr<RealVector> u) override;

  private:
    void halfStep(double alpha, RealVector& u);

    double rho_ = 0.0;
    double theta_ = 0.0;
    double tau_ = 0.0;
    double eta_ = 0.0;
    std::unique_ptr<RealVector> y_;
    std::unique_ptr<RealVector> rTilde_;
    std::unique_ptr<RealVector> v_;
    std::unique_ptr<RealVector> z_;
    std::unique_ptr<RealVector> w_;
    std::unique_ptr<RealVector> d_;
};

}  // namespace orv
