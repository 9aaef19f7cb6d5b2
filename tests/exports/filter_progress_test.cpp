#include <gtest/gtest.h>

#include <vector>

#include "orv/orv.h"
#include "support/handle.h"
#include "support/progress_recording.h"

namespace orv {
namespace {

using test::Handle;
using test::ProgressRecording;

std::vector<int> threeTimes(const std::vector<int>& plane) {
    std::vector<int> all;
    for (int i = 0; i < 3; ++i) {
        all.insert(all.end(), plane.begin(), plane.end());
    }
    return all;
}

TEST(FilterProgress, SimpleColourTransferReportsItsThreeStages) {
    const Handle source = test::photoHandle(7, 5, /*seed=*/1);
    const Handle style = test::photoHandle(4, 9, /*seed=*/2);
    ProgressRecording recording;
    const std::vector<int> expected{0,  0,  0,  6,  13, 20, 20, 20, 26,
                                    33, 40, 40, 50, 60, 70, 70, 80, 90};

    const Handle first(ORVISimpleColorTranfer(source.get(), style.get()));
    EXPECT_EQ(recording.take(), expected);

    // It reports in its own scale, so a second call needs no reset.
    const Handle second(ORVISimpleColorTranfer(source.get(), style.get()));
    EXPECT_EQ(recording.take(), expected);
}

TEST(FilterProgress, ColourToGreyTransferReportsNothing) {
    const Handle grey = test::photoHandle(7, 5, /*seed=*/1);
    const Handle colour = test::photoHandle(12, 13, /*seed=*/2);
    ProgressRecording recording;
    const Handle result(ORVIColorToGreyTranfertOp(grey.get(), colour.get()));
    EXPECT_NE(result, nullptr);
    EXPECT_TRUE(recording.take().empty());
}

TEST(FilterProgress, SusanReportsEachPassAndThenItsColumns) {
    const Handle image = test::photoHandle(5, 4, /*seed=*/1);
    ProgressRecording recording;
    const std::vector<int> expected{0, 0, 10, 20, 30, 40, 50, 50, 60, 70, 80, 90};

    const Handle first(ORVISusanRestoration(image.get(), 2, 20.0, 3.0));
    EXPECT_EQ(recording.take(), expected);
    const Handle second(ORVISusanRestoration(image.get(), 2, 20.0, 3.0));
    EXPECT_EQ(recording.take(), expected);
    const Handle none(ORVISusanRestoration(image.get(), 0, 20.0, 3.0));
    EXPECT_TRUE(recording.take().empty());
}

TEST(FilterProgress, SusanDividesEachTermByItself) {
    const Handle image = test::photoHandle(3, 4, /*seed=*/1);
    ProgressRecording recording;
    const Handle result(ORVISusanRestoration(image.get(), 3, 20.0, 3.0));
    EXPECT_EQ(recording.take(),
              (std::vector<int>{0, 0, 11, 22, 33, 33, 44, 55, 66, 66, 77, 88}));
}

TEST(FilterProgress, HomomorphicCompressionReportsWithoutTheLowerEnd) {
    const Handle image = test::photoHandle(4, 3, /*seed=*/1);
    ProgressRecording recording;
    const Handle first(ORVIHomomorphicOp(image.get(), 2.0, 8));
    EXPECT_EQ(recording.take(), (std::vector<int>{0, 8, 16, 24,     // 0 to 33
                                                  0, 8, 16, 24,     // 33 to 66
                                                  0, 8, 17, 25}));  // 66 to 100

    // A second call without a reset runs in the last slice, 66 to 100, which it reads as 34 wide.
    const Handle second(ORVIHomomorphicOp(image.get(), 2.0, 8));
    EXPECT_EQ(recording.take(), (std::vector<int>{0, 2, 5, 8,     // 0 to 11
                                                  0, 2, 5, 8,     // 11 to 22
                                                  0, 3, 6, 9}));  // 22 to 34

    recording.reset();
    const Handle third(ORVIHomomorphicOp(image.get(), 2.0, 8));
    EXPECT_EQ(recording.take().back(), 25);
}

TEST(FilterProgress, HomomorphicPartsReportNothing) {
    const Handle image = test::photoHandle(4, 3, /*seed=*/1);
    ProgressRecording recording;
    for (const int mode : {1, 2, 4, 5}) {
        const Handle result(ORVIHomomorphicOp(image.get(), 2.0, mode));
        EXPECT_NE(result, nullptr);
    }
    EXPECT_TRUE(recording.take().empty());
}

TEST(FilterProgress, DeblurringReportsLinesOfBothSweepsPlaneByPlane) {
    const Handle image = test::photoHandle(6, 7, /*seed=*/1);
    ProgressRecording recording;
    const std::vector<int> plane{0,  10,                          // blurs
                                 10, 10, 10, 10, 10, 10, 10, 10,  // step 0, 7 lines along x
                                 10, 10, 10, 10, 10, 10,          // and 6 along y
                                 55, 55, 58, 61, 64, 67, 71, 74,  // step 1
                                 77, 80, 84, 88, 92, 95, 100};
    const Handle first(ORVIFAosBarashOp(image.get(), 2, 3, 0.1, 0.5, 1.0, 10.0, false, false));
    EXPECT_EQ(recording.take(), threeTimes(plane));
    const Handle second(ORVIFAosBarashOp(image.get(), 2, 3, 0.1, 0.5, 1.0, 10.0, false, true));
    EXPECT_EQ(recording.take(), threeTimes(plane));
}

TEST(FilterProgress, DeblurringPassesTheEndOfTheScaleWithManySteps) {
    const Handle image = test::photoHandle(6, 6, /*seed=*/1);
    ProgressRecording recording;
    const Handle result(
        ORVIFAosBarashOp(image.get(), 10, 3, 0.1, 0.5, 1.0, 10.0, false, false));
    const std::vector<int> values = recording.take();
    ASSERT_GT(values.size(), 2U);
    // The last line along y of step 9: 5 x 45 x 9 / 60 + 81 + 40 + 10.
    EXPECT_EQ(values[values.size() - 2], 164);
    EXPECT_EQ(values.back(), 100);
}

TEST(FilterProgress, BlurRetinexShockAndWaveletsReportNothing) {
    const Handle image = test::photoHandle(16, 16, /*seed=*/1);
    ProgressRecording recording;
    const Handle results[] = {Handle(ORVIFVanVieltBlurringIirOp(image.get(), 2.0)),
                              Handle(ORVRetinex(image.get(), 2.0, 0.1, 0.1, 2)),
                              Handle(ORVIShockOp(image.get(), 1, 2, 0.1)),
                              Handle(ORVWaveletDenoising(image.get(), "SureShrink", 1, 1))};
    for (const Handle& result : results) {
        EXPECT_NE(result, nullptr);
    }
    EXPECT_TRUE(recording.take().empty());
}

}  // namespace
}  // namespace orv
