#include "operators/float_plane_image_operator.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

#include "images/rgb_discrete_image.h"
#include "operators/color_space_transform.h"
#include "support/photo_bytes.h"
#include "support/sample_image.h"

namespace orv {
namespace {

using test::photoImage;
using test::sameSamples;
using test::SampleImage;

// Only the defaults of the branch.
class PlainOperator : public FloatPlaneImageOperator {};

// Writes down which operation ran; each fills its planes with a number of its own.
class RecordingOperator : public FloatPlaneImageOperator {
  public:
    std::unique_ptr<DiscreteImage> runGrey(const DiscreteImage& source,
                                           std::unique_ptr<DiscreteImage> target) override {
        log += "grey ";
        return FloatPlaneImageOperator::runGrey(source, std::move(target));
    }
    std::unique_ptr<DiscreteImage> runGreyMasked(
        const DiscreteImage& mask, const DiscreteImage& source,
        std::unique_ptr<DiscreteImage> target) override {
        log += "greyMasked ";
        return FloatPlaneImageOperator::runGreyMasked(mask, source, std::move(target));
    }
    std::unique_ptr<FloatImage3> runPlanes(const FloatImage3& planes,
                                           std::unique_ptr<FloatImage3> target) override {
        return filled("planes ", planes, std::move(target), 10.0f);
    }
    std::unique_ptr<FloatImage3> runPlanesMasked(const DiscreteImage&,
                                                 const FloatImage3& planes,
                                                 std::unique_ptr<FloatImage3> target) override {
        return filled("planesMasked ", planes, std::move(target), 20.0f);
    }
    std::unique_ptr<FloatImage3> runPlanesAlt(const FloatImage3& planes,
                                              std::unique_ptr<FloatImage3> target) override {
        return filled("alt ", planes, std::move(target), 30.0f);
    }
    std::unique_ptr<FloatImage3> runPlanesAltMasked(
        const DiscreteImage&, const FloatImage3& planes,
        std::unique_ptr<FloatImage3> target) override {
        return filled("altMasked ", planes, std::move(target), 40.0f);
    }
    std::string log;

  private:
    std::unique_ptr<FloatImage3> filled(const char* name, const FloatImage3& planes,
                                        std::unique_ptr<FloatImage3> target, float value) {
        log += name;
        EXPECT_EQ(target, nullptr);
        auto result = planes.clone();
        for (int c = 0; c < 3; ++c) {
            result->plane(c).fill(value + static_cast<float>(c));
        }
        return result;
    }
};

class NullOperator : public FloatPlaneImageOperator {
  public:
    std::unique_ptr<FloatImage3> runPlanes(const FloatImage3&,
                                           std::unique_ptr<FloatImage3>) override {
        return nullptr;
    }
};

// Doubles its planes, so that entering its colour space would show.
class DoublingTransform : public ColorSpaceTransform {
  public:
    std::unique_ptr<RealImage3> forward(const RealImage3& planes,
                                        std::unique_ptr<RealImage3>) const override {
        auto result = planes.clone();
        result->scaleAll(2.0);
        return result;
    }
    std::unique_ptr<RealImage3> inverse(const RealImage3& planes,
                                        std::unique_ptr<RealImage3>) const override {
        return planes.clone();
    }
};

TEST(FloatPlaneImageOperator, StartsWithItsDocumentedValues) {
    const PlainOperator op;

    EXPECT_EQ(op.colorPath(), 0);
    EXPECT_EQ(op.channelMode(), 1);
    EXPECT_EQ(op.lower(), 0.0f);
    EXPECT_EQ(op.upper(), 255.0f);
}

TEST(FloatPlaneImageOperator, ChannelModeIsReadBack) {
    PlainOperator op;

    op.setChannelMode(4);

    EXPECT_EQ(op.channelMode(), 4);
}

TEST(FloatPlaneImageOperator, NullTargetGivesANewImageWithTheSourcePixels) {
    PlainOperator op;
    const auto source = photoImage(5, 3, /*seed=*/1);

    const auto result = op.apply(*source, nullptr);

    ASSERT_NE(result, nullptr);
    EXPECT_NE(result.get(), source.get());
    EXPECT_TRUE(sameSamples(*result, *source));
}

TEST(FloatPlaneImageOperator, GivenTargetIsWrittenAndGivenBack) {
    PlainOperator op;
    const auto source = photoImage(5, 3, /*seed=*/1);
    std::unique_ptr<DiscreteImage> target = std::make_unique<RgbDiscreteImage>(5, 3);
    const DiscreteImage* const given = target.get();

    target = op.apply(*source, std::move(target));

    EXPECT_EQ(target.get(), given);
    EXPECT_TRUE(sameSamples(*target, *source));
}

TEST(FloatPlaneImageOperator, ColourPathAndMaskChooseTheRunOperation) {
    const auto source = photoImage(3, 2, /*seed=*/2);
    const SampleImage mask(3, 2, 1);
    const struct {
        unsigned char path;
        bool masked;
        const char* log;
        int red;
    } cases[] = {{0, false, "planes ", 10},
                 {0, true, "planesMasked ", 20},
                 {1, false, "alt ", 30},
                 {1, true, "altMasked ", 40}};
    for (const auto& c : cases) {
        RecordingOperator op;
        op.setColorPath(c.path);

        const auto result =
            c.masked ? op.applyMasked(mask, *source, nullptr) : op.apply(*source, nullptr);

        EXPECT_EQ(op.log, c.log);
        EXPECT_EQ(result->red(2, 1), c.red);
        EXPECT_EQ(result->blue(2, 1), c.red + 2);
    }
}

TEST(FloatPlaneImageOperator, OtherColourPathLeavesTheImageUnprocessed) {
    RecordingOperator op;
    op.setColorPath(2);
    const auto source = photoImage(3, 2, /*seed=*/2);
    const SampleImage mask(3, 2, 1);
    const DoublingTransform transform;

    EXPECT_TRUE(sameSamples(*op.apply(*source, nullptr), *source));
    EXPECT_TRUE(sameSamples(*op.applyMasked(mask, *source, nullptr), *source));
    EXPECT_TRUE(sameSamples(*op.applyWithTransform(&transform, *source, nullptr), *source));
    EXPECT_EQ(op.log, "");
}

TEST(FloatPlaneImageOperator, OneChannelGoesToTheGreyRun) {
    RecordingOperator op;
    const SampleImage source(3, 2, 1);
    const SampleImage mask(3, 2, 1);
    const DoublingTransform transform;

    op.apply(source, nullptr);
    op.applyMasked(mask, source, nullptr);
    op.applyWithTransform(&transform, source, nullptr);
    op.applyMaskedWithTransform(&transform, mask, source, nullptr);

    EXPECT_EQ(op.log, "grey greyMasked grey grey greyMasked grey ");
}

TEST(FloatPlaneImageOperator, OtherChannelCountsGiveTheTargetUntouched) {
    RecordingOperator op;
    const SampleImage source(3, 2, 2);

    const auto result = op.apply(source, nullptr);

    EXPECT_EQ(op.log, "");
    EXPECT_TRUE(sameSamples(*result, source));
}

TEST(FloatPlaneImageOperator, TakesRangeAndDepthFromTheSource) {
    PlainOperator op;
    SampleImage source(3, 2, 3, /*depthClass=*/2);
    source.lowest = -7;
    source.highest = 65535;

    op.apply(source, nullptr);

    EXPECT_EQ(op.lower(), -7.0f);
    EXPECT_EQ(op.upper(), 65535.0f);
    EXPECT_EQ(op.bits(), 16);
}

TEST(FloatPlaneImageOperator, EightBitSourceLeavesTheBitsAlone) {
    PlainOperator op;
    const SampleImage source(3, 2, 3);
    op.setBits(12);

    op.apply(source, nullptr);

    EXPECT_EQ(op.bits(), 12);
}

TEST(FloatPlaneImageOperator, NullRunGivesNull) {
    NullOperator op;
    const auto source = photoImage(3, 2, /*seed=*/2);

    EXPECT_EQ(op.apply(*source, nullptr), nullptr);
}

TEST(FloatPlaneImageOperator, MaskedTransformRunsTheMaskedForms) {
    const auto source = photoImage(3, 2, /*seed=*/3);
    const SampleImage mask(3, 2, 1);
    const DoublingTransform transform;
    for (const ColorSpaceTransform* given :
         {static_cast<const ColorSpaceTransform*>(nullptr),
          static_cast<const ColorSpaceTransform*>(&transform)}) {
        RecordingOperator op;

        op.applyMaskedWithTransform(given, mask, *source, nullptr);

        EXPECT_EQ(op.log, "planesMasked ");
    }
}

TEST(FloatPlaneImageOperator, MaskedDefaultsDropTheMask) {
    PlainOperator op;
    const auto source = photoImage(3, 2, /*seed=*/3);
    const FloatImage3 planes(*source);
    const SampleImage mask(3, 2, 1);

    EXPECT_TRUE(sameSamples(*op.runGreyMasked(mask, *source, nullptr), *source));
    EXPECT_EQ(op.runPlanesMasked(mask, planes, nullptr)->plane(1).row(2)[1],
              planes.plane(1).row(2)[1]);
    EXPECT_EQ(op.runPlanesAltMasked(mask, planes, nullptr)->plane(1).row(2)[1],
              planes.plane(1).row(2)[1]);
}

TEST(FloatPlaneImageOperator, DefaultRunLeavesATargetOfEqualSizeAlone) {
    PlainOperator op;
    const auto source = photoImage(3, 2, /*seed=*/3);
    const FloatImage3 planes(*source);

    const auto same = op.runPlanes(planes, std::make_unique<FloatImage3>(3, 2));
    const auto sameAlt = op.runPlanesAlt(planes, std::make_unique<FloatImage3>(3, 2));
    const auto other = op.runPlanes(planes, std::make_unique<FloatImage3>(1, 1));

    EXPECT_EQ(same->plane(0).row(0)[0], 0.0f);
    EXPECT_EQ(sameAlt->plane(0).row(0)[0], 0.0f);
    EXPECT_EQ(other->width(), 3);
    EXPECT_EQ(other->plane(0).row(0)[0], planes.plane(0).row(0)[0]);
}

TEST(Quirk, FloatTransform) {
    RecordingOperator with;
    RecordingOperator without;
    const auto source = photoImage(4, 3, /*seed=*/4);
    const DoublingTransform transform;

    const auto a = with.applyWithTransform(&transform, *source, nullptr);
    const auto b = without.apply(*source, nullptr);
    const auto c = without.applyWithTransform(nullptr, *source, nullptr);

    EXPECT_EQ(with.log, "planes ");
    EXPECT_TRUE(sameSamples(*a, *b));
    EXPECT_TRUE(sameSamples(*c, *b));
}

}  // namespace
}  // namespace orv
