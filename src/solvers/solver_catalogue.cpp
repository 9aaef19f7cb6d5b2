#include "solvers/solver_catalogue.h"

#include <utility>

#include "base/rounding.h"
#include "solvers/gmres/combined_krylov_solver.h"
#include "solvers/gradient/cbb_solver.h"
#include "solvers/stationary/gauss_seidel_solver.h"
#include "solvers/stationary/jacobi_solver.h"
#include "solvers/stationary/sor_solver.h"
#include "solvers/stationary/thomas_solver.h"

namespace orv {

namespace {

/// The tolerance of every inner solver, and of the two GMRESR forms themselves.
constexpr double kCombinedTolerance = 0.0001;

std::unique_ptr<LinearSolver> makeThomas(const SolverSettings& /*settings*/) {
    return std::make_unique<ThomasSolver>();
}

template <class Solver>
std::unique_ptr<LinearSolver> makeIterative(const SolverSettings& settings) {
    return std::make_unique<Solver>(settings.maxIter, settings.tol);
}

}  // namespace

constinit const char* const kSolverGroups[kSolverGroupCount] = {
    "Direct Methods",
    "Basic Iterative Methods",
    "Least square Normal CG Iterative Methods",
    "Tikhonov-Phillips CG Iterative Methods",
    "Lanczos CG or CR Iterative Methods",
    "Krylov Solvers",
    "General combined iterative solvers",
    "SSOR preconditioned methods",
};

// clang-format off
constinit const SolverRecord kSolvers[kSolverCount] = {
    {0, "Thomas", 0,
     "LU Doolittle, realtime on tridiagonals= Thomas O(N)[Deriche1993]", makeThomas},
    {1, "Jacobi", 1,
     "Jacobi Linear Solver, tau<=0.25, sigmaMax=0.7", makeIterative<JacobiSolver>},
    {2, "GS", 1,
     "Gauss Seidel Linear Solver, tau<=0.25, sigmaMax=0.7", makeIterative<GaussSeidelSolver>},
    {3, "SOR", 1,
     "SOR Linear Solver, fast if best omega is computable, tau<=0.25, sigmaMax=0.7", makeIterative<SorSolver>},
    {4, "Descent", 1, "Steepest Descent Linear Solver for SPD matrices", nullptr},
    {5, "BB", 1, "Barzilai Borwein Linear Solver for SPD matrices[Raydan1991]", nullptr},
    {6, "CBB", 1,
     "Cauchy Barzilai Borwein Linear Solver for SPD matrices[Raydan2000]", makeIterative<CbbSolver>},
    {7, "CG", 1, "Conjugate Gradient Linear Solver for SPD matrices", nullptr},
    {8, "CG-NE", 2,
     "CG NE for non-symmetric matrices, slower do to condition number squaring", nullptr},
    {9, "CG-NR", 2,
     "CG NR for non-symmetric matrices, slower do to condition number squaring", nullptr},
    {10, "CGS-LS", 2,
     "CGS-LS for non-symmetric matrices, slower do to condition number squaring", nullptr},
    {11, "CGS-LSsh", 3, "CGS-LS Linear Solver for shifted tikhonov systems", nullptr},
    {12, "CGi", 4, "CGi Linear Solver for SP indefinite matrices(NOT CORRECT)", nullptr},
    {13, "MINRES", 4,
     "Minres Linear Solver for Positive Symmetric indefinite matrices", nullptr},
    {14, "MR", 4,
     "Minres (Calvetti 2001) Linear Solver, Positive Symmetric indefinite (TESTING)", nullptr},
    {15, "SYMMLQ", 4,
     "Symmlq Linear Solver for Positive Symmetric indefinite matrices", nullptr},
    {16, "QMR", 4,
     "Quasi Minimal Residual Linear Solver, NonPositive Indefinite System", nullptr},
    {17, "TFQMR", 4,
     "Transpose Free QMR Linear Solver, NonPositive Indefinite System( TESTING)", nullptr},
    {18, "BiCG", 4, "BiCG Linear Solver for non-symmetric matrices", nullptr},
    {19, "CGS", 4, "CGS Linear Solver for non-symmetric matrices", nullptr},
    {20, "BiCGStab", 4, "BiCGStab Linear Solver for non-symmetric matrices", nullptr},
    {21, "QmrCGStab", 4, "QmrCGStab Linear Solver for non-symmetric matrices", nullptr},
    {22, "QmrCGStab2", 4,
     "QmrCGStab2 Linear Solver for non-symmetric matrices (unstable)", nullptr},
    {23, "BiCGStab(2)", 4, "BiCGStab(2) Linear Solver for non-symmetric matrices", nullptr},
    {24, "GMRES(m)", 5,
     "GMRES(m) Krylov Solver for non-symmetric/indefinite matrices", nullptr},
    {25, "GCR(m)", 5,
     "GCR(m) Krylov Solver residual, non-symmetric/indefinite matrices", nullptr},
    {26, "MGCR(m)", 5,
     "MGCR(m) Krylov Solver residual,non-symmetric/indefinite matrices", nullptr},
    {27, "GMRESR", 6,
     "GMRESR(l,m) general Krylov Solver for for non-symmetric using GMRES(m))", nullptr},
    {28, "GMRESRAlt", 6,
     "GMRESRAlt(l,m) general Krylov Solver for non-symmetric using MGCR(m)", nullptr},
    {29, "GMRES*-CBB", 6, "GMRES*(l,m) general Krylov Solver: CBB case", nullptr},
    {30, "GMRES*-BiCGstab", 6, "GMRES*(l,m) general Krylov Solver: BiCGSTAB case", nullptr},
    {31, "RRMR", 4, "Restricted Range MR (Calvetti 2001) Linear Solver (TESTING)", nullptr},
    {32, "RRGMRES(m)", 5,
     "Restricted Range GMRES(m) of Calvetti(2001) (TESTING still some risk at restart)", nullptr},
    {33, "SGS-BB", 7,
     "Symmetric GaussSeidel Barzilai Borwein Linear Solver for SPD matrices[Raydan1991]", nullptr},
    {34, "SGS-CG", 7,
     "Symmetric GaussSeidel Conjugate Gradient Linear Solver for SPD matrices", nullptr},
    {35, "SGS-BiCGStab", 7,
     "Symmetric GaussSeidel BiCgStab Linear Solver for NonSymmetric matrices", nullptr},
    {36, "SGS-BiCGStab(2)", 7,
     "Symmetric GaussSeidel BiCgStab(2) Linear Solver for NonSymmetric  NOT OK!!!", nullptr},
    {37, "SSOR-BB", 7,
     "SSOR Barzilai Borwein Linear Solver for SPD matrices[Raydan1991]", nullptr},
    {38, "SSOR-CG", 7, "SSOR Conjugate Gradient Linear Solver for SPD matrices", nullptr},
    {39, "SSOR-BiCGStab", 7, "SSOR BiCgStab Linear Solver for NonSymmetric matrices", nullptr},
    {40, "SSOR-BiCGStab(2)", 7,
     "SSOR BiCgStab(2) Linear Solver for NonSymmetric  NOT OK!!!", nullptr},
    {41, "ILU0-BiCGStab", 7,
     "ILU0 BiCgStab Linear Solver for NonSymmetric matrices(slow,in testing,NOT OK)", nullptr},
};
// clang-format on

std::unique_ptr<LinearSolver> makePlainSolver(int id, const SolverSettings& settings) {
    const SolverMaker make = kSolvers[id].make;
    return make == nullptr ? nullptr : make(settings);
}

CombinedPlan planCombinedSolver(int id, double tol, const InnerSettings& inner) {
    const SolverSettings given{inner.maxIter, inner.m, kCombinedTolerance};
    // The caller's tolerance ends up as the restart length.
    // quirk: gmresr-tolerance
    const SolverSettings truncated{inner.maxIter, toInt(tol), kCombinedTolerance};
    switch (id) {
        case kGmresrId:
            return {kGmresId, truncated, kCombinedTolerance};
        case kGmresrAltId:
            return {kMgcrId, truncated, kCombinedTolerance};
        case kGmresStarCbbId:
            return {kCbbId, given, tol};
        default:
            return {inner.starId, given, tol};
    }
}

std::unique_ptr<LinearSolver> makeCombinedSolver(int id, const SolverSettings& settings,
                                                 const InnerSettings& inner) {
    const CombinedPlan plan = planCombinedSolver(id, settings.tol, inner);
    std::unique_ptr<LinearSolver> innerSolver = makePlainSolver(plan.innerId, plan.inner);
    if (!innerSolver) {
        return nullptr;
    }
    return std::make_unique<CombinedKrylovSolver>(settings.maxIter, settings.m,
                                                  std::move(innerSolver), plan.tol);
}

}  // namespace orv
