#include "studies/exact_solution.h"

#include <gtest/gtest.h>

#include <Eigen/Dense>
#include <algorithm>
#include <cmath>
#include <cstddef>

#include "studies/study_support.h"

namespace orv::test {
namespace {

constexpr int kSchemes[] = {kScheme2DSemi, kSchemeLod, kSchemeAos};

// The same by Eigen's LU with pivoting.
std::vector<double> denseSolution(const StudySystem& system) {
    const std::vector<float> b = system.rightSide();
    std::vector<double> solution;
    for (const DoubleBand& band : system.bands()) {
        const int n = band.size();
        Eigen::MatrixXd A(n, n);
        Eigen::VectorXd right(n);
        for (int i = 0; i < n; ++i) {
            right[i] = b[solution.size() + static_cast<std::size_t>(i)];
            for (int j = 0; j < n; ++j) {
                A(i, j) = band.element(i, j - i);
            }
        }
        const Eigen::VectorXd x = A.fullPivLu().solve(right);
        solution.insert(solution.end(), x.data(), x.data() + n);
    }
    return solution;
}

TEST(ExactSolution, AgreesWithADenseSolve) {
    for (const int scheme : kSchemes) {
        for (const double tau : {0.1, 1.0, 50.0}) {
            SCOPED_TRACE(testing::Message() << scheme << " tau " << tau);
            const StudySystem system(studyPlane(9, 7), settingsOf(scheme, tau));

            const std::vector<double> x = exactSolution(system);

            const std::vector<double> expected = denseSolution(system);
            ASSERT_EQ(x.size(), expected.size());
            for (std::size_t i = 0; i < x.size(); ++i) {
                // 255 times a condition of at most 800 in units of the last place.
                EXPECT_NEAR(x[i], expected[i], 1e-10);
            }
        }
    }
}

TEST(ExactSolution, LeavesAResidualOfDoubleRoundings) {
    for (const int scheme : kSchemes) {
        for (const double tau : {1.0, 1000.0}) {
            SCOPED_TRACE(testing::Message() << scheme << " tau " << tau);
            const StudySystem system(studyPlane(40, 33), settingsOf(scheme, tau));

            const std::vector<double> x = exactSolution(system);

            // Grows with the rows' sums, as the rounding of a product does.
            const double norm = 200.0 * std::sqrt(40.0 * 33.0);
            EXPECT_LT(system.residual(x), 1e-15 * norm * (1.0 + 8.0 * tau));
        }
    }
}

TEST(ExactSolution, IsThePictureWhereNothingIsDiffused) {
    const FloatImage plane = studyPlane(6, 5);
    const std::vector<float> picture = rowsOf(plane);
    for (const int scheme : kSchemes) {
        const StudySystem system(plane, settingsOf(scheme, 0.0));
        const std::vector<double> x = exactSolution(system);
        EXPECT_TRUE(std::equal(x.begin(), x.end(), picture.begin(), picture.end())) << scheme;
    }
}

TEST(ExactSolution, BlackStaysBlack) {
    for (const int scheme : kSchemes) {
        const StudySystem system(FloatImage(5, 4), settingsOf(scheme));
        EXPECT_EQ(exactSolution(system), std::vector<double>(20, 0.0)) << scheme;
    }
}

}  // namespace
}  // namespace orv::test
