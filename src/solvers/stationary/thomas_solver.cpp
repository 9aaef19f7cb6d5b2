#include "solvers/stationary/thomas_solver.h"

#include <utility>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"

namespace orv {

ThomasSolver::ThomasSolver(Method method) : method_(method) {}

ThomasSolver::~ThomasSolver() = default;

void ThomasSolver::Reset() {
    refactorise_ = true;
}

void ThomasSolver::Factorise(const Matrix& A) {
    factors_.reset();
    switch (method_) {
        case Method::Doolittle:
            factors_ = A.FactorLU();
            break;
        case Method::Crout:
            factors_ = A.FactorLU1();
            break;
    }
}

void ThomasSolver::prepareWork(const Matrix& A) {
    const int n = A.Rows();
    if (factors_ && factors_->Rows() != n) {
        refactorise_ = true;
    }
    // Its contents never count: the first triangular solve writes every element.
    if (!work_ || work_->size() != n) {
        work_ = std::make_unique<RealVector>(n);
    }
}

std::unique_ptr<RealVector> ThomasSolver::Solve(const Matrix& A, const RealVector& b,
                                                bool rebuild, std::unique_ptr<RealVector> u) {
    if (!u) {
        u = std::make_unique<RealVector>(b);
    }
    prepareWork(A);
    if (refactorise_) {
        Factorise(A);
        refactorise_ = rebuild;
    }

    const Matrix& F = factors_ ? *factors_ : A;
    const bool unitLower = method_ == Method::Doolittle;
    work_ =
        unitLower ? F.SolveUnitLower(b, std::move(work_)) : F.SolveLower(b, std::move(work_));
    if (!work_) {
        u = nullptr;  // b is of another size
    } else if (unitLower) {
        u = F.SolveUpper(*work_, std::move(u));
    } else {
        u = F.SolveUnitUpper(*work_, std::move(u));
    }

    if (refactorise_) {
        factors_.reset();
    }
    return u;
}

std::unique_ptr<RealVector> ThomasSolver::Solve(const Matrix& A, const RealVector& b,
                                                std::unique_ptr<RealVector> u) {
    return Solve(A, b, /*rebuild=*/false, std::move(u));
}

}  // namespace orv
