#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <vector>

#include "exports/progress_window.h"
#include "orv/orv.h"
#include "support/handle.h"

namespace orv {
namespace {

using test::bitmapHeader;
using test::Handle;
using test::handleOf;
using test::paddedRows;
using test::photoBytes;
using test::pixelsOf;

int lastReport = -1;

void ORV_CALLBACK keepReport(int value) {
    lastReport = value;
}

TEST(ConvertORVImage, EveryWidthComesBackPacked) {
    for (int width = 1; width <= 9; ++width) {
        for (const int height : {1, 2, 5}) {
            const std::vector<unsigned char> packed = photoBytes(width, height, /*seed=*/3);

            const Handle image = handleOf(packed, width, height);

            ASSERT_NE(image, nullptr);
            EXPECT_EQ(pixelsOf(image), packed) << width << " x " << height;
        }
    }
}

TEST(ConvertORVImage, WidthFourIsOneBlockAndWidthFiveHasAStrideOfSixteen) {
    std::vector<unsigned char> bytes(32);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<unsigned char>(i);
    }
    const BITMAPINFOHEADER four = bitmapHeader(4, 2);
    const BITMAPINFOHEADER five = bitmapHeader(5, 2);

    const Handle fourImage(ConvertORVImage(&four, bytes.data()));
    const Handle fiveImage(ConvertORVImage(&five, bytes.data()));

    EXPECT_EQ(GetORVImageData(fourImage.get())[12], 12);
    EXPECT_EQ(GetORVImageData(fiveImage.get())[14], 14);
    EXPECT_EQ(GetORVImageData(fiveImage.get())[15], 16);
}

TEST(ConvertORVImage, PaddingOfTheLastRowNeedNotExist) {
    const std::vector<unsigned char> packed = photoBytes(5, 3, /*seed=*/1);
    std::vector<unsigned char> rows = paddedRows(packed, 5, 3);
    rows.pop_back();
    // A block of its own, so that reading behind it is seen.
    const std::vector<unsigned char> exact(rows.begin(), rows.end());
    const BITMAPINFOHEADER header = bitmapHeader(5, 3);

    const Handle image(ConvertORVImage(&header, exact.data()));

    EXPECT_EQ(pixelsOf(image), packed);
}

TEST(ConvertORVImage, OtherBitCountsAreRefused) {
    const std::vector<unsigned char> bytes(64, 0);
    for (const int bitCount : {0, 1, 8, 16, 23, 25, 32}) {
        const BITMAPINFOHEADER header = bitmapHeader(4, 4, bitCount);

        EXPECT_EQ(ConvertORVImage(&header, bytes.data()), nullptr) << bitCount;
    }
}

TEST(ConvertORVImage, OtherHeaderFieldsAreNotRead) {
    BITMAPINFOHEADER header = bitmapHeader(4, 1);
    header.biSize = 1;
    header.biPlanes = 7;
    header.biCompression = 3;
    header.biSizeImage = 99;
    header.biClrUsed = 5;
    const std::vector<unsigned char> bytes(12, 9);

    const Handle image(ConvertORVImage(&header, bytes.data()));

    EXPECT_NE(image, nullptr);
}

TEST(ConvertORVImage, NullArgumentsAreRefused) {
    const BITMAPINFOHEADER header = bitmapHeader(1, 1);
    const unsigned char pixel[4] = {1, 2, 3, 0};

    EXPECT_EQ(ConvertORVImage(nullptr, pixel), nullptr);
    EXPECT_EQ(ConvertORVImage(&header, nullptr), nullptr);
}

TEST(ConvertORVImage, SizesBelowOneAreRefused) {
    const unsigned char pixel[4] = {1, 2, 3, 0};
    for (const int size : {0, -1, -4, INT_MIN}) {
        const BITMAPINFOHEADER narrow = bitmapHeader(size, 1);
        const BITMAPINFOHEADER low = bitmapHeader(1, size);
        const BITMAPINFOHEADER both = bitmapHeader(size, size);

        EXPECT_EQ(ConvertORVImage(&narrow, pixel), nullptr) << size;
        EXPECT_EQ(ConvertORVImage(&low, pixel), nullptr) << size;
        EXPECT_EQ(ConvertORVImage(&both, pixel), nullptr) << size;
    }
}

TEST(ConvertORVImage, SizesThatNoAddressSpaceHoldsAreRefused) {
    const unsigned char pixel[4] = {1, 2, 3, 0};
    for (const int width : {INT_MAX, INT_MAX - 3}) {
        const BITMAPINFOHEADER header = bitmapHeader(width, INT_MAX);

        EXPECT_EQ(ConvertORVImage(&header, pixel), nullptr);
    }
}

TEST(ConvertORVImage, HeaderMayLieAnywhereInMemory) {
    const BITMAPINFOHEADER header = bitmapHeader(1, 1);
    std::vector<unsigned char> file(64, 0);
    const unsigned char pixel[4] = {7, 8, 9, 0};
    for (const std::size_t offset : {0U, 1U, 14U}) {
        std::memcpy(file.data() + offset, &header, sizeof header);

        const Handle image(ConvertORVImage(
            reinterpret_cast<const BITMAPINFOHEADER*>(file.data() + offset), pixel));

        ASSERT_NE(image, nullptr);
        EXPECT_EQ(GetORVImageData(image.get())[1], 8);
    }
}

TEST(ConvertORVImage, PixelsOfTheCallerAreNotKept) {
    std::vector<unsigned char> bytes(12, 5);
    const BITMAPINFOHEADER header = bitmapHeader(4, 1);

    const Handle image(ConvertORVImage(&header, bytes.data()));
    bytes.assign(12, 6);

    EXPECT_EQ(GetORVImageData(image.get())[0], 5);
}

TEST(DestroyORVImage, NullIsHarmless) {
    EXPECT_NO_FATAL_FAILURE(DestroyORVImage(nullptr));
}

TEST(GetORVImageInfo, GivesWidthAndHeight) {
    const Handle image = test::photoHandle(7, 3, /*seed=*/1);
    int width = 0;
    int height = 0;

    GetORVImageInfo(image.get(), &width, &height);

    EXPECT_EQ(width, 7);
    EXPECT_EQ(height, 3);
}

TEST(GetORVImageInfo, WritesNothingWithANullArgument) {
    const Handle image = test::photoHandle(7, 3, /*seed=*/1);
    int width = -5;
    int height = -6;

    GetORVImageInfo(nullptr, &width, &height);
    GetORVImageInfo(image.get(), nullptr, &height);
    GetORVImageInfo(image.get(), &width, nullptr);

    EXPECT_EQ(width, -5);
    EXPECT_EQ(height, -6);
}

TEST(GetORVImageData, LiesOnA32ByteBoundaryAndIsNullForNull) {
    for (int width = 1; width < 6; ++width) {
        const Handle image = test::photoHandle(width, 2, /*seed=*/1);

        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(GetORVImageData(image.get())) % 32U, 0U);
    }
    EXPECT_EQ(GetORVImageData(nullptr), nullptr);
}

TEST(SetORVCallBack, StoresTheCallbackAndResetsTheRangeWithoutCallingIt) {
    progressWindow() = ProgressWindow{nullptr, 40, 60};
    lastReport = -1;

    SetORVCallBack(keepReport);
    const ProgressWindow set = progressWindow();
    SetORVCallBack(nullptr);
    const ProgressWindow cleared = progressWindow();

    EXPECT_EQ(set.callback, keepReport);
    EXPECT_EQ(set.progressLow, 0);
    EXPECT_EQ(set.progressHigh, 100);
    EXPECT_EQ(cleared.callback, nullptr);
    EXPECT_EQ(cleared.progressHigh, 100);
    EXPECT_EQ(lastReport, -1);
}

}  // namespace
}  // namespace orv
