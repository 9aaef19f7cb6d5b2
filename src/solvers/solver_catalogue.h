#pragma once

#include <memory>

#include "solvers/linear_solver.h"

namespace orv {

/// The settings that a maker may use; each class takes what it knows.
struct SolverSettings {
    int maxIter;  ///< iteration limit
    int m;        ///< restart length of the Krylov solvers
    double tol;   ///< absolute tolerance
};

/// Makes one solver.
using SolverMaker = std::unique_ptr<LinearSolver> (*)(const SolverSettings& settings);

/// One solver of the catalogue.
struct SolverRecord {
    int id;                   ///< place in the catalogue
    const char* name;         ///< what `CreateByName` looks for
    int group;                ///< index into `kSolverGroups`
    const char* description;  ///< one line, with the limits that its authors gave
    SolverMaker make;         ///< null in the combined solvers, which need an inner one
};

inline constexpr int kSolverCount = 42;
inline constexpr int kSolverGroupCount = 8;

/// The group names by index.
extern const char* const kSolverGroups[kSolverGroupCount];

/// The solvers by id.
extern const SolverRecord kSolvers[kSolverCount];

/// The ids that the factories treat in a way of their own.
enum SolverId : int {
    kCbbId = 6,
    kCgsId = 19,
    kBicgStabId = 20,
    kGmresId = 24,
    kMgcrId = 26,
    kGmresrId = 27,
    kGmresrAltId = 28,
    kGmresStarCbbId = 29,
    kGmresStarBicgStabId = 30,
    kSgsBicgStabId = 35,
    kSgsBicgStab2Id = 36,
};

/// Whether the id is one of the combined solvers.
constexpr bool isCombinedSolver(int id) {
    return id >= kGmresrId && id <= kGmresStarBicgStabId;
}

/// How a factory sets the inner solver of a combined one.
struct InnerSettings {
    int maxIter;  ///< inner iteration limit
    int m;        ///< inner restart length, for the "GMRES*" forms alone
    int starId;   ///< inner solver of "GMRES*-BiCGstab"
};

// quirk: gmres-star-inner
inline constexpr InnerSettings kInnerById{/*maxIter=*/5, /*m=*/5, /*starId=*/kCgsId};
inline constexpr InnerSettings kInnerByName{/*maxIter=*/10, /*m=*/10, /*starId=*/kCgsId};

/// What `CreateCombined` makes of its two inner arguments.
constexpr InnerSettings innerOfCombined(int innerMaxIter, int innerM) {
    return {innerMaxIter, innerM, /*starId=*/kBicgStabId};
}

/// The parts of a combined solver.
struct CombinedPlan {
    int innerId;           ///< which solver finds the directions
    SolverSettings inner;  ///< its settings
    double tol;            ///< tolerance of the outer loop
};

/// The parts of a combined solver, ids 27 to 30.
///
/// Quirk:   gmresr-tolerance
CombinedPlan planCombinedSolver(int id, double tol, const InnerSettings& inner);

/// The id whose class `CreateByName` makes for the name of `id`.
///
/// Quirk:   stab2-by-name
constexpr int idMadeByName(int id) {
    return id == kSgsBicgStab2Id ? kSgsBicgStabId : id;  // quirk: stab2-by-name
}

/// A new solver that is not a combined one.
std::unique_ptr<LinearSolver> makePlainSolver(int id, const SolverSettings& settings);

/// A new combined solver, ids 27 to 30, with `settings.m` directions.
std::unique_ptr<LinearSolver> makeCombinedSolver(int id, const SolverSettings& settings,
                                                 const InnerSettings& inner);

}  // namespace orv
