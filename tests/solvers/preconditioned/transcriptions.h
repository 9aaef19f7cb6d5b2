#pragma once

#include <cmath>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"
#include "base/rounding.h"

namespace orv::test {

/// What is left of a transcribed run.
struct TranscribedRun {
    RealVector u;
    bool converged = false;
    int iterations = 0;
};

/// Barzilai-Borwein descent with the preconditioner M, written down step by step as all that
/// follow.
inline TranscribedRun transcribedBb(const Matrix& A, const Matrix& M, const RealVector& b,
                                    RealVector u, int maxIter, double tol) {
    RealVector g(*A.Multiply(u, nullptr));
    g.AddScaled(-1.0F, b);
    double alpha = 0.5;
    TranscribedRun run{u, false, 0};
    while (run.iterations < maxIter && !run.converged) {
        ++run.iterations;
        const auto z = M.Solve(g, nullptr);
        const float gz = toFloat(g.Dot(*z));
        const auto w = A.Multiply(*z, nullptr);
        const float step = toFloat(-1.0 / alpha);
        u.AddScaled(step, *z);
        g.AddScaled(step, *w);
        run.converged = std::sqrt(g.SumOfSquares()) < tol;
        alpha = z->Dot(*w) / double{gz};
    }
    run.u = u;
    return run;
}

/// Conjugate gradients with the preconditioner M.
inline TranscribedRun transcribedCg(const Matrix& A, const Matrix& M, const RealVector& b,
                                    RealVector u, int maxIter, double tol) {
    RealVector g(*A.Multiply(u, nullptr));
    g.AddScaled(-1.0F, b);
    TranscribedRun run{u, false, 0};
    if (std::sqrt(g.SumOfSquares()) < tol) {
        return run;
    }
    auto z = M.Solve(g, nullptr);
    RealVector p(u.size());
    p.AddScaled(-1.0F, *z);
    while (run.iterations < maxIter && !run.converged) {
        ++run.iterations;
        const auto q = A.Multiply(p, nullptr);
        const float gz = toFloat(g.Dot(*z));
        const double alpha = double{gz} / p.Dot(*q);
        u.AddScaled(toFloat(alpha), p);
        g.AddScaled(toFloat(alpha), *q);
        run.converged = std::sqrt(g.SumOfSquares()) < tol;
        z = M.Solve(g, nullptr);
        const double beta = g.Dot(*z) / double{gz};
        p.ScaleAddScaled(toFloat(beta), -1.0F, *z);
    }
    run.u = u;
    return run;
}

/// BiCGStab with the preconditioner M. With `resetDirection` the first
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

/// BiCGStab(2) with the preconditioner M, on a fresh solver. With `renew` the last update of u
/// takes the preconditioned vectors of the moment, as it should: it then solves the system.
inline TranscribedRun transcribedStab2(const Matrix& A, const Matrix& M, const RealVector& b,
                                       RealVector u, int maxIter, double tol,
                                       bool renew = false) {
    RealVector r(b);
    r.AddScaled(-1.0F, *A.Multiply(u, nullptr));
    TranscribedRun run{u, false, 0};
    if (std::sqrt(r.SumOfSquares()) < tol) {
        return run;
    }
    const RealVector rTilde(r);
    RealVector uHat(u.size());
    double rho0 = 1.0;
    double omega2 = 1.0;
    double alpha = 0.0;
    while (run.iterations < maxIter && !run.converged) {
        ++run.iterations;
        rho0 = -(omega2 * rho0);
        double rho1 = rTilde.Dot(r);
        double beta = rho1 * alpha / rho0;
        rho0 = rho1;
        uHat.ScaleAdd(toFloat(-beta), r);
        const RealVector z1(*M.Solve(uHat, nullptr));
        RealVector v(*A.Multiply(z1, nullptr));
        alpha = rho0 / v.Dot(rTilde);
        r.AddScaled(toFloat(-alpha), v);
        const RealVector z2(*M.Solve(r, nullptr));
        RealVector s(*A.Multiply(z2, nullptr));
        u.AddScaled(toFloat(alpha), z1);
        rho1 = rTilde.Dot(s);
        beta = rho1 * alpha / rho0;
        rho0 = rho1;
        v.ScaleAdd(toFloat(-beta), s);
        const RealVector z3(*M.Solve(v, nullptr));
        const RealVector w(*A.Multiply(z3, nullptr));
        alpha = rho0 / w.Dot(rTilde);
        uHat.ScaleAdd(toFloat(-beta), r);
        r.AddScaled(toFloat(-alpha), v);
        s.AddScaled(toFloat(-alpha), w);
        const RealVector z4(*M.Solve(s, nullptr));
        const RealVector t(*A.Multiply(z4, nullptr));
        double omega1 = r.Dot(s);
        const double mu = s.Dot(s);
        const double nu = s.Dot(t);
        const double tauSq = t.Dot(t);
        omega2 = (r.Dot(t) - nu * omega1 / mu) / (tauSq - nu * nu / mu);
        omega1 = (omega1 - omega2 * nu) / mu;
        const RealVector zu = renew ? *M.Solve(uHat, nullptr) : z1;
        const RealVector zr = renew ? *M.Solve(r, nullptr) : z2;
        u.AddScaled3(toFloat(omega1), zr, toFloat(omega2), z4, toFloat(alpha), zu);
        r.AddScaled2(toFloat(-omega1), s, toFloat(-omega2), t);
        run.converged = std::sqrt(r.SumOfSquares()) < tol;
        uHat.AddScaled2(toFloat(-omega1), v, toFloat(-omega2), w);
    }
    run.u = u;
    return run;
}

}  // namespace orv::test
