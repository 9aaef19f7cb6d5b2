#include "solvers/bicg/bicg_stab2_solver.h"

#include <utility>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"
#include "base/rounding.h"

namespace orv {

BicgStab2Solver::BicgStab2Solver(int maxIter, double tol)
    : IterativeLinearSolver(maxIter, tol) {}

BicgStab2Solver::~BicgStab2Solver() = default;

std::unique_ptr<RealVector> BicgStab2Solver::Solve(const Matrix& A, const RealVector& b,
                                                   std::unique_ptr<RealVector> u) {
    u = StartVector(b, std::move(u));
    BicgStab2State& k = state_;
    PrepareWork(A.Rows(), {&k.r, &k.uHat, &k.v, &k.w, &k.rTilde, &k.s, &k.t});
    converged_ = false;

    FormResidual(A, b, *u, *k.r, k.s);
    if (IsBelowTolerance(*k.r)) {
        return u;
    }
    k.Begin();
    return RunIterations(A, b, std::move(u));
}

std::unique_ptr<RealVector> BicgStab2Solver::Iterate(const Matrix& A, const RealVector& /*b*/,
                                                     std::unique_ptr<RealVector> u) {
    BicgStab2State& k = state_;
    k.TurnEven();
    k.v = A.Multiply(*k.uHat, std::move(k.v));
    k.StepEven();
    k.s = A.Multiply(*k.r, std::move(k.s));
    u->AddScaled(toFloat(k.alpha), *k.uHat);

    // u takes the step alpha uHat of this half in the update of the plane step.
    k.TurnOdd();
    k.w = A.Multiply(*k.v, std::move(k.w));
    k.StepOdd();
    k.t = A.Multiply(*k.s, std::move(k.t));

    k.ChooseOmegas();
    u->AddScaled3(toFloat(k.omega1), *k.r, toFloat(k.omega2), *k.s, toFloat(k.alpha), *k.uHat);
    k.LowerResidual();
    if (IsBelowTolerance(*k.r)) {
        converged_ = true;
        return u;
    }
    k.LowerDirection();
    return u;
}

}  // namespace orv
