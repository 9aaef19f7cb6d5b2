#include <gtest/gtest.h>

#include <vector>

#include "exports/progress_window.h"
#include "orv/orv.h"
#include "support/handle.h"
#include "support/progress_recording.h"

namespace orv {
namespace {

// Taken before any test can set a callback.
const ProgressWindow windowAtStart = progressWindow();

test::Handle run(const test::Handle& image, const char* scheme, int iterations) {
    return test::Handle(
        ORVFastRestoration(image.get(), scheme, 0, iterations, 1.0, 5, 0.0, 10.0, "PM", 0, 0));
}

// A picture of 4 by 3: each plane reports once, 3 rows, once, 4 columns.
const std::vector<int> kOneCall = {0,  0,  5,  11, 16, 16, 20, 24, 28,   // 0 to 33
                                   33, 33, 38, 44, 49, 49, 53, 57, 61,   // 33 to 66
                                   66, 66, 71, 77, 83, 83, 87, 91, 95};  // 66 to 100

TEST(Progress, WindowIsAllZeroBeforeTheFirstCallback) {
    EXPECT_EQ(windowAtStart.callback, nullptr);
    EXPECT_EQ(windowAtStart.progressLow, 0);
    EXPECT_EQ(windowAtStart.progressHigh, 0);
}

TEST(Progress, OneAosCallReportsThreePlanesOfLines) {
    const test::Handle image = test::photoHandle(4, 3, /*seed=*/1);
    test::ProgressRecording recording;

    run(image, "AOS", 1);

    EXPECT_EQ(recording.take(), kOneCall);
}

TEST(Progress, CallWithoutResetReportsIntoTheLastSliceOfTheOneBefore) {
    const test::Handle image = test::photoHandle(4, 3, /*seed=*/1);
    test::ProgressRecording recording;
    run(image, "AOS", 1);
    recording.take();

    run(image, "AOS", 1);

    // The window that the first call left, 66 to 100, is 34 wide and starts at 0 again.
    EXPECT_EQ(recording.take(),
              (std::vector<int>{0,  0,  1,  3,  5,  5,  6,  7,  9,      // 0 to 11
                                11, 11, 12, 14, 16, 16, 17, 18, 20,     // 11 to 22
                                22, 22, 24, 26, 28, 28, 29, 31, 32}));  // to 34
}

TEST(Progress, SettingTheCallbackAgainGivesTheWholeScaleAgain) {
    const test::Handle image = test::photoHandle(4, 3, /*seed=*/1);
    test::ProgressRecording recording;
    run(image, "AOS", 1);
    recording.take();

    recording.reset();
    run(image, "AOS", 1);

    EXPECT_EQ(recording.take(), kOneCall);
}

TEST(Progress, TwoStepsClimbPastTheEndOfTheScale) {
    const test::Handle image = test::photoHandle(4, 3, /*seed=*/1);
    test::ProgressRecording recording;

    run(image, "AOS", 2);

    EXPECT_EQ(recording.take(),
              (std::vector<int>{0,  0,  8,  16,  24,  24,  30,  36,  42,      // 0 to 49
                                16, 16, 27, 38,  49,  49,  57,  65,  73,      // 16 to 82
                                33, 33, 41, 49,  57,  57,  63,  69,  75,      // 33 to 82
                                49, 49, 60, 71,  82,  82,  90,  98,  106,     // 49 to 115
                                66, 66, 74, 83,  91,  91,  97,  103, 110,     // 66 to 117
                                83, 83, 94, 105, 117, 117, 125, 134, 142}));  // 83 to 151
}

TEST(Progress, OtherSchemesReportNothing) {
    const test::Handle image = test::photoHandle(4, 3, /*seed=*/1);
    test::ProgressRecording recording;

    for (const char* scheme : {"2DSemi", "2DImplicit", "LOD", "AFI", "ADI", "AMOS"}) {
        run(image, scheme, 1);
    }

    EXPECT_TRUE(recording.take().empty());
}

void ORV_CALLBACK throwAtOnce(int /*value*/) {
    throw 1;
}

TEST(Progress, ExceptionOfACallbackGivesNull) {
    const test::Handle image = test::photoHandle(4, 3, /*seed=*/1);
    SetORVCallBack(throwAtOnce);

    const test::Handle result = run(image, "AOS", 1);
    SetORVCallBack(nullptr);

    EXPECT_EQ(result, nullptr);
}

TEST(Progress, RefusedCallReportsNothing) {
    const test::Handle image = test::photoHandle(4, 3, /*seed=*/1);
    test::ProgressRecording recording;

    const test::Handle refused(
        ORVFastRestoration(image.get(), "AOS", 42, 1, 1.0, 5, 0.0, 10.0, "PM", 0, 0));

    EXPECT_EQ(refused, nullptr);
    EXPECT_TRUE(recording.take().empty());
}

TEST(Progress, ConvertingAndReadingReportNothing) {
    test::ProgressRecording recording;

    const test::Handle image = test::photoHandle(4, 3, /*seed=*/1);
    test::pixelsOf(image);

    EXPECT_TRUE(recording.take().empty());
}

}  // namespace
}  // namespace orv
