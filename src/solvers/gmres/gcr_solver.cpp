#include "solvers/gmres/gcr_solver.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"
#include "base/rounding.h"

namespace orv {

GcrSolver::GcrSolver(int maxIter, int m, double tol)
    : IterativeLinearSolver(maxIter, tol), m_(std::max(m, 2)), H_(m_) {}

GcrSolver::~GcrSolver() = default;

// A limit of any size costs memory only for the directions that a solve comes to.
void GcrSolver::prepareDirection() {
    p_.reach(j_ + 1);
    ap_.reach(j_);
    H_.reach(j_ + 1);
    if (d_.size() == static_cast<std::size_t>(j_)) {
        d_.push_back(0.0);
    }
}

std::unique_ptr<RealVector> GcrSolver::Solve(const Matrix& A, const RealVector& b,
                                             std::unique_ptr<RealVector> u) {
    u = StartVector(b, std::move(u));
    PrepareWork(A.Rows(), {&r_, &t_});
    p_.prepare(A.Rows());
    ap_.prepare(A.Rows());
    converged_ = false;
    lost_ = false;

    FormResidual(A, b, *u, *r_, t_);
    if (IsBelowTolerance(*r_)) {
        return u;
    }
    p_.reach(0);
    p_[0].CopyFrom(*r_);
    j_ = 0;
    for (int it = 0; it < maxIter_; ++it) {
        u = Iterate(A, b, std::move(u));
        ++j_;
        if (converged_ || lost_) {
            break;
        }
        if (j_ == m_) {
            H_.Clear();
            FormResidual(A, b, *u, *r_, t_);
            p_[0].CopyFrom(*r_);
            j_ = 0;
        }
    }
    return u;
}

std::unique_ptr<RealVector> GcrSolver::Iterate(const Matrix& A, const RealVector& /*b*/,
                                               std::unique_ptr<RealVector> u) {
    prepareDirection();
    std::unique_ptr<RealVector>& image = ap_.owner(j_);
    image = A.Multiply(p_[j_], std::move(image));
    double& d = d_[static_cast<std::size_t>(j_)];
    d = image->SumOfSquares();

    const double alpha = r_->Dot(*image) / d;
    u->AddScaled(toFloat(alpha), p_[j_]);
    r_->AddScaled(toFloat(-alpha), *image);
    // Every element of u and r is NaN from here on: whatever is left of the loop changes nothing.
    lost_ = std::isnan(alpha);
    if (IsBelowTolerance(*r_)) {
        converged_ = true;
        return u;
    }
    formDirection(A);
    return u;
}

// Direction j + 1: its image is orthogonal to those before.
void GcrSolver::formDirection(const Matrix& A) {
    t_ = A.Multiply(*r_, std::move(t_));
    for (int i = 0; i <= j_; ++i) {
        const double d = d_[static_cast<std::size_t>(i)];
        H_.Set(i, j_, toFloat((-1.0) * t_->Dot(ap_[i]) / d));
    }
    RealVector& next = p_[j_ + 1];
    next.CopyFrom(*r_);
    for (int i = 0; i <= j_; ++i) {
        next.AddScaled(H_.Get(i, j_), p_[i]);
    }
}

}  // namespace orv
