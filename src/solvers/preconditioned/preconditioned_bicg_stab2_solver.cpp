#include "solvers/preconditioned/preconditioned_bicg_stab2_solver.h"

#include <utility>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"
#include "base/rounding.h"

namespace orv {

PreconditionedBicgStab2Solver::PreconditionedBicgStab2Solver(int maxIter, double tol, bool sgs)
    : SsorPreconditioned(maxIter, tol, sgs) {}

PreconditionedBicgStab2Solver::~PreconditionedBicgStab2Solver() = default;

void PreconditionedBicgStab2Solver::PrepareVectors(int n) {
    BicgStab2State& k = state_;
    PrepareWork(n, {&k.r, &k.uHat, &k.v, &k.w, &k.rTilde, &k.s, &k.t, &z1_, &z2_, &z3_, &z4_});
}

bool PreconditionedBicgStab2Solver::Start(const Matrix& A, const RealVector& b,
                                          const RealVector& u) {
    FormResidual(A, b, u, *state_.r, state_.s);
    if (IsBelowTolerance(*state_.r)) {
        return true;
    }
    state_.Begin();
    return false;
}

std::unique_ptr<RealVector> PreconditionedBicgStab2Solver::Iterate(
    const Matrix& A, const RealVector& /*b*/, std::unique_ptr<RealVector> u) {
    BicgStab2State& k = state_;
    k.TurnEven();
    Precondition(*k.uHat, z1_);
    k.v = A.Multiply(*z1_, std::move(k.v));
    k.StepEven();
    Precondition(*k.r, z2_);
    k.s = A.Multiply(*z2_, std::move(k.s));
    u->AddScaled(toFloat(k.alpha), *z1_);

    k.TurnOdd();
    Precondition(*k.v, z3_);
    k.w = A.Multiply(*z3_, std::move(k.w));
    k.StepOdd();
    Precondition(*k.s, z4_);
    k.t = A.Multiply(*z4_, std::move(k.t));

    k.ChooseOmegas();
    // z1 and z2 belong to uHat and r before the odd step.
    // quirk: stab2-stale-direction
    u->AddScaled3(toFloat(k.omega1), *z2_, toFloat(k.omega2), *z4_, toFloat(k.alpha), *z1_);
    k.LowerResidual();
    if (IsBelowTolerance(*k.r)) {
        converged_ = true;
        return u;
    }
    k.LowerDirection();
    return u;
}

}  // namespace orv
