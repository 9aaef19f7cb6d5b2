#include "wavelets/transform/wavelet_bands.h"

#include <gtest/gtest.h>

#include <tuple>
#include <utility>

#include "images/real_image.h"
#include "support/wavelet_support.h"

namespace orv {
namespace {

using Box = std::tuple<int, int, int, int>;

Box boxOf(int height, int width, int level, int detail) {
    int xStart = -1;
    int xEnd = -2;
    int yStart = -3;
    int yEnd = -4;
    BoundingBox(height, width, level, detail, &xStart, &xEnd, &yStart, &yEnd);
    return {xStart, xEnd, yStart, yEnd};
}

TEST(BoundingBox, DetailsLieBesideTheLowCorner) {
    EXPECT_EQ(boxOf(32, 64, 1, 0), Box(32, 64, 0, 16));
    EXPECT_EQ(boxOf(32, 64, 1, 1), Box(0, 32, 16, 32));
    EXPECT_EQ(boxOf(32, 64, 1, 2), Box(32, 64, 16, 32));
    EXPECT_EQ(boxOf(32, 64, 3, 0), Box(8, 16, 0, 4));
    EXPECT_EQ(boxOf(32, 64, 3, 1), Box(0, 8, 4, 8));
    EXPECT_EQ(boxOf(32, 64, 3, 2), Box(8, 16, 4, 8));
}

TEST(BoundingBox, OddSizesDivideDownwards) {
    EXPECT_EQ(boxOf(15, 21, 2, 2), Box(5, 10, 3, 6));
}

TEST(BoundingBox, AnotherDetailTellsAndLeavesTheResults) {
    for (const auto& [detail, text] :
         {std::pair(3, "BoundingBox: unexpected detail value (3)\n"),
          std::pair(-1, "BoundingBox: unexpected detail value (-1)\n")}) {
        testing::internal::CaptureStderr();

        const Box box = boxOf(32, 64, 1, detail);

        EXPECT_EQ(testing::internal::GetCapturedStderr(), text);
        EXPECT_EQ(box, Box(-1, -2, -3, -4));
    }
}

TEST(ExtractBand, CopiesTheBand) {
    const RealImage plane = test::noisePlane(16, 24, 1);
    for (int detail = 0; detail < 3; ++detail) {
        SCOPED_TRACE(detail);
        const int firstX = detail == 1 ? 0 : 4;
        const int firstY = detail == 0 ? 0 : 6;

        const auto band = ExtractBand(plane, 24, 16, 2, detail);

        ASSERT_EQ(band->width(), 4);
        ASSERT_EQ(band->height(), 6);
        for (int x = 0; x < 4; ++x) {
            for (int y = 0; y < 6; ++y) {
                EXPECT_EQ(band->row(x)[y], plane.row(firstX + x)[firstY + y]);
            }
        }
    }
}

TEST(ExtractBand, AnUnexpectedDetailTellsAndGivesNoSamples) {
    const RealImage plane(8, 8);
    testing::internal::CaptureStderr();

    const auto band = ExtractBand(plane, 8, 8, 1, 5);

    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "BoundingBox: unexpected detail value (5)\n");
    EXPECT_EQ(band->sampleCount(), 0u);
}

}  // namespace
}  // namespace orv
