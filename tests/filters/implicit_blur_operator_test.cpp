#include "filters/implicit_blur_operator.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdio>
#include <memory>
#include <utility>

#include "base/cpu_features.h"
#include "images/rgb_discrete_image.h"
#include "support/plane_support.h"
#include "support/printed_text.h"

namespace orv {
namespace {

using test::noisePlane;
using test::printedTo;
using test::sameBits;

TEST(ImplicitBlurOperator, RemembersTheSizeOfItsLastPlane) {
    ImplicitBlurOperator op(2, 0.5F);
    EXPECT_EQ(op.width(), 256);
    EXPECT_EQ(op.height(), 256);
    EXPECT_EQ(op.iterations(), 2);
    EXPECT_EQ(op.tau(), 0.5F);

    op.apply(noisePlane(7, 5, 1), nullptr);

    EXPECT_EQ(op.width(), 7);
    EXPECT_EQ(op.height(), 5);
}

TEST(Quirk, ImplicitBlurEmpty) {
    const FloatImage source = noisePlane(19, 12, 2);
    const FloatImage other = noisePlane(19, 12, 3);
    ImplicitBlurOperator op(3, 2.0F);

    EXPECT_TRUE(sameBits(*op.apply(source, nullptr), source));
    EXPECT_TRUE(sameBits(*op.apply(source, other.clone()), other));
}

TEST(ImplicitBlurOperator, ComputesNothingUnderAMask) {
    const FloatImage source = noisePlane(9, 6, 2);
    const FloatImage other = noisePlane(9, 6, 3);
    const RgbDiscreteImage mask(9, 6);
    ImplicitBlurOperator op(1, 2.0F);

    EXPECT_TRUE(sameBits(*op.applyMasked(mask, source, nullptr), source));
    EXPECT_TRUE(sameBits(*op.applyMasked(mask, source, other.clone()), other));
    EXPECT_EQ(op.width(), 256);
}

TEST(Quirk, ImplicitBlurName) {
    const ImplicitBlurOperator op(1, 2.0F);

    EXPECT_EQ(printedTo([&](std::FILE* file) { op.printName(file); }),
              "Real Recursive 2d Blur Operator\n");
}

// (I + tau L) applied along one axis in double, ends reflecting.
RealImage implicitMatrixTimes(const RealImage& u, double tau, bool alongX) {
    RealImage product(u.width(), u.height());
    for (int x = 0; x < u.width(); ++x) {
        for (int y = 0; y < u.height(); ++y) {
            const int last = alongX ? u.width() - 1 : u.height() - 1;
            const int at = alongX ? x : y;
            const auto sample = [&](int i) { return alongX ? u.row(i)[y] : u.row(x)[i]; };
            double sum = sample(at);
            sum += at > 0 ? tau * (sample(at) - sample(at - 1)) : 0.0;
            sum += at < last ? tau * (sample(at) - sample(at + 1)) : 0.0;
            product.row(x)[y] = sum;
        }
    }
    return product;
}

TEST(ImplicitBlurOperator, SolvesBothAxesOfTheWorkPlane) {
    for (const auto& [w, h] : {std::pair{2, 2}, {3, 2}, {17, 11}, {40, 90}}) {
        const FloatImage source = noisePlane(w, h, 5);
        FloatImage work(source);
        ImplicitBlurOperator op(1, 1.5F);
        op.blurInPlace(work);

        RealImage blurred(w, h);
        for (std::size_t i = 0; i < work.sampleCount(); ++i) {
            blurred.data()[i] = static_cast<double>(work.data()[i]);
        }
        const RealImage back =
            implicitMatrixTimes(implicitMatrixTimes(blurred, 1.5, false), 1.5, true);
        for (std::size_t i = 0; i < work.sampleCount(); ++i) {
            // Float roundings of grey levels, enlarged by the matrices' norm of 7 each.
            ASSERT_NEAR(back.data()[i], static_cast<double>(source.data()[i]), 5e-3);
        }
    }
}

// One line at a time through a ThomasLinearSystem of its own.
void solveLine(ThomasLinearSystem& system, float* first, std::ptrdiff_t stride) {
    const int n = system.rows();
    for (int i = 0; i < n; ++i) {
        system.b()[i] = first[i * stride];
    }
    system.factorise();
    for (int i = 0; i < n; ++i) {
        first[i * stride] = system.x()[i];
    }
}

void fillSystem(ThomasLinearSystem& system, float tau) {
    const int n = system.rows();
    RealVector diag(n, 2.0F * tau + 1.0F);
    diag[0] = tau + 1.0F;
    diag[n - 1] = tau + 1.0F;
    system.setTriDiagonal(RealVector(n - 1, -tau), diag, RealVector(n - 1, -tau));
}

TEST(ImplicitBlurOperator, GivesTheBitsOfOneLineAtATime) {
    for (const auto& [w, h] : {std::pair{1, 1},
                               {1, 9},
                               {2, 3},
                               {7, 8},
                               {15, 16},
                               {17, 23},
                               {33, 40},
                               {70, 65},
                               {131, 31},
                               {20, 9001},
                               {65, 4000}}) {
        FloatImage expected = noisePlane(w, h, 5);
        const FloatImage source(expected);
        ThomasLinearSystem systemX(w);
        ThomasLinearSystem systemY(h);
        fillSystem(systemX, 3.7F);
        fillSystem(systemY, 3.7F);
        for (int y = 0; y < h; ++y) {
            solveLine(systemX, expected.data() + y, h);
        }
        for (int x = 0; x < w; ++x) {
            solveLine(systemY, expected.row(x), 1);
        }
        for (const auto target :
             {KernelTarget::Generic, KernelTarget::Avx2, KernelTarget::Avx512}) {
            if (!isAvailable(target)) {
                continue;
            }
            limitKernelTarget(target);
            FloatImage work(source);
            ImplicitBlurOperator op(1, 3.7F);
            op.blurInPlace(work);
            EXPECT_TRUE(sameBits(work, expected)) << nameOf(target) << " " << w << " x " << h;
        }
        limitKernelTarget(KernelTarget::Avx512);
    }
}

TEST(ImplicitBlurOperator, BlursAsOftenAsItIsTold) {
    FloatImage twice = noisePlane(14, 9, 6);
    FloatImage steps(twice);
    ImplicitBlurOperator one(1, 0.7F);
    ImplicitBlurOperator two(2, 0.7F);

    two.blurInPlace(twice);
    one.blurInPlace(steps);
    one.blurInPlace(steps);

    EXPECT_TRUE(sameBits(twice, steps));
}

}  // namespace
}  // namespace orv
