#include <gtest/gtest.h>

#include "orv/orv.h"
#include "support/handle.h"

namespace orv {
namespace {

TEST(LaterExports, ReturnNullWhateverTheirArguments) {
    const test::Handle image = test::photoHandle(5, 4, /*seed=*/1);
    for (void* given : {image.get(), static_cast<void*>(nullptr)}) {
        EXPECT_EQ(ORVIFAosBarashOp(given, 1, 0, 1.0, 1.0, 1.0, 1.0, true, false), nullptr);
        EXPECT_EQ(ORVIFVanVieltBlurringIirOp(given, 2.0), nullptr);
        EXPECT_EQ(ORVIHomomorphicOp(given, 2.0, 8), nullptr);
        EXPECT_EQ(ORVRetinex(given, 2.0, 0.1, 0.1, 3), nullptr);
        EXPECT_EQ(ORVIShockOp(given, 1, 5, 0.1), nullptr);
        EXPECT_EQ(ORVISusanRestoration(given, 1, 20.0, 4.0), nullptr);
        EXPECT_EQ(ORVWaveletDenoising(given, "SureShrink", 3, 3), nullptr);
        EXPECT_EQ(ORVWaveletDenoising(given, nullptr, 3, 3), nullptr);
        EXPECT_EQ(ORVISimpleColorTranfer(given, given), nullptr);
        EXPECT_EQ(ORVIColorToGreyTranfertOp(given, given), nullptr);
    }
}

}  // namespace
}  // namespace orv
