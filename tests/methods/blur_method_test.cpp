#include "methods/blur_method.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <limits>
#include <memory>
#include <string>
#include <utility>

#include "methods/method_catalogue.h"
#include "operators/thin/van_vliet_blur_operator.h"
#include "support/method_planes.h"
#include "support/photo_bytes.h"
#include "support/plane_support.h"

namespace orv {
namespace {

using test::noisePlane;
using test::sameBits;

Planes noisyPlanes(int width, int height, int count) {
    return test::noisyPlanes(width, height, count, -40.0, 300.0);
}

Arguments argumentsOf(std::initializer_list<std::pair<const char*, const char*>> values) {
    return test::argumentsOf(kBlurMethod, values);
}

FloatImage expectedOf(const FloatImage& plane, double sigma) {
    FloatImage result(plane);
    VanVlietBlurOperator(sigma).blurFinely(result);
    result.clamp(0.0F, 255.0F);
    return result;
}

TEST(BlurMethod, IsTheFineBlurOfEachPlaneClamped) {
    for (const int count : {1, 3}) {
        const Planes source = noisyPlanes(33, 20, count);
        testing::internal::CaptureStdout();

        const MethodResult result =
            kBlurMethod.run(noisyPlanes(33, 20, count), argumentsOf({{"sigma", "0.7"}}), {});

        EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
        ASSERT_EQ(result.error, "");
        ASSERT_EQ(result.planes.size(), source.size());
        for (std::size_t i = 0; i < source.size(); ++i) {
            EXPECT_TRUE(sameBits(*result.planes[i], expectedOf(*source[i], 0.7)));
        }
    }
}

TEST(BlurMethod, IsTheCFacesBlurAwayFromTheBorder) {
    const FloatImage plane = noisePlane(120, 110, 1, 20.0, 230.0);
    Planes planes;
    planes.push_back(plane.clone());
    testing::internal::CaptureStdout();
    const auto single = VanVlietBlurOperator(3.0).runPlane(plane);
    testing::internal::GetCapturedStdout();

    const MethodResult result =
        kBlurMethod.run(std::move(planes), argumentsOf({{"sigma", "3"}}), {});

    ASSERT_EQ(result.error, "");
    for (int x = 50; x < 80; ++x) {
        for (int y = 50; y < 70; ++y) {
            // 40 samples from the border it has faded; the rest is rounding to floats.
            ASSERT_NEAR(result.planes[0]->row(x)[y], single->row(x)[y], 0.01F);
        }
    }
}

TEST(BlurMethod, WithoutExtensionIsTheCFacesBlurBitForBit) {
    for (const char* const sigma : {"0.5", "3", "100"}) {
        FloatImage3 colour(37, 22);
        for (int c = 0; c < 3; ++c) {
            colour.plane(c).copyFrom(
                noisePlane(37, 22, static_cast<unsigned>(c), -40.0, 300.0));
        }
        testing::internal::CaptureStdout();
        const auto expected = VanVlietBlurOperator(std::stod(sigma)).runPlanes(colour, nullptr);
        testing::internal::GetCapturedStdout();
        testing::internal::CaptureStdout();

        const MethodResult three = kBlurMethod.run(
            noisyPlanes(37, 22, 3), argumentsOf({{"sigma", sigma}, {"extend", "none"}}), {});
        const MethodResult one = kBlurMethod.run(
            noisyPlanes(37, 22, 1), argumentsOf({{"sigma", sigma}, {"extend", "none"}}), {});

        EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
        ASSERT_EQ(three.error, "");
        ASSERT_EQ(one.error, "");
        for (int c = 0; c < 3; ++c) {
            expected->plane(c).clamp(0.0F, 255.0F);
            EXPECT_TRUE(
                sameBits(*three.planes[static_cast<std::size_t>(c)], expected->plane(c)))
                << "sigma " << sigma << ", plane " << c;
        }
        EXPECT_TRUE(sameBits(*one.planes[0], expected->plane(0)));
    }
}

TEST(BlurMethod, WithoutExtensionTruncatesToTheCFacesBytes) {
    const auto photo = test::photoImage(37, 22, /*seed=*/7);
    Planes planes;
    for (int c = 0; c < 3; ++c) {
        planes.push_back(std::make_unique<FloatImage>(*photo, c + 1));
    }
    testing::internal::CaptureStdout();
    const auto expected = VanVlietBlurOperator(0.8).apply(*photo, nullptr);
    testing::internal::GetCapturedStdout();

    const MethodResult result = kBlurMethod.run(
        std::move(planes), argumentsOf({{"sigma", "0.8"}, {"extend", "none"}}), {});

    ASSERT_EQ(result.error, "");
    int compared = 0;
    for (int c = 0; c < 3; ++c) {
        const FloatImage& plane = *result.planes[static_cast<std::size_t>(c)];
        for (int x = 0; x < 37; ++x) {
            for (int y = 0; y < 22; ++y) {
                // Clamped samples wrap in the C face.
                if (plane.row(x)[y] > 0.0F && plane.row(x)[y] < 255.0F) {
                    ASSERT_EQ(static_cast<int>(plane.row(x)[y]),
                              FloatImage(*expected, c + 1).row(x)[y]);
                    ++compared;
                }
            }
        }
    }
    EXPECT_GT(compared, 37 * 22 * 2);
}

TEST(BlurMethod, WithoutExtensionTakesThreeByThreePixelsAndNoLess) {
    const Arguments bare = argumentsOf({{"extend", "none"}});

    EXPECT_EQ(kBlurMethod.run(noisyPlanes(3, 3, 3), bare, {}).error, "");
    EXPECT_EQ(kBlurMethod.run(noisyPlanes(2, 9, 3), bare, {}).error,
              "--extend: none takes at least 3 x 3 pixels, this picture has 2 x 9");
    EXPECT_EQ(kBlurMethod.run(noisyPlanes(9, 2, 1), bare, {}).error,
              "--extend: none takes at least 3 x 3 pixels, this picture has 9 x 2");
    EXPECT_EQ(kBlurMethod.run({}, bare, {}).error, "takes 1 or 3 planes, not 0");
}

TEST(BlurMethod, TakesPicturesOfOneSample) {
    Planes planes;
    planes.push_back(std::make_unique<FloatImage>(1, 1, 77.0F));

    const MethodResult result = kBlurMethod.run(std::move(planes), argumentsOf({}), {});

    ASSERT_EQ(result.error, "");
    EXPECT_NEAR(result.planes[0]->data()[0], 77.0F, 1e-4F);
}

TEST(BlurMethod, RefusesTwoPlanesAndSamplesThatAreNoNumbers) {
    Planes planes = noisyPlanes(9, 9, 3);
    planes[1]->row(4)[4] = std::numeric_limits<float>::quiet_NaN();

    EXPECT_EQ(kBlurMethod.run(noisyPlanes(9, 9, 2), argumentsOf({}), {}).error,
              "takes 1 or 3 planes, not 2");
    EXPECT_EQ(kBlurMethod.run(std::move(planes), argumentsOf({}), {}).error,
              "the picture holds samples that aren't finite numbers");
}

TEST(BlurMethod, RefusesWidthsOutOfRange) {
    Arguments arguments(kBlurMethod.parameters);

    EXPECT_NE(arguments.set("sigma", "0.4").find("from 0.5 to 256"), std::string::npos);
    EXPECT_NE(arguments.set("sigma", "257").find("from 0.5 to 256"), std::string::npos);
    EXPECT_EQ(arguments.set("sigma", "256"), "");
}

TEST(BlurMethod, KeepsTheGreyLevelAtItsWidest) {
    Planes planes;
    planes.push_back(std::make_unique<FloatImage>(300, 200, 100.0F));

    const MethodResult result =
        kBlurMethod.run(std::move(planes), argumentsOf({{"sigma", "256"}}), {});

    ASSERT_EQ(result.error, "");
    for (std::size_t i = 0; i < result.planes[0]->sampleCount(); ++i) {
        ASSERT_NEAR(result.planes[0]->data()[i], 100.0F, 1e-4F);
    }
}

TEST(BlurMethod, TellsProgressAndStops) {
    double last = 0.0;
    bool grows = true;
    const Progress watch = [&](double done) {
        grows = grows && done >= last;
        last = done;
        return true;
    };
    EXPECT_EQ(kBlurMethod.run(noisyPlanes(70, 9, 3), argumentsOf({}), watch).error, "");
    EXPECT_EQ(last, 1.0);
    EXPECT_TRUE(grows);

    const MethodResult stopped = kBlurMethod.run(noisyPlanes(70, 9, 3), argumentsOf({}),
                                                 [](double done) { return done < 0.5; });
    EXPECT_TRUE(stopped.cancelled);
    EXPECT_TRUE(stopped.planes.empty());
}

TEST(BlurMethod, IsInTheCatalogue) {
    EXPECT_EQ(findMethod("blur"), &kBlurMethod);
}

}  // namespace
}  // namespace orv
