#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "algebra/real_vector.h"
#include "solvers/iterative_linear_solver.h"
#include "studies/exact_solution.h"
#include "studies/solver_curve.h"
#include "studies/study_support.h"

namespace orv::test {

/// A solver that gives, of one system of `StudyBench`, what a script says for its limit.
class ScriptedSolver final : public IterativeLinearSolver {
  public:
    /// What is left of the difference between picture and solution, and whether the stopping
    /// test holds; a NaN breaks one sample.
    struct Line {
        double rest;
        bool converged;
    };

    ScriptedSolver(int limit, Line line, const std::vector<double>& exact)
        : IterativeLinearSolver(limit, 0.0001), line_(line), exact_(exact) {}

    std::unique_ptr<RealVector> Solve(const Matrix& /*A*/, const RealVector& b,
                                      std::unique_ptr<RealVector> u) override {
        for (int i = 0; i < u->size() && line_.rest != 1.0; ++i) {
            const double exact = exact_[static_cast<std::size_t>(i)];
            (*u)[i] = static_cast<float>(exact + line_.rest * (b[i] - exact));
        }
        converged_ = line_.converged;
        return u;
    }
    std::unique_ptr<RealVector> Iterate(const Matrix& /*A*/, const RealVector& /*b*/,
                                        std::unique_ptr<RealVector> u) override {
        return u;
    }

  private:
    Line line_;
    const std::vector<double>& exact_;
};

/// A small system of 2DSemi, its exact solution, and curves of scripted solvers on it.
struct StudyBench {
    FloatImage plane = studyPlane(8, 7);
    StudySystem system{plane, settingsOf(kScheme2DSemi)};
    std::vector<double> exact = exactSolution(system);
    std::vector<int> limits;  ///< those that solvers were made for, in order

    /// A maker that writes down each limit.
    SolverCurve::Maker maker(std::function<ScriptedSolver::Line(int)> script) {
        return [this, script = std::move(script)](int limit) {
            limits.push_back(limit);
            return std::make_unique<ScriptedSolver>(limit, script(limit), exact);
        };
    }
};

inline bool goOn(double /*done*/) {
    return true;
}

}  // namespace orv::test
