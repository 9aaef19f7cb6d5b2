#pragma once

#include <cmath>
#include <utility>

#include "base/rounding.h"
#include "solvers/preconditioned/preconditioner_probe.h"

namespace orv::test {

/// BiCGStab with the preconditioner M, written down step by step. With `resetDirection` the first
/// direction is r, as in the literature, and not what p = r and v = A u make of it.
inline TranscribedRun transcribedStab(const Matrix& A, const Matrix& M, const RealVector& b,
                                      RealVector u, int maxIter, double tol,
                                      bool resetDirection = false) {
    RealVector r(b);
    RealVector v(*A.Multiply(u, nullptr));
    r.AddScaled(-1.0F, v);
    TranscribedRun run{u, false, 0};
    if (std::sqrt(r.SumOfSquares()) < tol) {
        return run;
    }
    const RealVector rTilde(r);
    RealVector p(r);
    double alpha = 1.0;
    double omegaStab = 1.0;
    double rho = 1.0;
    while (run.iterations < maxIter && !run.converged) {
        const double rhoOld = rho;
        rho = rTilde.Dot(r);
        const double beta = (alpha / omegaStab) * (rho / rhoOld);
        if (resetDirection && run.iterations == 0) {
            p.CopyFrom(r);
        } else {
            p.ScaleAddScaled2(toFloat(beta), 1.0F, r, toFloat(-(beta * omegaStab)), v);
        }
        ++run.iterations;
        const auto y = M.Solve(p, nullptr);
        v = *A.Multiply(*y, nullptr);
        alpha = rho / rTilde.Dot(v);
        RealVector s(r);
        s.AddScaled(toFloat(-alpha), v);
        if (std::sqrt(s.SumOfSquares()) < tol) {
            run.converged = true;
            u.AddScaled(toFloat(alpha), *y);
            break;
        }
        const auto z = M.Solve(s, nullptr);
        const auto t = A.Multiply(*z, nullptr);
        const float ts = toFloat(s.Dot(*t));
        omegaStab = double{ts} / t->Dot(*t);
        u.AddScaled2(toFloat(alpha), *y, toFloat(omegaStab), *z);
        r = s;
        r.AddScaled(toFloat(-omegaStab), *t);
        run.converged = std::sqrt(r.SumOfSquares()) < tol;
    }
    run.u = u;
    return run;
}

}  // namespace orv::test
