#include "tune/tune_crop.h"

#include <gtest/gtest.h>

namespace orv::cli {
namespace {

Planes greyPlane(int width, int height) {
    Planes planes;
    planes.push_back(std::make_unique<FloatImage>(width, height));
    planes[0]->fill(100.0f);
    return planes;
}

CropPlace placed(const CropOrder& order, const Planes& planes) {
    CropPlace place;
    EXPECT_EQ(placeCrop(order, planes, place), "");
    return place;
}

void expectPlace(const CropPlace& place, int x, int y, int width, int height) {
    EXPECT_EQ(place.x, x);
    EXPECT_EQ(place.y, y);
    EXPECT_EQ(place.width, width);
    EXPECT_EQ(place.height, height);
}

TEST(TuneCrop, ReadsSizeAndPlace) {
    CropOrder order;

    ASSERT_EQ(readCrop("300x200+10+20", order), "");

    expectPlace(placed(order, greyPlane(1000, 800)), 10, 20, 300, 200);
}

TEST(TuneCrop, PlaceOfAtIsTheMiddle) {
    CropOrder order;

    ASSERT_EQ(readCrop("100x50", order), "");
    ASSERT_EQ(readAt("200,300", order), "");

    expectPlace(placed(order, greyPlane(1000, 800)), 150, 275, 100, 50);
}

TEST(TuneCrop, StaysInsideThePicture) {
    CropOrder order;

    ASSERT_EQ(readAt("999,0", order), "");

    expectPlace(placed(order, greyPlane(1000, 100)), 744, 0, 256, 100);
}

TEST(TuneCrop, FindsTheMostDetailedPart) {
    Planes planes = greyPlane(600, 500);
    for (int x = 400; x < 500; ++x) {
        for (int y = 300; y < 400; ++y) {
            planes[0]->row(x)[y] = (x + y) % 2 == 0 ? 0.0f : 255.0f;
        }
    }

    const CropPlace place = placed({64, 64}, planes);

    EXPECT_GE(place.x, 400 - 16);
    EXPECT_LE(place.x + 64, 500 + 16);
    EXPECT_GE(place.y, 300 - 16);
    EXPECT_LE(place.y + 64, 400 + 16);
}

TEST(TuneCrop, TakesPicturesOfOnePixel) {
    expectPlace(placed({}, greyPlane(1, 1)), 0, 0, 1, 1);
}

TEST(TuneCrop, RefusesOtherTexts) {
    for (const char* const text : {"", "10", "10x", "x10", "0x5", "10x10+5", "10x10+5+", "-1x5",
                                   "10x10+5+5x", "9999999x1"}) {
        CropOrder order;
        EXPECT_NE(readCrop(text, order), "") << text;
    }
    for (const char* const text : {"", "5", "5,", ",5", "5x5", "5,5,5", "-5,5"}) {
        CropOrder order;
        EXPECT_NE(readAt(text, order), "") << text;
    }
}

TEST(TuneCrop, RefusesTwoPlacesAndPlacesOutside) {
    CropOrder order;
    CropPlace place;

    ASSERT_EQ(readCrop("10x10+50+60", order), "");

    EXPECT_EQ(readAt("5,5", order),
              "--at: --crop tells a place already; leave out one of them");
    EXPECT_EQ(placeCrop(order, greyPlane(50, 70), place),
              "--crop: (50, 60) lies outside the picture, which has 50 x 70 pixels");
}

TEST(TuneCrop, MarginEndsAtTheBorder) {
    expectPlace(withMargin({100, 10, 50, 60}, 30, 1000, 90), 70, 0, 110, 90);
}

}  // namespace
}  // namespace orv::cli
