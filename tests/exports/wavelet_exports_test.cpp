#include <gtest/gtest.h>

#include <vector>

#include "base/text_output.h"
#include "orv/orv.h"
#include "support/handle.h"

// What hosts see of wavelet denoising. The formulas are tested with their classes.

namespace orv {
namespace {

using test::Handle;
using Bytes = std::vector<unsigned char>;

/// Keeps the engine's text off the test's output for the length of a scope.
class Quiet : private SilencedOutput {};

TEST(WaveletExport, NoLevelsCopyTheSource) {
    const Quiet quiet;
    const Handle photo = test::photoHandle(16, 12, /*seed=*/1);
    for (const char* rule : {"SureShrink", "VisuShrink", "Brownian"}) {
        const auto shrink = [&](int levels) {
            return test::pixelsOf(Handle(ORVWaveletDenoising(photo.get(), rule, levels, 1)));
        };
        EXPECT_EQ(shrink(0), test::pixelsOf(photo)) << rule;
        EXPECT_NE(shrink(1), test::pixelsOf(photo)) << rule;
        EXPECT_EQ(shrink(-1), shrink(50)) << rule;
    }
}

TEST(WaveletExport, PadsAShorterSideThatWouldBeOddToTheSquareOfTheLonger) {
    const Quiet quiet;
    // 14 is odd after one pass, so that a second one needs the padding.
    const Handle photo = test::photoHandle(16, 14, /*seed=*/1);
    Bytes padded = test::pixelsOf(photo);
    padded.resize(3 * 16 * 16, 0);
    const Handle square = test::handleOf(padded, 16, 16);
    const auto shrink = [](const Handle& image, int levels) {
        Bytes bytes =
            test::pixelsOf(Handle(ORVWaveletDenoising(image.get(), "VisuShrink", levels, 1)));
        bytes.resize(3 * 16 * 14);
        return bytes;
    };
    EXPECT_EQ(shrink(photo, 2), shrink(square, 2));
    EXPECT_NE(shrink(photo, 1), shrink(square, 1));
}

TEST(WaveletExport, KeywordsAreFoundInsideOtherTexts) {
    const Quiet quiet;
    const Handle photo = test::photoHandle(16, 16, /*seed=*/1);
    const auto shrink = [&](const char* rule) {
        return test::pixelsOf(Handle(ORVWaveletDenoising(photo.get(), rule, 2, 1)));
    };
    EXPECT_EQ(shrink("no such rule"), shrink("SureShrink"));
    EXPECT_EQ(shrink(""), shrink("SureShrink"));
    EXPECT_EQ(shrink("BrownianVisuShrink"), shrink("VisuShrink"));
    EXPECT_EQ(shrink("xBrownianx"), shrink("Brownian"));
    EXPECT_NE(shrink("VisuShrink"), shrink("SureShrink"));
    EXPECT_NE(shrink("Brownian"), shrink("SureShrink"));
}

TEST(WaveletExport, NumbersOutsideTheBanksAreRefused) {
    const Quiet quiet;
    const Handle photo = test::photoHandle(16, 16, /*seed=*/1);
    for (const int wavelet : {-1, 6, 1000}) {
        EXPECT_EQ(ORVWaveletDenoising(photo.get(), "SureShrink", 1, wavelet), nullptr);
    }
}

}  // namespace
}  // namespace orv
