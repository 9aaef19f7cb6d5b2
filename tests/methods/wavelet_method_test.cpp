#include "methods/wavelet_method.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <memory>
#include <string>
#include <utility>

#include "base/rounding.h"
#include "images/rgb_discrete_image.h"
#include "methods/method_catalogue.h"
#include "operators/thin/wavelet_denoising_operator.h"
#include "support/method_planes.h"
#include "support/photo_crops.h"
#include "support/plane_support.h"

namespace orv {
namespace {

using test::noisyPlanes;
using test::sameBits;

RealImage realPlane(const FloatImage& plane) {
    RealImage real(plane.width(), plane.height());
    for (std::size_t i = 0; i < plane.sampleCount(); ++i) {
        real.data()[i] = plane.data()[i];
    }
    return real;
}

Arguments argumentsOf(std::initializer_list<std::pair<const char*, const char*>> values) {
    return test::argumentsOf(kWaveletMethod, values);
}

FloatImage clamped(const RealImage& plane) {
    FloatImage result(plane.width(), plane.height());
    for (std::size_t i = 0; i < result.sampleCount(); ++i) {
        result.data()[i] = toFloat(plane.data()[i]);
    }
    result.clamp(0.0f, 255.0f);
    return result;
}

TEST(WaveletMethod, IsTheOperatorsOwnResultRoundedAndClamped) {
    const std::pair<const char*, int> rules[] = {{"sure", 0}, {"visu", 1}, {"brownian", 2}};
    for (const auto& [rule, number] : rules) {
        for (const int count : {1, 3}) {
            SCOPED_TRACE(testing::Message() << rule << ", " << count);
            WaveletDenoisingOperator op(number, 3, 1);
            const Planes sources = noisyPlanes(50, 33, count);

            const MethodResult mirrored = kWaveletMethod.run(
                noisyPlanes(50, 33, count),
                argumentsOf({{"rule", rule}, {"wavelet", "haar"}, {"levels", "3"}}), nullptr);
            const MethodResult zero = kWaveletMethod.run(
                noisyPlanes(50, 33, count),
                argumentsOf(
                    {{"rule", rule}, {"wavelet", "1"}, {"levels", "3"}, {"extend", "zero"}}),
                nullptr);

            ASSERT_EQ(mirrored.error + zero.error, "");
            ASSERT_EQ(mirrored.planes.size(), sources.size());
            for (std::size_t c = 0; c < sources.size(); ++c) {
                const RealImage plane = realPlane(*sources[c]);
                testing::internal::CaptureStdout();
                const auto byMirror = op.runPlaneMirrored(plane);
                const auto byZeros = op.runPlane(plane);
                testing::internal::GetCapturedStdout();
                EXPECT_TRUE(sameBits(*mirrored.planes[c], clamped(*byMirror)));
                EXPECT_TRUE(sameBits(*zero.planes[c], clamped(*byZeros)));
            }
        }
    }
}

TEST(WaveletMethod, ZeroExtensionGivesTheThreePlanesOfTheImageOperator) {
    const Planes sources = noisyPlanes(40, 27, 3);
    RealImage3 image(40, 27);
    for (int c = 0; c < 3; ++c) {
        image.plane(c).assign(realPlane(*sources[static_cast<std::size_t>(c)]));
    }
    const auto expected = WaveletDenoisingOperator(0, -1, 3).runPlanes(image, nullptr);

    const MethodResult result =
        kWaveletMethod.run(noisyPlanes(40, 27, 3), argumentsOf({{"extend", "zero"}}), nullptr);

    ASSERT_EQ(result.error, "");
    for (int c = 0; c < 3; ++c) {
        EXPECT_TRUE(
            sameBits(*result.planes[static_cast<std::size_t>(c)], clamped(expected->plane(c))));
    }
}

TEST(WaveletMethod, PrintsNothing) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();

    const MethodResult result =
        kWaveletMethod.run(noisyPlanes(64, 40, 1),
                           argumentsOf({{"rule", "brownian"}, {"extend", "zero"}}), nullptr);

    EXPECT_EQ(result.error, "");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(WaveletMethod, RefusesLevelsThatThePictureDoesNotAllow) {
    const auto errorOf = [](int width, int height, const Arguments& arguments) {
        return kWaveletMethod.run(noisyPlanes(width, height, 1), arguments, nullptr).error;
    };

    EXPECT_EQ(
        errorOf(40, 33, argumentsOf({{"levels", "3"}})),
        "--levels: 3 is too many for 40 x 33 pixels and the wavelet 9/7, which allow 1 to "
        "2");
    EXPECT_EQ(errorOf(40, 31, argumentsOf({{"levels", "2"}})),
              "--levels: 2 is too many for 40 x 31 pixels and the wavelet 9/7, which allow 1 "
              "alone");
    EXPECT_EQ(errorOf(40, 15, argumentsOf({})),
              "--wavelet: 9/7 takes at least 16 x 16 pixels, this picture has 40 x 15; haar "
              "takes the smallest, 4 x 4");
    EXPECT_EQ(errorOf(3, 1, argumentsOf({{"wavelet", "haar"}})),
              "--wavelet: haar takes at least 4 x 4 pixels, this picture has 3 x 1; haar takes "
              "the smallest, 4 x 4");
    EXPECT_EQ(errorOf(40, 33, argumentsOf({{"levels", "2"}})), "");
    EXPECT_EQ(errorOf(40, 15, argumentsOf({{"extend", "zero"}, {"levels", "3"}})), "");
    EXPECT_EQ(errorOf(4, 4, argumentsOf({{"wavelet", "haar"}})), "");
}

TEST(WaveletMethod, RefusesPlanesThatAreNoPicture) {
    EXPECT_NE(kWaveletMethod.run(noisyPlanes(20, 20, 2), argumentsOf({}), nullptr).error, "");
    Planes broken = noisyPlanes(20, 20, 1);
    broken[0]->row(3)[3] = std::nanf("");
    EXPECT_NE(kWaveletMethod.run(std::move(broken), argumentsOf({}), nullptr).error, "");
}

TEST(WaveletMethod, StopsWhenAskedTo) {
    const Progress stop = [](double) { return false; };

    const MethodResult result =
        kWaveletMethod.run(noisyPlanes(64, 64, 3), argumentsOf({}), stop);

    EXPECT_TRUE(result.cancelled);
    EXPECT_TRUE(result.planes.empty());
}

TEST(WaveletMethod, TellsProgressThatNeverFalls) {
    double last = 0.0;
    int calls = 0;
    const Progress progress = [&](double done) {
        EXPECT_GE(done, last);
        last = done;
        ++calls;
        return true;
    };

    kWaveletMethod.run(noisyPlanes(128, 100, 3), argumentsOf({}), progress);

    EXPECT_GT(calls, 9);
    EXPECT_EQ(last, 1.0);
}

double meanSquare(const Planes& a, const Planes& b) {
    double sum = 0.0;
    std::size_t count = 0;
    for (std::size_t c = 0; c < a.size(); ++c) {
        for (std::size_t i = 0; i < a[c]->sampleCount(); ++i) {
            const double d = static_cast<double>(a[c]->data()[i]) - b[c]->data()[i];
            sum += d * d;
        }
        count += a[c]->sampleCount();
    }
    return sum / static_cast<double>(count);
}

// What the method is for: noise of deviation 20 on photos is taken down by at least 4 dB.
TEST(WaveletMethod, CleansNoisyPhotosWithItsDefaults) {
    for (const char* const name : test::kPhotoCrops) {
        SCOPED_TRACE(name);
        const test::PhotoCrop crop = test::photoCrop(name);
        ASSERT_GT(crop.width, 0);
        const RgbDiscreteImage photo(crop.width, crop.height, crop.bytes.data());
        test::Noise noise(77);
        Planes clean;
        Planes noisy;
        for (int c = 1; c <= 3; ++c) {
            clean.push_back(std::make_unique<FloatImage>(photo, c));
            noisy.push_back(clean.back()->clone());
            FloatImage& plane = *noisy.back();
            for (std::size_t i = 0; i < plane.sampleCount(); ++i) {
                double sum = 0.0;
                for (int k = 0; k < 12; ++k) {
                    sum += noise.between(-0.5, 0.5);
                }
                plane.data()[i] =
                    std::clamp(toFloat(plane.data()[i] + 20.0 * sum), 0.0f, 255.0f);
            }
        }
        const double before = meanSquare(noisy, clean);

        const MethodResult result =
            kWaveletMethod.run(std::move(noisy), argumentsOf({}), nullptr);

        ASSERT_EQ(result.error, "");
        EXPECT_LT(10.0 * std::log10(meanSquare(result.planes, clean) / before), -4.0);
    }
}

TEST(WaveletMethod, StandsInTheCatalogue) {
    EXPECT_EQ(findMethod("wavelet"), &kWaveletMethod);
}

}  // namespace
}  // namespace orv
