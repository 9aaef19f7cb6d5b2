#include "filters/kernels/retinex_kernels.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "base/cpu_features.h"
#include "support/plain_retinex.h"
#include "support/plane_support.h"

namespace orv {
namespace {

using test::noiseRealPlane;
using test::PlainRetinex;
using test::sameBits;

constexpr KernelTarget kTargets[] = {KernelTarget::Generic, KernelTarget::Avx2,
                                     KernelTarget::Avx512};
constexpr int kSizes[][2] = {{1, 1},  {1, 2},  {2, 1},   {1, 9},  {9, 1},  {2, 2},
                             {2, 11}, {3, 3},  {3, 17},  {5, 8},  {8, 8},  {7, 10},
                             {4, 31}, {16, 9}, {13, 40}, {6, 65}, {33, 50}};

struct Weights {
    double alpha;
    double beta;
};
constexpr Weights kWeights[] = {{0.0001, 0.1}, {0.0, 0.0}, {2.0, -3.0}, {0.5, 1.0}};

TEST(RetinexKernels, PassesAreThoseOfTheFormulasBitForBit) {
    for (const KernelTarget target : kTargets) {
        if (!isAvailable(target)) {
            continue;
        }
        for (const auto& size : kSizes) {
            for (const Weights& weights : kWeights) {
                SCOPED_TRACE(testing::Message() << nameOf(target) << ' ' << size[0] << " x "
                                                << size[1] << ' ' << weights.alpha);
                const RealImage s = noiseRealPlane(size[0], size[1], 4, -5.0, 0.0);
                RealImage l = noiseRealPlane(size[0], size[1], 5, -1.0, 0.5);
                RealImage expected(l);
                RealImage g(size[0], size[1]);
                const RetinexKernels& kernels = retinexKernels(target);
                const RetinexLevel level = {size[0],  size[1],       s.data(),    l.data(),
                                            g.data(), weights.alpha, weights.beta};
                const double n = static_cast<double>(l.sampleCount());
                double mu = 0.0;

                for (int pass = 0; pass < 3; ++pass) {
                    const RetinexSums sums = kernels.sweep(level, mu, pass > 0);
                    const double mA = sums.gg / n;
                    mu = std::fabs(
                        mA / (weights.alpha * mA + (weights.beta + 1.0) * (-sums.gb / n)));
                    mu = mu > 0.2 ? 0.2 : mu;
                }
                kernels.step(l.data(), g.data(), s.data(), mu, l.sampleCount());

                const PlainRetinex plain(1.0, weights.alpha, weights.beta, 1);
                for (int pass = 0; pass < 3; ++pass) {
                    plain.improve(expected, s);
                }
                ASSERT_TRUE(sameBits(l, expected));
            }
        }
    }
}

TEST(RetinexKernels, SumsKeepTheDeclaredOrder) {
    for (const KernelTarget target : kTargets) {
        if (!isAvailable(target)) {
            continue;
        }
        for (const auto& size : kSizes) {
            SCOPED_TRACE(testing::Message()
                         << nameOf(target) << ' ' << size[0] << " x " << size[1]);
            const RealImage s = noiseRealPlane(size[0], size[1], 6);
            RealImage l = noiseRealPlane(size[0], size[1], 7);
            RealImage g(size[0], size[1]);

            const RetinexSums sums = retinexKernels(target).sweep(
                {size[0], size[1], s.data(), l.data(), g.data(), 0.3, 0.7}, 0.0, false);

            EXPECT_EQ(sums.gg, PlainRetinex::sumOfProducts(g, g));
            EXPECT_EQ(sums.gb, PlainRetinex::sumOfProducts(g, PlainRetinex::laplacian(g)));
        }
    }
}

TEST(RetinexKernels, AStepThatIsNotANumberFallsBackToThePicture) {
    for (const KernelTarget target : kTargets) {
        if (!isAvailable(target)) {
            continue;
        }
        const RealImage s = noiseRealPlane(5, 7, 1);
        const RealImage g(5, 7);
        RealImage l(5, 7, 300.0);

        retinexKernels(target).step(l.data(), g.data(), s.data(),
                                    std::numeric_limits<double>::quiet_NaN(), 35);

        EXPECT_TRUE(sameBits(l, s));
    }
}

TEST(RetinexKernels, ColumnsExpandAsTheFormulasTell) {
    for (const KernelTarget target : kTargets) {
        if (!isAvailable(target)) {
            continue;
        }
        for (const auto& size : kSizes) {
            for (const int odd : {0, 1, 2, 3}) {
                SCOPED_TRACE(testing::Message() << nameOf(target) << ' ' << size[0] << " x "
                                                << size[1] << " odd " << odd);
                const int w = 2 * size[0] + odd % 2;
                const int h = 2 * size[1] + odd / 2;
                const RealImage coarse = noiseRealPlane(size[0], size[1], 8);
                const RealImage finer = noiseRealPlane(w, h, 9, -100.0, 200.0);
                RealImage result(w, h);
                double before = 0.0;

                for (int i = 0; i < w; ++i) {
                    const int a = i / 2;
                    const bool there = i % 2 == 0 ? a < size[0] : a < size[0] - 1;
                    retinexKernels(target).expandColumn(
                        there ? coarse.row(a) : nullptr,
                        there && i % 2 == 1 ? coarse.row(a + 1) : nullptr, size[1],
                        finer.row(a), before, result.row(i), h);
                    before = result.row(i)[h - 1];
                }

                ASSERT_TRUE(sameBits(result, PlainRetinex::expanded(coarse, finer)));
            }
        }
    }
}

TEST(RetinexKernels, LargestFindsItWhereverItStands) {
    for (const KernelTarget target : kTargets) {
        if (!isAvailable(target)) {
            continue;
        }
        for (const std::size_t n : {1U, 2U, 7U, 8U, 9U, 31U}) {
            for (std::size_t at = 0; at < n; ++at) {
                std::vector<double> samples(n, -3.0);
                samples[at] = -2.0;

                EXPECT_EQ(retinexKernels(target).largest(samples.data(), n), -2.0);
            }
        }
    }
}

TEST(RetinexKernels, QuotientsStopAtOneAndKeepWhatIsNoNumber) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const std::vector<double> x = {0.5, 3.0, nan, -4.0, 1.0, 0.25, 8.0, 1.0, 9.0};
    const std::vector<double> y = {1.0, 2.0, 1.0, 2.0, 1.0, 0.5, 16.0, 0.0, 3.0};
    const std::vector<double> expected = {127.5, 255.0, nan,   -510.0, 255.0,
                                          127.5, 127.5, 255.0, 255.0};
    for (const KernelTarget target : kTargets) {
        if (!isAvailable(target)) {
            continue;
        }
        std::vector<double> result(x.size());

        retinexKernels(target).divideInto(x.data(), y.data(), 255.0, result.data(), x.size());

        for (std::size_t i = 0; i < x.size(); ++i) {
            if (std::isnan(expected[i])) {
                EXPECT_TRUE(std::isnan(result[i]));
            } else {
                EXPECT_EQ(result[i], expected[i]);
            }
        }
    }
}

TEST(RetinexKernels, RescaleAddsBeforeItMultiplies) {
    for (const KernelTarget target : kTargets) {
        if (!isAvailable(target)) {
            continue;
        }
        const RealImage plane = noiseRealPlane(1, 21, 2);
        std::vector<double> result(21);

        retinexKernels(target).rescale(plane.data(), 1.0, 3.0, result.data(), result.size());

        for (std::size_t i = 0; i < result.size(); ++i) {
            EXPECT_EQ(result[i], (plane.data()[i] + 1.0) * 3.0);
        }
    }
}

}  // namespace
}  // namespace orv
