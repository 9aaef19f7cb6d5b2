#pragma once

#include <cmath>
#include <cstddef>
#include <vector>

#include "base/rounding.h"
#include "support/krylov_systems.h"

namespace orv::test {

/// GMRES(m) written down once more, with all its memory from the start and no early end.
class PlainGmres {
  public:
    PlainGmres(int maxIter, int m, double tolerance)
        : tol(tolerance),
          maxIter_(maxIter),
          m_(m),
          g_(m + 1),
          cs_(m + 1),
          sn_(m + 1),
          H_(m + 1) {}

    void solve(const Matrix& A, const RealVector& b, RealVector& u) {
        const int n = A.Rows();
        if (V_.empty() || V_[0].size() != n) {
            V_.assign(static_cast<std::size_t>(m_) + 1, RealVector(n));
        }
        converged = false;
        bNorm_ = std::sqrt(b.SumOfSquares());
        bNorm_ = bNorm_ == 0.0 ? 1.0 : bNorm_;
        RealVector r = b;
        r.AddScaled(-1.0F, times(A, u));
        if (std::sqrt(r.SumOfSquares()) < tol) {
            return;
        }
        const double beta = std::sqrt(r.SumOfSquares());
        V_[0] = r;
        V_[0].DivideScalar(toFloat(beta));
        relRes = beta / bNorm_;
        if (relRes <= tol) {
            tol = relRes;
            return;
        }
        g_.Fill(0.0F);
        g_[0] = toFloat(beta);
        int j = 0;
        for (int it = 1; it <= maxIter_; ++it) {
            column(A, static_cast<std::size_t>(j));
            ++j;
            if (j == m_ || it == maxIter_ || converged) {
                --j;
                for (int i = j; i >= 0; --i) {
                    g_[i] = g_[i] / H_.Get(i, i);
                    for (int k = i - 1; k >= 0; --k) {
                        const float product = H_.Get(k, i) * g_[i];
                        g_[k] = g_[k] - product;
                    }
                }
                for (int i = 0; i <= j; ++i) {
                    u.AddScaled(g_[i], V_[static_cast<std::size_t>(i)]);
                }
            }
            if (converged) {
                return;
            }
        }
    }

    double tol;
    double relRes = 0.0;
    bool converged = false;

  private:
    void column(const Matrix& A, std::size_t column) {
        const int j = static_cast<int>(column);
        RealVector w = times(A, V_[column]);
        for (int i = 0; i <= j; ++i) {
            const RealVector& v = V_[static_cast<std::size_t>(i)];
            H_.Set(i, j, toFloat(v.Dot(w)));
            w.AddScaled(-H_.Get(i, j), v);
        }
        H_.Set(j + 1, j, toFloat(std::sqrt(w.SumOfSquares())));
        V_[column + 1] = w;
        V_[column + 1].DivideScalar(H_.Get(j + 1, j));
        for (int i = 0; i < j; ++i) {
            const double t1 = H_.Get(i, j);
            const double t2 = H_.Get(i + 1, j);
            H_.Set(i, j, toFloat(t2 * double{sn_[i]} + t1 * double{cs_[i]}));
            H_.Set(i + 1, j, toFloat(t2 * double{cs_[i]} - t1 * double{sn_[i]}));
        }
        const float a = H_.Get(j, j);
        const float b = H_.Get(j + 1, j);
        if (b == 0.0F) {
            cs_[j] = 1.0F;
            sn_[j] = 0.0F;
        } else if (std::abs(a) < std::abs(b)) {
            const double q = toFloat(double{a} / double{b});
            sn_[j] = toFloat(1.0 / std::sqrt(q * q + 1.0));
            cs_[j] = toFloat(q * double{sn_[j]});
        } else {
            const double q = toFloat(double{b} / double{a});
            cs_[j] = toFloat(1.0 / std::sqrt(q * q + 1.0));
            sn_[j] = toFloat(q * double{cs_[j]});
        }
        const double cs = cs_[j];
        const double sn = sn_[j];
        H_.Set(j, j, toFloat(sn * double{b} + cs * double{a}));
        H_.Set(j + 1, j, toFloat(cs * double{b} - sn * double{a}));
        const double g0 = g_[j];
        const double g1 = g_[j + 1];
        g_[j] = toFloat(g1 * sn + g0 * cs);
        g_[j + 1] = toFloat(g1 * cs - g0 * sn);
        relRes = std::abs(double{g_[j + 1]}) / bNorm_;
        if (relRes < tol) {
            converged = true;
        }
    }

    int maxIter_;
    int m_;
    double bNorm_ = 0.0;
    RealVector g_;
    RealVector cs_;
    RealVector sn_;
    FullMatrix H_;
    std::vector<RealVector> V_;
};

}  // namespace orv::test
