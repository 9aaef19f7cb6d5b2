#include "schemes/aos_deblurring/real_gradient_operator.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "images/rgb_discrete_image.h"
#include "support/matrix_support.h"
#include "support/plane_support.h"

namespace orv {
namespace {

using test::fileOutputOf;
using test::noisePlane;
using test::sameBits;

float expectedAt(int kind, const FloatImage& u, int x, int y) {
    const float dx = u.row(x + 1)[y] - u.row(x - 1)[y];
    const float dy = u.row(x)[y + 1] - u.row(x)[y - 1];
    switch (kind) {
        case 0:
            return dx * 0.5f;
        case 1:
            return dy * 0.5f;
        case 2:
            return std::sqrt(dx * dx + dy * dy) * 0.5f;
        default:
            return (dx * dx + dy * dy) * 0.25f;
    }
}

bool onBorder(const FloatImage& plane, int x, int y) {
    return x == 0 || y == 0 || x == plane.width() - 1 || y == plane.height() - 1;
}

TEST(RealGradientOperator, EachKindHasItsTermInsideAndZeroOnTheBorder) {
    for (int kind = 0; kind < 4; ++kind) {
        for (const int width : {3, 4, 9}) {
            SCOPED_TRACE(testing::Message() << kind << ", width " << width);
            const FloatImage source = noisePlane(width, 7, 1);
            RealGradientOperator gradient(kind);

            const auto result =
                gradient.apply(source, std::make_unique<FloatImage>(width, 7, 9.0f));

            for (int x = 0; x < width; ++x) {
                for (int y = 0; y < 7; ++y) {
                    EXPECT_EQ(result->row(x)[y],
                              onBorder(source, x, y) ? 0.0f : expectedAt(kind, source, x, y));
                }
            }
        }
    }
}

TEST(RealGradientOperator, AnotherKindWritesTheBorderAlone) {
    for (const int kind : {-1, 4}) {
        const FloatImage source = noisePlane(5, 6, 2);
        RealGradientOperator gradient(kind);

        const auto result = gradient.apply(source, std::make_unique<FloatImage>(5, 6, 9.0f));

        for (int x = 0; x < 5; ++x) {
            for (int y = 0; y < 6; ++y) {
                EXPECT_EQ(result->row(x)[y], onBorder(source, x, y) ? 0.0f : 9.0f);
            }
        }
    }
}

TEST(RealGradientOperator, ANullTargetBecomesANewPlane) {
    const FloatImage source = noisePlane(6, 5, 3);
    RealGradientOperator gradient(3);

    const auto made = gradient.apply(source, nullptr);
    const auto given = gradient.apply(source, std::make_unique<FloatImage>(6, 5, 1.0f));

    EXPECT_TRUE(sameBits(*made, *given));
}

TEST(RealGradientOperator, PlanesWithoutInteriorBecomeZero) {
    for (const int width : {1, 2}) {
        const FloatImage source = noisePlane(width, 3, 4);

        const auto result = RealGradientOperator(2).apply(source, nullptr);

        for (std::size_t i = 0; i < result->sampleCount(); ++i) {
            EXPECT_EQ(result->data()[i], 0.0f);
        }
    }
}

TEST(Quirk, GradientMaskedLaplacian) {
    for (int kind = 0; kind < 5; ++kind) {
        const FloatImage source = noisePlane(7, 6, 5);
        RgbDiscreteImage mask(7, 6);
        mask.setValue(2, 3, 1);
        mask.setValue(4, 1, 1);
        mask.setValue(0, 2, 1);  // on the border: never in a region
        RealGradientOperator gradient(kind);

        const auto result =
            gradient.applyMasked(mask, source, std::make_unique<FloatImage>(7, 6, -5.0f));

        for (int x = 0; x < 7; ++x) {
            for (int y = 0; y < 6; ++y) {
                const bool selected = (x == 2 && y == 3) || (x == 4 && y == 1);
                const float expected = selected
                                           ? source.row(x + 1)[y] + source.row(x)[y + 1] +
                                                 source.row(x)[y - 1] + source.row(x - 1)[y] -
                                                 4.0f * source.row(x)[y]
                                           : -5.0f;
                EXPECT_EQ(result->row(x)[y], expected);
            }
        }
        EXPECT_EQ(gradient.regionCount(), 0);
    }
}

TEST(RealGradientOperator, PrintsItsName) {
    EXPECT_EQ(fileOutputOf([](std::FILE* file) { RealGradientOperator(3).printName(file); }),
              "Real Gradient Operator\n");
}

}  // namespace
}  // namespace orv
