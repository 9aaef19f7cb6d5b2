#include "methods/susan_method.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "methods/method_catalogue.h"
#include "operators/susan/susan_restoration_operator.h"
#include "support/method_planes.h"
#include "support/plane_support.h"

namespace orv {
namespace {

using test::sameBits;

Planes noisyPlanes(int count) {
    return test::noisyPlanes(23, 19, count);
}

Arguments someArguments() {
    Arguments arguments(kSusanMethod.parameters);
    EXPECT_EQ(arguments.set("threshold", "40.5"), "");
    EXPECT_EQ(arguments.set("sigma", "1.25"), "");
    EXPECT_EQ(arguments.set("passes", "3"), "");
    return arguments;
}

TEST(SusanMethod, IsTheOperatorsOwnResultClamped) {
    const Arguments arguments = someArguments();
    const SusanRestorationOperator direct(3, 40.5, 1.25);
    for (const int count : {1, 3}) {
        const MethodResult result = kSusanMethod.run(noisyPlanes(count), arguments, nullptr);

        ASSERT_EQ(result.error, "");
        ASSERT_EQ(result.planes.size(), static_cast<std::size_t>(count));
        const Planes source = noisyPlanes(count);
        for (std::size_t c = 0; c < source.size(); ++c) {
            const auto expected = direct.runPlane(*source[c]);
            expected->clamp(0.0f, 255.0f);
            EXPECT_TRUE(sameBits(*result.planes[c], *expected));
        }
    }
}

TEST(SusanMethod, RefusesWhatIsOutOfRange) {
    Arguments arguments(kSusanMethod.parameters);

    EXPECT_EQ(arguments.set("threshold", "0"),
              "--threshold: 0 is out of range (expected GREY-LEVELS from 0.5 to 1000, default "
              "30.0)");
    EXPECT_EQ(arguments.set("sigma", "0.1"),
              "--sigma: 0.1 is out of range (expected PIXELS from 0.3 to 50, default 1.5)");
    EXPECT_EQ(arguments.set("passes", "0"),
              "--passes: 0 is out of range (expected PASSES from 1 to 100, default 2)");
    EXPECT_EQ(
        kSusanMethod.run(noisyPlanes(2), Arguments(kSusanMethod.parameters), nullptr).error,
        "takes 1 or 3 planes, not 2");
}

TEST(SusanMethod, TellsHowFarItIsAndStopsWhenAsked) {
    const Arguments arguments = someArguments();
    double last = -1.0;
    const MethodResult whole = kSusanMethod.run(noisyPlanes(3), arguments, [&](double done) {
        EXPECT_GE(done, last);
        last = done;
        return true;
    });
    EXPECT_EQ(whole.error, "");
    EXPECT_EQ(last, 1.0);

    int calls = 0;
    const MethodResult stopped = kSusanMethod.run(noisyPlanes(3), arguments, [&](double) {
        ++calls;
        return calls < 3;
    });
    EXPECT_TRUE(stopped.cancelled);
    EXPECT_TRUE(stopped.planes.empty());
    EXPECT_EQ(calls, 3);
}

TEST(SusanMethod, IsInTheCatalogue) {
    EXPECT_EQ(findMethod("susan"), &kSusanMethod);
}

}  // namespace
}  // namespace orv
