#include "solvers/lanczos/symmetric_lanczos.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>

#include "support/solver_systems.h"

namespace orv {
namespace {

using test::diffusionPlane;
using test::sameVectorBits;
using test::wavyVector;

SymmetricLanczos begun(const RealVector& r) {
    SymmetricLanczos lanczos;
    lanczos.r = r.Clone();
    lanczos.v = std::make_unique<RealVector>(r.size());
    lanczos.t = std::make_unique<RealVector>(r.size());
    lanczos.vOld = std::make_unique<RealVector>(r.size(), HUGE_VALF);
    lanczos.Begin(std::sqrt(r.SumOfSquares()));
    return lanczos;
}

TEST(SymmetricLanczos, MakesOrthonormalVectors) {
    const BandMatrix A = diffusionPlane(8, 6, 1.0F);
    SymmetricLanczos lanczos = begun(wavyVector(48));

    for (int step = 0; step < 6; ++step) {
        (void)lanczos.Advance(A);

        // Single precision, amplified by the loss of orthogonality of a few steps.
        EXPECT_NEAR(lanczos.v->SumOfSquares(), 1.0, 1e-6) << step;
        EXPECT_NEAR(lanczos.v->Dot(*lanczos.vOld), 0.0, 1e-5) << step;
        EXPECT_NEAR(lanczos.vOld->Dot(*A.Multiply(*lanczos.v, nullptr)), lanczos.beta, 1e-5)
            << step;
    }
}

TEST(SymmetricLanczos, RotatesATwoByTwoLanczosMatrix) {
    // A = (2 3; 3 5), r = (4, 0): alpha = 2, beta = 3, v = (0, 1); then g = alpha as c starts
    // as -1, and x, y are zero.
    FullMatrix A(2, 3.0F);
    A.Set(0, 0, 2.0F);
    A.Set(1, 1, 5.0F);
    RealVector r(2);
    r[0] = 4.0F;
    SymmetricLanczos lanczos = begun(r);

    const SymmetricLanczos::Column first = lanczos.Advance(A);

    const double root = std::sqrt(13.0);
    EXPECT_EQ((*lanczos.v)[1], 1.0F);
    EXPECT_EQ((*lanczos.vOld)[0], 1.0F);
    EXPECT_EQ(lanczos.beta, 3.0);
    EXPECT_EQ(lanczos.gamma, -3.0);
    EXPECT_EQ(first.rot, root);
    EXPECT_EQ(first.x, 0.0);
    EXPECT_EQ(first.y, 0.0);
    EXPECT_EQ(lanczos.c, 2.0 / root);
    EXPECT_EQ(lanczos.s, 3.0 / root);

    // alpha = 5, beta = 0.
    const double c = 2.0 / root;
    const double s = 3.0 / root;
    const SymmetricLanczos::Column second = lanczos.Advance(A);

    EXPECT_EQ(second.x, 5.0 * s + 3.0 * c);
    EXPECT_EQ(second.y, 0.0);
    EXPECT_EQ(second.rot, std::abs(3.0 * s - 5.0 * c));
    EXPECT_EQ(lanczos.gamma, 0.0);
    EXPECT_EQ(lanczos.s, 0.0);
    EXPECT_TRUE(std::isnan((*lanczos.v)[0]));
}

TEST(SymmetricLanczos, BeginsAnew) {
    const BandMatrix A = diffusionPlane(4, 3, 1.0F);
    SymmetricLanczos fresh = begun(wavyVector(12));
    SymmetricLanczos used = begun(wavyVector(12));
    // A step from NaN leaves NaN in all that the recurrence carries.
    used.beta = std::numeric_limits<double>::quiet_NaN();
    (void)used.Advance(A);
    ASSERT_TRUE(std::isnan(used.beta) && std::isnan(used.gamma));
    ASSERT_TRUE(std::isnan(used.c) && std::isnan(used.s));

    used.Begin(std::sqrt(used.r->SumOfSquares()));
    const SymmetricLanczos::Column again = used.Advance(A);
    const SymmetricLanczos::Column first = fresh.Advance(A);

    EXPECT_EQ(again.rot, first.rot);
    EXPECT_EQ(again.x, first.x);
    EXPECT_TRUE(sameVectorBits(*used.v, *fresh.v));
    EXPECT_TRUE(sameVectorBits(*used.vOld, *fresh.vOld));
}

}  // namespace
}  // namespace orv
