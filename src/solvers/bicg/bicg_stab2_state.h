#pragma once

#include <memory>

namespace orv {

class RealVector;

/// The scalars and vectors of BiCGStab(2) and the steps that don't tell whether the system is
/// preconditioned. A solver calls them in the order in which they stand here; between them it
/// forms the products v, s, w and t and updates u.
///
/// Shapes:  every vector n floats, made by the solver.
/// Source:  [SleijpenFokkema1993]
struct BicgStab2State {
    BicgStab2State();
    ~BicgStab2State();

    /// rTilde = r, rho0 = omega2 = 1 and alpha = 0, which takes what uHat holds out of the first
    /// direction.
    ///
    /// Quirk:   bicgstab2-keeps-direction
    void Begin();

    /// rho0 = -(omega2 rho0), beta from rTilde.r, uHat = -beta uHat + r.
    void TurnEven();
    /// alpha from v, r = r - alpha v.
    void StepEven();

    /// beta from rTilde.s, v = -beta v + s.
    void TurnOdd();
    /// alpha from w, uHat = -beta uHat + r, r = r - alpha v, s = s - alpha w.
    void StepOdd();

    /// omega1 and omega2 that make r - omega1 s - omega2 t smallest.
    void ChooseOmegas();
    /// r = r - omega1 s - omega2 t.
    void LowerResidual();
    /// uHat = uHat - omega1 v - omega2 w.
    void LowerDirection();

    double alpha = 0.0;
    double beta = 0.0;
    double gamma = 0.0;
    double rho0 = 0.0;
    double rho1 = 0.0;
    double omega1 = 0.0;
    double omega2 = 0.0;
    std::unique_ptr<RealVector> r;
    std::unique_ptr<RealVector> uHat;
    std::unique_ptr<RealVector> v;
    std::unique_ptr<RealVector> w;
    std::unique_ptr<RealVector> rTilde;
    std::unique_ptr<RealVector> s;
    std::unique_ptr<RealVector> t;

  private:
    /// rho1 = rTilde.x, beta = rho1 alpha / rho0, rho0 = rho1.
    void nextBeta(const RealVector& x);
    /// alpha = rho0 / x.rTilde.
    void nextAlpha(const RealVector& x);
};

}  // namespace orv
