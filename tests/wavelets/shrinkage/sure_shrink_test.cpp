#include "wavelets/shrinkage/sure_shrink.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>

#include "images/real_image.h"
#include "support/plain_shrinkage.h"
#include "support/plane_support.h"
#include "wavelets/shrinkage/shrink_band.h"
#include "wavelets/shrinkage/visu_shrink.h"

namespace orv {
namespace {

RealImage coefficientsOf(int width, int height, unsigned seed) {
    test::Noise noise(seed);
    RealImage plane(width, height);
    for (std::size_t i = 0; i < plane.sampleCount(); ++i) {
        const double v = noise.between(-2.0, 2.0);
        plane.data()[i] = v * v * v * 3.0;
    }
    return plane;
}

void expectEqual(const RealImage& plane, const RealImage& plain) {
    for (std::size_t i = 0; i < plane.sampleCount(); ++i) {
        ASSERT_EQ(plane.data()[i], plain.data()[i]) << i;
    }
}

// Odd sizes leave coefficients that no band holds; they are divided and multiplied too.
TEST(SureShrink, IsThePlainRuleOnEveryShape) {
    unsigned seed = 1;
    for (const auto& size : {std::array{64, 64}, std::array{128, 32}, std::array{63, 41},
                             std::array{17, 90}, std::array{256, 256}}) {
        for (int levels = 0; levels <= 4; ++levels) {
            SCOPED_TRACE(testing::Message() << size[0] << " x " << size[1] << ", " << levels);
            RealImage plane = coefficientsOf(size[0], size[1], seed++);
            RealImage plain(plane);

            SureShrink2D(plane, size[1], size[0], levels, /*verbose=*/false);

            test::plainRule(plain, 0, levels, {});
            expectEqual(plane, plain);
        }
    }
}

TEST(VisuShrink, IsThePlainRuleOnEveryShape) {
    unsigned seed = 50;
    for (const auto& size : {std::array{64, 64}, std::array{128, 32}, std::array{63, 41}}) {
        for (int levels = 0; levels <= 4; ++levels) {
            SCOPED_TRACE(testing::Message() << size[0] << " x " << size[1] << ", " << levels);
            RealImage plane = coefficientsOf(size[0], size[1], seed++);
            RealImage plain(plane);

            VisuShrink2D(plane, size[1], size[0], levels, /*verbose=*/false);

            test::plainRule(plain, 1, levels, {});
            expectEqual(plane, plain);
        }
    }
}

// The finest details are zero, coarser ones are not.
TEST(SureShrink, ScalesNothingWithoutNoise) {
    RealImage plane(16, 16);
    RealImage coarse = coefficientsOf(8, 8, 4);
    for (int x = 0; x < 8; ++x) {
        for (int y = 0; y < 8; ++y) {
            plane.row(x)[y] = coarse.row(x)[y];
        }
    }
    RealImage visu(plane);
    RealImage plain(plane);
    const RealImage before(plane);

    SureShrink2D(plane, 16, 16, 2, /*verbose=*/false);
    VisuShrink2D(visu, 16, 16, 2, /*verbose=*/false);

    test::plainRule(plain, 0, 2, {});
    expectEqual(plane, plain);
    expectEqual(visu, before);
}

TEST(SureShrink, PrintsEveryStepWhenVerbose) {
    RealImage plane(8, 8, 2.0);
    RealImage visu(plane);

    testing::internal::CaptureStdout();
    SureShrink2D(plane, 8, 8, 1, /*verbose=*/true);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "SureShrink2D\n"
              "Noise estimate = 2.94362\n"
              "Level 1, detail 0: threshold = 0.679435, tossed 16 coefs\n"
              "Level 1, detail 1: threshold = 0.679435, tossed 16 coefs\n"
              "Level 1, detail 2: threshold = 0.679435, tossed 16 coefs\n");

    testing::internal::CaptureStdout();
    VisuShrink2D(visu, 8, 8, 1, /*verbose=*/true);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "VisuShrink2D algorithm\n"
              "Noise estimate = 2.94362\n"
              "Level 1, detail 0: threshold = 8.48956, tossed 16 coefs\n"
              "Level 1, detail 1: threshold = 8.48956, tossed 16 coefs\n"
              "Level 1, detail 2: threshold = 8.48956, tossed 16 coefs\n");
}

TEST(ShrinkBand, SoftensBothSignsAndTossesWhatIsNotAboveTheThreshold) {
    RealImage plane(4, 4, 7.0);
    plane.row(2)[0] = 3.0;
    plane.row(2)[1] = -3.5;
    plane.row(3)[0] = 2.0;
    plane.row(3)[1] = -1.0;

    testing::internal::CaptureStdout();
    ShrinkBand(plane, 4, 4, /*level=*/1, /*detail=*/0, 2.0, /*verbose=*/true);

    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "Level 1, detail 0: threshold = 2, tossed 2 coefs\n");
    EXPECT_EQ(plane.row(2)[0], 1.0);
    EXPECT_EQ(plane.row(2)[1], -1.5);
    EXPECT_EQ(plane.row(3)[0], 0.0);
    EXPECT_EQ(plane.row(3)[1], 0.0);
    EXPECT_EQ(plane.row(0)[0], 7.0);
    EXPECT_EQ(plane.row(1)[3], 7.0);
    EXPECT_EQ(plane.row(2)[2], 7.0);
}

TEST(ShrinkBand, ChangesNothingButZerosWithAThresholdOfZero) {
    RealImage plane = coefficientsOf(8, 8, 9);
    plane.row(5)[1] = 0.0;
    const RealImage before(plane);

    testing::internal::CaptureStdout();
    ShrinkBand(plane, 8, 8, 1, 0, 0.0, /*verbose=*/true);

    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "Level 1, detail 0: threshold = 0, tossed 1 coefs\n");
    expectEqual(plane, before);
}

}  // namespace
}  // namespace orv
