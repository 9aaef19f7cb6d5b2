#include "solvers/gradient/bb_solver.h"

#include <cmath>
#include <utility>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"
#include "base/rounding.h"

namespace orv {

namespace {

// The first inverse step length; the method leaves it open.
constexpr double kStartAlpha = 0.5;

}  // namespace

BbSolver::BbSolver(int maxIter, double tol) : IterativeLinearSolver(maxIter, tol) {}

BbSolver::~BbSolver() = default;

std::unique_ptr<RealVector> BbSolver::Solve(const Matrix& A, const RealVector& b,
                                            std::unique_ptr<RealVector> u) {
    u = StartVector(b, std::move(u));
    PrepareWork(A.Rows(), {&g_, &gNew_, &d_, &y_});
    g_ = A.Multiply(*u, std::move(g_));
    g_->AddScaled(-1.0F, b);
    alpha_ = kStartAlpha;
    return RunIterations(A, b, std::move(u));
}

std::unique_ptr<RealVector> BbSolver::Iterate(const Matrix& A, const RealVector& b,
                                              std::unique_ptr<RealVector> u) {
    d_->SetScaled(toFloat(-1.0 / alpha_), *g_);
    const float dd = toFloat(d_->SumOfSquares());
    u->Add(*d_);

    gNew_ = A.Multiply(*u, std::move(gNew_));
    gNew_->AddScaled(-1.0F, b);
    if (IsBelowTolerance(*gNew_)) {
        converged_ = true;
        return u;
    }

    y_->SetDifference(*gNew_, *g_);
    alpha_ = nextAlpha(dd);
    std::swap(g_, gNew_);
    return u;
}

double BbSolver::nextAlpha(float dd) const {
    if (selector_ == 1) {
        return double{toFloat(y_->SumOfSquares())} / y_->Dot(*d_);
    }
    return d_->Dot(*y_) / double{dd};
}

}  // namespace orv
