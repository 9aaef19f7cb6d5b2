#include "methods/deblur_method.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "operators/thin/barash_aos_operator.h"
#include "support/plane_support.h"

namespace orv {
namespace {

using test::noisePlane;
using test::sameBits;

Planes noisyPlanes(std::size_t count, int width, int height) {
    Planes planes;
    for (std::size_t i = 0; i < count; ++i) {
        planes.push_back(
            noisePlane(width, height, static_cast<unsigned>(i), 40.0, 200.0).clone());
    }
    return planes;
}

Arguments argumentsWith(const std::vector<std::pair<const char*, const char*>>& values) {
    Arguments arguments(kDeblurMethod.parameters);
    for (const auto& [name, text] : values) {
        EXPECT_EQ(arguments.set(name, text), "");
    }
    return arguments;
}

TEST(DeblurMethod, PlanesAreThoseOfTheOperator) {
    const Arguments arguments = argumentsWith({{"kernel", "13431"},
                                               {"iterations", "2"},
                                               {"tau", "0.1"},
                                               {"lambda", "4"},
                                               {"keep-observed", "no"}});
    for (const std::size_t count : {1u, 3u}) {
        const Planes source = noisyPlanes(count, 21, 17);

        const MethodResult result =
            kDeblurMethod.run(noisyPlanes(count, 21, 17), arguments, {});

        ASSERT_EQ(result.error, "");
        ASSERT_EQ(result.planes.size(), count);
        for (std::size_t k = 0; k < count; ++k) {
            BarashAosOperator deblurring(2, 5, 0.1, 4.0, 3.0, 8.0, /*keepObserved=*/false);
            EXPECT_TRUE(sameBits(*result.planes[k], *deblurring.runPlane(*source[k])));
        }
    }
}

TEST(DeblurMethod, DefaultsSharpen) {
    const Arguments arguments(kDeblurMethod.parameters);
    Planes planes = noisyPlanes(1, 24, 24);
    for (int x = 0; x < 24; ++x) {
        for (int y = 0; y < 24; ++y) {
            planes[0]->row(x)[y] = x < 10   ? 80.0f
                                   : x > 14 ? 160.0f
                                            : 16.0f * static_cast<float>(x - 5);
        }
    }
    const float before = planes[0]->row(14)[12] - planes[0]->row(10)[12];

    const MethodResult result = kDeblurMethod.run(std::move(planes), arguments, {});

    ASSERT_EQ(result.error, "");
    EXPECT_GT(result.planes[0]->row(14)[12] - result.planes[0]->row(10)[12], before * 1.2f);
}

TEST(DeblurMethod, PicturesBelowSixPixelsAreRefused) {
    const Arguments arguments(kDeblurMethod.parameters);

    EXPECT_EQ(kDeblurMethod.run(noisyPlanes(1, 5, 9), arguments, {}).error,
              "needs a picture of at least 6 x 6 pixels, not 5 x 9");
    EXPECT_EQ(kDeblurMethod.run(noisyPlanes(3, 9, 5), arguments, {}).error,
              "needs a picture of at least 6 x 6 pixels, not 9 x 5");
    EXPECT_EQ(kDeblurMethod.run(noisyPlanes(1, 6, 6), arguments, {}).error, "");
}

TEST(DeblurMethod, ArgumentsOutsideTheirRangeAreRefused) {
    Arguments arguments(kDeblurMethod.parameters);

    EXPECT_NE(arguments.set("iterations", "0"), "");
    EXPECT_NE(arguments.set("tau", "-1"), "");
    EXPECT_NE(arguments.set("kernel", "9"), "");
    EXPECT_NE(arguments.set("lambda", "wide"), "");
}

TEST(DeblurMethod, ProgressNeverFallsAndMayStopTheRun) {
    const Arguments arguments = argumentsWith({{"iterations", "9"}});
    std::vector<double> seen;

    const MethodResult whole =
        kDeblurMethod.run(noisyPlanes(3, 12, 12), arguments, [&](double done) {
            EXPECT_GE(done, seen.empty() ? 0.0 : seen.back());
            seen.push_back(done);
            return true;
        });
    const MethodResult stopped =
        kDeblurMethod.run(noisyPlanes(3, 12, 12), arguments, [](double) { return false; });

    EXPECT_EQ(whole.planes.size(), 3u);
    ASSERT_FALSE(seen.empty());
    EXPECT_EQ(seen.back(), 1.0);
    EXPECT_GT(seen.size(), 9u);
    EXPECT_TRUE(stopped.cancelled);
    EXPECT_TRUE(stopped.planes.empty());
}

}  // namespace
}  // namespace orv
