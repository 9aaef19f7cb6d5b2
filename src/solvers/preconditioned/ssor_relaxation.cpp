#include "solvers/preconditioned/ssor_relaxation.h"

#include "algebra/preconditioners/explicit_ssor.h"

namespace orv {

namespace {

constexpr double kOverRelaxation = 1.1;

}  // namespace

std::unique_ptr<Matrix> SsorRelaxation::MakePreconditioner(const Matrix& A) {
    if (!sgs_) {
        omega_ = kOverRelaxation;
    }
    return std::make_unique<ExplicitSsor>(A, omega_);
}

}  // namespace orv
