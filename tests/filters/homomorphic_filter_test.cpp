#include "filters/homomorphic_filter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <limits>
#include <memory>
#include <vector>

#include "base/cpu_features.h"
#include "exports/progress_window.h"
#include "exports/work_window.h"
#include "filters/real_recursive_2d_blur_operator.h"
#include "support/plain_homomorphic.h"
#include "support/plane_support.h"
#include "support/progress_range.h"

namespace orv {
namespace {

using test::kOwnFunctions;
using test::noiseRealPlane;
using test::PlainHomomorphic;
using test::ProgressRange;
using test::sameBits;

constexpr int kModes[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, -1, 255};
constexpr double kSigma = 8.0;

/// Whole numbers from `from` to 255, as 8-bit pictures hold them.
RealImage bytePlane(int width, int height, unsigned seed, int from = 1) {
    RealImage plane(width, height);
    test::Noise noise(seed);
    for (std::size_t i = 0; i < plane.sampleCount(); ++i) {
        plane.data()[i] = noise.integer(from, 255);
    }
    return plane;
}

TEST(HomomorphicFilter, EveryModeIsItsFormulaToTheBit) {
    const int sizes[][2] = {{3, 3}, {3, 17}, {20, 3}, {33, 21}, {8, 700}};
    for (const auto& size : sizes) {
        for (const int mode : kModes) {
            SCOPED_TRACE(testing::Message() << mode << ", " << size[0] << " x " << size[1]);
            const RealImage bytes = bytePlane(size[0], size[1], 1);
            const RealImage reals = noiseRealPlane(size[0], size[1], 2, 0.01, 300.0);
            const PlainHomomorphic plain(mode, kSigma, 1.7, kOwnFunctions);
            HomomorphicFilter filter(mode, kSigma, 1.7);

            EXPECT_TRUE(sameBits(*filter.apply(bytes, nullptr), plain.apply(bytes)));
            EXPECT_TRUE(sameBits(*filter.apply(reals, nullptr), plain.apply(reals)));
        }
    }
}

TEST(HomomorphicFilter, EveryKernelTargetGivesTheSameBits) {
    const RealImage bytes = bytePlane(19, 530, 3, 0);
    const RealImage reals = noiseRealPlane(19, 530, 4, 0.5, 255.0);
    for (const int mode : kModes) {
        HomomorphicFilter filter(mode, 2.0, 2.5);
        limitKernelTarget(KernelTarget::Generic);
        const auto fromBytes = filter.apply(bytes, nullptr);
        const auto fromReals = filter.apply(reals, nullptr);
        for (const KernelTarget target : {KernelTarget::Avx2, KernelTarget::Avx512}) {
            limitKernelTarget(target);
            EXPECT_TRUE(sameBits(*filter.apply(bytes, nullptr), *fromBytes));
            EXPECT_TRUE(sameBits(*filter.apply(reals, nullptr), *fromReals));
        }
    }
    limitKernelTarget(KernelTarget::Avx512);
}

TEST(HomomorphicFilter, ResultsAreThoseOfTheLibrarysFunctionsButForTheLastBits) {
    const RealImage source = noiseRealPlane(40, 30, 5, 0.5, 255.0);
    for (const int mode : kModes) {
        const RealImage expected =
            PlainHomomorphic(mode, kSigma, 1.7, test::libraryFunctions()).apply(source);

        const auto result = HomomorphicFilter(mode, kSigma, 1.7).apply(source, nullptr);

        // Logarithms up to 6 lose at most a few units of 2^-50, which the blur averages and
        // the exponential multiplies by the sample.
        for (std::size_t i = 0; i < source.sampleCount(); ++i) {
            EXPECT_NEAR(result->data()[i], expected.data()[i], 255.0 * 0x1p-47);
        }
    }
}

TEST(HomomorphicFilter, Mode3IsMode1) {
    const RealImage source = noiseRealPlane(12, 9, 6, 1.0, 255.0);

    const auto reflectance = HomomorphicFilter(1, kSigma, 2.0).apply(source, nullptr);

    for (const int mode : {3, 6, 7, 0, -8, 100}) {
        EXPECT_TRUE(sameBits(*HomomorphicFilter(mode, kSigma, 2.0).apply(source, nullptr),
                             *reflectance));
    }
}

// The gain of so wide a blur is 1/500; what rounding leaves in it counts 500 times an axis.
TEST(HomomorphicFilter, AFlatPlaneIsItsOwnIlluminationAndReflects1) {
    for (const double level : {0.25, 1.0, 37.0, 200.5, 255.0}) {
        const RealImage flat(25, 14, level);

        const auto illumination = HomomorphicFilter(4, kSigma, 2.0).apply(flat, nullptr);
        const auto reflectance = HomomorphicFilter(1, kSigma, 2.0).apply(flat, nullptr);

        for (std::size_t i = 0; i < flat.sampleCount(); ++i) {
            EXPECT_NEAR(illumination->data()[i], level, level * 1e-11);
            EXPECT_NEAR(reflectance->data()[i], 1.0, 1e-11);
        }
    }
}

TEST(HomomorphicFilter, Mode8WithGamma1GivesTheSourceBack) {
    const RealImage source = bytePlane(31, 22, 7);

    const auto result = HomomorphicFilter(8, kSigma, 1.0).apply(source, nullptr);

    for (std::size_t i = 0; i < source.sampleCount(); ++i) {
        EXPECT_NEAR(result->data()[i], source.data()[i], 255.0 * 0x1p-50);
    }
}

TEST(HomomorphicFilter, Mode8LiftsShadowsAndKeepsWhite) {
    const RealImage dark(12, 12, 20.0);
    const RealImage white(12, 12, 255.0);

    const auto lifted = HomomorphicFilter(8, kSigma, 2.0).apply(dark, nullptr);
    const auto kept = HomomorphicFilter(8, kSigma, 2.0).apply(white, nullptr);

    EXPECT_NEAR(lifted->row(5)[5], std::sqrt(20.0 * 255.0), 1e-9);
    EXPECT_NEAR(kept->row(5)[5], 255.0, 1e-9);
}

TEST(HomomorphicFilter, LogarithmsAndIlluminationBelongTogether) {
    const RealImage source = noiseRealPlane(18, 25, 8, 1.0, 255.0);

    const auto reflectance = HomomorphicFilter(2, kSigma, 1.0).apply(source, nullptr);
    const auto illumination = HomomorphicFilter(5, kSigma, 1.0).apply(source, nullptr);

    for (std::size_t i = 0; i < source.sampleCount(); ++i) {
        EXPECT_NEAR(reflectance->data()[i] + illumination->data()[i],
                    std::log(source.data()[i]), 1e-13);
    }
}

TEST(HomomorphicFilter, ASampleOf0MakesTheWholePlaneNan) {
    for (const double black : {0.0, -0.0, -1.0, std::numeric_limits<double>::quiet_NaN()}) {
        for (const int mode : {1, 2, 4, 5, 8}) {
            RealImage source = bytePlane(9, 11, 9);
            source.row(8)[0] = black;

            const auto result = HomomorphicFilter(mode, kSigma, 2.0).apply(source, nullptr);

            int numbers = 0;
            for (std::size_t i = 0; i < source.sampleCount(); ++i) {
                numbers += std::isnan(result->data()[i]) ? 0 : 1;
            }
            EXPECT_EQ(numbers, 0) << black << ", mode " << mode;
        }
    }
}

TEST(HomomorphicFilter, AGammaOf0DividesByZero) {
    const RealImage flat(5, 5, 100.0);

    const auto result = HomomorphicFilter(8, kSigma, 0.0).apply(flat, nullptr);

    // (100 / 255) to the power of infinity.
    EXPECT_EQ(result->row(2)[2], 0.0);
}

TEST(HomomorphicFilter, ATargetIsWrittenThroughoutAndTheSourceKept) {
    const RealImage source = bytePlane(14, 10, 10);
    const RealImage before(source);
    for (const int mode : {1, 2, 4, 5, 8}) {
        HomomorphicFilter filter(mode, kSigma, 2.0);
        auto target = std::make_unique<RealImage>(14, 10, -7.0);
        const RealImage* const address = target.get();

        const auto result = filter.apply(source, std::move(target));

        EXPECT_EQ(result.get(), address);
        EXPECT_TRUE(sameBits(*result, *filter.apply(source, nullptr)));
        EXPECT_TRUE(sameBits(source, before));
    }
}

TEST(HomomorphicFilter, ANewTargetHasTheSourcesFlag) {
    RealImage source = bytePlane(5, 4, 10);
    source.setFlag(3);

    const auto result = HomomorphicFilter(8, kSigma, 2.0).apply(source, nullptr);

    EXPECT_EQ(result->flag(), 3);
}

TEST(HomomorphicFilter, IteratedPassesWorkOnTheResultOfTheOneBefore) {
    const RealImage source = bytePlane(14, 10, 11);
    HomomorphicFilter filter(8, kSigma, 1.5);

    const auto twice = filter.iterate(2, source, nullptr);

    const auto once = filter.apply(source, nullptr);
    EXPECT_TRUE(sameBits(*twice, *filter.apply(*once, nullptr)));
}

TEST(HomomorphicFilter, NamesItself) {
    std::FILE* file = std::tmpfile();
    ASSERT_NE(file, nullptr);
    HomomorphicFilter(8, kSigma, 2.0).printName(file);
    std::rewind(file);
    char text[64] = {};

    const std::size_t count = std::fread(text, 1, sizeof text - 1, file);
    std::fclose(file);

    EXPECT_EQ(count, 24u);
    EXPECT_STREQ(text, "Real Homomorphic filter\n");
}

TEST(HomomorphicFilter, KeepsItsFields) {
    const HomomorphicFilter filter(5, 0.25, 3.5);

    EXPECT_EQ(filter.mode(), 5);
    EXPECT_EQ(filter.sigma(), 0.25);
    EXPECT_EQ(filter.gamma(), 3.5);
}

std::vector<int>& reports() {
    static std::vector<int> values;
    return values;
}

void ORV_PROGRESS_CALL record(int value) {
    reports().push_back(value);
}

/// What a run reports into a window from `low` to `high`.
std::vector<int> reportsOf(int mode, int width, int low, int high) {
    const ProgressRange range(low, high);
    progressWindow().callback = record;
    reports().clear();
    HomomorphicFilter(mode, kSigma, 2.0).apply(RealImage(width, 4, 9.0), nullptr);
    EXPECT_EQ(progressWindow().progressLow, low);
    EXPECT_EQ(progressWindow().progressHigh, high);
    return reports();
}

TEST(HomomorphicFilter, Mode8ReportsEveryColumn) {
    EXPECT_EQ(reportsOf(8, 7, 0, 100), (std::vector<int>{0, 14, 28, 42, 57, 71, 85}));
    EXPECT_EQ(reportsOf(8, 3, 0, 33), (std::vector<int>{0, 11, 22}));
    EXPECT_EQ(reportsOf(8, 5, 0, 0), (std::vector<int>{0, 0, 0, 0, 0}));
}

TEST(HomomorphicFilter, TheOtherModesReportNothing) {
    for (const int mode : {1, 2, 3, 4, 5, 7}) {
        EXPECT_TRUE(reportsOf(mode, 7, 0, 100).empty());
    }
}

TEST(Quirk, HomomorphicProgress) {
    // The width of the window is 30; its lower end is not added.
    EXPECT_EQ(reportsOf(8, 4, 60, 90), (std::vector<int>{0, 7, 15, 22}));
    // Upside down, the quotients are truncated toward 0.
    EXPECT_EQ(reportsOf(8, 4, 30, 0), (std::vector<int>{0, -7, -15, -22}));
}

class StopAfter : public WorkObserver {
  public:
    explicit StopAfter(int calls) : left_(calls) {}
    bool onWork(double done) override {
        rises_ = rises_ && done >= last_ && done <= 1.0;
        last_ = done;
        return --left_ > 0;
    }
    double last() const { return last_; }
    bool rises() const { return rises_; }

  private:
    int left_;
    double last_ = 0.0;
    bool rises_ = true;
};

TEST(HomomorphicFilter, TheAccountOfWorkRisesAndStopsARun) {
    const RealImage source = bytePlane(80, 60, 12);
    StopAfter patient(1000000);
    StopAfter hasty(2);
    {
        const WorkObserverScope scope(&patient);
        HomomorphicFilter(8, kSigma, 2.0).apply(source, nullptr);
    }
    {
        const WorkObserverScope scope(&hasty);
        HomomorphicFilter(8, kSigma, 2.0).apply(source, nullptr);
        EXPECT_TRUE(workCancelled());
    }
    EXPECT_TRUE(patient.rises());
    EXPECT_GT(patient.last(), 0.9);
    EXPECT_LT(hasty.last(), 0.5);
}

}  // namespace
}  // namespace orv
