#pragma once

#include <memory>

namespace orv {

class Matrix;

/// The one difference between the "SGS" and the "SSOR" solver of a pair: the omega of their
/// preconditioner, 1 for symmetric Gauss-Seidel and 1.1 for over-relaxation.
class SsorRelaxation {
  public:
    /// omega is 1 either way until a preconditioner is made.
    explicit SsorRelaxation(bool sgs) : sgs_(sgs) {}

    /// A new ExplicitSsor of A; without `sgs` it sets omega to 1.1 first.
    std::unique_ptr<Matrix> MakePreconditioner(const Matrix& A);

    /// The omega of the last preconditioner.
    double omega() const { return omega_; }

  private:
    bool sgs_;
    double omega_ = 1.0;
};

}  // namespace orv
