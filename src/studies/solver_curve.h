#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "studies/solver_study.h"

namespace orv {

/// The runs of one solver on one study's systems, by limit.
class SolverCurve {
  public:
    /// What one run gave.
    struct Run {
        StudyPoint point;
        bool finite = false;
        bool moved = false;      ///< whether it isn't the picture itself
        int converged = 0;       ///< systems whose stopping test held
        std::uint64_t bits = 0;  ///< a digest of the solution
    };

    /// Called before each run with the share of the limits that are done; false stops.
    using Check = std::function<bool(double)>;

    /// A fresh solver with an iteration limit; never null.
    using Maker = std::function<std::unique_ptr<LinearSolver>(int)>;

    /// Owns:    nothing; system and exact solution outlive it.
    SolverCurve(const StudySystem& system, const std::vector<double>& exact, Maker make);

    /// Runs the limits that `studySolvers` tells. False when the check asked to stop.
    bool trace(int solverIterations, const Check& check);

    /// Whether the solver has no iterations; known after the first run.
    bool direct() const { return direct_; }
    /// The runs by rising limit.
    const std::map<int, Run>& runs() const { return runs_; }
    /// The run with the largest limit.
    const Run& last() const { return runs_.rbegin()->second; }
    /// The smallest limit that gave what the largest gave: its bits, or no finite samples.
    int settledAt() const;

  private:
    const Run& run(int limit);
    bool pinDown(const Check& check);

    const StudySystem& system_;
    const std::vector<double>& exact_;
    const std::vector<float> start_;
    Maker make_;
    bool direct_ = false;
    std::map<int, Run> runs_;
};

/// Residual and differences of a solution; NaN where a sample isn't finite.
StudyPoint measureSolution(const StudySystem& system, const std::vector<double>& exact,
                           const std::vector<float>& samples);

}  // namespace orv
