#pragma once

#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

#include "algebra/matrix.h"
#include "support/matrix_support.h"

namespace orv::test {

/// How many preconditioners were made and how many of them live.
struct PreconditionerCount {
    int made = 0;
    int live = 0;
};

/// Applies another preconditioner and counts itself while it lives.
class CountedPreconditioner : public PlainMatrix {
  public:
    CountedPreconditioner(std::unique_ptr<Matrix> inner, PreconditionerCount& count)
        : PlainMatrix(1), inner_(std::move(inner)), count_(&count) {
        ++count_->made;
        ++count_->live;
    }
    ~CountedPreconditioner() override { --count_->live; }
    CountedPreconditioner(const CountedPreconditioner&) = delete;

    std::unique_ptr<RealVector> Solve(const RealVector& b,
                                      std::unique_ptr<RealVector> x) const override {
        return inner_->Solve(b, std::move(x));
    }

  private:
    std::unique_ptr<Matrix> inner_;
    PreconditionerCount* count_;
};

/// A solver whose preconditioners are counted.
template <class Solver>
class Counted : public Solver {
  public:
    template <class... Arguments>
    explicit Counted(PreconditionerCount& count, Arguments... arguments)
        : Solver(arguments...), count_(&count) {}

    std::unique_ptr<Matrix> MakePreconditioner(const Matrix& A) override {
        return std::make_unique<CountedPreconditioner>(Solver::MakePreconditioner(A), *count_);
    }

  private:
    PreconditionerCount* count_;
};

/// A solver that gets no preconditioner.
template <class Solver>
class Unpreconditioned : public Solver {
  public:
    using Solver::Solver;

    std::unique_ptr<Matrix> MakePreconditioner(const Matrix&) override { return nullptr; }
};

/// Notes where the products of a run were written to.
class WatchedMatrix : public PlainMatrix {
  public:
    explicit WatchedMatrix(const Matrix& A) : PlainMatrix(A) {}

    std::unique_ptr<RealVector> Multiply(const RealVector& x,
                                         std::unique_ptr<RealVector> y) const override {
        targets.push_back(y.get());
        return PlainMatrix::Multiply(x, std::move(y));
    }

    std::unique_ptr<Matrix> IncompleteLU0() const override { return ToFull()->IncompleteLU0(); }

    mutable std::vector<const RealVector*> targets;
};

/// A solver of either constructor, symmetric Gauss-Seidel where there is a choice.
template <class Solver>
std::unique_ptr<Solver> makeSolver(int maxIter, double tol) {
    if constexpr (std::is_constructible_v<Solver, int, double, bool>) {
        return std::make_unique<Solver>(maxIter, tol, true);
    } else {
        return std::make_unique<Solver>(maxIter, tol);
    }
}

/// The same with its preconditioners counted.
template <class Solver>
std::unique_ptr<Counted<Solver>> makeCounted(PreconditionerCount& count, int maxIter,
                                             double tol) {
    if constexpr (std::is_constructible_v<Solver, int, double, bool>) {
        return std::make_unique<Counted<Solver>>(count, maxIter, tol, true);
    } else {
        return std::make_unique<Counted<Solver>>(count, maxIter, tol);
    }
}

}  // namespace orv::test
