#include "filters/variational_retinex.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <string>

#include "base/cpu_features.h"
#include "base/elementary.h"
#include "exports/work_window.h"
#include "images/real_image.h"
#include "support/kernel_targets.h"
#include "support/plain_retinex.h"
#include "support/plane_support.h"

namespace orv {
namespace {

using test::availableTargets;
using test::noiseRealPlane;
using test::PlainRetinex;
using test::sameBits;
using test::TargetLimit;

/// A dark gradient with noise, samples above 0 and up to 1.
RealImage dusk(int width, int height, unsigned seed) {
    RealImage plane(width, height);
    test::Noise noise(seed);
    for (int x = 0; x < width; ++x) {
        for (int y = 0; y < height; ++y) {
            const double shade = 0.05 + 0.7 * x / width + 0.1 * y / height;
            plane.row(x)[y] = shade + noise.between(0.0, 0.15);
        }
    }
    return plane;
}

TEST(VariationalRetinex, IsItsFormulasBitForBit) {
    const int sizes[][2] = {{1, 1},   {2, 2},   {3, 2},   {2, 7},  {5, 5},   {9, 4},
                            {16, 16}, {17, 23}, {31, 64}, {64, 9}, {101, 50}};
    for (const KernelTarget target : availableTargets()) {
        const TargetLimit limit(target);
        for (const auto& size : sizes) {
            const RealImage plane = dusk(size[0], size[1], 3);
            const int most = VariationalRetinex::mostLevels(size[0], size[1]);
            for (int levels = 1; levels <= most; ++levels) {
                SCOPED_TRACE(testing::Message()
                             << size[0] << " x " << size[1] << ", " << levels << " levels");

                const auto result =
                    VariationalRetinex(2.2, 0.0001, 0.1, levels).apply(plane, nullptr);

                EXPECT_TRUE(
                    sameBits(*result, PlainRetinex(2.2, 0.0001, 0.1, levels).apply(plane)));
            }
        }
    }
}

TEST(VariationalRetinex, KeepsToItsFormulasForStrangeWeights) {
    const double weights[][3] = {
        {0.5, 3.0, 2.0}, {-1.0, -0.5, 4.0}, {1e6, 0.0, -1.0}, {3.0, 100.0, 0.0}};
    const RealImage plane = dusk(37, 22, 8);
    for (const auto& w : weights) {
        SCOPED_TRACE(w[0]);
        const auto result = VariationalRetinex(w[0], w[1], w[2], 4).apply(plane, nullptr);

        EXPECT_TRUE(sameBits(*result, PlainRetinex(w[0], w[1], w[2], 4).apply(plane)));
    }
}

TEST(VariationalRetinex, LevelKGetsFourTimesKPasses) {
    const RealImage plane = dusk(40, 40, 2);

    const auto result = VariationalRetinex(3.0, 0.1, 0.1, 3).apply(plane, nullptr);

    EXPECT_TRUE(sameBits(*result, PlainRetinex(3.0, 0.1, 0.1, 3).apply(plane, 4)));
    // The passes show in the result, so that a wrong count would be seen.
    EXPECT_FALSE(sameBits(*result, PlainRetinex(3.0, 0.1, 0.1, 3).apply(plane, 3)));
}

TEST(VariationalRetinex, OneLevelDividesByThePowerOfTheLargestSample) {
    const RealImage plane = dusk(7, 9, 5);
    double most = 0.0;
    for (std::size_t i = 0; i < plane.sampleCount(); ++i) {
        most = std::fmax(most, plane.data()[i]);
    }

    const auto result = VariationalRetinex(2.0, 0.1, 0.1, 1).apply(plane, nullptr);

    const double divisor = elementaryPow(elementaryExp(elementaryLog(most)), 0.5);
    for (std::size_t i = 0; i < plane.sampleCount(); ++i) {
        EXPECT_EQ(result->data()[i], std::fmin(plane.data()[i] / divisor, 1.0));
    }
}

TEST(VariationalRetinex, GammaOneGivesTheSourceLimitedToOne) {
    const RealImage plane = noiseRealPlane(19, 14, 6, 0.1, 1.5);

    const auto result = VariationalRetinex(1.0, 0.1, 0.1, 3).apply(plane, nullptr);

    int limited = 0;
    for (std::size_t i = 0; i < plane.sampleCount(); ++i) {
        limited += plane.data()[i] > 1.0 ? 1 : 0;
        EXPECT_EQ(result->data()[i], std::fmin(plane.data()[i], 1.0));
    }
    EXPECT_GT(limited, 0);
}

TEST(VariationalRetinex, AFlatPictureIsDividedByItsOwnPower) {
    // G is 0 everywhere and mu 0 / 0; the projection gives the picture itself.
    const RealImage plane(12, 12, 0.25);

    const auto result = VariationalRetinex(2.0, 0.1, 0.1, 3).apply(plane, nullptr);

    for (std::size_t i = 0; i < plane.sampleCount(); ++i) {
        EXPECT_NEAR(result->data()[i], 0.5, 1e-14);  // a few roundings of exp, log and pow
    }
}

TEST(VariationalRetinex, MatchesTheCLibrarysFunctionsClosely) {
    const RealImage plane = dusk(33, 47, 11);

    const auto result = VariationalRetinex(2.2, 0.01, 0.1, 1).apply(plane, nullptr);

    double most = plane.data()[0];
    for (std::size_t i = 0; i < plane.sampleCount(); ++i) {
        most = std::fmax(most, plane.data()[i]);
    }
    for (std::size_t i = 0; i < plane.sampleCount(); ++i) {
        const double direct = plane.data()[i] / std::pow(most, 1.0 - 1.0 / 2.2);
        // A handful of roundings of relative size 1e-16.
        EXPECT_NEAR(result->data()[i], std::fmin(direct, 1.0), 2e-15);
    }
}

TEST(VariationalRetinex, ASecondPlaneIsNotTouchedByTheFirst) {
    const RealImage first = dusk(21, 30, 1);
    const RealImage second = noiseRealPlane(21, 30, 2, 0.2, 0.9);
    const RealImage other = dusk(15, 12, 3);
    VariationalRetinex retinex(2.0, 0.1, 0.2, 3);

    retinex.apply(first, nullptr);
    const auto reused = retinex.apply(second, std::make_unique<RealImage>(21, 30, 7.0));
    const auto resized = retinex.apply(other, nullptr);

    EXPECT_TRUE(
        sameBits(*reused, *VariationalRetinex(2.0, 0.1, 0.2, 3).apply(second, nullptr)));
    EXPECT_TRUE(
        sameBits(*resized, *VariationalRetinex(2.0, 0.1, 0.2, 3).apply(other, nullptr)));
}

TEST(VariationalRetinex, WritesIntoTheTargetThatItIsGiven) {
    const RealImage plane = dusk(8, 8, 1);
    auto target = std::make_unique<RealImage>(8, 8);
    const RealImage* const given = target.get();

    const auto result = VariationalRetinex(2.0, 0.1, 0.1, 2).apply(plane, std::move(target));

    EXPECT_EQ(result.get(), given);
}

TEST(VariationalRetinex, ScalingIsThatOfThePlaneBeforeAndAfter) {
    const RealImage plane = noiseRealPlane(18, 25, 4);
    RealImage scaled(plane);
    scaled.add(1.0);
    scaled.divide(256.0);

    const auto result = VariationalRetinex(2.2, 0.01, 0.1, 3)
                            .applyScaled(plane, {1.0, 1.0 / 256.0, 255.0}, nullptr);

    auto expected = VariationalRetinex(2.2, 0.01, 0.1, 3).apply(scaled, nullptr);
    expected->scale(255.0);
    EXPECT_TRUE(sameBits(*result, *expected));
}

TEST(VariationalRetinex, LevelsThatThePlaneDoesNotAllowGiveNull) {
    EXPECT_EQ(VariationalRetinex(2.0, 0.1, 0.1, 4).apply(dusk(7, 9, 1), nullptr), nullptr);
    EXPECT_EQ(VariationalRetinex(2.0, 0.1, 0.1, 0).apply(dusk(7, 9, 1), nullptr), nullptr);
    EXPECT_EQ(VariationalRetinex(2.0, 0.1, 0.1, -1).apply(dusk(7, 9, 1), nullptr), nullptr);
    EXPECT_EQ(VariationalRetinex(2.0, 0.1, 0.1, 1).apply(RealImage(0, 5), nullptr), nullptr);
    EXPECT_NE(VariationalRetinex(2.0, 0.1, 0.1, 3).apply(dusk(7, 9, 1), nullptr), nullptr);
}

TEST(VariationalRetinex, MostLevelsLeavesTheShorterSideOneSample) {
    EXPECT_EQ(VariationalRetinex::mostLevels(0, 5), 0);
    EXPECT_EQ(VariationalRetinex::mostLevels(1, 1), 1);
    EXPECT_EQ(VariationalRetinex::mostLevels(7, 100), 3);
    EXPECT_EQ(VariationalRetinex::mostLevels(100, 8), 4);
    EXPECT_EQ(VariationalRetinex::mostLevels(6000, 4000), 12);
}

TEST(VariationalRetinex, PrintsItsName) {
    std::FILE* const file = std::tmpfile();
    VariationalRetinex(2.0, 0.1, 0.1, 2).printName(file);
    std::rewind(file);
    char text[64] = {};
    const std::size_t length = std::fread(text, 1, sizeof text - 1, file);
    std::fclose(file);

    EXPECT_EQ(std::string(text, length), "Real Variational Retinex\n");
}

/// Keeps the shares that are reported and stops above one of them.
class Recorder : public WorkObserver {
  public:
    explicit Recorder(double stopAt) : stopAt_(stopAt) {}
    bool onWork(double done) override {
        rises = rises && done >= last;
        last = done;
        ++calls;
        return done < stopAt_;
    }

    bool rises = true;
    double last = 0.0;
    int calls = 0;

  private:
    double stopAt_;
};

TEST(VariationalRetinex, ReportsItsWorkUpToTheEnd) {
    for (const int levels : {1, 2, 6}) {
        Recorder recorder(2.0);
        const WorkObserverScope scope(&recorder);

        VariationalRetinex(2.0, 0.1, 0.1, levels).apply(dusk(64, 100, 1), nullptr);

        EXPECT_TRUE(recorder.rises);
        EXPECT_GT(recorder.calls, 40);
        EXPECT_GT(recorder.last, 0.97);
        EXPECT_LE(recorder.last, 1.0);
    }
}

TEST(VariationalRetinex, StopsSoonAfterItIsAskedTo) {
    Recorder recorder(0.3);
    const WorkObserverScope scope(&recorder);

    VariationalRetinex(2.0, 0.1, 0.1, 6).apply(dusk(200, 200, 1), nullptr);

    EXPECT_LT(recorder.last, 0.4);
    EXPECT_TRUE(workCancelled());
}

TEST(Quirk, RetinexProjection) {
    // A bright sample at (5, 0) of the finer level holds up the expanded samples at (10, 0),
    // (11, 0), (10, 1), (11, 1), and not the one at (5, 0).
    RealImage finer(16, 16, -4.0);
    finer.row(5)[0] = 0.0;
    const RealImage coarse(8, 8, -2.0);

    const RealImage plain = PlainRetinex::expanded(coarse, finer);
    EXPECT_EQ(plain.row(5)[0], -2.0);
    EXPECT_EQ(plain.row(10)[0], 0.0);
    EXPECT_EQ(plain.row(11)[1], 0.0);

    // The same through the whole method: the bright sample lights the place at twice its
    // coordinates.
    RealImage plane(16, 16, 0.1);
    plane.row(5)[1] = 1.0;
    const auto result = VariationalRetinex(2.0, 0.0, 0.0, 2).apply(plane, nullptr);
    EXPECT_TRUE(sameBits(*result, PlainRetinex(2.0, 0.0, 0.0, 2).apply(plane)));
    EXPECT_LT(result->row(10)[2], 0.12);  // 0.1 / sqrt(1)
    EXPECT_GT(result->row(14)[12], 0.2);
}

TEST(Quirk, RetinexSigns) {
    // With l above s by a constant, the published step by alpha pulls l down to s; this one
    // pushes it up.
    const RealImage s(9, 9, -3.0);
    RealImage l(9, 9, -2.0);
    l.row(4)[4] = -1.9;
    const PlainRetinex plain(2.0, 0.5, 0.0, 1);

    plain.improve(l, s);

    EXPECT_GT(l.row(1)[1], -2.0);

    // What the class does is what this formulation does, so the sign shows in it as well.
    const RealImage plane = dusk(24, 24, 9);
    EXPECT_TRUE(sameBits(*VariationalRetinex(2.0, 0.5, 0.0, 3).apply(plane, nullptr),
                         PlainRetinex(2.0, 0.5, 0.0, 3).apply(plane)));
    EXPECT_FALSE(sameBits(*VariationalRetinex(2.0, 0.5, 0.0, 3).apply(plane, nullptr),
                          PlainRetinex(2.0, -0.5, 0.0, 3).apply(plane)));
}

}  // namespace
}  // namespace orv
