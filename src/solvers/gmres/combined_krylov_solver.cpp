#include "solvers/gmres/combined_krylov_solver.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"
#include "base/rounding.h"

namespace orv {

CombinedKrylovSolver::CombinedKrylovSolver(int maxIter, int l,
                                           std::unique_ptr<LinearSolver> inner, double tol)
    : IterativeLinearSolver(maxIter, tol), l_(std::max(l, 2)), inner_(std::move(inner)) {}

CombinedKrylovSolver::~CombinedKrylovSolver() = default;

void CombinedKrylovSolver::prepareWork(int n) {
    if (HasSize(r_, n)) {
        return;
    }
    search_.clear();
    image_.clear();
    PrepareWork(n, {&r_, &t_, &z_});
}

// A limit of any size costs memory only for the directions that a solve comes to.
void CombinedKrylovSolver::prepareDirection(std::size_t k) {
    if (image_.size() == k) {
        image_.push_back(std::make_unique<RealVector>(r_->size()));
    }
    if (search_.size() == k) {
        search_.push_back(std::make_unique<RealVector>(r_->size()));
    }
}

void CombinedKrylovSolver::dropDirections() {
    for (std::size_t i = 0; i < search_.size(); ++i) {
        search_[i]->Fill(0.0F);
        image_[i]->Fill(0.0F);
    }
    z_->CopyFrom(*r_);
    k_ = 0;
}

std::unique_ptr<RealVector> CombinedKrylovSolver::Solve(const Matrix& A, const RealVector& b,
                                                        std::unique_ptr<RealVector> u) {
    u = StartVector(b, std::move(u));
    prepareWork(A.Rows());
    converged_ = false;
    lost_ = false;

    FormResidual(A, b, *u, *r_, t_);
    if (IsBelowTolerance(*r_)) {
        return u;
    }
    z_->CopyFrom(*r_);
    k_ = 0;
    for (int it = 0; it < maxIter_; ++it) {
        u = Iterate(A, b, std::move(u));
        ++k_;
        if (lost_ && it + 1 < maxIter_) {
            // What the inner solver keeps between solves has to meet the NaN as well; once is
            // enough.
            z_ = inner_->Solve(A, *r_, std::move(z_));
        }
        if (converged_ || lost_) {
            break;
        }
        if (k_ == l_) {
            dropDirections();
        }
    }
    return u;
}

std::unique_ptr<RealVector> CombinedKrylovSolver::Iterate(const Matrix& A,
                                                          const RealVector& /*b*/,
                                                          std::unique_ptr<RealVector> u) {
    const std::size_t k = static_cast<std::size_t>(k_);
    prepareDirection(k);
    z_ = inner_->Solve(A, *r_, std::move(z_));
    image_[k] = A.Multiply(*z_, std::move(image_[k]));
    RealVector& image = *image_[k];
    for (std::size_t i = 0; i < k; ++i) {
        const float e = toFloat(-image_[i]->Dot(image));
        image.AddScaled(e, *image_[i]);
        z_->AddScaled(e, *search_[i]);
    }

    const float h = toFloat(std::sqrt(image.SumOfSquares()));
    image.DivideScalar(h);
    RealVector& search = *search_[k];
    search.CopyFrom(*z_);
    search.DivideScalar(h);

    const double alpha = image.Dot(*r_);
    u->AddScaled(toFloat(alpha), search);
    r_->AddScaled(toFloat(-alpha), image);
    if (IsBelowTolerance(*r_)) {
        converged_ = true;
    }
    // Every element of u and r is NaN from here on: whatever is left of the loop changes nothing.
    lost_ = std::isnan(alpha);
    return u;
}

}  // namespace orv
