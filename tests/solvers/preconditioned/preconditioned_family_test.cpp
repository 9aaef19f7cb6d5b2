#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "algebra/preconditioners/compact_incomplete_lu0.h"
#include "algebra/preconditioners/explicit_ssor.h"
#include "base/text_output.h"
#include "solvers/preconditioned/ilu0_bicg_stab_solver.h"
#include "solvers/preconditioned/preconditioned_bb_solver.h"
#include "solvers/preconditioned/preconditioned_bicg_stab2_solver.h"
#include "solvers/preconditioned/preconditioned_bicg_stab_solver.h"
#include "solvers/preconditioned/preconditioned_cg_solver.h"
#include "solvers/preconditioned/transcriptions.h"
#include "support/direct_solution.h"
#include "support/solver_systems.h"

namespace orv {
namespace {

using test::diffusionPlane;
using test::sameVectorBits;
using test::start;
using test::TranscribedRun;
using test::wavyVector;

using MakeSolver = std::unique_ptr<PreconditionedSolver> (*)(int maxIter, double tol);
using MakeM = std::unique_ptr<Matrix> (*)(const Matrix& A);
using Transcription = TranscribedRun (*)(const Matrix& A, const Matrix& M, const RealVector& b,
                                         RealVector u, int maxIter, double tol);

// The matrices that a method solves.
enum class Domain { Symmetric, Any, WithFactors };

// A solver of the list and its steps, written down beside it.
struct Method {
    const char* name;
    MakeSolver make;
    MakeM makeM;
    MakeM makeOther;  // what makeM must not be
    Transcription transcribe;
    Domain domain;
};

// The name that a failure shows.
void PrintTo(const Method& method, std::ostream* stream) {
    *stream << method.name;
}

template <class Solver, bool... kSgs>
std::unique_ptr<PreconditionedSolver> make(int maxIter, double tol) {
    return std::make_unique<Solver>(maxIter, tol, kSgs...);
}

std::unique_ptr<Matrix> sgs(const Matrix& A) {
    return std::make_unique<ExplicitSsor>(A, 1.0);
}

std::unique_ptr<Matrix> ssor(const Matrix& A) {
    return std::make_unique<ExplicitSsor>(A, 1.1);
}

std::unique_ptr<Matrix> ilu0(const Matrix& A) {
    return std::make_unique<CompactIncompleteLU0>(A);
}

TranscribedRun stab(const Matrix& A, const Matrix& M, const RealVector& b, RealVector u,
                    int maxIter, double tol) {
    return test::transcribedStab(A, M, b, std::move(u), maxIter, tol);
}

TranscribedRun stab2(const Matrix& A, const Matrix& M, const RealVector& b, RealVector u,
                     int maxIter, double tol) {
    return test::transcribedStab2(A, M, b, std::move(u), maxIter, tol);
}

constexpr Method kMethods[] = {
    {"SgsBb", make<PreconditionedBbSolver, true>, sgs, ssor, test::transcribedBb,
     Domain::Symmetric},
    {"SsorBb", make<PreconditionedBbSolver, false>, ssor, sgs, test::transcribedBb,
     Domain::Symmetric},
    {"SgsCg", make<PreconditionedCgSolver, true>, sgs, ssor, test::transcribedCg,
     Domain::Symmetric},
    {"SsorCg", make<PreconditionedCgSolver, false>, ssor, sgs, test::transcribedCg,
     Domain::Symmetric},
    {"SgsStab", make<PreconditionedBicgStabSolver, true>, sgs, ssor, stab, Domain::Any},
    {"SsorStab", make<PreconditionedBicgStabSolver, false>, ssor, sgs, stab, Domain::Any},
    {"Ilu0Stab", make<Ilu0BicgStabSolver>, ilu0, sgs, stab, Domain::WithFactors},
};

// Their u is no solution: Quirk.Stab2StaleDirection.
constexpr Method kStray[] = {
    {"SgsStab2", make<PreconditionedBicgStab2Solver, true>, sgs, ssor, stab2, Domain::Any},
    {"SsorStab2", make<PreconditionedBicgStab2Solver, false>, ssor, sgs, stab2, Domain::Any},
};

// Matrices of the domain, their smallest eigenvalue about 1 or more.
std::vector<std::unique_ptr<Matrix>> systemsOf(Domain domain) {
    std::vector<std::unique_ptr<Matrix>> systems;
    systems.push_back(diffusionPlane(9, 7, 3.0F).Clone());
    if (domain != Domain::WithFactors) {
        for (const int n : {1, 2, 3, 9, 40}) {
            systems.push_back(test::diffusionLine(n, 2.0F).Clone());
        }
    }
    if (domain != Domain::Symmetric) {
        systems.push_back(test::windyPlane(9, 7, 3.0F).Clone());
        systems.push_back(test::dominantMatrix(30).Clone());
    }
    return systems;
}

class PreconditionedFamily : public testing::TestWithParam<Method> {
  protected:
    // A plane for the steps, without symmetry where the method needs none.
    static BandMatrix plane(int w) {
        return GetParam().domain == Domain::Symmetric ? diffusionPlane(w, 5, 2.0F)
                                                      : test::windyPlane(w, 5, 2.0F);
    }

  private:
    SilencedOutput silence_;
};

std::string nameOf(const testing::TestParamInfo<Method>& method) {
    return method.param.name;
}

INSTANTIATE_TEST_SUITE_P(Methods, PreconditionedFamily, testing::ValuesIn(kMethods), nameOf);
INSTANTIATE_TEST_SUITE_P(Stray, PreconditionedFamily, testing::ValuesIn(kStray), nameOf);

class PreconditionedConvergence : public PreconditionedFamily {};
INSTANTIATE_TEST_SUITE_P(Methods, PreconditionedConvergence, testing::ValuesIn(kMethods),
                         nameOf);

TEST_P(PreconditionedConvergence, SolvesTheSystemsOfItsDomain) {
    const auto solver = GetParam().make(200, 1e-2);
    for (const std::unique_ptr<Matrix>& A : systemsOf(GetParam().domain)) {
        const int n = A->Rows();
        const RealVector b = wavyVector(n);

        const auto u = solver->Solve(*A, b, start(RealVector(n, 1.0F)));

        EXPECT_TRUE(solver->converged()) << n;
        // The residual of the recurrence departs from the true one by its rounding alone.
        EXPECT_LT(test::residualNorm(*A, b, *u), 1.1e-2) << n;
        EXPECT_LT(test::largestError(*u, test::directSolution(*A, b)), 1.1e-2) << n;
    }
}

TEST_P(PreconditionedFamily, TakesEveryStepAsItIsDefined) {
    const Method& method = GetParam();
    for (const int w : {1, 3, 6, 9}) {
        const BandMatrix A = plane(w);
        const RealVector b = wavyVector(A.Rows());
        const RealVector from(A.Rows(), 1.0F);
        for (const int maxIter : {1, 2, 3, 5, 9, 20}) {
            const auto u = method.make(maxIter, 1e-12)->Solve(A, b, start(from));

            const auto run = [&](MakeM makeM) {
                return method.transcribe(A, *makeM(A), b, from, maxIter, 1e-12).u;
            };
            EXPECT_FALSE(std::isnan(u->Sum())) << w << ", " << maxIter;
            EXPECT_TRUE(sameVectorBits(*u, run(method.makeM))) << w << ", " << maxIter;
            EXPECT_FALSE(sameVectorBits(*u, run(method.makeOther))) << w << ", " << maxIter;
        }
    }
}

TEST_P(PreconditionedFamily, StopsWhereTheTranscriptionStops) {
    const Method& method = GetParam();
    const BandMatrix A = plane(6);
    const RealVector b = wavyVector(30);
    for (const double tol : {30.0, 10.0, 3.0, 1.0, 0.3, 0.1, 0.01}) {
        const TranscribedRun expected = method.transcribe(A, *method.makeM(A), b, b, 100, tol);
        const auto solver = method.make(100, tol);
        const auto shorter = method.make(expected.iterations - 1, tol);

        EXPECT_TRUE(sameVectorBits(*solver->Solve(A, b, nullptr), expected.u)) << tol;
        EXPECT_TRUE(solver->converged()) << tol;
        shorter->Solve(A, b, nullptr);
        EXPECT_FALSE(shorter->converged()) << tol;
    }
}

TEST_P(PreconditionedFamily, ReturnsAStartVectorWhoseResidualIsBelowTheTolerance) {
    const FullMatrix A(1, 4.0F);
    const RealVector b(1, 4.0F);
    // BB has no such test.
    const bool testsStart = GetParam().transcribe != test::transcribedBb;
    const auto solver = GetParam().make(5, 0.1);

    const auto u = solver->Solve(A, b, start(RealVector(1, 1.01F)));

    EXPECT_EQ((*u)[0] == 1.01F, testsStart);
    EXPECT_EQ(solver->converged(), !testsStart);
    // A residual of the tolerance itself is too large.
    EXPECT_NE((*GetParam().make(5, 1.0)->Solve(A, b, start(RealVector(1, 1.25F))))[0], 1.25F);
}

TEST_P(PreconditionedFamily, RecoversAfterABreakdownUnlessADirectionIsKept) {
    const BandMatrix A = diffusionPlane(3, 2, 1.0F);
    BandMatrix broken = A;
    broken.SetMain(0, 0.0F);
    const RealVector b = wavyVector(6);
    const auto fresh = GetParam().make(2, 1e-12)->Solve(A, b, nullptr);
    const auto solver = GetParam().make(2, 1e-12);

    const auto lost = solver->Solve(broken, b, nullptr);

    EXPECT_TRUE(std::isnan((*lost)[0]));
    EXPECT_FALSE(solver->converged());
    const auto next = solver->Solve(A, b, nullptr);
    if (GetParam().transcribe == stab2) {
        EXPECT_TRUE(std::isnan((*next)[0])) << "uHat isn't cleared, and 0 NaN is NaN";
    } else {
        EXPECT_TRUE(sameVectorBits(*next, *fresh));
    }
    // New vectors, of another size and then of this one, are free of it.
    solver->Solve(diffusionPlane(2, 2, 1.0F), wavyVector(4), nullptr);
    EXPECT_TRUE(sameVectorBits(*solver->Solve(A, b, nullptr), *fresh));
}

}  // namespace
}  // namespace orv
