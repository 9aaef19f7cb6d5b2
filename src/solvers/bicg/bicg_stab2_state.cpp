#include "solvers/bicg/bicg_stab2_state.h"

#include "algebra/real_vector.h"
#include "base/rounding.h"

namespace orv {

BicgStab2State::BicgStab2State() = default;

BicgStab2State::~BicgStab2State() = default;

void BicgStab2State::Begin() {
    rTilde->CopyFrom(*r);
    rho0 = 1.0;
    omega2 = 1.0;
    // The first even step multiplies what uHat holds by 0.
    alpha = 0.0;  // quirk: bicgstab2-keeps-direction
}

void BicgStab2State::TurnEven() {
    rho0 = -(omega2 * rho0);
    nextBeta(*r);
    uHat->ScaleAdd(toFloat(-beta), *r);
}

void BicgStab2State::StepEven() {
    nextAlpha(*v);
    r->AddScaled(toFloat(-alpha), *v);
}

void BicgStab2State::TurnOdd() {
    nextBeta(*s);
    v->ScaleAdd(toFloat(-beta), *s);
}

void BicgStab2State::StepOdd() {
    nextAlpha(*w);
    uHat->ScaleAdd(toFloat(-beta), *r);
    r->AddScaled(toFloat(-alpha), *v);
    s->AddScaled(toFloat(-alpha), *w);
}

void BicgStab2State::ChooseOmegas() {
    omega1 = r->Dot(*s);
    const double mu = s->SumOfSquares();
    const double nu = s->Dot(*t);
    const double tauSq = t->SumOfSquares();
    omega2 = (r->Dot(*t) - nu * omega1 / mu) / (tauSq - nu * nu / mu);
    omega1 = (omega1 - omega2 * nu) / mu;
}

void BicgStab2State::LowerResidual() {
    r->AddScaled2(toFloat(-omega1), *s, toFloat(-omega2), *t);
}

void BicgStab2State::LowerDirection() {
    uHat->AddScaled2(toFloat(-omega1), *v, toFloat(-omega2), *w);
}

void BicgStab2State::nextBeta(const RealVector& x) {
    rho1 = rTilde->Dot(x);
    beta = rho1 * alpha / rho0;
    rho0 = rho1;
}

void BicgStab2State::nextAlpha(const RealVector& x) {
    gamma = x.Dot(*rTilde);
    alpha = rho0 / gamma;
}

}  // namespace orv
