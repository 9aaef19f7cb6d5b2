#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <string>
#include <vector>

#include "base/text_output.h"
#include "orv/orv.h"
#include "orv/orv_constants.h"
#include "support/handle.h"
#include "support/photo_crops.h"

// What hosts see of the filters: sizes, refusals, arguments with a special meaning. The
// formulas are tested with their classes.

namespace orv {
namespace {

using test::Handle;
using Bytes = std::vector<unsigned char>;

/// Every filter with ordinary arguments, by name.
struct Export {
    const char* name;
    void* (*run)(void* image);
};

const Export kExports[] = {
    {"blur", [](void* image) { return ORVIFVanVieltBlurringIirOp(image, 2.5); }},
    {"homomorphic", [](void* image) { return ORVIHomomorphicOp(image, 2.0, 8); }},
    {"retinex", [](void* image) { return ORVRetinex(image, 2.2, 0.1, 0.1, 3); }},
    {"shock", [](void* image) { return ORVIShockOp(image, 1, 5, 0.2); }},
    {"susan", [](void* image) { return ORVISusanRestoration(image, 1, 20.0, 4.0); }},
    {"deblur",
     [](void* image) {
         return ORVIFAosBarashOp(image, 2, 3, 0.05, 4.0, 1.0, 10.0, false, false);
     }},
    {"sure", [](void* image) { return ORVWaveletDenoising(image, "SureShrink", -1, 3); }},
    {"visu", [](void* image) { return ORVWaveletDenoising(image, "VisuShrink", 2, 0); }},
    {"brownian", [](void* image) { return ORVWaveletDenoising(image, "Brownian", 2, 2); }},
    {"recolor", [](void* image) { return ORVISimpleColorTranfer(image, image); }},
    {"colorize", [](void* image) { return ORVIColorToGreyTranfertOp(image, image); }},
};

/// Keeps the engine's text off the test's output for the length of a scope.
class Quiet : private SilencedOutput {};

Bytes flat(int width, int height, unsigned char grey) {
    return Bytes(3U * static_cast<std::size_t>(width) * static_cast<std::size_t>(height), grey);
}

/// The largest difference of two pictures, grey levels.
int distance(const Bytes& a, const Bytes& b) {
    int largest = a.size() == b.size() ? 0 : 256;
    for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i) {
        largest = std::max(largest, std::abs(a[i] - b[i]));
    }
    return largest;
}

TEST(FilterExports, AnswerOnPhotosOfOddAndEvenSizesAndLeaveTheSourceAlone) {
    const Quiet quiet;
    for (const char* name : test::kPhotoCrops) {
        const test::PhotoCrop photo = test::photoCrop(name);
        ASSERT_GT(photo.width, 0) << name;
        for (const int cut : {0, 1}) {
            const int width = photo.width - cut;
            const int height = photo.height - cut;
            Bytes packed;
            for (int y = 0; y < height; ++y) {
                const auto* row = photo.bytes.data() + 3 * y * photo.width;
                packed.insert(packed.end(), row, row + 3 * width);
            }
            const Handle source = test::handleOf(packed, width, height);
            for (const Export& filter : kExports) {
                SCOPED_TRACE(std::string(filter.name) + " on " + name);
                const Handle result(filter.run(source.get()));
                ASSERT_NE(result, nullptr);
                int resultWidth = 0;
                int resultHeight = 0;
                GetORVImageInfo(result.get(), &resultWidth, &resultHeight);
                EXPECT_EQ(resultWidth, width);
                EXPECT_EQ(resultHeight, height);
                EXPECT_NE(test::pixelsOf(result), packed);
                EXPECT_EQ(test::pixelsOf(source), packed);
            }
        }
    }
}

TEST(FilterExports, SameCallTwiceGivesTheSameBytesButForTheSwatches) {
    const Quiet quiet;
    const Handle source = test::photoHandle(33, 26, /*seed=*/3);
    for (const Export& filter : kExports) {
        SCOPED_TRACE(filter.name);
        const Handle first(filter.run(source.get()));
        const Handle second(filter.run(source.get()));
        if (std::string(filter.name) == "colorize") {
            EXPECT_NE(test::pixelsOf(first), test::pixelsOf(second));
        } else {
            EXPECT_EQ(test::pixelsOf(first), test::pixelsOf(second));
        }
    }
}

TEST(FilterExports, RefuseANullImage) {
    for (const Export& filter : kExports) {
        EXPECT_EQ(filter.run(nullptr), nullptr) << filter.name;
    }
    const Handle image = test::photoHandle(12, 12, /*seed=*/1);
    EXPECT_EQ(ORVISimpleColorTranfer(image.get(), nullptr), nullptr);
    EXPECT_EQ(ORVISimpleColorTranfer(nullptr, image.get()), nullptr);
    EXPECT_EQ(ORVIColorToGreyTranfertOp(image.get(), nullptr), nullptr);
    EXPECT_EQ(ORVIColorToGreyTranfertOp(nullptr, image.get()), nullptr);
    EXPECT_EQ(ORVWaveletDenoising(image.get(), nullptr, 1, 1), nullptr);
}

/// Whether an export answers on a picture of a size.
bool answers(int width, int height, void* (*run)(void* image)) {
    const Handle image = test::photoHandle(width, height, /*seed=*/1);
    return Handle(run(image.get())) != nullptr;
}

TEST(FilterExports, RefuseSidesThatTheirFormulasReadBeyond) {
    const Quiet quiet;
    const auto blur = [](void* image) { return ORVIFVanVieltBlurringIirOp(image, 2.0); };
    const auto homomorphic = [](void* image) { return ORVIHomomorphicOp(image, 2.0, 4); };
    const auto deblur = [](void* image) {
        return ORVIFAosBarashOp(image, 1, 3, 0.1, 1.0, 1.0, 1.0, true, false);
    };
    EXPECT_TRUE(answers(3, 3, blur));
    EXPECT_FALSE(answers(2, 9, blur));
    EXPECT_FALSE(answers(9, 2, blur));
    EXPECT_TRUE(answers(3, 3, homomorphic));
    EXPECT_FALSE(answers(2, 9, homomorphic));
    EXPECT_FALSE(answers(9, 2, homomorphic));
    EXPECT_TRUE(answers(6, 6, deblur));
    EXPECT_FALSE(answers(5, 9, deblur));
    EXPECT_FALSE(answers(9, 5, deblur));
}

TEST(FilterExports, SmallestPicturesAnswerWhereNoFormulaForbidsIt) {
    const Quiet quiet;
    for (const int width : {1, 2}) {
        for (const int height : {1, 2}) {
            SCOPED_TRACE(width * 10 + height);
            EXPECT_TRUE(
                answers(width, height, [](void* i) { return ORVIShockOp(i, 3, 2, 0.1); }));
            EXPECT_TRUE(answers(width, height,
                                [](void* i) { return ORVRetinex(i, 2.0, 0.1, 0.1, 1); }));
            EXPECT_TRUE(answers(width, height,
                                [](void* i) { return ORVISusanRestoration(i, 1, 9.0, 2.0); }));
            EXPECT_TRUE(
                answers(width, height, [](void* i) { return ORVISimpleColorTranfer(i, i); }));
            for (const char* rule : {"SureShrink", "VisuShrink", "Brownian"}) {
                const Handle image = test::photoHandle(width, height, /*seed=*/1);
                for (int wavelet = 0; wavelet < ORV_WAVELET_COUNT; ++wavelet) {
                    const Handle result(ORVWaveletDenoising(image.get(), rule, -1, wavelet));
                    EXPECT_NE(result, nullptr) << rule << wavelet;
                }
            }
        }
    }
}

TEST(FilterExports, BlurKeepsAFlatPictureAndCountsSigmaFromAHalf) {
    const Quiet quiet;
    const Handle grey = test::handleOf(flat(9, 8, 77), 9, 8);
    const Handle blurred(ORVIFVanVieltBlurringIirOp(grey.get(), 4.0));
    EXPECT_LE(distance(test::pixelsOf(blurred), flat(9, 8, 77)), 1);

    const Handle photo = test::photoHandle(12, 11, /*seed=*/1);
    const auto blur = [&](double sigma) {
        return test::pixelsOf(Handle(ORVIFVanVieltBlurringIirOp(photo.get(), sigma)));
    };
    EXPECT_EQ(blur(0.0), blur(0.5));
    EXPECT_EQ(blur(-3.0), blur(0.5));
    EXPECT_NE(blur(0.6), blur(0.5));
}

TEST(FilterExports, BlurWritesItsCoefficientsOnceACall) {
    const Handle image = test::photoHandle(5, 4, /*seed=*/1);
    testing::internal::CaptureStdout();
    const Handle result(ORVIFVanVieltBlurringIirOp(image.get(), 2.0));
    flushText();
    const std::string text = testing::internal::GetCapturedStdout();
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 3) << text;
    EXPECT_EQ(text.rfind("b0=", 0), 0U) << text;
    EXPECT_NE(text.find("\nb1/b0="), std::string::npos) << text;
    EXPECT_NE(text.find("\nB="), std::string::npos) << text;
}

TEST(FilterExports, HomomorphicTakesAnyOtherModeForCompression) {
    const Handle photo = test::photoHandle(20, 13, /*seed=*/1);
    const auto mode = [&](int number) {
        return test::pixelsOf(Handle(ORVIHomomorphicOp(photo.get(), 1.8, number)));
    };
    for (const int other : {3, 0, 6, 7, 9, -1, 1000}) {
        EXPECT_EQ(mode(other), mode(8)) << other;
    }
    for (const int part : {1, 2, 4, 5}) {
        EXPECT_NE(mode(part), mode(8)) << part;
    }
}

TEST(FilterExports, HomomorphicZeroSampleBlackensItsChannelAlone) {
    Bytes bytes = flat(9, 7, 100);
    bytes[3 * 20 + 1] = 0;
    const Handle image = test::handleOf(bytes, 9, 7);
    const Bytes result = test::pixelsOf(Handle(ORVIHomomorphicOp(image.get(), 2.0, 4)));
    for (std::size_t i = 0; i < result.size(); i += 3) {
        ASSERT_NEAR(result[i], 100, 1);
        ASSERT_EQ(result[i + 1], 0);
        ASSERT_NEAR(result[i + 2], 100, 1);
    }
}

TEST(FilterExports, HomomorphicWithGammaOneGivesNearlyTheSource) {
    const Handle photo = test::photoHandle(20, 13, /*seed=*/1);
    const Handle result(ORVIHomomorphicOp(photo.get(), 1.0, 8));
    EXPECT_LE(distance(test::pixelsOf(result), test::pixelsOf(photo)), 1);
}

TEST(FilterExports, RetinexRefusesGammaZeroAndLevelsThatThePictureCannotHold) {
    const Handle photo = test::photoHandle(12, 9, /*seed=*/1);
    const auto retinex = [&](double gamma, int levels) {
        return Handle(ORVRetinex(photo.get(), gamma, 0.1, 0.1, levels)) != nullptr;
    };
    EXPECT_TRUE(retinex(2.0, 1));
    EXPECT_TRUE(retinex(2.0, 4));  // 9, 4, 2, 1
    EXPECT_FALSE(retinex(2.0, 5));
    EXPECT_FALSE(retinex(2.0, 0));
    EXPECT_FALSE(retinex(2.0, -1));
    EXPECT_FALSE(retinex(2.0, std::numeric_limits<int>::max()));
    EXPECT_FALSE(retinex(0.0, 2));
    EXPECT_FALSE(retinex(-0.0, 2));
    EXPECT_TRUE(retinex(-1.5, 2));
}

TEST(FilterExports, RetinexWithGammaOneGivesTheSourceForEveryGreyValue) {
    Bytes bytes;
    for (int grey = 0; grey < 256; ++grey) {
        bytes.insert(bytes.end(), 3, static_cast<unsigned char>(grey));
    }
    const Handle ramp = test::handleOf(bytes, 16, 16);
    EXPECT_EQ(test::pixelsOf(Handle(ORVRetinex(ramp.get(), 1.0, 0.1, 0.1, 3))), bytes);
    EXPECT_NE(test::pixelsOf(Handle(ORVRetinex(ramp.get(), 1.1, 0.1, 0.1, 3))), bytes);
}

TEST(FilterExports, RetinexOfABlackPictureIsFinite) {
    const Handle black = test::handleOf(flat(8, 8, 0), 8, 8);
    const Bytes result = test::pixelsOf(Handle(ORVRetinex(black.get(), 2.0, 0.1, 0.1, 2)));
    // (1/256) / (1/256)^(1/2) x 255 = 15.9
    EXPECT_EQ(result, flat(8, 8, 15));
}

TEST(FilterExports, ShockTakesAnyOtherMethodForTheFirst) {
    const Handle photo = test::photoHandle(15, 14, /*seed=*/1);
    const auto shock = [&](int method, int iterations) {
        return test::pixelsOf(Handle(ORVIShockOp(photo.get(), method, iterations, 0.3)));
    };
    for (const int other : {7, 4, -1}) {
        EXPECT_EQ(shock(other, 3), shock(0, 3)) << other;
    }
    EXPECT_NE(shock(1, 3), shock(0, 3));
    EXPECT_NE(shock(3, 3), shock(2, 3));
    EXPECT_EQ(shock(2, 0), test::pixelsOf(photo));
    EXPECT_EQ(shock(2, -5), test::pixelsOf(photo));
}

TEST(FilterExports, SusanKeepsAFlatPictureForEveryGreyValueAndThreshold) {
    for (int grey = 0; grey < 256; grey += 5) {
        const Bytes bytes = flat(7, 5, static_cast<unsigned char>(grey));
        const Handle image = test::handleOf(bytes, 7, 5);
        for (const double threshold : {0.1, 3.7, 20.0, 400.0}) {
            const Handle result(ORVISusanRestoration(image.get(), 2, threshold, 1.3));
            ASSERT_EQ(test::pixelsOf(result), bytes) << grey << " " << threshold;
        }
    }
}

TEST(FilterExports, DeblurringIgnoresItsColourPath) {
    const Handle photo = test::photoHandle(13, 8, /*seed=*/1);
    const auto deblur = [&](bool path) {
        return test::pixelsOf(
            Handle(ORVIFAosBarashOp(photo.get(), 3, 5, 0.05, 3.0, 1.0, 10.0, false, path)));
    };
    EXPECT_EQ(deblur(false), deblur(true));
}

TEST(FilterExports, DeblurringHasNoUseForItsEdgeContrastButTheOneOfZero) {
    const Handle photo = test::photoHandle(13, 8, /*seed=*/1);
    const auto deblur = [&](double sigma, double edgeContrast) {
        return test::pixelsOf(Handle(
            ORVIFAosBarashOp(photo.get(), 3, 5, 0.05, 3.0, sigma, edgeContrast, false, false)));
    };
    EXPECT_EQ(deblur(0.0, 10.0), deblur(5.0, 10.0));
    EXPECT_EQ(deblur(1.0, 0.001), deblur(1.0, -300.0));
    EXPECT_EQ(deblur(1.0, 0.0), flat(13, 8, 0));
}

TEST(FilterExports, DeblurringWithoutLambdaIgnoresKernelAndIterations) {
    const Handle photo = test::photoHandle(13, 8, /*seed=*/1);
    const auto deblur = [&](int iterations, int kernel, double lambda) {
        return test::pixelsOf(Handle(ORVIFAosBarashOp(photo.get(), iterations, kernel, 0.05,
                                                      lambda, 1.0, 10.0, false, false)));
    };
    EXPECT_EQ(deblur(1, 5, 0.0), deblur(4, 7, 0.0));
    EXPECT_NE(deblur(1, 5, 3.0), deblur(4, 7, 3.0));
    EXPECT_EQ(deblur(0, 5, 3.0), test::pixelsOf(photo));
    EXPECT_EQ(deblur(1, 3, 3.0), deblur(1, 99, 3.0));
}

TEST(FilterExports, ColourToGreyRefusesSmallColourPictures) {
    const Handle grey = test::photoHandle(5, 4, /*seed=*/1);
    const auto colorize = [&](int width, int height) {
        const Handle colour = test::photoHandle(width, height, /*seed=*/2);
        return Handle(ORVIColorToGreyTranfertOp(grey.get(), colour.get())) != nullptr;
    };
    EXPECT_TRUE(colorize(11, 11));
    EXPECT_FALSE(colorize(10, 30));
    EXPECT_FALSE(colorize(30, 10));
}

TEST(FilterExports, TransferFromItselfGivesNearlyTheSource) {
    const Handle photo = test::photoHandle(24, 17, /*seed=*/1);
    const Handle result(ORVISimpleColorTranfer(photo.get(), photo.get()));
    // The offset of 1 stays in, and the matrices are inverse to three digits.
    EXPECT_LE(distance(test::pixelsOf(result), test::pixelsOf(photo)), 4);
}

TEST(FilterExports, NumbersThatAreNotFiniteGiveAPictureAndNoCrash) {
    const Quiet quiet;
    const Handle photo = test::photoHandle(9, 8, /*seed=*/1);
    void* const image = photo.get();
    for (const double odd : {std::nan(""), std::numeric_limits<double>::infinity(),
                             -std::numeric_limits<double>::infinity(), 1e308, -1e308}) {
        SCOPED_TRACE(odd);
        const Handle results[] = {
            Handle(ORVIFVanVieltBlurringIirOp(image, odd)),
            Handle(ORVIHomomorphicOp(image, odd, 8)),
            Handle(ORVRetinex(image, odd, 0.1, 0.1, 2)),
            Handle(ORVRetinex(image, 2.0, odd, odd, 3)),
            Handle(ORVIShockOp(image, 3, 2, odd)),
            Handle(ORVISusanRestoration(image, 1, odd, 2.0)),
            Handle(ORVISusanRestoration(image, 1, 20.0, odd)),
            Handle(ORVIFAosBarashOp(image, 1, 3, odd, 1.0, 1.0, 1.0, false, false)),
            Handle(ORVIFAosBarashOp(image, 1, 3, 0.1, odd, odd, odd, false, false)),
        };
        for (const Handle& result : results) {
            EXPECT_NE(result, nullptr);
        }
    }
}

}  // namespace
}  // namespace orv
