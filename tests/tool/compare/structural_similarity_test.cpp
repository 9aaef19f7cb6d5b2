#include "compare/structural_similarity.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>

namespace orv::cli {
namespace {

using Plane = std::function<double(int, int)>;

double similarity(int width, int height, const Plane& a, const Plane& b) {
    StructuralSimilarity result(width);
    std::vector<double> first(static_cast<std::size_t>(width));
    std::vector<double> second(first.size());
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            first[static_cast<std::size_t>(x)] = a(x, y);
            second[static_cast<std::size_t>(x)] = b(x, y);
        }
        result.addRow(first, second);
    }
    return result.mean();
}

double ramp(int x, int y) {
    return (7 * x + 13 * y) % 256;
}

double darker(int x, int y) {
    return std::floor(ramp(x, y) * 3.0 / 4.0) + (x * y) % 32;
}

TEST(StructuralSimilarity, AgreesWithScikitImage) {
    // structural_similarity of scikit-image 0.19.3 with gaussian_weights=True, sigma=1.5,
    // use_sample_covariance=False, data_range=255.
    struct Case {
        int width;
        int height;
        double expected;
    };
    for (const Case& one :
         {Case{11, 11, 0.8880677315045117}, Case{16, 13, 0.8567755020681094},
          Case{40, 25, 0.8934319114222825}, Case{12, 64, 0.8883740380053047}}) {
        // Both reckon in double precision and sum in different orders.
        EXPECT_NEAR(similarity(one.width, one.height, ramp, darker), one.expected, 1e-12);
    }
}

TEST(StructuralSimilarity, EqualPlanesGiveExactlyOne) {
    EXPECT_EQ(similarity(37, 29, ramp, ramp), 1.0);
}

TEST(StructuralSimilarity, FlatPlanesCompareTheirMeans) {
    const auto flat = [](double level) { return [level](int, int) { return level; }; };
    const double c1 = 2.55 * 2.55;
    const double expected = (2.0 * 100.0 * 50.0 + c1) / (100.0 * 100.0 + 50.0 * 50.0 + c1);
    // The variances are 0 but for rounding of squares near 10^4.
    EXPECT_NEAR(similarity(15, 15, flat(100.0), flat(50.0)), expected, 1e-9);
}

TEST(StructuralSimilarity, SmallPlanesHaveNone) {
    EXPECT_TRUE(std::isnan(similarity(10, 40, ramp, darker)));
    EXPECT_TRUE(std::isnan(similarity(40, 10, ramp, darker)));
    EXPECT_TRUE(std::isnan(similarity(1, 1, ramp, darker)));
}

}  // namespace
}  // namespace orv::cli
