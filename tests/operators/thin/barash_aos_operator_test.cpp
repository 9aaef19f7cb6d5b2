#include "operators/thin/barash_aos_operator.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <utility>

#include "images/float_image3.h"
#include "images/rgb_discrete_image.h"
#include "schemes/aos_deblurring/aos_deblurring_operator.h"
#include "support/photo_bytes.h"
#include "support/plain_deblurring.h"
#include "support/plane_support.h"
#include "support/sample_image.h"

namespace orv {
namespace {

using test::DeblurSettings;
using test::photoImage;
using test::plainDeblurring;
using test::sameBits;
using test::SampleImage;

constexpr DeblurSettings kSettings = {2, 5, 0.1f, 6.0f, false};

BarashAosOperator barash() {
    return BarashAosOperator(kSettings.iterations, kSettings.kernel, double{kSettings.tau},
                             double{kSettings.lambda}, /*sigma=*/1.0, /*edgeContrast=*/10.0,
                             kSettings.keepObserved);
}

bool sameBytes(DiscreteImage& a, DiscreteImage& b) {
    return std::memcmp(a.data(), b.data(),
                       static_cast<std::size_t>(3 * a.width() * a.height())) == 0;
}

TEST(BarashAosOperator, APictureBecomesItsDeblurredPlanesTruncated) {
    for (const auto& [width, height] : {std::pair{16, 12}, {15, 9}, {6, 6}, {6, 31}}) {
        const auto photo = photoImage(width, height, /*seed=*/1);
        const FloatImage3 planes(*photo);
        FloatImage3 deblurred(width, height);
        for (int k = 0; k < 3; ++k) {
            deblurred.plane(k).copyFrom(plainDeblurring(kSettings, planes.plane(k)));
        }
        RgbDiscreteImage expected(width, height);
        expected.setFromFloat3(deblurred);

        const auto result = barash().apply(*photo, nullptr);

        EXPECT_TRUE(sameBytes(*result, expected));
    }
}

TEST(BarashAosOperator, BothColourPathsGiveTheSamePicture) {
    const auto photo = photoImage(21, 13, /*seed=*/2);
    BarashAosOperator alternative = barash();
    alternative.setColorPath(1);

    EXPECT_TRUE(
        sameBytes(*barash().apply(*photo, nullptr), *alternative.apply(*photo, nullptr)));
}

TEST(BarashAosOperator, AnotherColourPathLeavesThePicture) {
    const auto photo = photoImage(21, 13, /*seed=*/2);
    BarashAosOperator other = barash();
    other.setColorPath(2);

    EXPECT_TRUE(sameBytes(*other.apply(*photo, nullptr), *photo));
}

TEST(BarashAosOperator, PlanesRunOneByOne) {
    const auto photo = photoImage(14, 10, /*seed=*/3);
    const FloatImage3 planes(*photo);

    const auto result = barash().runPlanes(planes, nullptr);
    const auto into = barash().runPlanes(planes, std::make_unique<FloatImage3>(14, 10));
    const auto alternative = barash().runPlanesAlt(planes, nullptr);

    for (int k = 0; k < 3; ++k) {
        EXPECT_TRUE(sameBits(result->plane(k), *barash().runPlane(planes.plane(k))));
        EXPECT_TRUE(sameBits(result->plane(k), plainDeblurring(kSettings, planes.plane(k))));
    }
    EXPECT_TRUE(sameBits(*into, *result));
    EXPECT_TRUE(sameBits(*alternative, *result));
}

TEST(BarashAosOperator, NoIterationsGiveThePictureBack) {
    const auto photo = photoImage(14, 10, /*seed=*/4);

    const auto result =
        BarashAosOperator(0, 3, 0.1, 5.0, 1.0, 10.0, true).apply(*photo, nullptr);

    EXPECT_TRUE(sameBytes(*result, *photo));
}

TEST(BarashAosOperator, MasksAreDropped) {
    const auto photo = photoImage(14, 10, /*seed=*/5);
    const RgbDiscreteImage mask(14, 10);
    const FloatImage3 planes(*photo);
    const auto expected = barash().apply(*photo, nullptr);
    BarashAosOperator alternative = barash();
    alternative.setColorPath(1);

    EXPECT_TRUE(sameBytes(*barash().applyMasked(mask, *photo, nullptr), *expected));
    EXPECT_TRUE(sameBytes(*alternative.applyMasked(mask, *photo, nullptr), *expected));
    EXPECT_TRUE(sameBits(*barash().runPlanesAltMasked(mask, planes, nullptr),
                         *barash().runPlanes(planes, nullptr)));
}

TEST(BarashAosOperator, AGreyPictureGetsItsDeblurredPlaneInTheRedChannel) {
    const auto photo = photoImage(12, 9, /*seed=*/6);
    SampleImage grey(12, 9, 1);
    for (int x = 0; x < 12; ++x) {
        for (int y = 0; y < 9; ++y) {
            grey.setValue(x, y, photo->red(x, y));
        }
    }
    const FloatImage plane(grey);
    const FloatImage deblurred = plainDeblurring(kSettings, plane);
    const RgbDiscreteImage mask(12, 9);

    const auto result = barash().apply(grey, nullptr);
    const auto masked = barash().applyMasked(mask, grey, nullptr);

    for (int x = 0; x < 12; ++x) {
        for (int y = 0; y < 9; ++y) {
            EXPECT_EQ(result->red(x, y), static_cast<int>(deblurred.row(x)[y]));
            EXPECT_EQ(masked->red(x, y), result->red(x, y));
        }
    }
}

}  // namespace
}  // namespace orv
