#include "studies/solver_study.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "algebra/real_vector.h"
#include "studies/solver_needs.h"
#include "studies/study_support.h"

namespace orv::test {
namespace {

constexpr int kThomas = 0;
constexpr int kJacobi = 1;
constexpr int kGaussSeidel = 2;
constexpr int kCbb = 6;
constexpr int kIlu0 = 41;

StudyOrder orderOf(int scheme, std::vector<int> solvers) {
    StudyOrder order;
    order.settings = settingsOf(scheme);
    order.solvers = std::move(solvers);
    order.named = true;
    return order;
}

TEST(StudyLimits, GrowAndEndAtTheMost) {
    EXPECT_EQ(studyLimits(1), (std::vector<int>{1}));
    EXPECT_EQ(studyLimits(7), (std::vector<int>{1, 2, 3, 4, 5, 6, 7}));
    EXPECT_EQ(studyLimits(50),
              (std::vector<int>{1, 2, 3, 4, 5, 6, 8, 10, 13, 16, 20, 25, 32, 40, 50}));
    const std::vector<int> many = studyLimits(10000);
    EXPECT_EQ(many.size(), 38U);
    EXPECT_EQ(std::vector<int>(many.end() - 4, many.end()),
              (std::vector<int>{5000, 6300, 8000, 10000}));
    EXPECT_EQ(studyLimits(std::numeric_limits<int>::max()).back(),
              std::numeric_limits<int>::max());
    for (const int most : {9, 33, 1000, 123456}) {
        const std::vector<int> limits = studyLimits(most);
        EXPECT_EQ(std::set<int>(limits.begin(), limits.end()).size(), limits.size()) << most;
        EXPECT_TRUE(std::is_sorted(limits.begin(), limits.end())) << most;
    }
}

TEST(SolverStudy, ThomasSolvesAndJacobiDoesNot) {
    const FloatImage plane = studyPlane(24, 20);
    for (const int scheme : {kScheme2DSemi, kSchemeLod, kSchemeAos}) {
        SCOPED_TRACE(scheme);
        const SolverStudy study =
            studySolvers(plane, orderOf(scheme, {kThomas, kJacobi, kGaussSeidel, kCbb}), {});

        EXPECT_EQ(study.error, "");
        ASSERT_EQ(study.solvers.size(), 4U);
        EXPECT_EQ(study.solvers[0].status, SolverStatus::Converged);
        EXPECT_TRUE(study.solvers[0].direct);
        EXPECT_EQ(study.solvers[0].iterations, 0);
        EXPECT_LT(study.solvers[0].last.differenceMax, 1e-3);
        EXPECT_EQ(study.solvers[1].status, SolverStatus::Wrong);
        EXPECT_EQ(study.solvers[2].status, SolverStatus::Converged);
        EXPECT_EQ(study.solvers[3].status, SolverStatus::Converged);
        EXPECT_LT(study.solvers[2].last.differenceMax, 1e-3);
    }
}

// What restore would give with a limit, and what it would give with one less.
TEST(SolverStudy, IterationsAreTheFewestThatGiveTheResult) {
    const FloatImage plane = studyPlane(24, 20);
    const SolverStudy study = studySolvers(plane, orderOf(kScheme2DSemi, {kCbb}), {});
    const StudySystem system(plane, settingsOf(kScheme2DSemi));
    const SolverRecordOfStudy& record = study.solvers[0];
    ASSERT_GT(record.iterations, 1);

    const auto whole = system.solve(*schemeSolver(kCbb, 50)).samples;
    EXPECT_EQ(system.solve(*schemeSolver(kCbb, record.iterations)).samples, whole);
    EXPECT_NE(system.solve(*schemeSolver(kCbb, record.iterations - 1)).samples, whole);
}

TEST(SolverStudy, EachPointIsARunOfItsOwn) {
    const FloatImage plane = studyPlane(24, 20);
    const SolverStudy study = studySolvers(plane, orderOf(kSchemeAos, {kCbb}), {});
    const StudySystem system(plane, settingsOf(kSchemeAos));
    for (const StudyPoint& point : study.solvers[0].curve) {
        const auto samples = system.solve(*schemeSolver(kCbb, point.limit)).samples;
        EXPECT_EQ(point.residual, system.residual(samples)) << point.limit;
    }
}

TEST(SolverStudy, TellsOfTheSystem) {
    const FloatImage plane = studyPlane(24, 20);
    const SolverStudy study = studySolvers(plane, orderOf(kSchemeLod, {kThomas}), {});

    EXPECT_EQ(study.systems, 20);
    EXPECT_EQ(study.unknowns, 480);
    EXPECT_GT(study.start.residual, 1.0);
    EXPECT_GT(study.start.differenceMax, study.start.differenceMean);
    EXPECT_LT(study.exactResidual, 1e-10);
    EXPECT_GT(study.rounded.residual, study.exactResidual);
    EXPECT_LT(study.rounded.residual, 1e-3);
}

TEST(SolverStudy, RefusesAPlaneThatIsTooSmallForTheScheme) {
    const SolverStudy study =
        studySolvers(FloatImage(1, 8), orderOf(kScheme2DSemi, {kThomas}), {});

    EXPECT_EQ(study.error,
              "the scheme 2DSemi needs at least 2 x 2 pixels, this picture has 1 x 8");
    EXPECT_TRUE(study.solvers.empty());
}

TEST(SolverStudy, TakesTheSmallestPlanes) {
    for (const auto& [width, height] : {std::pair{1, 1}, {1, 9}, {9, 1}}) {
        const SolverStudy study =
            studySolvers(studyPlane(width, height), orderOf(kSchemeLod, {kThomas, kCbb}), {});
        EXPECT_EQ(study.error, "");
        // The diffusivity is 0 on the border, so that the picture is the solution.
        EXPECT_EQ(study.start.residual, 0.0);
        EXPECT_EQ(study.solvers[0].status, SolverStatus::Converged);
        EXPECT_EQ(study.solvers[1].status, SolverStatus::Converged);
    }
    const SolverStudy two =
        studySolvers(studyPlane(2, 2), orderOf(kScheme2DSemi, {kThomas}), {});
    EXPECT_EQ(two.solvers[0].status, SolverStatus::Converged);
}

TEST(SolverStudy, SkipsWhatCannotRunAndSaysWhy) {
    const SolverStudy study =
        studySolvers(studyPlane(8, 8), orderOf(kSchemeLod, {kThomas, kIlu0}), {});
    EXPECT_EQ(study.solvers[1].status, SolverStatus::Skipped);
    EXPECT_EQ(study.solvers[1].reason, "needs the five diagonals of 2DSemi");
    EXPECT_TRUE(study.solvers[1].curve.empty());
}

TEST(SolverNeeds, Ilu0NeedsTheFiveDiagonals) {
    for (const int scheme : {kSchemeLod, kSchemeAos}) {
        EXPECT_EQ(skipReason(kIlu0, {scheme, 8, 8, 50}, true),
                  "needs the five diagonals of 2DSemi");
    }
    EXPECT_EQ(skipReason(kIlu0, {kScheme2DSemi, 8, 8, 50}, true), "");
}

TEST(SolverNeeds, FactorsOfThomasMustFitAndBeQuickUnlessNamed) {
    const auto reason = [](int width, int height, bool named) {
        return skipReason(kThomas, {kScheme2DSemi, width, height, 50}, named);
    };

    EXPECT_EQ(reason(256, 256, false), "");
    EXPECT_EQ(reason(640, 480, false), "");
    EXPECT_EQ(reason(3000, 10, false), "its factors take minutes; name it to run it");
    EXPECT_EQ(reason(3000, 10, true), "");
    EXPECT_EQ(reason(2000, 2000, false), "its factors would take 64 GB");
    EXPECT_EQ(reason(2000, 2000, true), "its factors would take 64 GB");
    EXPECT_EQ(skipReason(kThomas, {kSchemeLod, 2000, 2000, 50}, false), "");
}

TEST(SolverNeeds, LongBasesMustFit) {
    constexpr int kGmresStarCbb = 29;
    constexpr int kSide = 3000;
    EXPECT_EQ(skipReason(kGmresStarCbb, {kScheme2DSemi, kSide, kSide, 50}, true), "");
    EXPECT_EQ(skipReason(kGmresStarCbb, {kScheme2DSemi, kSide, kSide, 200}, true),
              "its 400 vectors would take 14 GB");
    EXPECT_EQ(skipReason(kGmresStarCbb, {kSchemeLod, kSide, kSide, 200}, true), "");
    EXPECT_EQ(skipReason(kCbb, {kScheme2DSemi, kSide, kSide, 200}, true), "");
}

TEST(SolverStudy, ProgressRisesAndNamesTheSolver) {
    std::vector<double> shares;
    std::set<int> ids;

    studySolvers(studyPlane(24, 20), orderOf(kSchemeLod, {kThomas, kCbb}),
                 [&](double done, int id) {
                     shares.push_back(done);
                     ids.insert(id);
                     return true;
                 });

    EXPECT_TRUE(std::is_sorted(shares.begin(), shares.end()));
    EXPECT_EQ(shares.front(), 0.0);
    EXPECT_LE(shares.back(), 1.0);
    EXPECT_EQ(ids, (std::set<int>{kThomas, kCbb}));
}

TEST(SolverStudy, StopsWhenAsked) {
    int asked = 0;
    const SolverStudy study =
        studySolvers(studyPlane(24, 20), orderOf(kSchemeLod, {kThomas, kCbb}),
                     [&](double, int) { return ++asked < 4; });

    EXPECT_TRUE(study.cancelled);
    EXPECT_EQ(asked, 4);
    EXPECT_EQ(study.solvers.size(), 1U);
}

TEST(SolverStudy, PrintsNothing) {
    testing::internal::CaptureStdout();
    studySolvers(studyPlane(8, 8), orderOf(kScheme2DSemi, {kThomas, kCbb, kIlu0}), {});
    const std::string printed = testing::internal::GetCapturedStdout();

    EXPECT_EQ(printed, "");
}

TEST(SolverStudy, NamesOfTheStatuses) {
    EXPECT_STREQ(nameOf(SolverStatus::Converged), "converged");
    EXPECT_STREQ(nameOf(SolverStatus::Limit), "limit");
    EXPECT_STREQ(nameOf(SolverStatus::BrokeDown), "broke down");
    EXPECT_STREQ(nameOf(SolverStatus::Wrong), "wrong");
    EXPECT_STREQ(nameOf(SolverStatus::Skipped), "skipped");
}

}  // namespace
}  // namespace orv::test
