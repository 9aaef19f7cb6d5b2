#include "operators/colour/simple_color_transfer_operator.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "base/cpu_features.h"
#include "exports/progress_window.h"
#include "exports/work_window.h"
#include "images/rgb_discrete_image.h"
#include "support/kernel_targets.h"
#include "support/photo_bytes.h"
#include "support/photo_crops.h"
#include "support/plain_colour.h"
#include "support/plane_support.h"
#include "support/progress_range.h"
#include "support/sample_image.h"

namespace orv {
namespace {

using test::availableTargets;
using test::noiseRealPlanes;
using test::photoCrop;
using test::photoImage;
using test::PlainColour;
using test::ProgressRange;
using test::sameBits;
using test::sameSamples;
using test::SampleImage;
using test::TargetLimit;

SimpleColorTransferOperator transferOperator() {
    return SimpleColorTransferOperator(std::make_unique<ColorSpaceChain>());
}

std::unique_ptr<DiscreteImage> recoloured(const DiscreteImage& source,
                                          const DiscreteImage& style) {
    SimpleColorTransferOperator op = transferOperator();
    op.setStyle(style);
    return op.apply(source, nullptr);
}

std::unique_ptr<RgbDiscreteImage> cropImage(const char* name) {
    const test::PhotoCrop crop = photoCrop(name);
    return std::make_unique<RgbDiscreteImage>(crop.width, crop.height, crop.bytes.data());
}

std::unique_ptr<RgbDiscreteImage> flatImage(int width, int height, int r, int g, int b) {
    auto image = std::make_unique<RgbDiscreteImage>(width, height);
    image->fillRgb(r, g, b);
    return image;
}

std::vector<int>& reports() {
    static std::vector<int> values;
    return values;
}

void ORV_PROGRESS_CALL recordReport(int value) {
    reports().push_back(value);
}

void expectPlain(int width, int height) {
    const RealImage3 source = noiseRealPlanes(width, height, 11);
    RealImage3 style = noiseRealPlanes(height + 3, width, 29);
    style.plane(1).scale(0.5);
    const RealImage3 expected = PlainColour::recoloured(source, style);
    SimpleColorTransferOperator op = transferOperator();

    op.setStylePlanes(style);
    const auto result = op.runPlanes(source, nullptr);

    EXPECT_TRUE(sameBits(*result, expected)) << width << " x " << height;
}

TEST(SimpleColorTransferOperator, AgreesWithThePlainFormulasOnEveryKernelTarget) {
    for (const KernelTarget target : availableTargets()) {
        const TargetLimit limit(target);
        for (const auto& [width, height] :
             {std::pair(1, 1), {1, 7}, {2, 5}, {3, 3}, {11, 13}, {31, 33}, {67, 129}}) {
            expectPlain(width, height);
        }
    }
}

TEST(SimpleColorTransferOperator, GivesTheSameBitsOnEveryKernelTarget) {
    const auto source = cropImage("coffee");
    const RealImage3 planes(*source);
    limitKernelTarget(KernelTarget::Generic);
    SimpleColorTransferOperator generic = transferOperator();
    generic.setStyle(*cropImage("astronaut"));
    const auto expected = generic.runPlanes(planes, nullptr);
    for (const KernelTarget target : {KernelTarget::Avx2, KernelTarget::Avx512}) {
        limitKernelTarget(target);
        SimpleColorTransferOperator op = transferOperator();

        op.setStyle(*cropImage("astronaut"));

        EXPECT_EQ(op.styleMean(), generic.styleMean());
        EXPECT_EQ(op.styleDeviation(), generic.styleDeviation());
        EXPECT_TRUE(sameBits(*op.runPlanes(planes, nullptr), *expected)) << nameOf(target);
    }
    limitKernelTarget(KernelTarget::Avx512);
}

TEST(SimpleColorTransferOperator, TruncatesOnPhotos) {
    const auto source = cropImage("coffee");
    const auto style = cropImage("chelsea");
    ASSERT_GT(source->width(), 0);
    const RealImage3 planes = PlainColour::recoloured(RealImage3(*source), RealImage3(*style));
    RgbDiscreteImage expected(source->width(), source->height());
    expected.setFromReal3(planes);

    const auto result = recoloured(*source, *style);

    EXPECT_TRUE(sameSamples(*result, expected));
}

TEST(SimpleColorTransferOperator, GivesPackedPicturesTheBytesOfItsPlanes) {
    for (const auto& [width, height] :
         {std::pair(150, 37), {64, 3}, {65, 3}, {9, 5001}, {8, 4100}, {70, 1501}}) {
        const auto source = photoImage(width, height, 5);
        const auto style = photoImage(width, height, 6);
        SimpleColorTransferOperator op = transferOperator();
        RealImage3 stylePlanes(*style);
        op.setStylePlanes(stylePlanes);
        RgbDiscreteImage expected(width, height);
        expected.setFromReal3(*op.runPlanes(RealImage3(*source), nullptr));
        const auto mean = op.styleMean();
        const auto deviation = op.styleDeviation();

        op.setStyle(*style);
        const auto made = op.apply(*source, nullptr);
        const auto given = op.apply(*source, std::make_unique<RgbDiscreteImage>(width, height));

        EXPECT_EQ(op.styleMean(), mean);
        EXPECT_EQ(op.styleDeviation(), deviation);
        EXPECT_TRUE(sameSamples(*made, expected)) << width << " x " << height;
        EXPECT_TRUE(sameSamples(*given, expected)) << width << " x " << height;
    }
}

TEST(SimpleColorTransferOperator, GivesTheResultTheMeanAndDeviationOfTheStyle) {
    const RealImage3 source = noiseRealPlanes(64, 64, 4);
    RealImage3 style(64, 64);
    for (int c = 0; c < 3; ++c) {
        style.plane(c).assign(
            test::noiseRealPlane(64, 64, 80 + static_cast<unsigned>(c), 90.0, 140.0));
    }
    SimpleColorTransferOperator op = transferOperator();
    op.setStylePlanes(style);

    const auto result = op.runPlanes(source, nullptr);

    // Grey levels of the result are (samples + 1); the matrices' rounding adds a little.
    const RealImage3 lab = PlainColour::lab(*result, 0.0);
    for (int k = 0; k < 3; ++k) {
        const auto [mean, deviation] = PlainColour::statistics(lab.plane(k), 0.0);
        EXPECT_NEAR(mean, op.styleMean()[static_cast<std::size_t>(k)], 0.005);
        EXPECT_NEAR(deviation, op.styleDeviation()[static_cast<std::size_t>(k)], 0.003);
    }
}

TEST(SimpleColorTransferOperator, ReportsItsStepsInTheStatedOrder) {
    const ProgressRange range(0, 100);
    const auto source = photoImage(90, 70, 5);
    const auto style = photoImage(40, 110, 6);
    SimpleColorTransferOperator op = transferOperator();
    reports().clear();
    progressWindow().callback = recordReport;

    op.setStyle(*style);
    EXPECT_EQ(reports(), (std::vector<int>{0, 0, 6, 13, 20}));
    reports().clear();
    op.apply(*source, nullptr);
    EXPECT_EQ(reports(), (std::vector<int>{20, 26, 33, 40, 40, 50, 60, 70, 70, 80, 90}));
}

TEST(SimpleColorTransferOperator, ReportsTheSameStepsOnASinglePixel) {
    const ProgressRange range(0, 100);
    const auto source = photoImage(1, 1, 5);
    SimpleColorTransferOperator op = transferOperator();
    reports().clear();
    progressWindow().callback = recordReport;

    op.setStyle(*source);
    op.apply(*source, nullptr);

    EXPECT_EQ(reports(),
              (std::vector<int>{0, 0, 6, 13, 20, 20, 26, 33, 40, 40, 50, 60, 70, 70, 80, 90}));
}

TEST(SimpleColorTransferOperator, ReturnsAboutTheImageWhenItIsItsOwnStyle) {
    const auto image = cropImage("astronaut");

    const auto result = recoloured(*image, *image);

    for (int x = 0; x < image->width(); ++x) {
        for (int y = 0; y < image->height(); ++y) {
            EXPECT_NEAR(result->red(x, y), image->red(x, y) + 1, 1);
            EXPECT_NEAR(result->green(x, y), image->green(x, y) + 1, 1);
            EXPECT_NEAR(result->blue(x, y), image->blue(x, y) + 1, 2);
        }
    }
}

TEST(Quirk, ColourOffsetStays) {
    // The dark step of a picture of two greys; blue also gains 0.0072 times the green.
    auto image = flatImage(8, 8, 100, 100, 100);
    image->setRgb(3, 3, 200, 200, 200);

    const auto result = recoloured(*image, *image);

    EXPECT_EQ(result->red(0, 0), 101);
    EXPECT_EQ(result->green(0, 0), 100);
    EXPECT_EQ(result->blue(0, 0), 101);
    EXPECT_EQ(result->red(3, 3), 201);
}

TEST(SimpleColorTransferOperator, TintsAGreyPicture) {
    auto source = std::make_unique<RgbDiscreteImage>(16, 16);
    for (int x = 0; x < 16; ++x) {
        for (int y = 0; y < 16; ++y) {
            source->setValue(x, y, 16 * x + y);
        }
    }
    const auto style = flatImage(9, 9, 200, 120, 40);
    style->setRgb(4, 4, 220, 140, 60);

    const auto result = recoloured(*source, *style);

    for (int x = 0; x < 16; ++x) {
        EXPECT_GT(result->red(x, 5), result->green(x, 5));
        EXPECT_GT(result->green(x, 5), result->blue(x, 5));
    }
}

TEST(SimpleColorTransferOperator, GivesAFlatPictureTheStylesMeanInEverySample) {
    SimpleColorTransferOperator op = transferOperator();
    op.setStyle(*photoImage(30, 30, 3));
    const PlainColour::Pixel mean =
        PlainColour::toRgb({op.styleMean()[0], op.styleMean()[1], op.styleMean()[2]});
    // For some of these colours rounding leaves a variance above 0.
    for (int v = 0; v < 256; v += 5) {
        const auto source = flatImage(7, 9, v, 255 - v, 90);

        const auto result = op.runPlanes(RealImage3(*source), nullptr);

        for (int c = 0; c < 3; ++c) {
            for (int x = 0; x < 7; ++x) {
                EXPECT_EQ(result->plane(c).row(x)[8],
                          PlainColour::limited(mean[static_cast<std::size_t>(c)]));
            }
        }
    }
}

TEST(SimpleColorTransferOperator, KeepsBlackAndWhitePicturesFinite) {
    const auto black = flatImage(5, 5, 0, 0, 0);
    const auto white = flatImage(5, 5, 255, 255, 255);

    EXPECT_EQ(recoloured(*black, *white)->red(2, 2), 255);
    EXPECT_EQ(recoloured(*white, *black)->red(2, 2), 1);
}

TEST(SimpleColorTransferOperator, LimitsWhatTheStylesDeviationStretchesToInfinity) {
    // One dot in 40000 equal pixels: the style's deviation moves it by 200 deviations.
    auto source = flatImage(200, 200, 100, 100, 100);
    source->setRgb(100, 100, 101, 100, 100);
    auto style = flatImage(30, 30, 255, 255, 255);
    for (int x = 0; x < 30; x += 2) {
        for (int y = 0; y < 30; ++y) {
            style->setRgb(x, y, 0, 0, 0);
        }
    }

    SimpleColorTransferOperator op = transferOperator();
    op.setStyle(*style);
    const auto result = op.runPlanes(RealImage3(*source), nullptr);

    for (int c = 0; c < 3; ++c) {
        for (std::size_t i = 0; i < result->plane(c).sampleCount(); ++i) {
            const double v = result->plane(c).data()[i];
            ASSERT_TRUE(v >= 0.0 && v <= 255.0) << v;
        }
    }
}

TEST(SimpleColorTransferOperator, LeavesOneChannelUnchanged) {
    SampleImage source(4, 3, /*channels=*/1);
    source.setSample(2, 1, 0, 77);
    SimpleColorTransferOperator op = transferOperator();
    op.setStyle(*photoImage(20, 20, 1));

    const auto made = op.apply(source, nullptr);
    auto target = std::make_unique<SampleImage>(4, 3, 1);
    const DiscreteImage* const given = target.get();
    const auto kept = op.apply(source, std::move(target));

    EXPECT_TRUE(sameSamples(*made, source));
    EXPECT_EQ(kept.get(), given);
    EXPECT_EQ(kept->value(2, 1), 0);
}

TEST(SimpleColorTransferOperator, RunsTheSameOnTheOtherPathAndWithinAMask) {
    const auto source = photoImage(21, 18, 9);
    SimpleColorTransferOperator op = transferOperator();
    op.setStyle(*photoImage(20, 25, 1));
    const auto expected = op.apply(*source, nullptr);
    const RgbDiscreteImage mask(21, 18);

    EXPECT_TRUE(sameSamples(*op.applyMasked(mask, *source, nullptr), *expected));
    op.setColorPath(1);
    EXPECT_TRUE(sameSamples(*op.apply(*source, nullptr), *expected));
    EXPECT_TRUE(sameSamples(*op.applyMasked(mask, *source, nullptr), *expected));
}

TEST(SimpleColorTransferOperator, WritesIntoATargetOfThePlanesSizeAlone) {
    const RealImage3 source = noiseRealPlanes(12, 10, 2);
    SimpleColorTransferOperator op = transferOperator();
    op.setStyle(*photoImage(20, 25, 1));
    const auto expected = op.runPlanes(source, nullptr);
    auto fitting = std::make_unique<RealImage3>(12, 10);
    const RealImage3* const given = fitting.get();

    fitting = op.runPlanes(source, std::move(fitting));
    const auto other = op.runPlanes(source, std::make_unique<RealImage3>(10, 12));

    EXPECT_EQ(fitting.get(), given);
    EXPECT_TRUE(sameBits(*fitting, *expected));
    EXPECT_TRUE(sameBits(*other, *expected));
}

TEST(SimpleColorTransferOperator, ReadsAStyleOfAnotherClassChannelByChannel) {
    const auto packed = photoImage(13, 17, 5);
    SampleImage style(13, 17, 3);
    for (int x = 0; x < 13; ++x) {
        for (int y = 0; y < 17; ++y) {
            style.setRgb(x, y, packed->red(x, y), packed->green(x, y), packed->blue(x, y));
        }
    }
    SimpleColorTransferOperator fromBytes = transferOperator();
    SimpleColorTransferOperator fromSamples = transferOperator();

    fromBytes.setStyle(*packed);
    fromSamples.setStyle(style);

    EXPECT_EQ(fromBytes.styleMean(), fromSamples.styleMean());
    EXPECT_EQ(fromBytes.styleDeviation(), fromSamples.styleDeviation());
}

TEST(SimpleColorTransferOperator, KeepsAnAccountOfItsWorkAndStopsWhenAsked) {
    class Stopper : public WorkObserver {
      public:
        bool onWork(double done) override {
            falls = falls || done < last;
            last = done;
            return ++count < 4;
        }
        double last = 0.0;
        bool falls = false;
        int count = 0;
    };
    const RealImage3 source = noiseRealPlanes(300, 400, 2);
    SimpleColorTransferOperator op = transferOperator();
    op.setStyle(*photoImage(20, 25, 1));
    Stopper stopper;
    const WorkObserverScope scope(&stopper);

    op.runPlanes(source, nullptr);

    EXPECT_EQ(stopper.count, 4);
    EXPECT_FALSE(stopper.falls);
    EXPECT_LT(stopper.last, 0.5);
}

}  // namespace
}  // namespace orv
