#include "solvers/linear_solver_list.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <iterator>
#include <memory>
#include <string>

#include "base/text_output.h"
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
#include "solvers/linear_solver.h"
#include "solvers/preconditioned/ilu0_bicg_stab_solver.h"
#include "solvers/preconditioned/preconditioned_bb_solver.h"
#include "solvers/preconditioned/preconditioned_bicg_stab2_solver.h"
#include "solvers/preconditioned/preconditioned_bicg_stab_solver.h"
#include "solvers/preconditioned/preconditioned_cg_solver.h"
#include "solvers/solver_catalogue.h"
#include "solvers/stationary/gauss_seidel_solver.h"
#include "solvers/stationary/jacobi_solver.h"
#include "solvers/stationary/sor_solver.h"
#include "solvers/stationary/thomas_solver.h"
#include "support/solver_systems.h"

namespace orv {
namespace {

struct Texts {
    const char* name;
    const char* description;
};

// clang-format off
constexpr Texts kTexts[] = {
    {"Thomas",
     "LU Doolittle, realtime on tridiagonals= Thomas O(N)[Deriche1993]"},
    {"Jacobi",
     "Jacobi Linear Solver, tau<=0.25, sigmaMax=0.7"},
    {"GS",
     "Gauss Seidel Linear Solver, tau<=0.25, sigmaMax=0.7"},
    {"SOR",
     "SOR Linear Solver, fast if best omega is computable, tau<=0.25, sigmaMax=0.7"},
    {"Descent",
     "Steepest Descent Linear Solver for SPD matrices"},
    {"BB",
     "Barzilai Borwein Linear Solver for SPD matrices[Raydan1991]"},
    {"CBB",
     "Cauchy Barzilai Borwein Linear Solver for SPD matrices[Raydan2000]"},
    {"CG",
     "Conjugate Gradient Linear Solver for SPD matrices"},
    {"CG-NE",
     "CG NE for non-symmetric matrices, slower do to condition number squaring"},
    {"CG-NR",
     "CG NR for non-symmetric matrices, slower do to condition number squaring"},
    {"CGS-LS",
     "CGS-LS for non-symmetric matrices, slower do to condition number squaring"},
    {"CGS-LSsh",
     "CGS-LS Linear Solver for shifted tikhonov systems"},
    {"CGi",
     "CGi Linear Solver for SP indefinite matrices(NOT CORRECT)"},
    {"MINRES",
     "Minres Linear Solver for Positive Symmetric indefinite matrices"},
    {"MR",
     "Minres (Calvetti 2001) Linear Solver, Positive Symmetric indefinite (TESTING)"},
    {"SYMMLQ",
     "Symmlq Linear Solver for Positive Symmetric indefinite matrices"},
    {"QMR",
     "Quasi Minimal Residual Linear Solver, NonPositive Indefinite System"},
    {"TFQMR",
     "Transpose Free QMR Linear Solver, NonPositive Indefinite System( TESTING)"},
    {"BiCG",
     "BiCG Linear Solver for non-symmetric matrices"},
    {"CGS",
     "CGS Linear Solver for non-symmetric matrices"},
    {"BiCGStab",
     "BiCGStab Linear Solver for non-symmetric matrices"},
    {"QmrCGStab",
     "QmrCGStab Linear Solver for non-symmetric matrices"},
    {"QmrCGStab2",
     "QmrCGStab2 Linear Solver for non-symmetric matrices (unstable)"},
    {"BiCGStab(2)",
     "BiCGStab(2) Linear Solver for non-symmetric matrices"},
    {"GMRES(m)",
     "GMRES(m) Krylov Solver for non-symmetric/indefinite matrices"},
    {"GCR(m)",
     "GCR(m) Krylov Solver residual, non-symmetric/indefinite matrices"},
    {"MGCR(m)",
     "MGCR(m) Krylov Solver residual,non-symmetric/indefinite matrices"},
    {"GMRESR",
     "GMRESR(l,m) general Krylov Solver for for non-symmetric using GMRES(m))"},
    {"GMRESRAlt",
     "GMRESRAlt(l,m) general Krylov Solver for non-symmetric using MGCR(m)"},
    {"GMRES*-CBB",
     "GMRES*(l,m) general Krylov Solver: CBB case"},
    {"GMRES*-BiCGstab",
     "GMRES*(l,m) general Krylov Solver: BiCGSTAB case"},
    {"RRMR",
     "Restricted Range MR (Calvetti 2001) Linear Solver (TESTING)"},
    {"RRGMRES(m)",
     "Restricted Range GMRES(m) of Calvetti(2001) (TESTING still some risk at restart)"},
    {"SGS-BB",
     "Symmetric GaussSeidel Barzilai Borwein Linear Solver for SPD matrices[Raydan1991]"},
    {"SGS-CG",
     "Symmetric GaussSeidel Conjugate Gradient Linear Solver for SPD matrices"},
    {"SGS-BiCGStab",
     "Symmetric GaussSeidel BiCgStab Linear Solver for NonSymmetric matrices"},
    {"SGS-BiCGStab(2)",
     "Symmetric GaussSeidel BiCgStab(2) Linear Solver for NonSymmetric  NOT OK!!!"},
    {"SSOR-BB",
     "SSOR Barzilai Borwein Linear Solver for SPD matrices[Raydan1991]"},
    {"SSOR-CG",
     "SSOR Conjugate Gradient Linear Solver for SPD matrices"},
    {"SSOR-BiCGStab",
     "SSOR BiCgStab Linear Solver for NonSymmetric matrices"},
    {"SSOR-BiCGStab(2)",
     "SSOR BiCgStab(2) Linear Solver for NonSymmetric  NOT OK!!!"},
    {"ILU0-BiCGStab",
     "ILU0 BiCgStab Linear Solver for NonSymmetric matrices(slow,in testing,NOT OK)"},
};

constexpr int kGroupOf[] = {0, 1, 1, 1, 1, 1, 1, 1, 2, 2, 2, 3, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 5, 5, 5, 6, 6, 6, 6, 4, 5, 7, 7, 7, 7, 7, 7, 7, 7, 7};

constexpr const char* kGroupNames[] = {
"Direct Methods",
"Basic Iterative Methods",
"Least square Normal CG Iterative Methods",
"Tikhonov-Phillips CG Iterative Methods",
"Lanczos CG or CR Iterative Methods",
"Krylov Solvers",
"General combined iterative solvers",
"SSOR preconditioned methods"};
// clang-format on

template <class Solver>
bool isA(const std::unique_ptr<LinearSolver>& solver) {
    return dynamic_cast<const Solver*>(solver.get()) != nullptr;
}

/// What `print` writes to the standard output.
template <class Print>
std::string printed(Print print) {
    testing::internal::CaptureStdout();
    print();
    flushText();
    return testing::internal::GetCapturedStdout();
}

TEST(LinearSolverList, HoldsAllNamesDescriptionsAndGroups) {
    const LinearSolverList list(50, 10);

    ASSERT_EQ(list.count(), 42);
    ASSERT_EQ(list.groupCount(), 8);
    for (int id = 0; id < 42; ++id) {
        EXPECT_STREQ(list.name(id), kTexts[id].name);
        EXPECT_STREQ(list.description(id), kTexts[id].description);
        EXPECT_EQ(list.group(id), kGroupOf[id]) << id;
    }
    for (int group = 0; group < 8; ++group) {
        EXPECT_STREQ(list.groupName(group), kGroupNames[group]);
    }
    EXPECT_EQ(list.name(42), nullptr);
    EXPECT_EQ(list.description(-1), nullptr);
    EXPECT_EQ(list.group(42), -1);
    EXPECT_EQ(list.groupName(8), nullptr);
}

TEST(LinearSolverList, PrintsTheNames) {
    const LinearSolverList list(50, 10);
    std::string expected = "List of Linear Solvers: A*u=b, n= 42\n";
    for (int id = 0; id < 42; ++id) {
        expected += (id < 10 ? "  " : " ") + std::to_string(id) + ": " + kTexts[id].name + "\n";
    }

    EXPECT_EQ(printed([&] { list.PrintNames(); }), expected);
}

TEST(LinearSolverList, PrintsTheDescriptions) {
    const LinearSolverList list(50, 10);
    std::string expected = "List of Linear Solvers: A*u=b, models= 42\n";
    for (int id = 0; id < 42; ++id) {
        expected += " " + std::to_string(id) + ") " + kTexts[id].name + " : " +
                    kTexts[id].description + "\n";
    }

    EXPECT_EQ(printed([&] { list.PrintDescriptions(); }), expected);
}

TEST(LinearSolverList, PrintsWhatAShortListHolds) {
    const LinearSolverList list(2, 1);

    EXPECT_EQ(printed([&] { list.PrintNames(); }),
              "List of Linear Solvers: A*u=b, n=  2\n  0: Thomas\n  1: Jacobi\n");
}

TEST(LinearSolverList, KeepsWhatThereIsRoomFor) {
    LinearSolverList list(10, 3);

    EXPECT_EQ(list.count(), 10);
    EXPECT_EQ(list.groupCount(), 3);
    EXPECT_STREQ(list.name(9), "CG-NR");
    EXPECT_EQ(list.name(10), nullptr);
    EXPECT_STREQ(list.groupName(2), "Least square Normal CG Iterative Methods");
    EXPECT_TRUE(isA<CombinedKrylovSolver>(list.Create(29, 10, 3, 0.001)));
}

TEST(LinearSolverList, DropsRegistrationsBeyondItsRoom) {
    LinearSolverList list(43, 8);

    list.AddSolver("Extra", "one more", 3);
    list.AddSolver("Late", "no room", 3);
    list.AddGroup("Late");

    EXPECT_EQ(list.count(), 43);
    EXPECT_STREQ(list.name(42), "Extra");
    EXPECT_STREQ(list.description(42), "one more");
    EXPECT_EQ(list.group(42), 3);
    EXPECT_EQ(list.groupCount(), 8);
    EXPECT_EQ(list.CreateByName("Extra", 5, 5, 0.1), nullptr);
}

TEST(LinearSolverList, MayHaveNoRoomAtAll) {
    LinearSolverList list(0, 0);

    EXPECT_EQ(list.count(), 0);
    EXPECT_EQ(list.CreateByName("Thomas", 5, 5, 0.1), nullptr);
    EXPECT_TRUE(isA<ThomasSolver>(list.Create(0, 5, 5, 0.1)));
}

TEST(LinearSolverList, GivesNullForIdsOutsideTheCatalogue) {
    LinearSolverList list(50, 10);

    EXPECT_EQ(list.Create(-1, 10, 5, 0.001), nullptr);
    EXPECT_EQ(list.Create(42, 10, 5, 0.001), nullptr);
}

using IsA = bool (*)(const std::unique_ptr<LinearSolver>&);

/// The class of each id.
constexpr IsA kClassOf[] = {
    isA<ThomasSolver>,
    isA<JacobiSolver>,
    isA<GaussSeidelSolver>,
    isA<SorSolver>,
    isA<DescentSolver>,
    isA<BbSolver>,
    isA<CbbSolver>,
    isA<CgSolver>,
    isA<CgNeSolver>,
    isA<CgNrSolver>,
    isA<CgsLsSolver>,
    isA<CgsLsShiftedSolver>,
    isA<CgiSolver>,
    isA<MinresSolver>,
    isA<MrSolver>,
    isA<SymmlqSolver>,
    isA<QmrSolver>,
    isA<TfqmrSolver>,
    isA<BicgSolver>,
    isA<CgsSolver>,
    isA<BicgStabSolver>,
    isA<QmrCgStabSolver>,
    isA<QmrCgStabSolver>,
    isA<BicgStab2Solver>,
    isA<GmresSolver>,
    isA<GcrSolver>,
    isA<MgcrSolver>,
    isA<CombinedKrylovSolver>,
    isA<CombinedKrylovSolver>,
    isA<CombinedKrylovSolver>,
    isA<CombinedKrylovSolver>,
    isA<MrSolver>,
    isA<GmresSolver>,
    isA<PreconditionedBbSolver>,
    isA<PreconditionedCgSolver>,
    isA<PreconditionedBicgStabSolver>,
    isA<PreconditionedBicgStab2Solver>,
    isA<PreconditionedBbSolver>,
    isA<PreconditionedCgSolver>,
    isA<PreconditionedBicgStabSolver>,
    isA<PreconditionedBicgStab2Solver>,
    isA<Ilu0BicgStabSolver>,
};
static_assert(std::size(kClassOf) == kSolverCount);

TEST(LinearSolverList, CreatesTheClassOfEachId) {
    LinearSolverList list(50, 10);

    for (int id = 0; id < kSolverCount; ++id) {
        EXPECT_TRUE(kClassOf[id](list.Create(id, 10, 5, 0.001))) << kTexts[id].name;
    }
}

TEST(LinearSolverList, CreatesTheClassOfEachName) {
    LinearSolverList list(50, 10);

    for (int id = 0; id < kSolverCount; ++id) {
        const IsA isExpected = id == kSgsBicgStab2Id ? kClassOf[kSgsBicgStabId] : kClassOf[id];
        EXPECT_TRUE(isExpected(list.CreateByName(kTexts[id].name, 10, 5, 0.001)))
            << kTexts[id].name;
    }
}

TEST(LinearSolverList, TellsTheTwinsOfAClassApart) {
    LinearSolverList list(50, 10);
    const FTriDiagonalMatrix A = test::diffusionLine(9, 1.0F);
    const RealVector b = test::wavyVector(9);
    const struct {
        int id;
        int twin;
    } pairs[] = {{14, 31}, {21, 22}, {24, 32}, {33, 37}, {34, 38}, {35, 39}, {36, 40}};

    for (const auto& pair : pairs) {
        const auto u = list.Create(pair.id, 2, 5, 1e-6)->Solve(A, b, nullptr);
        const auto other = list.Create(pair.twin, 2, 5, 1e-6)->Solve(A, b, nullptr);

        EXPECT_FALSE(test::sameVectorBits(*u, *other)) << kTexts[pair.id].name;
    }
}

TEST(LinearSolverList, TakesNamesByteForByte) {
    LinearSolverList list(50, 10);

    for (const char* const name : {"gs", "G", "GS ", "Thomas\n", "", "cbb", "GMRES*"}) {
        EXPECT_EQ(list.CreateByName(name, 10, 5, 0.001), nullptr) << name;
    }
    EXPECT_EQ(list.CreateCombined("gmres*-cbb", 10, 3, 5, 5, 0.001), nullptr);
}

TEST(LinearSolverList, CombinesNothingButTheCombinedSolvers) {
    LinearSolverList list(50, 10);

    for (int id = 0; id < 42; ++id) {
        if (id < 27 || id > 30) {
            EXPECT_EQ(list.CreateCombined(kTexts[id].name, 10, 3, 5, 5, 0.001), nullptr) << id;
        }
    }
    EXPECT_TRUE(
        isA<CombinedKrylovSolver>(list.CreateCombined("GMRES*-CBB", 10, 3, 5, 5, 0.001)));
}

TEST(LinearSolverList, HandsLimitAndToleranceOn) {
    LinearSolverList list(50, 10);
    for (int id = 1; id < kSolverCount; ++id) {
        if (id == kGmresrId || id == kGmresrAltId) {
            continue;  // these have a tolerance of their own
        }
        const auto solver = list.Create(id, 17, 4, 0.25);
        const auto& iterative = dynamic_cast<const IterativeLinearSolver&>(*solver);
        EXPECT_EQ(iterative.maxIter(), 17) << id;
        EXPECT_EQ(iterative.tol(), 0.25) << id;
    }
}

TEST(LinearSolverList, GivesTheCbbFormItsInnerSettings) {
    LinearSolverList list(50, 10);
    const std::unique_ptr<LinearSolver> made[] = {
        list.Create(29, 17, 4, 0.25),
        list.CreateByName("GMRES*-CBB", 17, 4, 0.25),
        list.CreateCombined("GMRES*-CBB", 17, 4, 23, 9, 0.25),
    };
    const int innerLimits[] = {5, 10, 23};
    for (int i = 0; i < 3; ++i) {
        const auto& solver = dynamic_cast<const CombinedKrylovSolver&>(*made[i]);
        EXPECT_EQ(solver.maxIter(), 17);
        EXPECT_EQ(solver.directions(), 4);
        EXPECT_EQ(solver.tol(), 0.25);
        const auto& inner = dynamic_cast<const CbbSolver&>(solver.inner());
        EXPECT_EQ(inner.maxIter(), innerLimits[i]);
        EXPECT_EQ(inner.tol(), 0.0001);
    }
}

TEST(LinearSolverList, SolversOutliveIt) {
    std::unique_ptr<LinearSolver> solver;
    {
        LinearSolverList list(50, 10);
        solver = list.Create(29, 10, 5, 0.05);
    }
    const FTriDiagonalMatrix A = test::diffusionLine(25, 1.5F);
    const RealVector b = test::wavyVector(25);

    const auto u = solver->Solve(A, b, nullptr);

    EXPECT_LT(test::residualNorm(A, b, *u), 0.051);  // the tolerance and rounding
}

TEST(LinearSolverList, HandsTheRestartLengthOn) {
    LinearSolverList list(50, 10);

    for (const int m : {-3, 0, 1, 2, 9}) {
        const int kept = m < 2 ? 2 : m;
        for (const int id : {24, 32}) {
            const auto solver = list.Create(id, 17, m, 0.25);
            EXPECT_EQ(dynamic_cast<const GmresSolver&>(*solver).columns(), kept) << m;
        }
        const auto mgcr = list.Create(26, 17, m, 0.25);
        EXPECT_EQ(dynamic_cast<const MgcrSolver&>(*mgcr).columns(), kept) << m;
        for (int id = kGmresrId; id <= kGmresStarBicgStabId; ++id) {
            const auto solver = list.Create(id, 17, m, 0.25);
            EXPECT_EQ(dynamic_cast<const CombinedKrylovSolver&>(*solver).directions(), kept);
        }
    }
}

TEST(SolverCatalogue, NumbersItsRecordsInOrder) {
    for (int id = 0; id < kSolverCount; ++id) {
        EXPECT_EQ(kSolvers[id].id, id);
        EXPECT_GE(kSolvers[id].group, 0);
        EXPECT_LT(kSolvers[id].group, kSolverGroupCount);
    }
}

TEST(SolverCatalogue, NamesTheIdsThatTheFactoriesTreatApart) {
    EXPECT_STREQ(kSolvers[kCbbId].name, "CBB");
    EXPECT_STREQ(kSolvers[kCgsId].name, "CGS");
    EXPECT_STREQ(kSolvers[kBicgStabId].name, "BiCGStab");
    EXPECT_STREQ(kSolvers[kGmresId].name, "GMRES(m)");
    EXPECT_STREQ(kSolvers[kMgcrId].name, "MGCR(m)");
    EXPECT_STREQ(kSolvers[kGmresrId].name, "GMRESR");
    EXPECT_STREQ(kSolvers[kGmresrAltId].name, "GMRESRAlt");
    EXPECT_STREQ(kSolvers[kGmresStarCbbId].name, "GMRES*-CBB");
    EXPECT_STREQ(kSolvers[kGmresStarBicgStabId].name, "GMRES*-BiCGstab");
    EXPECT_STREQ(kSolvers[kSgsBicgStabId].name, "SGS-BiCGStab");
    EXPECT_STREQ(kSolvers[kSgsBicgStab2Id].name, "SGS-BiCGStab(2)");
}

TEST(Quirk, GmresrTolerance) {
    // The limits 5, 10 and the caller's own; the restart length is the truncated tolerance,
    // which the inner classes lift to 2, and the tolerance itself is a constant.
    const InnerSettings inners[] = {kInnerById, kInnerByName, innerOfCombined(23, 9)};
    const int innerLimits[] = {5, 10, 23};
    for (int i = 0; i < 3; ++i) {
        for (const int id : {kGmresrId, kGmresrAltId}) {
            const CombinedPlan plan = planCombinedSolver(id, 0.001, inners[i]);
            EXPECT_EQ(plan.innerId, id == kGmresrId ? kGmresId : kMgcrId);
            EXPECT_EQ(plan.inner.maxIter, innerLimits[i]);
            EXPECT_EQ(plan.inner.m, 0);
            EXPECT_EQ(plan.inner.tol, 0.0001);
            EXPECT_EQ(plan.tol, 0.0001);
            EXPECT_EQ(planCombinedSolver(id, 7.9, inners[i]).inner.m, 7);
        }
    }
}

// The inner solver of a combined one.
template <class Solver>
const Solver& innerOf(const std::unique_ptr<LinearSolver>& combined) {
    return dynamic_cast<const Solver&>(
        dynamic_cast<const CombinedKrylovSolver&>(*combined).inner());
}

TEST(LinearSolverList, MakesTheInnerSolversAsPlanned) {
    LinearSolverList list(50, 10);

    const auto gmresr = list.Create(kGmresrId, 100, 4, 0.001);
    const auto gmresrAlt = list.CreateByName("GMRESRAlt", 100, 4, 3.5);
    const auto starByName = list.CreateByName("GMRES*-BiCGstab", 10, 3, 0.001);
    const auto starCombined = list.CreateCombined("GMRES*-BiCGstab", 10, 3, 23, 9, 0.001);

    EXPECT_EQ(dynamic_cast<const CombinedKrylovSolver&>(*gmresr).tol(), 0.0001);
    EXPECT_EQ(innerOf<GmresSolver>(gmresr).columns(), 2);
    EXPECT_EQ(innerOf<GmresSolver>(gmresr).maxIter(), 5);
    EXPECT_EQ(innerOf<GmresSolver>(gmresr).tol(), 0.0001);
    EXPECT_EQ(innerOf<MgcrSolver>(gmresrAlt).columns(), 3);
    EXPECT_EQ(innerOf<MgcrSolver>(gmresrAlt).maxIter(), 10);
    EXPECT_EQ(innerOf<CgsSolver>(starByName).maxIter(), 10);
    EXPECT_EQ(innerOf<BicgStabSolver>(starCombined).maxIter(), 23);
}

TEST(Quirk, GmresStarInner) {
    const CombinedPlan byId = planCombinedSolver(kGmresStarBicgStabId, 0.25, kInnerById);
    const CombinedPlan byName = planCombinedSolver(kGmresStarBicgStabId, 0.25, kInnerByName);
    const CombinedPlan combined =
        planCombinedSolver(kGmresStarBicgStabId, 0.25, innerOfCombined(23, 9));

    EXPECT_EQ(byId.innerId, kCgsId);
    EXPECT_EQ(byName.innerId, kCgsId);
    EXPECT_EQ(combined.innerId, kBicgStabId);
    EXPECT_EQ(byId.inner.m, 5);
    EXPECT_EQ(byName.inner.m, 10);
    EXPECT_EQ(combined.inner.m, 9);
    EXPECT_EQ(combined.inner.tol, 0.0001);
    EXPECT_EQ(combined.tol, 0.25);
}

TEST(Quirk, Stab2ByName) {
    for (int id = 0; id < kSolverCount; ++id) {
        EXPECT_EQ(idMadeByName(id), id == 36 ? 35 : id);
    }
}

}  // namespace
}  // namespace orv
