#pragma once

#include <cmath>
#include <cstddef>
#include <vector>

#include "base/rounding.h"
#include "support/krylov_systems.h"

namespace orv::test {

/// MGCR(m) written down once more, with all its memory from the start and no early end.
class PlainMgcr {
  public:
    PlainMgcr(int maxIter, int m, double tol)
        : maxIter_(maxIter), m_(m), tol_(tol), g_(m + 1), y_(m + 1), H_(m + 1) {}

    void solve(const Matrix& A, const RealVector& b, RealVector& u) {
        if (n_ != A.Rows()) {
            n_ = A.Rows();
            y_.Fill(0.0F);
        }
        V_.assign(static_cast<std::size_t>(m_) + 1, RealVector(n_));
        converged = false;
        begin(A, b, u);
        if (runningNorm < tol_) {
            return;
        }
        for (int it = 1; it <= maxIter_; ++it) {
            column(A);
            ++j_;
            if (j_ == m_ || converged || it == maxIter_) {
                // The leading j x j triangle; column k of row i.
                for (int i = j_ - 1; i >= 0; --i) {
                    double sum = 0.0;
                    for (int k = i + 1; k < j_; ++k) {
                        sum += double{H_.Get(k, i)} * double{y_[k]};
                    }
                    y_[i] = (g_[i] - toFloat(sum)) / H_.Get(i, i);
                }
                for (int i = 0; i <= j_; ++i) {
                    u.AddScaled(y_[i], V_[static_cast<std::size_t>(i)]);
                }
                if (converged || it == maxIter_) {
                    return;
                }
                begin(A, b, u);
            }
        }
    }

    bool converged = false;
    double runningNorm = 0.0;

  private:
    void begin(const Matrix& A, const RealVector& b, const RealVector& u) {
        H_.Fill(0.0F);
        RealVector r = b;
        r.AddScaled(-1.0F, times(A, u));
        runningNorm = std::sqrt(r.SumOfSquares());
        V_[0] = r;
        j_ = 0;
    }

    void column(const Matrix& A) {
        const std::size_t j = static_cast<std::size_t>(j_);
        const RealVector t = times(A, V_[j]);
        V_[j + 1] = t;
        for (std::size_t i = 0; i < j; ++i) {
            H_.Set(j_, static_cast<int>(i), toFloat(t.Dot(V_[i + 1])));
        }
        for (std::size_t i = 0; i < j; ++i) {
            V_[j + 1].AddScaled(-H_.Get(j_, static_cast<int>(i)), V_[i + 1]);
        }
        const float h = toFloat(std::sqrt(V_[j + 1].Dot(V_[j + 1])));
        H_.Set(j_, j_, h);
        if (h == 0.0F) {
            converged = true;
            --j_;
            return;
        }
        V_[j + 1].DivideScalar(h);
        const double c = V_[0].Dot(V_[j + 1]);
        g_[j_] = toFloat(c);
        runningNorm = std::sqrt(runningNorm * runningNorm - c * c);
        converged = runningNorm < tol_;
    }

    int maxIter_;
    int m_;
    double tol_;
    int n_ = 0;
    int j_ = 0;
    RealVector g_;
    RealVector y_;
    FullMatrix H_;
    std::vector<RealVector> V_;
};

}  // namespace orv::test
