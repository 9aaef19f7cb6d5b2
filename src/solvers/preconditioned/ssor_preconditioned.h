#pragma once

#include <memory>

#include "algebra/preconditioners/explicit_ssor.h"

namespace orv {

/// A solver with an SSOR preconditioner: the frame or recurrence `Base` and the one difference
/// between the "SGS" and the "SSOR" solver of a pair, the omega of their preconditioner. It is 1
/// for symmetric Gauss-Seidel and 1.1 for over-relaxation.
template <class Base>
class SsorPreconditioned : public Base {
  public:
    /// A new ExplicitSsor of A; an "SSOR" solver sets omega to 1.1 first.
    std::unique_ptr<Matrix> MakePreconditioner(const Matrix& A) override {
        if (!sgs_) {
            omega_ = 1.1;
        }
        return std::make_unique<ExplicitSsor>(A, omega_);
    }

    /// The relaxation of the last preconditioner, 1 before the first.
    double omega() const { return omega_; }

  protected:
    /// At most `maxIter` iterations; `sgs` leaves omega at 1.
    SsorPreconditioned(int maxIter, double tol, bool sgs) : Base(maxIter, tol), sgs_(sgs) {}

  private:
    bool sgs_;
    double omega_ = 1.0;
};

}  // namespace orv
