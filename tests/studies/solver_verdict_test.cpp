#include "studies/solver_verdict.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "studies/scripted_solver.h"

namespace orv::test {
namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
using Line = ScriptedSolver::Line;

SolverRecordOfStudy judged(const std::function<Line(int)>& script, int solverIterations = 50) {
    StudyBench bench;
    SolverStudy study;
    study.systems = 1;
    study.start = measureSolution(bench.system, bench.exact, bench.system.rightSide());
    study.rounded = measureSolution(bench.system, bench.exact,
                                    std::vector<float>(bench.exact.begin(), bench.exact.end()));
    for (const float sample : bench.system.rightSide()) {
        study.rightSideNorm += static_cast<double>(sample) * sample;
    }
    study.rightSideNorm = std::sqrt(study.rightSideNorm);
    SolverCurve curve(bench.system, bench.exact, bench.maker(script));
    curve.trace(solverIterations, goOn);
    SolverRecordOfStudy record;
    judgeSolver(curve, study, solverIterations, record);
    EXPECT_EQ(record.curve.size(), curve.runs().size());
    return record;
}

TEST(SolverVerdict, ConvergedBeforeTheLimit) {
    const auto record = judged([](int limit) {
        return limit < 7 ? Line{1.0 / limit, false} : Line{0.0, true};
    });

    EXPECT_EQ(record.status, SolverStatus::Converged);
    EXPECT_EQ(record.iterations, 7);
    EXPECT_EQ(record.reason, "");
    EXPECT_EQ(record.last.limit, 50);
}

TEST(SolverVerdict, ConvergedAtTheVeryLimit) {
    const auto record = judged([](int limit) { return Line{0.0, limit == 1}; }, 1);

    EXPECT_EQ(record.status, SolverStatus::Converged);
    EXPECT_EQ(record.iterations, 1);
}

TEST(SolverVerdict, ConvergedByATestOfItsOwn) {
    // About 0.1 of a residual, a ten-thousandth of the picture's norm.
    const auto record = judged([](int limit) {
        return limit < 7 ? Line{1.0 / limit, false} : Line{3e-4, true};
    });

    EXPECT_EQ(record.status, SolverStatus::Converged);
    EXPECT_EQ(record.reason, "its own stopping test holds at this residual");
}

TEST(SolverVerdict, LimitWhenAllIterationsAreUsed) {
    const auto record = judged([](int limit) { return Line{1.0 / (1 + limit), false}; });

    EXPECT_EQ(record.status, SolverStatus::Limit);
    EXPECT_EQ(record.iterations, 50);
    EXPECT_EQ(record.reason, "");
}

TEST(SolverVerdict, LimitWhenTheTestNeverHolds) {
    const auto record = judged([](int limit) {
        return Line{limit < 50 ? 0.1 / limit : 3e-6, false};
    });

    EXPECT_EQ(record.status, SolverStatus::Limit);
    EXPECT_EQ(record.reason,
              "as exact as floats can be, but its test does not hold within the limit");
}

TEST(SolverVerdict, LimitWhenItStopsShort) {
    const auto record = judged([](int limit) {
        return Line{limit < 4 ? 1.0 / (1 + limit) : 0.2, false};
    });

    EXPECT_EQ(record.status, SolverStatus::Limit);
    EXPECT_EQ(record.iterations, 4);
    EXPECT_EQ(record.reason, "stops short of its tolerance");
}

TEST(SolverVerdict, WrongWhenFartherThanThePicture) {
    const auto record = judged([](int limit) { return Line{1.0 + limit, false}; });

    EXPECT_EQ(record.status, SolverStatus::Wrong);
    EXPECT_EQ(record.reason, "farther from the solution than the picture itself");
}

TEST(SolverVerdict, WrongWhenLessThanHalfOfTheErrorIsGone) {
    const auto record = judged([](int limit) { return Line{limit < 3 ? 1.0 : 0.6, true}; });

    EXPECT_EQ(record.status, SolverStatus::Wrong);
    EXPECT_EQ(record.reason, "hardly nearer to the solution than the picture itself");
}

TEST(SolverVerdict, WrongWhenNothingMoved) {
    for (const bool claims : {false, true}) {
        const auto record = judged([claims](int) { return Line{1.0, claims}; });

        EXPECT_EQ(record.status, SolverStatus::Wrong);
        EXPECT_EQ(record.reason, "gives the picture back unchanged");
    }
}

TEST(SolverVerdict, BrokeDownFromALimitOn) {
    const auto record = judged([](int limit) {
        return Line{limit < 22 ? 1.0 / limit : kNan, false};
    });

    EXPECT_EQ(record.status, SolverStatus::BrokeDown);
    EXPECT_EQ(record.iterations, 22);
    EXPECT_EQ(record.reason.substr(0, 27), "at 22 iterations; residual ");
    EXPECT_EQ(record.reason.substr(record.reason.size() - 6), " at 21");
    EXPECT_TRUE(std::isnan(record.last.residual));
}

TEST(SolverVerdict, BrokeDownAtOnce) {
    const auto record = judged([](int) { return Line{kNan, false}; });

    EXPECT_EQ(record.status, SolverStatus::BrokeDown);
    EXPECT_EQ(record.iterations, 1);
    EXPECT_EQ(record.reason, "at 1 iteration");
}

TEST(SolverVerdict, TellsOfABreakdownWithASmallerLimitAlone) {
    const auto record = judged([](int limit) {
        return Line{limit == 3 ? kNan : 1.0 / (1 + limit), false};
    });

    EXPECT_EQ(record.status, SolverStatus::Limit);
    EXPECT_EQ(record.reason, "not finite with 3 iterations");
}

TEST(SolverVerdict, TimeIsTheShortestOfTheRunsThatDidTheWork) {
    const auto record = judged([](int limit) {
        return limit < 7 ? Line{1.0 / limit, false} : Line{0.0, true};
    });

    for (const StudyPoint& point : record.curve) {
        if (point.limit >= record.iterations) {
            EXPECT_LE(record.last.seconds, point.seconds);
        }
    }
}

}  // namespace
}  // namespace orv::test
