#include "operators/real_plane_image_operator.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

#include "images/real_image3.h"
#include "images/rgb_discrete_image.h"
#include "operators/color_space_transform.h"
#include "support/photo_bytes.h"
#include "support/sample_image.h"

namespace orv {
namespace {

using test::photoImage;
using test::sameSamples;
using test::SampleImage;

class PlainOperator : public RealPlaneImageOperator {};

// Writes down which operation ran and with what; each adds a number of its own to the planes.
class RecordingOperator : public RealPlaneImageOperator {
  public:
    std::unique_ptr<DiscreteImage> runGrey(const DiscreteImage& source,
                                           std::unique_ptr<DiscreteImage> target) override {
        log += "grey ";
        return RealPlaneImageOperator::runGrey(source, std::move(target));
    }
    std::unique_ptr<DiscreteImage> runGreyMasked(
        const DiscreteImage& mask, const DiscreteImage& source,
        std::unique_ptr<DiscreteImage> target) override {
        log += "greyMasked ";
        return RealPlaneImageOperator::runGreyMasked(mask, source, std::move(target));
    }
    std::unique_ptr<RealImage3> runPlanes(const RealImage3& planes,
                                          std::unique_ptr<RealImage3> target) override {
        return raised("planes ", planes, std::move(target), 1.0);
    }
    std::unique_ptr<RealImage3> runPlanesMasked(const DiscreteImage&, const RealImage3& planes,
                                                std::unique_ptr<RealImage3> target) override {
        return raised("planesMasked ", planes, std::move(target), 2.0);
    }
    std::unique_ptr<RealImage3> runPlanesAlt(const RealImage3& planes,
                                             std::unique_ptr<RealImage3> target) override {
        return raised("alt ", planes, std::move(target), 3.0);
    }
    std::unique_ptr<RealImage3> runPlanesAltMasked(
        const DiscreteImage&, const RealImage3& planes,
        std::unique_ptr<RealImage3> target) override {
        return raised("altMasked ", planes, std::move(target), 4.0);
    }
    std::string log;
    double targetSample = -1.0;

  private:
    std::unique_ptr<RealImage3> raised(const char* name, const RealImage3& planes,
                                       std::unique_ptr<RealImage3> target, double value) {
        log += name;
        targetSample = target != nullptr ? target->plane(0).row(0)[0] : -1.0;
        auto result = planes.clone();
        result->addAll(value);
        return result;
    }
};

// forward doubles, inverse halves; both note the target that they are handed.
class DoublingTransform : public ColorSpaceTransform {
  public:
    std::unique_ptr<RealImage3> forward(const RealImage3& planes,
                                        std::unique_ptr<RealImage3> target) const override {
        EXPECT_EQ(target, nullptr);
        auto result = planes.clone();
        result->scaleAll(2.0);
        return result;
    }
    std::unique_ptr<RealImage3> inverse(const RealImage3& planes,
                                        std::unique_ptr<RealImage3> target) const override {
        inverseTarget = target != nullptr ? target->plane(0).row(0)[0] : -1.0;
        target->assign(planes);
        target->scaleAll(0.5);
        return target;
    }
    mutable double inverseTarget = -1.0;
};

class NullTransform : public ColorSpaceTransform {
  public:
    std::unique_ptr<RealImage3> forward(const RealImage3&,
                                        std::unique_ptr<RealImage3>) const override {
        return nullptr;
    }
    std::unique_ptr<RealImage3> inverse(const RealImage3&,
                                        std::unique_ptr<RealImage3>) const override {
        return nullptr;
    }
};

std::unique_ptr<RgbDiscreteImage> flatImage(int value) {
    auto image = std::make_unique<RgbDiscreteImage>(3, 2);
    image->fill(value);
    return image;
}

TEST(RealPlaneImageOperator, StartsWithItsDocumentedValues) {
    PlainOperator op;

    EXPECT_EQ(op.colorPath(), 0);
    EXPECT_EQ(op.channelMode(), 1);
    op.setChannelMode(6);
    EXPECT_EQ(op.channelMode(), 6);
}

TEST(RealPlaneImageOperator, NullTargetGivesANewImageWithTheSourcePixels) {
    PlainOperator op;
    const auto source = photoImage(5, 3, /*seed=*/1);

    const auto result = op.apply(*source, nullptr);

    EXPECT_NE(result.get(), source.get());
    EXPECT_TRUE(sameSamples(*result, *source));
}

TEST(RealPlaneImageOperator, DefaultRunsCopyIntoATargetOfEqualSize) {
    PlainOperator op;
    const auto source = photoImage(3, 2, /*seed=*/1);
    const RealImage3 planes(*source);
    const SampleImage mask(3, 2, 1);

    const auto a = op.runPlanesMasked(mask, planes, std::make_unique<RealImage3>(3, 2));
    const auto b = op.runPlanesAltMasked(mask, planes, std::make_unique<RealImage3>(3, 2));

    EXPECT_EQ(a->plane(2).row(2)[1], planes.plane(2).row(2)[1]);
    EXPECT_EQ(b->plane(2).row(2)[1], planes.plane(2).row(2)[1]);
}

TEST(RealPlaneImageOperator, NeitherReadsTheRangeNorRaisesTheBits) {
    PlainOperator op;
    const SampleImage source(3, 2, 3, /*depthClass=*/2);

    op.apply(source, nullptr);

    EXPECT_EQ(op.bits(), 8);
}

TEST(RealPlaneImageOperator, ColourPathAndMaskChooseTheRunOperation) {
    const auto source = flatImage(100);
    const SampleImage mask(3, 2, 1);
    const struct {
        unsigned char path;
        bool masked;
        const char* log;
        int red;
    } cases[] = {{0, false, "planes ", 101},
                 {0, true, "planesMasked ", 102},
                 {1, false, "alt ", 103},
                 {1, true, "altMasked ", 104}};
    for (const auto& c : cases) {
        RecordingOperator op;
        op.setColorPath(c.path);

        const auto result =
            c.masked ? op.applyMasked(mask, *source, nullptr) : op.apply(*source, nullptr);

        EXPECT_EQ(op.log, c.log);
        EXPECT_EQ(op.targetSample, -1.0);
        EXPECT_EQ(result->red(2, 1), c.red);
    }
}

TEST(RealPlaneImageOperator, TransformSurroundsTheRunAndPlanesAreReused) {
    const SampleImage mask(3, 2, 1);
    const struct {
        unsigned char path;
        bool masked;
        const char* log;
        int red;
    } cases[] = {{0, false, "planes ", 50},       // (2 x 50 + 1) / 2, truncated
                 {0, true, "planesMasked ", 51},  // (2 x 50 + 2) / 2
                 {1, false, "alt ", 51},          // (2 x 50 + 3) / 2, truncated
                 {1, true, "altMasked ", 52}};    // (2 x 50 + 4) / 2
    for (const auto& c : cases) {
        RecordingOperator op;
        op.setColorPath(c.path);
        const auto source = flatImage(50);
        const DoublingTransform transform;

        const auto result =
            c.masked ? op.applyMaskedWithTransform(&transform, mask, *source, nullptr)
                     : op.applyWithTransform(&transform, *source, nullptr);

        EXPECT_EQ(op.log, c.log);
        EXPECT_EQ(op.targetSample, 50.0);           // the source planes
        EXPECT_EQ(transform.inverseTarget, 100.0);  // the transformed planes
        EXPECT_EQ(result->green(0, 1), c.red);
    }
}

TEST(RealPlaneImageOperator, NullTransformIsApply) {
    RecordingOperator op;
    const auto source = flatImage(50);
    const SampleImage mask(3, 2, 1);

    const auto plain = op.applyWithTransform(nullptr, *source, nullptr);
    const auto masked = op.applyMaskedWithTransform(nullptr, mask, *source, nullptr);

    EXPECT_EQ(op.log, "planes planesMasked ");
    EXPECT_EQ(plain->red(0, 0), 51);
    EXPECT_EQ(masked->red(0, 0), 52);
}

TEST(RealPlaneImageOperator, TransformThatFailsGivesNull) {
    PlainOperator op;
    const auto source = flatImage(50);
    const NullTransform transform;

    EXPECT_EQ(op.applyWithTransform(&transform, *source, nullptr), nullptr);
}

TEST(RealPlaneImageOperator, OtherColourPathLeavesTheImageUnprocessed) {
    RecordingOperator op;
    op.setColorPath(2);
    const auto source = flatImage(50);
    const DoublingTransform transform;

    EXPECT_TRUE(sameSamples(*op.apply(*source, nullptr), *source));
    EXPECT_TRUE(sameSamples(*op.applyWithTransform(&transform, *source, nullptr), *source));
    EXPECT_EQ(op.log, "");
}

TEST(RealPlaneImageOperator, OneChannelGoesToTheGreyRunWithoutTransform) {
    RecordingOperator op;
    const SampleImage source(3, 2, 1);
    const SampleImage mask(3, 2, 1);
    const DoublingTransform transform;

    op.apply(source, nullptr);
    op.applyWithTransform(&transform, source, nullptr);
    op.applyMaskedWithTransform(&transform, mask, source, nullptr);

    EXPECT_EQ(op.log, "grey grey greyMasked grey ");
    EXPECT_EQ(transform.inverseTarget, -1.0);
}

TEST(RealPlaneImageOperator, OtherChannelCountsGiveTheTargetUntouched) {
    RecordingOperator op;
    const SampleImage source(3, 2, 4);

    op.apply(source, nullptr);

    EXPECT_EQ(op.log, "");
}

TEST(ColorSpaceTransform, HookDoesNothing) {
    DoublingTransform transform;

    transform.hook();

    EXPECT_EQ(transform.inverseTarget, -1.0);
}

}  // namespace
}  // namespace orv
