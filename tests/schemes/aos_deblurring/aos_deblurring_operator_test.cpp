#include "schemes/aos_deblurring/aos_deblurring_operator.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <memory>
#include <utility>

#include "base/cpu_features.h"
#include "base/rounding.h"
#include "images/rgb_discrete_image.h"
#include "support/matrix_support.h"
#include "support/plain_deblurring.h"
#include "support/plane_support.h"

namespace orv {
namespace {

using test::DeblurSettings;
using test::fileOutputOf;
using test::noisePlane;
using test::plainDeblurring;
using test::sameBits;

constexpr std::array<std::pair<int, int>, 9> kSizes = {
    {{6, 6}, {7, 6}, {6, 9}, {8, 8}, {17, 33}, {33, 17}, {70, 41}, {41, 150}, {130, 129}}};

AosDeblurringOperator operatorOf(const DeblurSettings& settings, double sigma = 1.0,
                                 double edgeContrast = 5.0, unsigned char eachStep = 1) {
    return AosDeblurringOperator(settings.iterations, settings.kernel, settings.tau,
                                 settings.lambda, sigma, edgeContrast,
                                 settings.keepObserved ? 1 : 0, eachStep);
}

std::unique_ptr<FloatImage> run(const DeblurSettings& settings, const FloatImage& source,
                                bool plain = false) {
    AosDeblurringOperator deblurring = operatorOf(settings);
    deblurring.setPlainPath(plain);
    return deblurring.apply(source, nullptr);
}

TEST(AosDeblurringOperator, EveryPathHasTheBitsOfThePlainFormulation) {
    for (const KernelTarget target :
         {KernelTarget::Generic, KernelTarget::Avx2, KernelTarget::Avx512}) {
        if (!isAvailable(target)) {
            continue;
        }
        limitKernelTarget(target);
        for (const auto& [width, height] : kSizes) {
            for (const int kernel : {2, 3, 5, 7}) {
                for (const int iterations : {1, 3}) {
                    SCOPED_TRACE(testing::Message() << nameOf(target) << ", " << width << " x "
                                                    << height << ", kernel " << kernel);
                    const DeblurSettings settings = {iterations, kernel, 0.15f, 3.0f, false};
                    const FloatImage source = noisePlane(width, height, 1);
                    const FloatImage expected = plainDeblurring(settings, source);

                    EXPECT_TRUE(sameBits(*run(settings, source), expected));
                    EXPECT_TRUE(sameBits(*run(settings, source, /*plain=*/true), expected));
                }
            }
        }
    }
    limitKernelTarget(KernelTarget::Avx512);
}

TEST(AosDeblurringOperator, KeptObservedDataPullTowardVLessTheSource) {
    DeblurSettings settings = {2, 3, 0.2f, 4.0f, true};
    const FloatImage source = noisePlane(20, 15, 2, 60.0, 180.0);

    const auto kept = run(settings, source);
    EXPECT_TRUE(sameBits(*kept, plainDeblurring(settings, source)));
    EXPECT_TRUE(sameBits(*kept, *run(settings, source, /*plain=*/true)));

    settings.keepObserved = false;
    EXPECT_FALSE(sameBits(*kept, *run(settings, source)));
}

TEST(AosDeblurringOperator, IterationsDifferThroughTheSmoothingOfVAlone) {
    const FloatImage source = noisePlane(20, 15, 3, 60.0, 180.0);
    DeblurSettings settings = {1, 3, 0.2f, 4.0f, false};
    const auto one = run(settings, source);
    settings.iterations = 3;
    const auto three = run(settings, source);
    settings.lambda = 0.0f;
    const auto threeWithout = run(settings, source);
    settings.iterations = 1;
    const auto oneWithout = run(settings, source);

    EXPECT_FALSE(sameBits(*one, *three));
    EXPECT_TRUE(sameBits(*oneWithout, *threeWithout));
}

TEST(AosDeblurringOperator, LambdaZeroMakesTheKernelMeaningless) {
    const FloatImage source = noisePlane(20, 15, 4);
    DeblurSettings settings = {1, 2, 0.2f, 0.0f, false};
    const auto expected = run(settings, source);

    for (const int kernel : {3, 5, 7}) {
        settings.kernel = kernel;
        EXPECT_TRUE(sameBits(*run(settings, source), *expected)) << kernel;
    }
}

TEST(AosDeblurringOperator, UnknownKernelsTakeThreeWeights) {
    const FloatImage source = noisePlane(12, 15, 4);
    const DeblurSettings three = {2, 3, 0.2f, 3.0f, false};
    for (const int kernel : {0, 1, 4, 6, -7}) {
        DeblurSettings settings = three;
        settings.kernel = kernel;
        EXPECT_TRUE(sameBits(*run(settings, source), *run(three, source))) << kernel;
    }
}

TEST(AosDeblurringOperator, SigmaEdgeContrastAndUpdatesHaveNoEffect) {
    const DeblurSettings settings = {2, 3, 0.2f, 3.0f, false};
    const FloatImage source = noisePlane(14, 11, 5);
    const auto expected = run(settings, source);

    for (const bool plain : {false, true}) {
        for (const unsigned char eachStep : {0, 1}) {
            AosDeblurringOperator other =
                operatorOf(settings, /*sigma=*/7.5, /*edgeContrast=*/0.01, eachStep);
            other.setPlainPath(plain);
            EXPECT_TRUE(sameBits(*other.apply(source, nullptr), *expected));
        }
    }
}

TEST(AosDeblurringOperator, EdgeContrastZeroGivesNoNumbers) {
    const DeblurSettings settings = {1, 3, 0.2f, 3.0f, false};
    const FloatImage source = noisePlane(8, 8, 5);

    const auto result =
        operatorOf(settings, /*sigma=*/1.0, /*edgeContrast=*/0.0).apply(source, nullptr);

    EXPECT_TRUE(std::isnan(result->row(4)[4]));
}

TEST(AosDeblurringOperator, TheResultIsClampedToTheRange) {
    const DeblurSettings settings = {1, 3, 0.2f, 50.0f, true};
    const FloatImage source = noisePlane(16, 16, 6);
    AosDeblurringOperator deblurring = operatorOf(settings);
    deblurring.setRange(100.0f, 120.0f);

    const auto result = deblurring.apply(source, nullptr);

    float lowest = 1000.0f;
    float highest = 0.0f;
    for (std::size_t i = 0; i < result->sampleCount(); ++i) {
        lowest = std::fmin(lowest, result->data()[i]);
        highest = std::fmax(highest, result->data()[i]);
    }
    EXPECT_EQ(lowest, 100.0f);
    EXPECT_EQ(highest, 120.0f);
}

TEST(AosDeblurringOperator, WhatATargetHoldsIsLostUnlessNothingRuns) {
    const FloatImage source = noisePlane(16, 10, 7);
    DeblurSettings settings = {1, 3, 0.2f, 3.0f, false};
    const auto expected = run(settings, source);

    const auto given =
        operatorOf(settings).apply(source, std::make_unique<FloatImage>(16, 10, 77.0f));
    settings.iterations = 0;
    const auto untouched =
        operatorOf(settings).apply(source, std::make_unique<FloatImage>(16, 10, 300.0f));
    const auto clone = operatorOf(settings).apply(source, nullptr);

    EXPECT_TRUE(sameBits(*given, *expected));
    EXPECT_EQ(untouched->row(3)[3], 255.0f);
    EXPECT_TRUE(sameBits(*clone, source));
    EXPECT_TRUE(operatorOf({1, 3, 0.2f, 1.0f, false}).dropsTarget());
    EXPECT_FALSE(operatorOf(settings).dropsTarget());
}

TEST(AosDeblurringOperator, EveryPathLeavesTheBlurAndFreesThePlanes) {
    const FloatImage source = noisePlane(9, 7, 5);
    for (const bool plain : {false, true}) {
        AosDeblurringOperator deblurring = operatorOf({2, 3, 0.2f, 3.0f, false}, /*sigma=*/3.0);
        deblurring.setPlainPath(plain);
        EXPECT_EQ(deblurring.blur(), nullptr);
        EXPECT_EQ(deblurring.width(), 256);

        deblurring.apply(source, nullptr);

        ASSERT_NE(deblurring.blur(), nullptr);
        EXPECT_EQ(deblurring.blur()->tau(), 4.5f);
        EXPECT_EQ(deblurring.blur()->iterations(), 1);
        EXPECT_EQ(deblurring.smoothed(), nullptr);
        EXPECT_EQ(deblurring.gradientPlane(), nullptr);
        EXPECT_EQ(deblurring.width(), 9);
        EXPECT_EQ(deblurring.height(), 7);

        AosDeblurringOperator idle = operatorOf({0, 3, 0.2f, 3.0f, false});
        idle.setPlainPath(plain);
        idle.apply(source, nullptr);
        EXPECT_EQ(idle.blur(), nullptr);
    }
}

/// A class that counts what a run asks of it and changes nothing.
class CountingOperator : public AosDeblurringOperator {
  public:
    using AosDeblurringOperator::AosDeblurringOperator;
    void prepare(const FloatImage& plane) override {
        ++prepared_;
        AosDeblurringOperator::prepare(plane);
    }
    void update(const FloatImage& plane) override {
        ++updated_;
        AosDeblurringOperator::update(plane);
    }
    float diffusivity(int x, int y) const override {
        ++asked_;
        return AosDeblurringOperator::diffusivity(x, y);
    }
    int prepared_ = 0;
    int updated_ = 0;
    mutable int asked_ = 0;
};

TEST(AosDeblurringOperator, ADerivedClassIsAskedForEverySampleOfEveryIteration) {
    const FloatImage source = noisePlane(9, 7, 5);
    for (const unsigned char eachStep : {0, 1}) {
        CountingOperator counting(3, 3, 0.2f, 3.0, 1.0, 5.0, 0, eachStep);

        const auto result = counting.apply(source, nullptr);

        EXPECT_TRUE(sameBits(*result, *run({3, 3, 0.2f, 3.0f, false}, source)));
        EXPECT_EQ(counting.prepared_, eachStep == 0 ? 1 : 3);
        EXPECT_EQ(counting.updated_, counting.prepared_);
        // Three of a sample, in both sweeps.
        EXPECT_EQ(counting.asked_, 3 * 3 * 2 * 9 * 7);
    }
}

/// A class with a gradient that doesn't vanish.
class SlopedOperator : public AosDeblurringOperator {
  public:
    using AosDeblurringOperator::AosDeblurringOperator;
    void update(const FloatImage& plane) override {
        ++updates_;
        gradientPlane_ = gradient_->apply(plane, std::move(gradientPlane_));
    }
    int updates_ = 0;
};

TEST(AosDeblurringOperator, ADerivedClassWithAGradientRunsOnItsDiffusivity) {
    const DeblurSettings settings = {2, 5, 0.4f, 1.5f, false};
    const FloatImage source = noisePlane(19, 12, 8);
    const auto squared = RealGradientOperator(3).apply(source, nullptr);
    const float weight = toFloat((1.0 / 20.0) * (1.0 / 20.0));
    const auto g = [&](int x, int y) { return 1.0f / (squared->row(x)[y] * weight + 1.0f); };
    SlopedOperator sloped(2, 5, 0.4f, 1.5, 1.0, 20.0, 0, 1);

    const auto result = sloped.apply(source, nullptr);

    EXPECT_TRUE(sameBits(*result, plainDeblurring(settings, source, g)));
    EXPECT_EQ(sloped.updates_, 2);
}

TEST(AosDeblurringOperator, TheGuideIsKeptAndNotRead) {
    const DeblurSettings settings = {1, 3, 0.2f, 3.0f, false};
    const FloatImage source = noisePlane(9, 9, 1);
    const FloatImage guide = noisePlane(9, 9, 2);
    AosDeblurringOperator guided = operatorOf(settings);
    EXPECT_EQ(guided.guide(), nullptr);

    guided.setGuide(guide);

    EXPECT_EQ(guided.guide(), &guide);
    EXPECT_TRUE(sameBits(*guided.apply(source, nullptr), *run(settings, source)));
}

TEST(AosDeblurringOperator, MaskedRunsGiveTheTargetOrAClone) {
    const FloatImage source = noisePlane(8, 8, 5);
    const RgbDiscreteImage mask(8, 8);
    AosDeblurringOperator deblurring = operatorOf({1, 3, 0.2f, 3.0f, false});

    EXPECT_TRUE(sameBits(*deblurring.applyMasked(mask, source, nullptr), source));
}

TEST(AosDeblurringOperator, PrintsItsName) {
    AosDeblurringOperator deblurring = operatorOf({1, 3, 0.2f, 3.0f, false});

    EXPECT_EQ(fileOutputOf([&](std::FILE* file) { deblurring.printName(file); }),
              "Real Aos Deblurring/Denoising Operator\n");
    EXPECT_EQ(fileOutputOf(
                  [&](std::FILE* file) { deblurring.RegularizedAosOperator::printName(file); }),
              "Real Regularized Aos Operator\n");
    EXPECT_EQ(deblurring.contrast(), 1.0f);
    EXPECT_EQ(deblurring.inverseContrastSquared(), 0.04f);
}

TEST(AosDeblurringOperator, SharpensWhatItsKernelBlurred) {
    FloatImage sharp(40, 40, 60.0f);
    for (int x = 12; x < 28; ++x) {
        for (int y = 12; y < 28; ++y) {
            sharp.row(x)[y] = 180.0f;
        }
    }
    FloatImage blurred(sharp);
    test::plainSmooth(blurred, 7);
    const auto distance = [&](const FloatImage& plane) {
        double sum = 0.0;
        for (int x = 8; x < 32; ++x) {
            for (int y = 8; y < 32; ++y) {
                const double d = plane.row(x)[y] - sharp.row(x)[y];
                sum += d * d;
            }
        }
        return sum;
    };

    const auto result = run({1, 7, 0.02f, 60.0f, true}, blurred);

    EXPECT_LT(distance(*result), 0.8 * distance(blurred));
}

}  // namespace
}  // namespace orv
