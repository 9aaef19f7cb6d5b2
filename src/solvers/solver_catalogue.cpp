#include "solvers/solver_catalogue.h"

#include <utility>

#include "base/rounding.h"
#include "solvers/bicg/bicg_solver.h"
#include "solvers/bicg/bicg_stab2_solver.h"
#include "solvers/bicg/bicg_stab_solver.h"
#include "solvers/bicg/cgs_solver.h"
#include "solvers/bicg/qmr_cg_stab_solver.h"
#include "solvers/gmres/combined_krylov_solver.h"
#include "solvers/gmres/gcr_solver.h"
#include "solvers/gmres/gmres_solver.h"
#include "solvers/gmres/mgcr_solver.h"
#include "solvers/gradient/bb_solver.h"
#include "solvers/gradient/cbb_solver.h"
#include "solvers/gradient/cg_ne_solver.h"
#include "solvers/gradient/cg_nr_solver.h"
#include "solvers/gradient/cg_solver.h"
#include "solvers/gradient/cgi_solver.h"
#include "solvers/gradient/cgs_ls_shifted_solver.h"
#include "solvers/gradient/cgs_ls_solver.h"
#include "solvers/gradient/descent_solver.h"
#include "solvers/lanczos/minres_solver.h"
#include "solvers/lanczos/mr_solver.h"
#include "solvers/lanczos/qmr_solver.h"
#include "solvers/lanczos/symmlq_solver.h"
#include "solvers/lanczos/tfqmr_solver.h"
#include "solvers/preconditioned/ilu0_bicg_stab_solver.h"
#include "solvers/preconditioned/preconditioned_bb_solver.h"
#include "solvers/preconditioned/preconditioned_bicg_stab2_solver.h"
#include "solvers/preconditioned/preconditioned_bicg_stab_solver.h"
#include "solvers/preconditioned/preconditioned_cg_solver.h"
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

/// Two solvers of the catalogue are one class that differs by a mark.
template <class Solver, auto mark>
std::unique_ptr<LinearSolver> makeMarked(const SolverSettings& settings) {
    return std::make_unique<Solver>(settings.maxIter, settings.tol, mark);
}

template <class Solver>
std::unique_ptr<LinearSolver> makeRestarted(const SolverSettings& settings) {
    return std::make_unique<Solver>(settings.maxIter, settings.m, settings.tol);
}

template <bool rangeRestricted>
std::unique_ptr<LinearSolver> makeGmres(const SolverSettings& settings) {
    return std::make_unique<GmresSolver>(settings.maxIter, settings.m, settings.tol,
                                         rangeRestricted);
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
    {4, "Descent", 1, "Steepest Descent Linear Solver for SPD matrices", makeIterative<DescentSolver>},
    {5, "BB", 1, "Barzilai Borwein Linear Solver for SPD matrices[Raydan1991]", makeIterative<BbSolver>},
    {6, "CBB", 1,
     "Cauchy Barzilai Borwein Linear Solver for SPD matrices[Raydan2000]", makeIterative<CbbSolver>},
    {7, "CG", 1, "Conjugate Gradient Linear Solver for SPD matrices", makeIterative<CgSolver>},
    {8, "CG-NE", 2,
     "CG NE for non-symmetric matrices, slower do to condition number squaring", makeIterative<CgNeSolver>},
    {9, "CG-NR", 2,
     "CG NR for non-symmetric matrices, slower do to condition number squaring", makeIterative<CgNrSolver>},
    {10, "CGS-LS", 2,
     "CGS-LS for non-symmetric matrices, slower do to condition number squaring", makeIterative<CgsLsSolver>},
    {11, "CGS-LSsh", 3, "CGS-LS Linear Solver for shifted tikhonov systems", makeIterative<CgsLsShiftedSolver>},
    {12, "CGi", 4, "CGi Linear Solver for SP indefinite matrices(NOT CORRECT)", makeIterative<CgiSolver>},
    {13, "MINRES", 4,
     "Minres Linear Solver for Positive Symmetric indefinite matrices", makeIterative<MinresSolver>},
    {14, "MR", 4,
     "Minres (Calvetti 2001) Linear Solver, Positive Symmetric indefinite (TESTING)", makeMarked<MrSolver, false>},
    {15, "SYMMLQ", 4,
     "Symmlq Linear Solver for Positive Symmetric indefinite matrices", makeIterative<SymmlqSolver>},
    {16, "QMR", 4,
     "Quasi Minimal Residual Linear Solver, NonPositive Indefinite System", makeIterative<QmrSolver>},
    {17, "TFQMR", 4,
     "Transpose Free QMR Linear Solver, NonPositive Indefinite System( TESTING)", makeIterative<TfqmrSolver>},
    {18, "BiCG", 4, "BiCG Linear Solver for non-symmetric matrices", makeIterative<BicgSolver>},
    {19, "CGS", 4, "CGS Linear Solver for non-symmetric matrices", makeIterative<CgsSolver>},
    {20, "BiCGStab", 4, "BiCGStab Linear Solver for non-symmetric matrices", makeIterative<BicgStabSolver>},
    {21, "QmrCGStab", 4, "QmrCGStab Linear Solver for non-symmetric matrices", makeMarked<QmrCgStabSolver, QmrCgStabStep::MinimalResidual>},
    {22, "QmrCGStab2", 4,
     "QmrCGStab2 Linear Solver for non-symmetric matrices (unstable)", makeMarked<QmrCgStabSolver, QmrCgStabStep::NormQuotient>},
    {23, "BiCGStab(2)", 4, "BiCGStab(2) Linear Solver for non-symmetric matrices", makeIterative<BicgStab2Solver>},
    {24, "GMRES(m)", 5,
     "GMRES(m) Krylov Solver for non-symmetric/indefinite matrices", makeGmres<false>},
    {25, "GCR(m)", 5,
     "GCR(m) Krylov Solver residual, non-symmetric/indefinite matrices", makeRestarted<GcrSolver>},
    {26, "MGCR(m)", 5,
     "MGCR(m) Krylov Solver residual,non-symmetric/indefinite matrices", makeRestarted<MgcrSolver>},
    {27, "GMRESR", 6,
     "GMRESR(l,m) general Krylov Solver for for non-symmetric using GMRES(m))", nullptr},
    {28, "GMRESRAlt", 6,
     "GMRESRAlt(l,m) general Krylov Solver for non-symmetric using MGCR(m)", nullptr},
    {29, "GMRES*-CBB", 6, "GMRES*(l,m) general Krylov Solver: CBB case", nullptr},
    {30, "GMRES*-BiCGstab", 6, "GMRES*(l,m) general Krylov Solver: BiCGSTAB case", nullptr},
    {31, "RRMR", 4, "Restricted Range MR (Calvetti 2001) Linear Solver (TESTING)", makeMarked<MrSolver, true>},
    {32, "RRGMRES(m)", 5,
     "Restricted Range GMRES(m) of Calvetti(2001) (TESTING still some risk at restart)", makeGmres<true>},
    {33, "SGS-BB", 7,
     "Symmetric GaussSeidel Barzilai Borwein Linear Solver for SPD matrices[Raydan1991]", makeMarked<PreconditionedBbSolver, true>},
    {34, "SGS-CG", 7,
     "Symmetric GaussSeidel Conjugate Gradient Linear Solver for SPD matrices", makeMarked<PreconditionedCgSolver, true>},
    {35, "SGS-BiCGStab", 7,
     "Symmetric GaussSeidel BiCgStab Linear Solver for NonSymmetric matrices", makeMarked<PreconditionedBicgStabSolver, true>},
    {36, "SGS-BiCGStab(2)", 7,
     "Symmetric GaussSeidel BiCgStab(2) Linear Solver for NonSymmetric  NOT OK!!!", makeMarked<PreconditionedBicgStab2Solver, true>},
    {37, "SSOR-BB", 7,
     "SSOR Barzilai Borwein Linear Solver for SPD matrices[Raydan1991]", makeMarked<PreconditionedBbSolver, false>},
    {38, "SSOR-CG", 7, "SSOR Conjugate Gradient Linear Solver for SPD matrices", makeMarked<PreconditionedCgSolver, false>},
    {39, "SSOR-BiCGStab", 7, "SSOR BiCgStab Linear Solver for NonSymmetric matrices", makeMarked<PreconditionedBicgStabSolver, false>},
    {40, "SSOR-BiCGStab(2)", 7,
     "SSOR BiCgStab(2) Linear Solver for NonSymmetric  NOT OK!!!", makeMarked<PreconditionedBicgStab2Solver, false>},
    {41, "ILU0-BiCGStab", 7,
     "ILU0 BiCgStab Linear Solver for NonSymmetric matrices(slow,in testing,NOT OK)", makeIterative<Ilu0BicgStabSolver>},
};
// clang-format on

std::unique_ptr<LinearSolver> makePlainSolver(int id, const SolverSettings& settings) {
    return kSolvers[id].make(settings);
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
    return std::make_unique<CombinedKrylovSolver>(
        settings.maxIter, settings.m, makePlainSolver(plan.innerId, plan.inner), plan.tol);
}

}  // namespace orv
