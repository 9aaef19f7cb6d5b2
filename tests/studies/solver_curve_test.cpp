#include "studies/solver_curve.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

#include "studies/scripted_solver.h"

namespace orv::test {
namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
using Line = ScriptedSolver::Line;

std::vector<int> limitsOf(const SolverCurve& curve) {
    std::vector<int> limits;
    for (const auto& [limit, run] : curve.runs()) {
        limits.push_back(limit);
        EXPECT_EQ(run.point.limit, limit);
    }
    return limits;
}

TEST(SolverCurve, RunsEveryLimitOfASolverThatGoesOnMoving) {
    StudyBench bench;
    SolverCurve curve(bench.system, bench.exact, bench.maker([](int limit) {
        return Line{1.0 / (1 + limit), false};
    }));

    EXPECT_TRUE(curve.trace(20, goOn));

    EXPECT_EQ(bench.limits, (std::vector<int>{1, 2, 3, 4, 5, 6, 8, 10, 13, 16, 20, 18, 19}));
    EXPECT_EQ(curve.settledAt(), 20);
    EXPECT_FALSE(curve.direct());
}

TEST(SolverCurve, LeavesOutLimitsThatChangeNothingAndFindsWhereItSettled) {
    StudyBench bench;
    SolverCurve curve(bench.system, bench.exact, bench.maker([](int limit) {
        return limit < 12 ? Line{1.0 / (1 + limit), false} : Line{0.0, true};
    }));

    EXPECT_TRUE(curve.trace(500, goOn));

    EXPECT_EQ(limitsOf(curve),
              (std::vector<int>{1, 2, 3, 4, 5, 6, 8, 10, 11, 12, 13, 16, 500}));
    EXPECT_EQ(curve.settledAt(), 12);
}

TEST(SolverCurve, GoesOnWhereTwoLimitsAgreeByChance) {
    StudyBench bench;
    SolverCurve curve(bench.system, bench.exact, bench.maker([](int limit) {
        return Line{limit == 3 ? 0.5 : 1.0 / limit, false};
    }));

    EXPECT_TRUE(curve.trace(8, goOn));

    EXPECT_EQ(limitsOf(curve), (std::vector<int>{1, 2, 3, 4, 5, 6, 7, 8}));
}

TEST(SolverCurve, EndsAtABreakdownAndFindsItsSmallestLimit) {
    StudyBench bench;
    SolverCurve curve(bench.system, bench.exact, bench.maker([](int limit) {
        return Line{limit < 22 ? 1.0 / limit : kNan, false};
    }));

    EXPECT_TRUE(curve.trace(500, goOn));

    EXPECT_EQ(limitsOf(curve),
              (std::vector<int>{1, 2, 3, 4, 5, 6, 8, 10, 13, 16, 20, 21, 22, 25, 32, 40, 500}));
    EXPECT_EQ(curve.settledAt(), 22);
    EXPECT_TRUE(curve.runs().at(21).finite);
    EXPECT_FALSE(curve.runs().at(22).finite);
    EXPECT_TRUE(std::isnan(curve.last().point.residual));
    EXPECT_TRUE(std::isnan(curve.last().point.differenceMax));
    EXPECT_TRUE(std::isnan(curve.last().point.differenceMean));
}

TEST(SolverCurve, GoesOnWhereALargerLimitDoesNotBreakDown) {
    StudyBench bench;
    SolverCurve curve(bench.system, bench.exact, bench.maker([](int limit) {
        return Line{limit == 2 ? kNan : 1.0 / limit, false};
    }));

    EXPECT_TRUE(curve.trace(6, goOn));

    EXPECT_EQ(limitsOf(curve), (std::vector<int>{1, 2, 3, 4, 5, 6}));
    EXPECT_TRUE(curve.last().finite);
}

TEST(SolverCurve, ShowsTheLimitsThatWorkBetweenTwoBreakdowns) {
    StudyBench bench;
    SolverCurve curve(bench.system, bench.exact, bench.maker([](int limit) {
        return Line{limit < 3 || limit > 8 ? kNan : 1.0 / limit, false};
    }));

    EXPECT_TRUE(curve.trace(10, goOn));

    EXPECT_EQ(limitsOf(curve), (std::vector<int>{1, 2, 3, 4, 5, 6, 8, 9, 10}));
    EXPECT_TRUE(curve.runs().at(8).finite);
    EXPECT_EQ(curve.settledAt(), 9);
}

TEST(SolverCurve, RunsADirectSolverOnce) {
    StudyBench bench;
    int made = 0;
    SolverCurve curve(bench.system, bench.exact, [&](int limit) {
        ++made;
        return schemeSolver(/*id=*/0, limit);
    });

    EXPECT_TRUE(curve.trace(50, goOn));

    EXPECT_TRUE(curve.direct());
    EXPECT_EQ(made, 1);
}

TEST(SolverCurve, StopsBetweenRunsWhenAsked) {
    StudyBench bench;
    SolverCurve curve(bench.system, bench.exact, bench.maker([](int limit) {
        return Line{1.0 / limit, false};
    }));
    int asked = 0;

    EXPECT_FALSE(curve.trace(50, [&](double) { return ++asked <= 4; }));

    EXPECT_EQ(bench.limits, (std::vector<int>{1, 2, 3, 4}));
}

TEST(SolverCurve, MeasuresDifferencesFromTheExactSolution) {
    const StudyBench bench;
    std::vector<float> samples(bench.exact.begin(), bench.exact.end());
    samples[5] += 2.0f;
    samples[9] -= 1.0f;

    const StudyPoint point = measureSolution(bench.system, bench.exact, samples);

    // Half a unit in the last place of a float below 256.
    constexpr double kHalfUlp = 8e-6;
    EXPECT_NEAR(point.differenceMax, 2.0, 2 * kHalfUlp);
    EXPECT_NEAR(point.differenceMean, 3.0 / 56.0, kHalfUlp);
    EXPECT_EQ(point.residual, bench.system.residual(samples));
}

TEST(SolverCurve, KnowsAPictureThatCameBackUnchanged) {
    StudyBench bench;
    SolverCurve still(bench.system, bench.exact, bench.maker([](int) {
        return Line{1.0, false};
    }));
    SolverCurve moving(bench.system, bench.exact, bench.maker([](int) {
        return Line{0.5, false};
    }));
    still.trace(50, goOn);
    moving.trace(50, goOn);

    EXPECT_FALSE(still.last().moved);
    EXPECT_TRUE(moving.last().moved);
    EXPECT_EQ(still.settledAt(), 1);
}

}  // namespace
}  // namespace orv::test
