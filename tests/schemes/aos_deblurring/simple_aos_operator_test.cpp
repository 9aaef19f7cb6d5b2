#include "schemes/aos_deblurring/simple_aos_operator.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "images/rgb_discrete_image.h"
#include "schemes/aos_deblurring/aos_line.h"
#include "support/matrix_support.h"
#include "support/plain_deblurring.h"
#include "support/plane_support.h"

namespace orv {
namespace {

using test::fileOutputOf;
using test::noisePlane;
using test::sameBits;

/// The abstract root with a diffusivity of its own.
class SteadyAosOperator : public SimpleAosOperator {
  public:
    SteadyAosOperator(int iterations, double tau, double sigma, unsigned char updateEachStep)
        : SimpleAosOperator(iterations, tau, /*contrast=*/3.0, sigma, /*reservedFlag=*/1,
                            updateEachStep) {
        gradient_ = std::make_unique<RealGradientOperator>(3);
    }
    float diffusivity(int x, int y) const override { return valueAt(x, y); }
    void prepare(const FloatImage& plane) override {
        ++prepared_;
        SimpleAosOperator::prepare(plane);
        for (std::size_t i = 0; i < smoothed_->sampleCount(); ++i) {
            stayedZero_ = stayedZero_ && smoothed_->data()[i] == 0.0f &&
                          gradientPlane_->data()[i] == 0.0f;
        }
    }
    static float valueAt(int x, int y) {
        return static_cast<float>((x * 7 + y * 5) % 11 - 3) * 0.125f;
    }
    int prepared_ = 0;
    bool stayedZero_ = true;
};

FloatImage expectedOf(const FloatImage& source, float tau) {
    FloatImage target(source);
    test::plainAosSweeps(
        tau, SteadyAosOperator::valueAt, [&](int x, int y) { return source.row(x)[y]; },
        target);
    return target;
}

TEST(SimpleAosOperator, SumsTheSolutionsOfRowsAndColumns) {
    for (const int width : {6, 7, 8, 13}) {
        for (const int height : {6, 7, 11}) {
            SCOPED_TRACE(testing::Message() << width << " x " << height);
            // Far from 0 to 255: this class doesn't clamp.
            const FloatImage source = noisePlane(width, height, 1, -300.0, 900.0);
            SteadyAosOperator aos(1, 0.3, 1.0, 1);

            const auto result = aos.apply(source, nullptr);

            EXPECT_TRUE(sameBits(*result, expectedOf(source, 0.3f)));
            EXPECT_EQ(aos.width(), width);
            EXPECT_EQ(aos.height(), height);
        }
    }
}

TEST(SimpleAosOperator, ManyIterationsGiveTheResultOfOne) {
    const FloatImage source = noisePlane(9, 8, 2);

    const auto one = SteadyAosOperator(1, 0.5, 1.0, 1).apply(source, nullptr);
    const auto three = SteadyAosOperator(3, 0.5, 1.0, 1).apply(source, nullptr);

    EXPECT_TRUE(sameBits(*one, *three));
}

TEST(SimpleAosOperator, NoIterationsGiveTheTargetOrAClone) {
    const FloatImage source = noisePlane(8, 8, 3);
    SteadyAosOperator aos(0, 0.5, 1.0, 1);

    const auto clone = aos.apply(source, nullptr);
    const auto given = aos.apply(source, std::make_unique<FloatImage>(8, 8, 7.0f));

    EXPECT_TRUE(sameBits(*clone, source));
    EXPECT_EQ(given->row(3)[3], 7.0f);
}

TEST(SimpleAosOperator, PreparesOncePerRunOrOncePerIteration) {
    const FloatImage source = noisePlane(8, 8, 4);
    SteadyAosOperator once(3, 0.5, 2.0, 0);
    SteadyAosOperator each(3, 0.5, 2.0, 1);

    once.apply(source, nullptr);
    each.apply(source, nullptr);

    EXPECT_EQ(once.prepared_, 1);
    EXPECT_EQ(each.prepared_, 3);
    EXPECT_TRUE(once.stayedZero_ && each.stayedZero_);
    EXPECT_EQ(each.smoothed(), nullptr);
    EXPECT_EQ(each.gradientPlane(), nullptr);
    ASSERT_NE(each.blur(), nullptr);
    EXPECT_EQ(each.blur()->tau(), 2.0f);
    EXPECT_EQ(each.blur()->iterations(), 1);
}

TEST(SimpleAosOperator, NeighboursOfTheDiffusivityAreAlongY) {
    const SteadyAosOperator aos(1, 0.5, 1.0, 1);

    EXPECT_EQ(aos.diffusivityBelow(3, 4), aos.diffusivity(3, 3));
    EXPECT_EQ(aos.diffusivityAbove(3, 4), aos.diffusivity(3, 5));
    EXPECT_EQ(aos.contrastSquared(), 9.0f);
}

TEST(SimpleAosOperator, MaskedRunsGiveTheTargetOrAClone) {
    const FloatImage source = noisePlane(8, 8, 5);
    const RgbDiscreteImage mask(8, 8);
    SteadyAosOperator aos(1, 0.5, 1.0, 1);

    const auto clone = aos.applyMasked(mask, source, nullptr);
    const auto given = aos.applyMasked(mask, source, std::make_unique<FloatImage>(8, 8, 7.0f));

    EXPECT_TRUE(sameBits(*clone, source));
    EXPECT_EQ(given->row(3)[3], 7.0f);
}

TEST(SimpleAosOperator, PrintsItsName) {
    const SteadyAosOperator aos(1, 0.5, 1.0, 1);

    EXPECT_EQ(fileOutputOf([&](std::FILE* file) { aos.printName(file); }),
              "Real Simple Aos Operator\n");
}

/// The solution of a line whose diffusivity is 1 and whose right side is its position.
ThomasLinearSystem& solveRamp(ThomasLinearSystem& system, int n) {
    AosLineVectors vectors(n);
    solveAosLine(
        system, vectors, n, /*s=*/4.0f, /*dimensions=*/2, [](int) { return 1.0f; },
        [](int j) { return static_cast<float>(j); });
    return system;
}

TEST(Quirk, AosMirroredEnds) {
    ThomasLinearSystem system(9);
    solveRamp(system, 9);

    const std::vector<float> expected = {4, 3, 2, 3, 4, 5, 6, 6, 5};
    EXPECT_EQ(test::elementsOf(system.b()), expected);
}

TEST(Quirk, AosLastSuper) {
    ThomasLinearSystem system(7);
    solveRamp(system, 7);

    const std::vector<float> super = {-4, -4, -4, -4, -4, 0};
    const std::vector<float> diag = {6, 10, 10, 10, 10, 10, 6};
    const std::vector<float> sub = {-4, -4, -4, -4, -4, -4};
    EXPECT_EQ(test::elementsOf(system.matrix().upper()), super);
    EXPECT_EQ(test::elementsOf(system.matrix().main()), diag);
    EXPECT_EQ(test::elementsOf(system.matrix().lower()), sub);
}

TEST(AosLine, ProgressIsTruncatedAndDoesNotOverflow) {
    EXPECT_EQ(aosProgressPart(90, 1, 7), 12);
    EXPECT_EQ(aosProgressPart(45, 2, 7, 5, 11), 5);
    EXPECT_EQ(aosProgressPart(45, 9999, 10000, 29999, 30000), 44);
}

TEST(AosLine, MinmodIsTheSmallerOfEqualSigns) {
    EXPECT_EQ(aosMinmod(2.0f, 3.0f), 2.0f);
    EXPECT_EQ(aosMinmod(-2.0f, -3.0f), -2.0f);
    EXPECT_EQ(aosMinmod(-2.0f, 3.0f), 0.0f);
    EXPECT_EQ(aosMinmod(0.0f, 3.0f), 0.0f);
}

}  // namespace
}  // namespace orv
