#include "operators/thin/van_vliet_blur_operator.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <string>
#include <utility>

#include "exports/progress_window.h"
#include "exports/work_window.h"
#include "filters/float_recursive_2d_blur_operator.h"
#include "filters/real_recursive_2d_blur_operator.h"
#include "images/rgb_discrete_image.h"
#include "support/photo_bytes.h"
#include "support/plane_support.h"
#include "support/progress_range.h"
#include "support/sample_image.h"

namespace orv {
namespace {

using test::noisePlane;
using test::noisePlanes;
using test::photoImage;
using test::ProgressRange;
using test::sameBits;
using test::sameSamples;
using test::SampleImage;

// The engine's coefficients stay out of the output of the tests.
class VanVlietBlur : public testing::Test {
  protected:
    void SetUp() override { testing::internal::CaptureStdout(); }
    void TearDown() override { testing::internal::GetCapturedStdout(); }
};

std::unique_ptr<FloatImage3> blurred(const FloatImage3& planes, double sigma) {
    FloatRecursive2dBlurOperator blur(sigma);
    auto result = std::make_unique<FloatImage3>(planes);
    for (int c = 0; c < 3; ++c) {
        result->setPlane(c, blur.apply(planes.plane(c), nullptr));
    }
    return result;
}

TEST_F(VanVlietBlur, BlursEachPlaneInTurn) {
    const FloatImage3 planes = noisePlanes(23, 14, 1);
    VanVlietBlurOperator op(2.0);

    EXPECT_TRUE(sameBits(*op.runPlanes(planes, nullptr), *blurred(planes, 2.0)));
    EXPECT_TRUE(sameBits(*op.runPlanesAlt(planes, nullptr), *blurred(planes, 2.0)));
    EXPECT_TRUE(sameBits(*op.runPlane(planes.plane(2)), blurred(planes, 2.0)->plane(2)));
}

TEST_F(VanVlietBlur, DropsTheMask) {
    const FloatImage3 planes = noisePlanes(9, 14, 1);
    const RgbDiscreteImage mask(9, 14);
    VanVlietBlurOperator op(2.0);
    const auto expected = blurred(planes, 2.0);

    EXPECT_TRUE(sameBits(*op.runPlanesMasked(mask, planes, nullptr), *expected));
    EXPECT_TRUE(sameBits(*op.runPlanesAltMasked(mask, planes, nullptr), *expected));
}

TEST_F(VanVlietBlur, WritesOverAGivenTarget) {
    const FloatImage3 planes = noisePlanes(9, 14, 1);
    VanVlietBlurOperator op(2.0);
    auto target = std::make_unique<FloatImage3>(noisePlanes(9, 14, 8));
    const FloatImage* const place = &target->plane(1);

    const auto result = op.runPlanes(planes, std::move(target));

    EXPECT_EQ(&result->plane(1), place);
    EXPECT_TRUE(sameBits(*result, *blurred(planes, 2.0)));
}

TEST_F(VanVlietBlur, TakesAPictureFromBytesToBytes) {
    for (const auto& [w, h] : {std::pair{3, 3}, {4, 9}, {37, 22}, {64, 130}}) {
        const auto photo = photoImage(w, h, /*seed=*/7);
        auto expected = photo->clone();
        expected->setFromFloat3(*blurred(FloatImage3(*photo), 1.3));

        const auto result = VanVlietBlurOperator(1.3).apply(*photo, nullptr);

        EXPECT_TRUE(sameSamples(*result, *expected)) << w << " x " << h;
        EXPECT_FALSE(sameSamples(*result, *photo)) << w << " x " << h;
    }
}

TEST_F(VanVlietBlur, GivesTheSamePictureOnTheOtherColourPathAndUnderAMask) {
    const auto photo = photoImage(21, 18, /*seed=*/7);
    VanVlietBlurOperator op(1.3);
    const auto expected = op.apply(*photo, nullptr);

    op.setColorPath(1);

    EXPECT_TRUE(sameSamples(*op.apply(*photo, nullptr), *expected));
    EXPECT_TRUE(sameSamples(*op.applyMasked(*photo, *photo, nullptr), *expected));
}

TEST_F(VanVlietBlur, WritesAGreyPictureToItsFirstChannel) {
    SampleImage grey(12, 11, 1);
    for (int x = 0; x < 12; ++x) {
        for (int y = 0; y < 11; ++y) {
            grey.setValue(x, y, (x * 37 + y * 91) % 256);
        }
    }
    FloatRecursive2dBlurOperator blur(1.5);
    const auto plane = blur.apply(FloatImage(grey), nullptr);
    VanVlietBlurOperator op(1.5);

    const auto result = op.apply(grey, nullptr);
    const auto masked = op.runGreyMasked(grey, grey, nullptr);

    for (int x = 0; x < 12; ++x) {
        for (int y = 0; y < 11; ++y) {
            ASSERT_EQ(result->value(x, y), static_cast<int>(plane->row(x)[y]));
            ASSERT_EQ(masked->value(x, y), static_cast<int>(plane->row(x)[y]));
        }
    }
}

TEST_F(VanVlietBlur, CountsSigmaZeroAsHalfAPixel) {
    const auto photo = photoImage(21, 18, /*seed=*/7);

    EXPECT_TRUE(sameSamples(*VanVlietBlurOperator(0.0).apply(*photo, nullptr),
                            *VanVlietBlurOperator(0.5).apply(*photo, nullptr)));
}

TEST_F(VanVlietBlur, ObeysItsSetter) {
    const auto photo = photoImage(21, 18, /*seed=*/7);
    VanVlietBlurOperator op(1.0);

    op.setSigma(4.0);

    EXPECT_EQ(op.sigma(), 4.0);
    EXPECT_TRUE(sameSamples(*op.apply(*photo, nullptr),
                            *VanVlietBlurOperator(4.0).apply(*photo, nullptr)));
}

TEST_F(VanVlietBlur, SplitsTheWindowInThree) {
    const ProgressRange range(30, 60);
    const auto photo = photoImage(8, 8, /*seed=*/7);
    VanVlietBlurOperator(1.0).apply(*photo, nullptr);

    EXPECT_EQ(progressWindow().progressLow, 20);
    EXPECT_EQ(progressWindow().progressHigh, 30);
}

TEST_F(VanVlietBlur, LeavesTheWindowOfThePlanesAsTheWrapperDoes) {
    const ProgressRange range(30, 60);
    VanVlietBlurOperator(1.0).runPlanes(noisePlanes(8, 8, 1), nullptr);

    EXPECT_EQ(progressWindow().progressLow, 20);
    EXPECT_EQ(progressWindow().progressHigh, 30);
}

TEST(VanVlietBlurOperator, PrintsTheCoefficientsOncePerPicture) {
    const auto photo = photoImage(8, 8, /*seed=*/7);
    testing::internal::CaptureStdout();
    VanVlietBlurOperator op(5.0);
    const std::string atConstruction = testing::internal::GetCapturedStdout();
    testing::internal::CaptureStdout();
    op.apply(*photo, nullptr);

    EXPECT_EQ(atConstruction, "");
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "b0=59.610317, b1=132.468788, b2=-100.501809, b3=26.064932\n"
              "b1/b0=2.222246, b2/b0=-1.685980, b3/b0=0.437255\nB=0.026479\n");
}

// Sample i of a line of n that goes on mirrored at both ends.
int reflected(int i, int n) {
    while (i < 0 || i >= n) {
        i = i < 0 ? -1 - i : 2 * n - 1 - i;
    }
    return i;
}

TEST(VanVlietBlurOperator, BlursFinelyOnAMirroredPlaneOfDoubles) {
    for (const double sigma : {0.5, 2.0, 9.3}) {
        for (const auto& [w, h] : {std::pair{40, 31}, {3, 50}, {1, 2}}) {
            FloatImage plane = noisePlane(w, h, 3);
            const int margin = static_cast<int>(std::ceil(6.0 * sigma)) + 3;
            RealImage extended(w + 2 * margin, h + 2 * margin);
            for (int x = 0; x < extended.width(); ++x) {
                for (int y = 0; y < extended.height(); ++y) {
                    const int column = reflected((x < 3 ? 2 : x) - margin, w);
                    const int row = reflected((y < 3 ? 2 : y) - margin, h);
                    extended.row(x)[y] = static_cast<double>(plane.row(column)[row]);
                }
            }
            const auto expected = RealRecursive2dBlurOperator(sigma).apply(extended, nullptr);
            testing::internal::CaptureStdout();

            VanVlietBlurOperator(sigma).blurFinely(plane);

            EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
            for (int x = 0; x < w; ++x) {
                for (int y = 0; y < h; ++y) {
                    ASSERT_EQ(plane.row(x)[y],
                              static_cast<float>(expected->row(x + margin)[y + margin]));
                }
            }
        }
    }
}

TEST(VanVlietBlurOperator, StaysWithinTheSamplesOfNoiseWhenItBlursFinely) {
    for (const double sigma : {1.0, 4.0, 30.0, 200.0}) {
        FloatImage plane = noisePlane(70, 60, 3, 50.0, 200.0);

        VanVlietBlurOperator(sigma).blurFinely(plane);

        for (std::size_t i = 0; i < plane.sampleCount(); ++i) {
            ASSERT_GT(plane.data()[i], 50.0F) << sigma;
            ASSERT_LT(plane.data()[i], 200.0F) << sigma;
        }
    }
}

TEST(VanVlietBlurOperator, TreatsAllFourSidesAlikeWhenItBlursFinely) {
    const FloatImage plane = noisePlane(50, 40, 9);
    FloatImage turned(50, 40);
    for (int x = 0; x < 50; ++x) {
        for (int y = 0; y < 40; ++y) {
            turned.row(49 - x)[39 - y] = plane.row(x)[y];
        }
    }
    FloatImage straight(plane);
    VanVlietBlurOperator(5.0).blurFinely(straight);
    VanVlietBlurOperator(5.0).blurFinely(turned);

    for (int x = 0; x < 50; ++x) {
        for (int y = 0; y < 40; ++y) {
            // What 6 sigma of margin leave of the two kinds of ends.
            ASSERT_NEAR(straight.row(x)[y], turned.row(49 - x)[39 - y], 0.1F);
        }
    }
}

TEST(VanVlietBlurOperator, KeepsTheMeanOfAWideFineBlur) {
    FloatImage plane(50, 60, 200.0F);

    VanVlietBlurOperator(256.0).blurFinely(plane);

    for (std::size_t i = 0; i < plane.sampleCount(); ++i) {
        ASSERT_NEAR(plane.data()[i], 200.0F, 1e-4F);
    }
}

/// Counts the calls and asks to stop at one of them.
class StopAt : public WorkObserver {
  public:
    explicit StopAt(double share) : share_(share) {}
    bool onWork(double done) override {
        grows_ = grows_ && done >= last_;
        last_ = done;
        ++calls_;
        return done < share_;
    }
    double last_ = 0.0;
    bool grows_ = true;
    int calls_ = 0;

  private:
    double share_;
};

TEST_F(VanVlietBlur, TellsItsWorkFromNothingToAll) {
    StopAt observer(2.0);
    const WorkObserverScope scope(&observer);
    VanVlietBlurOperator(1.0).apply(*photoImage(200, 30, /*seed=*/7), nullptr);

    EXPECT_EQ(observer.last_, 1.0);
    EXPECT_TRUE(observer.grows_);
    EXPECT_GE(observer.calls_, 3 * 2 * 4);
}

TEST_F(VanVlietBlur, StopsWhenItIsAskedTo) {
    StopAt observer(0.4);
    const WorkObserverScope scope(&observer);
    VanVlietBlurOperator(1.0).apply(*photoImage(200, 30, /*seed=*/7), nullptr);

    EXPECT_LT(observer.last_, 0.5);
}

}  // namespace
}  // namespace orv
