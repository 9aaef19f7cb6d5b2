#include "solvers/gmres/gmres_solver.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"
#include "base/rounding.h"

namespace orv {

namespace {

/// a x + b y of floats: summed in double and rounded once.
float combine(float a, float x, float b, float y) {
    return toFloat(double{a} * double{x} + double{b} * double{y});
}

struct Rotation {
    float cs;
    float sn;
};

/// The rotation that takes (a, b) to (r, 0).
Rotation rotationFor(float a, float b) {
    if (b == 0.0F) {
        return {1.0F, 0.0F};
    }
    if (std::abs(a) < std::abs(b)) {
        const float q = a / b;
        const float sn = toFloat(1.0 / std::sqrt(double{q} * double{q} + 1.0));
        return {q * sn, sn};
    }
    const float q = b / a;
    const float cs = toFloat(1.0 / std::sqrt(double{q} * double{q} + 1.0));
    return {cs, q * cs};
}

}  // namespace

GmresSolver::GmresSolver(int maxIter, int m, double tol, bool rangeRestricted)
    : IterativeLinearSolver(maxIter, tol),
      m_(std::max(m, 2)),
      rangeRestricted_(rangeRestricted),
      g_(std::make_unique<RealVector>(0)),
      cs_(std::make_unique<RealVector>(0)),
      sn_(std::make_unique<RealVector>(0)),
      H_(m_) {}

GmresSolver::~GmresSolver() = default;

void GmresSolver::prepareWork(int n) {
    PrepareWork(n, {&r_, &t_, &w_});
    V_.prepare(n);
    V_.reach(0);
    H_.reach(0);
    lengthen(g_, H_.order());
}

// A limit of any size costs memory only for the columns that a solve comes to.
void GmresSolver::prepareColumn() {
    V_.reach(j_ + 1);
    H_.reach(j_ + 1);
    for (std::unique_ptr<RealVector>* const vector : {&g_, &cs_, &sn_}) {
        lengthen(*vector, H_.order());
    }
}

void GmresSolver::formStartResidual(const Matrix& A, const RealVector& b, const RealVector& u) {
    if (rangeRestricted_) {
        // The product stays in t: r, which is all zero and is written nowhere else, keeps its
        // contents.
        // quirk: rrgmres-start-untouched
        t_ = A.Multiply(b, std::move(t_));
        return;
    }
    FormResidual(A, b, u, *r_, t_);
}

// V_0 from its length beta, and the right side of the triangle.
void GmresSolver::startBasis() {
    V_[0].DivideScalar(toFloat(beta_));
    g_->Fill(0.0F);
    (*g_)[0] = toFloat(beta_);
    j_ = 0;
}

std::unique_ptr<RealVector> GmresSolver::Solve(const Matrix& A, const RealVector& b,
                                               std::unique_ptr<RealVector> u) {
    u = StartVector(b, std::move(u));
    prepareWork(A.Rows());
    converged_ = false;
    lost_ = false;
    bNorm_ = std::sqrt(b.SumOfSquares());
    if (bNorm_ == 0.0) {
        bNorm_ = 1.0;
    }

    formStartResidual(A, b, *u);
    if (IsBelowTolerance(*r_)) {
        return u;
    }
    beta_ = std::sqrt(r_->SumOfSquares());
    V_[0].CopyFrom(*r_);
    relRes_ = beta_ / bNorm_;
    if (relRes_ <= tol_) {
        // quirk: gmres-sinking-tolerance
        tol_ = relRes_;
        return u;
    }
    startBasis();

    for (int it = 0; it < maxIter_; ++it) {
        (void)Iterate(A, b, nullptr);
        ++j_;
        if (j_ == m_ || it + 1 == maxIter_ || converged_ || lost_) {
            --j_;
            update(*u);
            if (converged_ || lost_) {
                return u;
            }
        }
        // The update has set j back to m - 1: the next column is that one once more.
        // quirk: gmres-no-restart
        if (j_ == m_) {
            restart(A, b, *u);
        }
    }
    return u;
}

std::unique_ptr<RealVector> GmresSolver::Iterate(const Matrix& A, const RealVector& /*b*/,
                                                 std::unique_ptr<RealVector> u) {
    prepareColumn();
    w_ = A.Multiply(V_[j_], std::move(w_));
    for (int i = 0; i <= j_; ++i) {
        const float h = toFloat(V_[i].Dot(*w_));
        H_.Set(i, j_, h);
        w_->AddScaled(-h, V_[i]);
    }
    const float h = toFloat(std::sqrt(w_->SumOfSquares()));
    H_.Set(j_ + 1, j_, h);
    V_[j_ + 1].CopyFrom(*w_);
    V_[j_ + 1].DivideScalar(h);

    rotateColumn();
    relRes_ = double{std::abs((*g_)[j_ + 1])} / bNorm_;
    if (relRes_ < tol_) {
        converged_ = true;
    }
    // g_j has NaN for good, and the update passes it on to every element of u; estimates stay
    // NaN as well. Whatever is left of the loop changes nothing.
    lost_ = std::isnan(relRes_) && std::isnan((*g_)[j_]);
    return u;
}

// The rotations of the columns before, then the one that clears H(j+1, j).
void GmresSolver::rotateColumn() {
    RealVector& g = *g_;
    RealVector& cs = *cs_;
    RealVector& sn = *sn_;
    for (int i = 0; i < j_; ++i) {
        const float t1 = H_.Get(i, j_);
        const float t2 = H_.Get(i + 1, j_);
        H_.Set(i, j_, combine(t2, sn[i], t1, cs[i]));
        H_.Set(i + 1, j_, combine(t2, cs[i], -t1, sn[i]));
    }

    const float a = H_.Get(j_, j_);
    const float b = H_.Get(j_ + 1, j_);
    const Rotation rotation = rotationFor(a, b);
    cs[j_] = rotation.cs;
    sn[j_] = rotation.sn;
    H_.Set(j_, j_, combine(rotation.sn, b, rotation.cs, a));
    H_.Set(j_ + 1, j_, combine(rotation.cs, b, -rotation.sn, a));

    const float g0 = g[j_];
    const float g1 = g[j_ + 1];
    g[j_] = combine(g1, rotation.sn, g0, rotation.cs);
    g[j_ + 1] = combine(g1, rotation.cs, -g0, rotation.sn);
}

// Solves the triangle in g and adds the columns 0 to j to u.
void GmresSolver::update(RealVector& u) {
    RealVector& g = *g_;
    for (int i = j_; i >= 0; --i) {
        g[i] = g[i] / H_.Get(i, i);
        for (int k = i - 1; k >= 0; --k) {
            g[k] = g[k] - H_.Get(k, i) * g[i];
        }
    }
    for (int i = 0; i <= j_; ++i) {
        u.AddScaled(g[i], V_[i]);
    }
}

void GmresSolver::restart(const Matrix& A, const RealVector& b, const RealVector& u) {
    if (relRes_ <= tol_) {
        tol_ = relRes_;
    }
    FormResidual(A, b, u, *r_, t_);
    if (rangeRestricted_) {
        V_.owner(0) = A.Multiply(*r_, std::move(V_.owner(0)));
        r_->CopyFrom(V_[0]);
    } else {
        V_[0].CopyFrom(*r_);
    }
    beta_ = std::sqrt(r_->SumOfSquares());
    startBasis();
}

}  // namespace orv
