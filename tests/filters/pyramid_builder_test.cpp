#include "filters/pyramid_builder.h"

#include <gtest/gtest.h>

#include <memory>
#include <type_traits>
#include <utility>

#include "images/real_image_pyramid.h"
#include "support/plain_retinex.h"
#include "support/plane_support.h"

namespace orv {
namespace {

using test::noiseRealPlane;
using test::PlainRetinex;
using test::sameBits;

TEST(PyramidBuilder, LevelsAreTheSmoothedSamplesAtEvenPlaces) {
    const int sizes[][2] = {{2, 2}, {3, 2}, {2, 3}, {5, 4}, {16, 16}, {31, 18}, {64, 41}};
    for (const auto& size : sizes) {
        SCOPED_TRACE(testing::Message() << size[0] << " x " << size[1]);
        const RealImage plane = noiseRealPlane(size[0], size[1], 3);
        const int levels = size[0] > 4 && size[1] > 4 ? 4 : 2;

        const auto pyramid = PyramidBuilder(levels).build(plane, nullptr);

        const std::vector<RealImage> expected = PlainRetinex::pyramidOf(plane, levels);
        ASSERT_EQ(pyramid->levels(), levels);
        for (int k = 0; k < levels; ++k) {
            EXPECT_TRUE(sameBits(*pyramid->level(k), expected[static_cast<std::size_t>(k)]));
        }
    }
}

TEST(PyramidBuilder, AConstantStaysConstant) {
    const auto pyramid = PyramidBuilder(3).build(RealImage(9, 12, 3.5), nullptr);

    for (int k = 0; k < 3; ++k) {
        for (std::size_t i = 0; i < pyramid->level(k)->sampleCount(); ++i) {
            // 1/9 and 1/12 are rounded.
            EXPECT_NEAR(pyramid->level(k)->data()[i], 3.5, 1e-14);
        }
    }
}

TEST(PyramidBuilder, WeightsOfAnInnerSampleAreBinomial) {
    RealImage plane(6, 6);
    plane.row(2)[2] = 4.0;   // centre of level 1 at (1, 1)
    plane.row(3)[2] = 10.0;  // beside it
    plane.row(3)[3] = 100.0;

    const auto pyramid = PyramidBuilder(2).build(plane, nullptr);

    EXPECT_EQ(pyramid->level(1)->row(1)[1], (4 * 4.0 + 2 * 10.0 + 100.0) / 16.0);
}

TEST(PyramidBuilder, RefillsAPyramidThatFits) {
    const RealImage first = noiseRealPlane(13, 10, 1);
    const RealImage second = noiseRealPlane(13, 10, 2);
    PyramidBuilder builder(3);
    auto pyramid = builder.build(first, nullptr);
    const RealImagePyramid* const same = pyramid.get();

    pyramid = builder.build(second, std::move(pyramid));

    EXPECT_EQ(pyramid.get(), same);
    const auto fresh = builder.build(second, nullptr);
    for (int k = 0; k < 3; ++k) {
        EXPECT_TRUE(sameBits(*pyramid->level(k), *fresh->level(k)));
    }
}

TEST(PyramidBuilder, ReplacesAPyramidOfAnotherForm) {
    PyramidBuilder builder(2);
    auto pyramid = builder.build(noiseRealPlane(4, 4, 1), nullptr);
    const RealImage larger = noiseRealPlane(8, 6, 2);

    pyramid = builder.build(larger, std::move(pyramid));

    EXPECT_EQ(pyramid->width(), 8);
    EXPECT_TRUE(sameBits(*pyramid->level(0), larger));
    EXPECT_FALSE(PyramidBuilder(3).fits(pyramid.get(), 8, 6));
}

TEST(PyramidBuilder, MakesLevelsThatAPyramidLacks) {
    const RealImage plane = noiseRealPlane(13, 10, 4);
    PyramidBuilder builder(3);
    auto bare =
        std::make_unique<RealImagePyramid>(plane, 3, builder.ratio(), /*allocate=*/false);
    bare->takeLevel(0);

    const auto filled = builder.build(plane, std::move(bare));

    const auto fresh = builder.build(plane, nullptr);
    for (int k = 0; k < 3; ++k) {
        ASSERT_NE(filled->level(k), nullptr);
        EXPECT_TRUE(sameBits(*filled->level(k), *fresh->level(k)));
    }
}

TEST(PyramidBuilder, APlaneHandedInGivesTheLevelsOfACopy) {
    const RealImage plane = noiseRealPlane(11, 9, 5);
    PyramidBuilder builder(3);

    auto moved = builder.buildFrom(plane.clone(), nullptr);
    moved = builder.buildFrom(plane.clone(), std::move(moved));

    const auto copied = builder.build(plane, nullptr);
    for (int k = 0; k < 3; ++k) {
        EXPECT_TRUE(sameBits(*moved->level(k), *copied->level(k)));
    }
}

TEST(PyramidBuilder, HalvesAndIsAPlanePyramidBuilder) {
    const PyramidBuilder builder(5);

    EXPECT_EQ(builder.ratio(), 0.5);
    EXPECT_EQ(builder.levels(), 5);
    EXPECT_EQ(builder.reserved(), 1);
    EXPECT_TRUE((std::is_base_of_v<PlanePyramidBuilder, PyramidBuilder>));
    EXPECT_TRUE(std::is_abstract_v<PlanePyramidBuilder>);
}

}  // namespace
}  // namespace orv
