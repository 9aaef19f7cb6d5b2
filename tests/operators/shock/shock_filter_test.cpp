#include "operators/shock/shock_filter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <limits>
#include <memory>
#include <string>
#include <utility>

#include "base/cpu_features.h"
#include "images/real_image_differences.h"
#include "operators/shock/arctan_shock_term.h"
#include "operators/shock/diffusive_arctan_shock_term.h"
#include "operators/shock/diffusive_sign_shock_term.h"
#include "operators/shock/shock_reference.h"
#include "operators/shock/simple_shock_filter.h"
#include "support/plane_support.h"
#include "support/sample_image.h"

namespace orv {
namespace {

using test::Noise;
using test::noiseRealPlane;
using test::plainMinmod;
using test::plainShock;
using test::plainShockStep;
using test::plainShockValue;
using test::sameBits;
using test::SampleImage;

constexpr KernelTarget kTargets[] = {KernelTarget::Generic, KernelTarget::Avx2,
                                     KernelTarget::Avx512};

std::unique_ptr<ShockTerm> termOf(int method, double weight = 0.2, double scale = 1.0) {
    switch (method) {
        case 1:
            return std::make_unique<DiffusiveSignShockTerm>(weight);
        case 2:
            return std::make_unique<ArctanShockTerm>(scale);
        case 3:
            return std::make_unique<DiffusiveArctanShockTerm>(weight, scale);
        default:
            return std::make_unique<SignShockTerm>();
    }
}

// Takes the larger slope, so that it differs from minmod nearly everywhere.
class LargerSlope : public ShockLimiter {
  public:
    double limited(double backward, double forward) const override {
        return std::fabs(backward) > std::fabs(forward) ? backward : forward;
    }
};

double largerSlope(double backward, double forward) {
    return LargerSlope().limited(backward, forward);
}

// A term that the kernels don't know and that writes down the steps that it is told.
class UpwardTerm : public ShockTerm {
  public:
    void setIteration(int i) override { log += std::to_string(i) + " "; }
    double valueMasked(const DiscreteImage&, const RealImage& plane, int x,
                       int y) const override {
        return value(plane, x, y);
    }
    double value(const RealImage& plane, int x, int y) const override {
        return plane.row(x)[y - 1];
    }
    std::string log;
};

RealImage pictureWithFlatParts(int width, int height) {
    RealImage plane = noiseRealPlane(width, height, 3);
    for (int x = 0; x < width; ++x) {
        for (int y = 0; y < height; ++y) {
            // Whole levels, flats, ramps and single steps.
            if (x % 20 < 6) {
                plane.row(x)[y] = 80.0;
            } else if (x % 20 < 12) {
                plane.row(x)[y] = std::floor(plane.row(x)[y] / 16.0);
            } else if (y % 9 < 3) {
                plane.row(x)[y] = 3.0 * x + y;
            }
        }
    }
    return plane;
}

TEST(ShockTerm, ValuesAreThoseOfTheFormulas) {
    const RealImage plane = noiseRealPlane(9, 11, 1);
    const SampleImage mask(9, 11, 3);
    for (int method = 0; method < 4; ++method) {
        const auto term = termOf(method, 0.35, 0.7);
        term->setIteration(3);
        for (int x = 1; x < 8; ++x) {
            for (int y = 1; y < 10; ++y) {
                const double expected =
                    plainShockValue(method, plane, x, y, 0.35, 0.7, 3, plainMinmod);

                EXPECT_EQ(term->value(plane, x, y), expected) << method;
                EXPECT_EQ(term->valueMasked(mask, plane, x, y), expected) << method;
            }
        }
    }
}

TEST(ShockTerm, ALimiterTakesTheGradientNormOver) {
    const RealImage plane = noiseRealPlane(7, 7, 1);
    const LargerSlope limiter;
    for (int method = 0; method < 4; ++method) {
        const auto term = termOf(method);
        EXPECT_EQ(term->limiter(), nullptr);
        term->setLimiter(&limiter);
        term->setIteration(2);

        EXPECT_EQ(term->limiter(), &limiter);
        EXPECT_EQ(term->value(plane, 3, 2),
                  plainShockValue(method, plane, 3, 2, 0.2, 1.0, 2, largerSlope));
        EXPECT_NE(term->value(plane, 3, 2),
                  plainShockValue(method, plane, 3, 2, 0.2, 1.0, 2, plainMinmod));
    }
}

TEST(ShockTerm, OnlyTheArctanTermsKeepTheStep) {
    for (int method = 0; method < 4; ++method) {
        const auto term = termOf(method);
        term->setIteration(7);
        term->hook();

        EXPECT_EQ(term->iteration(), method < 2 ? 0.0 : 7.0) << method;
    }
    EXPECT_EQ(ArctanShockTerm(1.0).iteration(), 1.0);
    EXPECT_EQ(DiffusiveArctanShockTerm(0.2, 1.0).iteration(), 1.0);
}

TEST(ShockFilter, StepsAreThoseOfTheFormulaBitForBitWithEveryInstructionSet) {
    struct Size {
        int width;
        int height;
    };
    for (const Size s : {Size{3, 3}, Size{4, 3}, Size{3, 9}, Size{41, 23}, Size{64, 131}}) {
        const RealImage source = pictureWithFlatParts(s.width, s.height);
        for (int method = 0; method < 4; ++method) {
            const RealImage expected = plainShock(method, source, 4, 0.3, 0.25, 0.8);
            for (const KernelTarget target : kTargets) {
                SCOPED_TRACE(std::to_string(s.width) + " x " + std::to_string(s.height) +
                             ", method " + std::to_string(method) + ", " + nameOf(target));
                limitKernelTarget(target);
                const auto term = termOf(method, 0.25, 0.8);

                EXPECT_TRUE(sameBits(*ShockFilter(term.get(), 4, 0.3).apply(source, nullptr),
                                     expected));
            }
        }
        limitKernelTarget(KernelTarget::Avx512);
        EXPECT_TRUE(sameBits(*SimpleShockFilter(4, 0.3).apply(source, nullptr),
                             plainShock(0, source, 4, 0.3)));
    }
}

TEST(ShockFilter, TheSignIsRightWhereTheQuotientUnderflowsOrIsNoNumber) {
    const double inf = std::numeric_limits<double>::infinity();
    const double values[] = {0.0,   5e-324, 1e-310, 1e-160, -1e-108, 1e-20,
                             100.0, 1e103,  -1e154, 1e200,  inf,     std::nan("")};
    Noise noise(4);
    for (int turn = 0; turn < 400; ++turn) {
        RealImage source(5, 5);
        for (std::size_t i = 0; i < source.sampleCount(); ++i) {
            source.data()[i] = values[noise.integer(0, turn % 2 == 0 ? 6 : 11)];
        }
        for (int method = 0; method < 4; ++method) {
            const auto term = termOf(method);
            const RealImage expected = plainShock(method, source, 1, 0.5);
            const auto result = ShockFilter(term.get(), 1, 0.5).apply(source, nullptr);
            for (std::size_t i = 0; i < source.sampleCount(); ++i) {
                const double e = expected.data()[i];
                const double r = result->data()[i];
                EXPECT_TRUE(e == r || (std::isnan(e) && std::isnan(r))) << e << " " << r;
            }
        }
    }
}

TEST(ShockFilter, OneOddSampleGivesWhatTheFormulasGive) {
    const double inf = std::numeric_limits<double>::infinity();
    const double values[] = {inf, -inf, std::nan(""), 1.7e308, -1.7e308, 1e160, -5e-324, -0.0};
    Noise noise(6);
    for (int turn = 0; turn < 400; ++turn) {
        // Flat, so that slopes cancel out, or rough.
        RealImage source = turn % 2 == 0 ? RealImage(5, 7, 90.0)
                                         : noiseRealPlane(5, 7, static_cast<unsigned>(turn));
        for (int odd = 0; odd < 1 + turn % 3; ++odd) {
            source.row(noise.integer(0, 4))[noise.integer(0, 6)] = values[noise.integer(0, 7)];
        }
        for (int method = 0; method < 4; ++method) {
            const RealImage expected = plainShock(method, source, 2, 0.5);
            for (const KernelTarget target : kTargets) {
                limitKernelTarget(target);
                const auto term = termOf(method);
                const auto result = ShockFilter(term.get(), 2, 0.5).apply(source, nullptr);
                for (std::size_t i = 0; i < source.sampleCount(); ++i) {
                    const double e = expected.data()[i];
                    const double r = result->data()[i];
                    ASSERT_TRUE(e == r || (std::isnan(e) && std::isnan(r)))
                        << e << " " << r << ", method " << method << ", " << nameOf(target);
                }
            }
        }
    }
    limitKernelTarget(KernelTarget::Avx512);
}

TEST(ShockFilter, TheSignOfAQuotientThatUnderflowsIsZero) {
    // The numerator of eta is 1e-320, over a squared gradient of 1e4 it is 0.
    RealImage source(3, 3);
    source.row(0)[1] = -100.0;
    source.row(2)[1] = 100.0;
    source.row(1)[2] = 1e-322;
    source.row(2)[2] = 4.0;
    for (const int method : {0, 1}) {
        for (const KernelTarget target : kTargets) {
            limitKernelTarget(target);
            const auto term = termOf(method, 0.0);

            const auto result = ShockFilter(term.get(), 1, -0.25).apply(source, nullptr);

            EXPECT_EQ(secondAlongGradient(source, 1, 1), 0.0);
            EXPECT_EQ(result->row(1)[1], 0.0) << method << " with " << nameOf(target);
        }
    }
    limitKernelTarget(KernelTarget::Avx512);
}

TEST(ShockFilter, PlanesNarrowerOrLowerThanThreeComeBack) {
    for (const int width : {1, 2, 9}) {
        for (const int height : {1, 2, 9}) {
            if (width == 9 && height == 9) {
                continue;
            }
            const RealImage source = noiseRealPlane(width, height, 1);
            for (int method = 0; method < 4; ++method) {
                const auto term = termOf(method);
                EXPECT_TRUE(
                    sameBits(*ShockFilter(term.get(), 3, 0.3).apply(source, nullptr), source));
            }
            EXPECT_TRUE(sameBits(*SimpleShockFilter(3, 0.3).apply(source, nullptr), source));
        }
    }
}

TEST(ShockFilter, NoIterationsGiveACopyOfTheSource) {
    const RealImage source = noiseRealPlane(8, 7, 1);
    const auto term = termOf(1);
    for (const int iterations : {0, -2}) {
        EXPECT_TRUE(
            sameBits(*ShockFilter(term.get(), iterations, 0.3).apply(source, nullptr), source));
        EXPECT_TRUE(
            sameBits(*SimpleShockFilter(iterations, 0.3).apply(source, nullptr), source));
    }
}

TEST(ShockFilter, ConstantPlanesStayAsTheyAre) {
    const RealImage source(9, 8, 77.0);
    for (int method = 0; method < 4; ++method) {
        const auto term = termOf(method);
        EXPECT_TRUE(sameBits(*ShockFilter(term.get(), 5, 0.3).apply(source, nullptr), source));
    }
}

TEST(ShockFilter, SamplesStayWithinTheRangeHoweverLongTheStep) {
    const RealImage source = noiseRealPlane(20, 20, 1);
    for (const double timeStep : {-40.0, 3.0, 1000.0}) {
        const auto term = termOf(0);
        const auto result = ShockFilter(term.get(), 3, timeStep).apply(source, nullptr);
        bool moved = false;
        for (std::size_t i = 0; i < source.sampleCount(); ++i) {
            EXPECT_GE(result->data()[i], 0.0);
            EXPECT_LE(result->data()[i], 255.0);
            moved = moved || result->data()[i] != source.data()[i];
        }
        EXPECT_TRUE(moved);
    }
}

TEST(ShockFilter, TheOutermostRingIsNotTouched) {
    const RealImage source = noiseRealPlane(9, 7, 1, -50.0, 300.0);
    const auto term = termOf(3);

    const auto result = ShockFilter(term.get(), 3, 0.4).apply(source, nullptr);

    for (int x = 0; x < 9; ++x) {
        for (int y = 0; y < 7; ++y) {
            if (x == 0 || x == 8 || y == 0 || y == 6) {
                EXPECT_EQ(result->row(x)[y], source.row(x)[y]);
            }
        }
    }
}

TEST(ShockFilter, OverwritesATargetFromTheSource) {
    const RealImage source = noiseRealPlane(12, 10, 1);
    const auto term = termOf(1);
    ShockFilter filter(term.get(), 2, 0.3);
    auto target = std::make_unique<RealImage>(noiseRealPlane(12, 10, 2));
    const RealImage* const given = target.get();

    const auto result = filter.apply(source, std::move(target));

    EXPECT_EQ(result.get(), given);
    EXPECT_TRUE(sameBits(*result, *filter.apply(source, nullptr)));
}

TEST(ShockFilter, TellsTheTermEachStepAndRunsTermsOfItsOwnOperation) {
    const RealImage source = noiseRealPlane(6, 5, 1, 0.0, 40.0);
    UpwardTerm term;

    const auto result = ShockFilter(&term, 2, 0.5).apply(source, nullptr);

    EXPECT_EQ(term.log, "1 2 ");
    RealImage once(source);
    for (int x = 1; x < 5; ++x) {
        for (int y = 1; y < 4; ++y) {
            once.row(x)[y] += 0.5 * source.row(x)[y - 1];
        }
    }
    RealImage twice(once);
    for (int x = 1; x < 5; ++x) {
        for (int y = 1; y < 4; ++y) {
            twice.row(x)[y] += 0.5 * once.row(x)[y - 1];
        }
    }
    EXPECT_TRUE(sameBits(*result, twice));
}

template <class Filter>
void expectLimiterRules(Filter& filter, int method) {
    const RealImage source = noiseRealPlane(15, 12, 1);
    const LargerSlope limiter;
    filter.setLimiter(&limiter);
    RealImage expected(source);
    RealImage work(source);
    for (int i = 1; i <= 2; ++i) {
        plainShockStep(method, work, expected, 0.2, 0.2, 1.0, i, largerSlope,
                       [](int, int) { return true; });
        work.assign(expected);
    }

    EXPECT_TRUE(sameBits(*filter.apply(source, nullptr), expected)) << method;

    filter.setAuxiliaryPlane(&source);
    EXPECT_EQ(filter.auxiliaryPlane(), &source);
    filter.setLimiter(&limiter);
    filter.setAuxiliaryPlane(nullptr);
    EXPECT_EQ(filter.auxiliaryPlane(), nullptr);
    EXPECT_TRUE(sameBits(*filter.apply(source, nullptr), plainShock(method, source, 2, 0.2)));
}

TEST(ShockFilter, RunsALimiterUntilTheAuxiliaryPlaneIsCleared) {
    for (int method = 0; method < 4; ++method) {
        const auto term = termOf(method);
        ShockFilter filter(term.get(), 2, 0.2);
        expectLimiterRules(filter, method);
    }
    SimpleShockFilter simple(2, 0.2);
    expectLimiterRules(simple, 0);
}

template <class Filter>
void expectRegionRules(Filter& filter, int method) {
    const RealImage source = noiseRealPlane(15, 12, 1);
    const RealImage other = noiseRealPlane(15, 12, 2);
    SampleImage mask(15, 12, 3);
    Noise noise(9);
    for (int x = 0; x < 15; ++x) {
        for (int y = 0; y < 12; ++y) {
            mask.setSample(x, y, 0, noise.integer(0, 2));
        }
    }
    const auto selects = [&](int x, int y) { return mask.value(x, y) == 1; };

    for (const RealImage* const start : {&source, &other}) {
        RealImage expected(*start);
        RealImage work(source);
        for (int i = 1; i <= 3; ++i) {
            // Every step is the first to the term.
            plainShockStep(method, work, expected, 0.2, 0.2, 1.0, /*step=*/1, plainMinmod,
                           selects);
            for (int x = 1; x < 14; ++x) {
                for (int y = 1; y < 11; ++y) {
                    work.row(x)[y] = selects(x, y) ? expected.row(x)[y] : work.row(x)[y];
                }
            }
        }
        auto target = start == &source ? nullptr : start->clone();

        const auto result = filter.applyMasked(mask, source, std::move(target));

        EXPECT_TRUE(sameBits(*result, expected)) << method;
        EXPECT_EQ(filter.regionCount(), 0);
    }
}

TEST(ShockFilter, MovesTheRegionOfAMaskAloneAndFromWhereATargetStands) {
    for (int method = 0; method < 4; ++method) {
        const auto term = termOf(method);
        ShockFilter filter(term.get(), 3, 0.2);
        expectRegionRules(filter, method);
    }
    SimpleShockFilter simple(3, 0.2);
    expectRegionRules(simple, 0);
}

TEST(ShockFilter, TellsTheTermNoStepUnderAMask) {
    const RealImage source = noiseRealPlane(6, 5, 1, 0.0, 40.0);
    SampleImage mask(6, 5, 3);
    mask.setSample(2, 2, 0, 1);
    UpwardTerm term;

    const auto result = ShockFilter(&term, 2, 0.5).applyMasked(mask, source, nullptr);

    EXPECT_EQ(term.log, "");
    RealImage expected(source);
    expected.row(2)[2] += 0.5 * source.row(2)[1];
    expected.row(2)[2] += 0.5 * source.row(2)[1];
    EXPECT_TRUE(sameBits(*result, expected));
}

TEST(ShockFilter, IteratesTheFilterOnItsOwnResults) {
    const RealImage source = noiseRealPlane(9, 9, 1);
    SimpleShockFilter once(1, 0.2);

    EXPECT_TRUE(sameBits(*once.iterate(1, source, nullptr), *once.apply(source, nullptr)));
}

TEST(Quirk, MaskedShockSoftness) {
    const RealImage source = noiseRealPlane(12, 10, 1);
    SampleImage mask(12, 10, 3);
    for (int x = 0; x < 12; ++x) {
        for (int y = 0; y < 10; ++y) {
            mask.setSample(x, y, 0, 1);
        }
    }
    for (const int method : {2, 3}) {
        const auto term = termOf(method, 0.2, 0.01);
        ShockFilter filter(term.get(), 3, 0.2);
        const auto steps = [&](int first, int increment) {
            RealImage target(source);
            RealImage work(source);
            for (int i = 0; i < 3; ++i) {
                plainShockStep(method, work, target, 0.2, 0.2, 0.01, first + i * increment,
                               plainMinmod, [](int, int) { return true; });
                work.assign(target);
            }
            return target;
        };

        EXPECT_TRUE(sameBits(*filter.applyMasked(mask, source, nullptr), steps(1, 0)));
        EXPECT_EQ(term->iteration(), 1.0);

        EXPECT_TRUE(sameBits(*filter.apply(source, nullptr), steps(1, 1)));
        EXPECT_TRUE(sameBits(*filter.applyMasked(mask, source, nullptr), steps(3, 0)));
        EXPECT_EQ(term->iteration(), 3.0);
    }
}

TEST(Quirk, SimpleShockTarget) {
    const RealImage source = noiseRealPlane(12, 10, 1);
    const RealImage other = noiseRealPlane(12, 10, 2);
    RealImage expected(other);
    plainShockStep(0, source, expected, 0.2, 0.2, 1.0, 1, plainMinmod,
                   [](int, int) { return true; });
    const RealImage first(expected);
    plainShockStep(0, first, expected, 0.2, 0.2, 1.0, 2, plainMinmod,
                   [](int, int) { return true; });

    const auto result = SimpleShockFilter(2, 0.2).apply(source, other.clone());

    EXPECT_TRUE(sameBits(*result, expected));
    EXPECT_TRUE(sameBits(*SimpleShockFilter(0, 0.2).apply(source, other.clone()), other));
}

}  // namespace
}  // namespace orv
