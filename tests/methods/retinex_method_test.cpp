#include "methods/retinex_method.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <utility>

#include "base/rounding.h"
#include "methods/method_catalogue.h"
#include "operators/thin/retinex_operator.h"
#include "support/method_planes.h"
#include "support/plane_support.h"

namespace orv {
namespace {

using test::noisyPlanes;
using test::sameBits;

RealImage3 realPlanes(const Planes& planes) {
    RealImage3 image(planes[0]->width(), planes[0]->height());
    for (int c = 0; c < 3; ++c) {
        const FloatImage& plane = *planes[static_cast<std::size_t>(c)];
        for (std::size_t i = 0; i < plane.sampleCount(); ++i) {
            image.plane(c).data()[i] = plane.data()[i];
        }
    }
    return image;
}

Arguments argumentsOf(std::initializer_list<std::pair<const char*, const char*>> values) {
    return test::argumentsOf(kRetinexMethod, values);
}

void expectClamped(const RealImage& unclamped, const FloatImage& result) {
    FloatImage expected(unclamped.width(), unclamped.height());
    for (std::size_t i = 0; i < expected.sampleCount(); ++i) {
        expected.data()[i] = toFloat(unclamped.data()[i]);
    }
    expected.clamp(0.0f, 255.0f);
    EXPECT_TRUE(sameBits(result, expected));
}

TEST(RetinexMethod, IsTheOperatorsOwnResultRoundedAndClamped) {
    const Arguments arguments =
        argumentsOf({{"gamma", "2.5"}, {"alpha", "0.01"}, {"beta", "0.3"}, {"levels", "3"}});
    RetinexOperator direct(2.5, 0.01, 0.3, 3);
    const RealImage3 source = realPlanes(noisyPlanes(21, 18, 3));

    const MethodResult colour = kRetinexMethod.run(noisyPlanes(21, 18, 3), arguments, nullptr);
    const MethodResult grey = kRetinexMethod.run(noisyPlanes(21, 18, 1), arguments, nullptr);

    ASSERT_EQ(colour.error, "");
    ASSERT_EQ(colour.planes.size(), 3U);
    const auto expected = direct.runPlanes(source, nullptr);
    for (int c = 0; c < 3; ++c) {
        expectClamped(expected->plane(c), *colour.planes[static_cast<std::size_t>(c)]);
    }
    ASSERT_EQ(grey.planes.size(), 1U);
    expectClamped(*direct.runPlane(source.plane(0)), *grey.planes[0]);
}

TEST(RetinexMethod, LevelsByThemselvesAreTwoLessThanFit) {
    const int sizes[][3] = {{40, 33, 4}, {8, 100, 2}, {5, 5, 1}, {1, 9, 1}};
    for (const auto& size : sizes) {
        SCOPED_TRACE(size[0]);
        const std::string levels = std::to_string(size[2]);

        const MethodResult own =
            kRetinexMethod.run(noisyPlanes(size[0], size[1], 1), argumentsOf({}), nullptr);
        const MethodResult given =
            kRetinexMethod.run(noisyPlanes(size[0], size[1], 1),
                               argumentsOf({{"levels", levels.c_str()}}), nullptr);

        ASSERT_EQ(own.error, "");
        EXPECT_TRUE(sameBits(*own.planes[0], *given.planes[0]));
    }
}

TEST(RetinexMethod, RefusesLevelsThatThePictureDoesNotAllow) {
    const Arguments arguments = argumentsOf({{"levels", "5"}});

    EXPECT_EQ(kRetinexMethod.run(noisyPlanes(40, 15, 3), arguments, nullptr).error,
              "--levels: 5 is too many for 40 x 15 pixels, which allow 1 to 4");
    EXPECT_EQ(kRetinexMethod.run(noisyPlanes(1, 15, 1), arguments, nullptr).error,
              "--levels: 5 is too many for 1 x 15 pixels, which allow 1 alone");
    EXPECT_EQ(kRetinexMethod.run(noisyPlanes(40, 16, 1), arguments, nullptr).error, "");
}

TEST(RetinexMethod, RefusesValuesOutsideTheirRanges) {
    Arguments arguments(kRetinexMethod.parameters);

    EXPECT_EQ(arguments.set("gamma", "0").substr(0, 9), "--gamma: ");
    EXPECT_NE(arguments.set("gamma", "-1"), "");
    EXPECT_NE(arguments.set("alpha", "-0.1"), "");
    EXPECT_NE(arguments.set("levels", "-1"), "");
    EXPECT_NE(arguments.set("levels", "2.5"), "");
}

TEST(RetinexMethod, RefusesPlanesThatItCannotRun) {
    const Arguments arguments = argumentsOf({});
    Planes bad = noisyPlanes(9, 9, 3);
    bad[2]->row(3)[3] = std::numeric_limits<float>::infinity();

    EXPECT_EQ(kRetinexMethod.run({}, arguments, nullptr).error, "takes 1 or 3 planes, not 0");
    EXPECT_NE(kRetinexMethod.run(std::move(bad), arguments, nullptr).error, "");
}

TEST(RetinexMethod, ExtremeValuesStayWithinThePicturesRange) {
    for (const char* const gamma : {"0.1", "100"}) {
        for (const char* const weight : {"0", "1"}) {
            const MethodResult result = kRetinexMethod.run(
                noisyPlanes(32, 32, 3),
                argumentsOf(
                    {{"gamma", gamma}, {"alpha", weight}, {"beta", weight}, {"levels", "6"}}),
                nullptr);

            ASSERT_EQ(result.error, "");
            for (const auto& plane : result.planes) {
                for (std::size_t i = 0; i < plane->sampleCount(); ++i) {
                    ASSERT_GE(plane->data()[i], 0.0f);
                    ASSERT_LE(plane->data()[i], 255.0f);
                }
            }
        }
    }
}

TEST(RetinexMethod, ReportsProgressThatNeverFallsAndStopsWhenAsked) {
    double last = 0.0;
    int calls = 0;
    const MethodResult whole =
        kRetinexMethod.run(noisyPlanes(64, 64, 3), argumentsOf({}), [&](double done) {
            EXPECT_GE(done, last);
            last = done;
            ++calls;
            return true;
        });
    const MethodResult stopped = kRetinexMethod.run(noisyPlanes(64, 64, 3), argumentsOf({}),
                                                    [](double done) { return done < 0.2; });

    EXPECT_EQ(whole.error, "");
    EXPECT_DOUBLE_EQ(last, 1.0);
    EXPECT_GT(calls, 60);
    EXPECT_TRUE(stopped.cancelled);
    EXPECT_TRUE(stopped.planes.empty());
}

TEST(RetinexMethod, StandsInTheCatalogue) {
    EXPECT_EQ(findMethod("retinex"), &kRetinexMethod);
}

}  // namespace
}  // namespace orv
