#include "studies/exact_solution.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace orv {

namespace {

using Doubles = std::vector<double>;

/// Where the iteration ends, relative to the right side: a few roundings of double.
constexpr double kRelativeTolerance = 1e-15;
constexpr int kMostIterations = 20000;
constexpr int kMostRestarts = 20;

double dot(const Doubles& a, const Doubles& b) {
    double sum = 0.0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        sum += a[i] * b[i];
    }
    return sum;
}

/// Gaussian elimination without pivoting, which rows with a dominant diagonal don't need.
void solveLine(const DoubleBand& A, const float* b, double* x) {
    const int n = A.size();
    Doubles pivots(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i) {
        double pivot = A.main(i);
        double value = b[i];
        if (i > 0) {
            const double factor = A.element(i, -1) / pivots[static_cast<std::size_t>(i - 1)];
            pivot -= factor * A.element(i - 1, 1);
            value -= factor * x[i - 1];
        }
        pivots[static_cast<std::size_t>(i)] = pivot;
        x[i] = value;
    }
    for (int i = n - 1; i >= 0; --i) {
        const double next = i < n - 1 ? A.element(i, 1) * x[i + 1] : 0.0;
        x[i] = (x[i] - next) / pivots[static_cast<std::size_t>(i)];
    }
}

/// Conjugate gradients in double.
class PlaneSolve {
  public:
    PlaneSolve(const DoubleBand& A, const float* b)
        : A_(A),
          b_(b),
          n_(static_cast<std::size_t>(A.size())),
          main_(n_),
          r_(n_),
          z_(n_),
          p_(n_),
          q_(n_) {
        for (std::size_t i = 0; i < n_; ++i) {
            main_[i] = A.main(static_cast<int>(i));
            target_ += static_cast<double>(b[i]) * b[i];
        }
        target_ = std::sqrt(target_) * kRelativeTolerance;
    }

    Doubles solve() {
        Doubles x(b_, b_ + n_);
        double reached = formResidual(x);
        for (int restart = 0; restart < kMostRestarts && reached > target_; ++restart) {
            Doubles better = x;
            iterate(better);
            const double now = formResidual(better);
            // Also refuses NaN.
            if (!(now < reached)) {
                break;
            }
            x.swap(better);
            if (now > 0.5 * reached) {
                break;
            }
            reached = now;
        }
        return x;
    }

  private:
    double formResidual(const Doubles& x) {
        A_.residual(b_, x.data(), r_.data());
        return std::sqrt(dot(r_, r_));
    }

    void precondition() {
        for (std::size_t i = 0; i < n_; ++i) {
            z_[i] = r_[i] / main_[i];
        }
    }

    /// From the residual in r_ until its recursion is at the target.
    void iterate(Doubles& x) {
        precondition();
        p_ = z_;
        double rz = dot(r_, z_);
        for (int i = 0; i < kMostIterations && std::sqrt(dot(r_, r_)) > target_; ++i) {
            A_.multiply(p_.data(), q_.data());
            const double alpha = rz / dot(p_, q_);
            for (std::size_t k = 0; k < n_; ++k) {
                x[k] += alpha * p_[k];
                r_[k] -= alpha * q_[k];
            }
            precondition();
            const double next = dot(r_, z_);
            const double beta = next / rz;
            for (std::size_t k = 0; k < n_; ++k) {
                p_[k] = z_[k] + beta * p_[k];
            }
            rz = next;
        }
    }

    const DoubleBand& A_;
    const float* b_;
    std::size_t n_;
    Doubles main_;
    Doubles r_;
    Doubles z_;
    Doubles p_;
    Doubles q_;
    double target_ = 0.0;
};

}  // namespace

std::vector<double> exactSolution(const StudySystem& system) {
    const std::vector<float> b = system.rightSide();
    std::vector<double> x(b.size());
    std::size_t at = 0;
    for (const DoubleBand& band : system.bands()) {
        if (band.isTriDiagonal()) {
            solveLine(band, b.data() + at, x.data() + at);
        } else {
            const Doubles part = PlaneSolve(band, b.data() + at).solve();
            std::copy(part.begin(), part.end(), x.begin() + static_cast<std::ptrdiff_t>(at));
        }
        at += static_cast<std::size_t>(band.size());
    }
    return x;
}

}  // namespace orv
