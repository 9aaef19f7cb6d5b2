// What docs/hosts/exports.md tells of every restoration alike: what it writes, what it leaves of the
// progress range, and on which thread things happen.
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "base/text_output.h"
#include "exports/progress_window.h"
#include "orv/orv.h"
#include "support/handle.h"
#include "support/progress_recording.h"

namespace orv {
namespace {

using test::Handle;
using Bytes = std::vector<unsigned char>;

/// A call with ordinary arguments, the ends of the progress range after it, and what it writes to
/// the standard output and to the standard error stream.
struct Call {
    const char* name;
    void* (*run)(void* image);
    int low;
    int high;
    const char* output;
    const char* errors;
};

// The formulas of van Vliet, Young and Verbeek for sigma 2, computed apart.
constexpr const char* kBlurText =
    "b0=6.943976, b1=8.560308, b2=-3.842199, b3=0.647603\n"
    "b1/b0=1.232768, b2/b0=-0.553314, b3/b0=0.093261\n"
    "B=0.227285\n";
constexpr const char* kAlphaText =
    "Alpha from table is 0.5\nAlpha from table is 0.5\nAlpha from table is 0.5\n";

void* restore(void* image, const char* scheme) {
    return ORVFastRestoration(image, scheme, 0, 1, 1.0, 5, 0.7, 10.0, "PM", 0, 0);
}

void* denoise(void* image, const char* scheme) {
    return ORVFastDenoiser(image, scheme, 0, 1, 1.0, 2, 0.7, 10.0, 0.1, "VAR", 0, 0);
}

const Call kCalls[] = {
    {"restore AOS", [](void* image) { return restore(image, "AOS"); }, 66, 100, "", ""},
    {"restore ADI", [](void* image) { return restore(image, "ADI"); }, 66, 100, "", ""},
    {"restore 2DSemi", [](void* image) { return restore(image, "2DSemi"); }, 66, 100, "", ""},
    {"denoise AOS", [](void* image) { return denoise(image, "AOS"); }, 66, 100, "", ""},
    {"denoise LOD", [](void* image) { return denoise(image, "LOD"); }, 66, 100, "", ""},
    {"deblur",
     [](void* image) {
         return ORVIFAosBarashOp(image, 2, 3, 0.05, 4.0, 1.0, 10.0, false, false);
     },
     66, 100, "", ""},
    {"blur", [](void* image) { return ORVIFVanVieltBlurringIirOp(image, 2.0); }, 66, 100,
     kBlurText, ""},
    {"homomorphic", [](void* image) { return ORVIHomomorphicOp(image, 2.0, 8); }, 66, 100, "",
     ""},
    {"reflectance", [](void* image) { return ORVIHomomorphicOp(image, 2.0, 1); }, 66, 100, "",
     ""},
    {"retinex", [](void* image) { return ORVRetinex(image, 2.2, 0.1, 0.1, 2); }, 66, 100, "",
     ""},
    {"shock", [](void* image) { return ORVIShockOp(image, 1, 5, 0.2); }, 66, 100, "", ""},
    {"susan", [](void* image) { return ORVISusanRestoration(image, 2, 20.0, 4.0); }, 0, 100, "",
     ""},
    {"sure", [](void* image) { return ORVWaveletDenoising(image, "SureShrink", -1, 3); }, 66,
     100, "", ""},
    {"visu", [](void* image) { return ORVWaveletDenoising(image, "VisuShrink", 50, 1); }, 66,
     100, "", "Requested too many levels, setting levels to 3\n"},
    {"brownian", [](void* image) { return ORVWaveletDenoising(image, "Brownian", 1, 1); }, 66,
     100, kAlphaText, ""},
    {"recolor", [](void* image) { return ORVISimpleColorTranfer(image, image); }, 0, 100, "",
     ""},
    {"colorize", [](void* image) { return ORVIColorToGreyTranfertOp(image, image); }, 0, 100,
     "", ""},
};

Bytes resultOf(const Call& call, const Handle& image) {
    return test::pixelsOf(Handle(call.run(image.get())));
}

/// What a call gives on a thread that has made none before.
Bytes resultOnNewThread(const Call& call, const Handle& image) {
    Bytes result;
    std::thread([&] { result = resultOf(call, image); }).join();
    return result;
}

TEST(HostContract, RestorationsWriteWhatTheirPageTellsAndNothingElse) {
    const Handle image = test::photoHandle(16, 16, /*seed=*/1);
    for (const Call& call : kCalls) {
        SCOPED_TRACE(call.name);
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        const Handle result(call.run(image.get()));
        flushText();
        EXPECT_EQ(testing::internal::GetCapturedStdout(), call.output);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), call.errors);
        EXPECT_NE(result, nullptr);
    }
}

TEST(HostContract, OperationsOnPlanesLeaveTheLastThirdOfTheRange) {
    const SilencedOutput silence;
    const Handle image = test::photoHandle(16, 16, /*seed=*/1);
    for (const Call& call : kCalls) {
        SCOPED_TRACE(call.name);
        test::ProgressRecording recording;

        resultOf(call, image);

        EXPECT_EQ(progressWindow().progressLow, call.low);
        EXPECT_EQ(progressWindow().progressHigh, call.high);
    }
}

TEST(HostContract, SeveralStepsLeaveTwiceTheWidthOfAThirdForTheNextCall) {
    const Handle image = test::photoHandle(16, 16, /*seed=*/1);
    for (const char* scheme : {"AOS", "LOD", "2DSemi"}) {
        SCOPED_TRACE(scheme);
        test::ProgressRecording recording;

        Handle(ORVFastRestoration(image.get(), scheme, 0, 2, 1.0, 5, 0.7, 10.0, "PM", 0, 0));
        const ProgressWindow left = progressWindow();
        recording.take();
        Handle(restore(image.get(), "AOS"));
        const std::vector<int> next = recording.take();

        EXPECT_EQ(left.progressLow, 83);
        EXPECT_EQ(left.progressHigh, 151);
        ASSERT_FALSE(next.empty());
        EXPECT_EQ(next.front(), 0);
        EXPECT_GE(next.back(), 66);
        EXPECT_LE(next.back(), 67);
    }
}

TEST(HostContract, EveryThreadGivesTheSamePicture) {
    const SilencedOutput silence;
    const Handle image = test::photoHandle(16, 16, /*seed=*/1);
    for (const Call& call : kCalls) {
        SCOPED_TRACE(call.name);
        const Bytes first = resultOnNewThread(call, image);

        EXPECT_EQ(resultOnNewThread(call, image), first);
        if (std::string(call.name) != "colorize") {
            EXPECT_EQ(resultOf(call, image), first);
        }
    }
}

std::thread::id reportingThread;

void ORV_CALLBACK keepThread(int /*percent*/) {
    reportingThread = std::this_thread::get_id();
}

TEST(HostContract, CallbackRunsOnTheCallingThread) {
    const Handle image = test::photoHandle(16, 16, /*seed=*/1);
    std::thread::id caller;

    SetORVCallBack(keepThread);
    std::thread([&] {
        caller = std::this_thread::get_id();
        const Handle result(restore(image.get(), "AOS"));
    }).join();
    SetORVCallBack(nullptr);

    EXPECT_EQ(reportingThread, caller);
    EXPECT_NE(reportingThread, std::this_thread::get_id());
}

TEST(HostContract, CallbackOfOneThreadServesCallsOfAnother) {
    const Handle image = test::photoHandle(16, 16, /*seed=*/1);
    test::ProgressRecording recording;

    std::thread([&] { const Handle result(restore(image.get(), "AOS")); }).join();

    EXPECT_FALSE(recording.take().empty());
}

}  // namespace
}  // namespace orv
