#include "solvers/gmres/mgcr_solver.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"
#include "base/rounding.h"

namespace orv {

namespace {

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();

}  // namespace

MgcrSolver::MgcrSolver(int maxIter, int m, double tol)
    : IterativeLinearSolver(maxIter, tol), m_(std::max(m, 2)), H_(m_) {}

MgcrSolver::~MgcrSolver() = default;

void MgcrSolver::prepareWork(int n) {
    if (!HasSize(r_, n)) {
        PrepareWork(n, {&r_, &t_});
        g_ = std::make_unique<RealVector>(H_.order());
        y_ = std::make_unique<RealVector>(H_.order());
        lostCoefficients_ = 0;
    }
    V_.prepare(n);
    V_.reach(0);
}

// A limit of any size costs memory only for the columns that a solve comes to.
void MgcrSolver::prepareColumn() {
    V_.reach(j_ + 1);
    H_.reach(j_ + 1);
    lengthen(g_, H_.order());
    const int present = y_->size();
    lengthen(y_, H_.order());
    for (int i = present; i < std::min(y_->size(), lostCoefficients_); ++i) {
        (*y_)[i] = kNan;
    }
}

void MgcrSolver::startBasis() {
    norm_ = std::sqrt(r_->SumOfSquares());
    V_[0].CopyFrom(*r_);
    j_ = 0;
}

std::unique_ptr<RealVector> MgcrSolver::Solve(const Matrix& A, const RealVector& b,
                                              std::unique_ptr<RealVector> u) {
    u = StartVector(b, std::move(u));
    prepareWork(A.Rows());
    converged_ = false;
    lost_ = false;

    FormResidual(A, b, *u, *r_, t_);
    if (IsBelowTolerance(*r_)) {
        return u;
    }
    startBasis();
    int left = maxIter_;  // columns that this and later bases may still have
    for (int it = 0; it < maxIter_; ++it) {
        (void)Iterate(A, b, nullptr);
        ++j_;
        const bool last = it + 1 == maxIter_;
        if (j_ < m_ && !converged_ && !last && !lost_) {
            continue;
        }
        update(*u);
        if (lost_) {
            loseCoefficients(std::min(m_, left));
        }
        if (converged_ || last || lost_) {
            break;
        }
        H_.Clear();
        FormResidual(A, b, *u, *r_, t_);
        startBasis();
        left = maxIter_ - (it + 1);
    }
    return u;
}

std::unique_ptr<RealVector> MgcrSolver::Iterate(const Matrix& A, const RealVector& /*b*/,
                                                std::unique_ptr<RealVector> u) {
    prepareColumn();
    t_ = A.Multiply(V_[j_], std::move(t_));
    for (int i = 0; i < j_; ++i) {
        H_.Set(j_, i, toFloat(t_->Dot(V_[i + 1])));
    }
    RealVector& next = V_[j_ + 1];
    next.CopyFrom(*t_);
    for (int i = 0; i < j_; ++i) {
        next.AddScaled(H_.Get(j_, i) * -1.0F, V_[i + 1]);
    }
    const float h = toFloat(std::sqrt(next.SumOfSquares()));
    H_.Set(j_, j_, h);
    if (h == 0.0F) {
        converged_ = true;
        --j_;
        return u;
    }
    next.DivideScalar(h);

    const double c = V_[0].Dot(next);
    (*g_)[j_] = toFloat(c);
    norm_ = std::sqrt(norm_ * norm_ - c * c);
    if (norm_ < tol_) {
        converged_ = true;
    }
    // Every element of V_(j+1) is NaN, and the update passes it on to every element of u:
    // whatever is left of the loop changes nothing there.
    lost_ = std::isnan(h);
    return u;
}

// The triangle has j columns, but the sum goes on to V_j. The solve leaves y_j as it is: 0, or
// what an earlier solve of more columns left there.
void MgcrSolver::update(RealVector& u) {
    y_ = H_.block().SolveUpperTo(*g_, j_, std::move(y_));
    // quirk: mgcr-stale-coefficient
    for (int i = 0; i <= j_; ++i) {
        u.AddScaled((*y_)[i], V_[i]);
    }
}

// A basis that went on with its NaN would leave that in each of its coefficients, those included
// that there is no memory for so far.
void MgcrSolver::loseCoefficients(int count) {
    lostCoefficients_ = std::max(lostCoefficients_, count);
    y_->FillRange(0, std::min(y_->size(), count), kNan);
}

}  // namespace orv
