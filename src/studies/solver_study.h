#pragma once

#include <functional>
#include <string>
#include <vector>

#include "images/float_image.h"
#include "studies/study_system.h"

namespace orv {

/// The tolerance that every scheme gives its solvers.
inline constexpr double kStudyTolerance = 0.0001;

/// What a solver did.
enum class SolverStatus {
    Converged,  ///< it stopped before the limit, with the residual at its tolerance
    Limit,      ///< it used all iterations, or stopped short of its tolerance
    BrokeDown,  ///< samples that aren't finite
    Wrong,      ///< finite, and as far from the solution as half the start, or never moved
    Skipped,    ///< not run
};

/// "converged", "limit", "broke down", "wrong", "skipped".
const char* nameOf(SolverStatus status);

/// One run of a solver with an iteration limit.
///
/// Units:   differences from the exact solution in grey levels. After a breakdown all but limit
///          and seconds are NaN.
struct StudyPoint {
    int limit = 0;
    double seconds = 0.0;
    double residual = 0.0;
    double differenceMax = 0.0;
    double differenceMean = 0.0;
};

/// What one solver did on the systems.
struct SolverRecordOfStudy {
    int id = 0;
    SolverStatus status = SolverStatus::Skipped;
    std::string reason;  ///< what the status leaves open, in words; empty as a rule
    bool direct = false;
    int iterations = 0;  ///< smallest limit with the bits of the last; 0 where there is none
    StudyPoint last;     ///< the largest limit, with the shortest time of the runs of its bits
    std::vector<StudyPoint> curve;  ///< by rising limit
};

/// What is studied.
struct StudyOrder {
    StudySettings settings;
    int solverIterations = 50;
    std::vector<int> solvers;  ///< ids, in the order of the result
    bool named = false;        ///< asked for one by one: long times are no reason to skip
};

/// What a study gives: the solvers' records, or a reason in words, or word that it was stopped.
struct SolverStudy {
    std::string error;
    bool cancelled = false;
    int systems = 0;
    int unknowns = 0;
    StudyPoint start;  ///< the picture itself as solution
    double rightSideNorm = 0.0;
    double exactResidual = 0.0;  ///< of the exact solution in double
    StudyPoint rounded;          ///< the exact solution rounded to floats
    std::vector<SolverRecordOfStudy> solvers;
};

/// Hears the share of the work that is done and the id of the solver that is about to run;
/// returns false to stop.
using StudyProgress = std::function<bool(double, int)>;

/// Runs solvers with growing iteration limits on the systems of the first time step of a scheme.
///
/// Each run has a fresh solver, made as the schemes make theirs: `Create(id, k, k, 0.0001)` of
/// `LinearSolverList(50, 10)` for the limit k. The limit is the restart length too, so a run
/// with a smaller limit is not the beginning of one with a larger limit: the curve tells what a
/// user gets for each limit. The limits are those of `studyLimits`, and between two of them
/// those that pin down where the result settles or breaks down. Once two limits give the same
/// bits, or three none that are finite, and the last limit does too, those between are left out.
///
/// Shapes:  a plane of finite samples.
/// Fails:   with an error text for a plane that is too small for the scheme.
/// Cost:    about 5 times the work of the largest limit for each solver.
SolverStudy studySolvers(const FloatImage& plane, const StudyOrder& order,
                         const StudyProgress& progress);

/// 1, 2, 3, 4, 5, 6, 8, 10, 13, 16, 20, ... and `most`, the steps growing as the tenth root of
/// ten.
std::vector<int> studyLimits(int most);

}  // namespace orv
