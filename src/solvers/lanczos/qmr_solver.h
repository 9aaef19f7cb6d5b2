#pragma once

#include <memory>

#include "solvers/lanczos/counting_solver.h"

namespace orv {

/// Quasi-minimal residuals without look-ahead, with Lanczos vectors that keep their direction.
///
///     v = v / rho                  w = w / xi           delta = v.w
///     k = 1:  p = v                q = w
///     k > 1:  p = v - (delta xi / epsilon) p            q = w - (delta rho / epsilon) q
///     pTilde = A p                 epsilon = q.pTilde   beta = epsilon / delta
///     vTilde = pTilde - beta v     rhoOld = rho         rho = |vTilde|
///     wTilde = A^T q - beta w      xi = |wTilde|
///     thetaOld = theta             gammaOld = gamma
///     theta = rho / (gammaOld beta)                     gamma = 1 / sqrt(theta^2 + 1)
///     eta = -(gamma eta gamma rhoOld) / (gammaOld beta gammaOld)
///     k = 1:  d = eta p            s = eta pTilde
///     k > 1:  h = (gamma thetaOld)^2,  d = h d + eta p,  s = h s + eta pTilde
///     u = u + d                    r = r - s
///
/// Shapes:  A n x n with a transposed product; b, u and the work vectors r, d, s, v, w, vTilde,
///          wTilde, p, pTilde, q n floats.
/// Stops:   sqrt(r.r) < tol (absolute), on the start residual and after the update of r; at
///          most maxIter iterations.
/// Fails:   a zero rho, xi, delta, epsilon, beta or gamma ends the iteration where it is met,
///          with u as it is and `converged` low, and the loop goes on: zeros of rho, xi and
///          delta are met again, a zero epsilon divides in the next iteration, which fills u
///          with NaN.
/// Cost:    two products and 16 vector passes an iteration; 10 n floats kept.
/// Quirk:   qmr-shrinking-vectors
/// Source:  [FreundNachtigal1991]
class QmrSolver : public CountingSolver {
  public:
    /// At most `maxIter` iterations.
    QmrSolver(int maxIter, double tol);
    ~QmrSolver() override;

    using IterativeLinearSolver::Solve;
    /// Starts both Lanczos recurrences from the residual of u and runs the loop.
    std::unique_ptr<RealVector> Solve(const Matrix& A, const RealVector& b,
                                      std::unique_ptr<RealVector> u) override;

    /// One iteration.
    std::unique_ptr<RealVector> Iterate(const Matrix& A, const RealVector& b,
                                        std::unique_ptr<RealVector> u) override;

  private:
    bool findDirections(const Matrix& A);
    void extendLanczos(const Matrix& A);
    bool findStep(double rhoOld);
    void combine(double thetaOld);

    double beta_ = 0.0;
    double rho_ = 0.0;
    double xi_ = 0.0;
    double xiCopy_ = 0.0;
    double theta_ = 0.0;
    double gamma_ = 0.0;
    double epsilon_ = 0.0;
    double eta_ = 0.0;
    std::unique_ptr<RealVector> r_;
    std::unique_ptr<RealVector> d_;
    std::unique_ptr<RealVector> s_;
    std::unique_ptr<RealVector> v_;
    std::unique_ptr<RealVector> w_;
    std::unique_ptr<RealVector> vTilde_;
    std::unique_ptr<RealVector> wTilde_;
    std::unique_ptr<RealVector> p_;
    std::unique_ptr<RealVector> pTilde_;
    std::unique_ptr<RealVector> q_;
};

}  // namespace orv
