#pragma once

#include <memory>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"

namespace orv {

/// The Lanczos recurrence of a symmetric A with the rotation that turns its tridiagonal matrix
/// into a triangular one: what SYMMLQ and MINRES have in common.
///
///     t = A v - beta vOld          alpha = v.t          t = t - alpha v
///     beta = |t|                   vOld = v             v = t / beta
///     x = alpha s - gamma c        y = beta s           g = -gamma s - alpha c
///     gamma = beta c               rot = sqrt(beta^2 + g^2)
///     c = g / rot                  s = beta / rot
///
/// Shapes:  r, v, t, vOld n floats; the solver that holds the recurrence makes them.
/// Fails:   beta = 0, the end of the Krylov space, is not tested: v fills with NaN.
/// Cost:    one product and seven vector passes a step.
/// Source:  [PaigeSaunders1975], sections 2 and 5
struct SymmetricLanczos {
    /// What a step leaves of its column of the triangular matrix: rot on the diagonal, x and y
    /// beside it.
    struct Column {
        double x;
        double y;
        double rot;
    };

    /// v = r / norm, vOld = 0, and the scalars of a recurrence that has made no step.
    void Begin(double norm);

    /// One step of the recurrence and its rotation.
    Column Advance(const Matrix& A);

    double beta = 0.0;
    double gamma = 0.0;
    double c = 0.0;
    double s = 0.0;
    std::unique_ptr<RealVector> r;
    std::unique_ptr<RealVector> v;
    std::unique_ptr<RealVector> t;
    std::unique_ptr<RealVector> vOld;
};

}  // namespace orv
