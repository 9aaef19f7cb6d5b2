#include "methods/shock_method.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "base/rounding.h"
#include "methods/method_catalogue.h"
#include "operators/shock/shock_operator.h"
#include "support/method_planes.h"
#include "support/plane_support.h"

namespace orv {
namespace {

using test::sameBits;

Planes noisyPlanes(int count) {
    return test::noisyPlanes(23, 19, count);
}

Arguments argumentsOf(const char* method) {
    Arguments arguments(kShockMethod.parameters);
    EXPECT_EQ(arguments.set("method", method), "");
    EXPECT_EQ(arguments.set("iterations", "4"), "");
    EXPECT_EQ(arguments.set("step", "0.3"), "");
    EXPECT_EQ(arguments.set("diffusion", "0.15"), "");
    EXPECT_EQ(arguments.set("arctan-scale", "0.5"), "");
    return arguments;
}

TEST(ShockMethod, IsTheOperatorsOwnResultRoundedAndClamped) {
    const char* const names[] = {"sign", "diffusive-sign", "arctan", "diffusive-arctan"};
    for (int method = 0; method < 4; ++method) {
        ShockOperator direct(4, method, 0.3, 0.15, 0.5);
        for (const int count : {1, 3}) {
            SCOPED_TRACE(std::string(names[method]) + ", " + std::to_string(count));
            const MethodResult result =
                kShockMethod.run(noisyPlanes(count), argumentsOf(names[method]), nullptr);

            ASSERT_EQ(result.error, "");
            ASSERT_EQ(result.planes.size(), static_cast<std::size_t>(count));
            const Planes source = noisyPlanes(count);
            for (std::size_t c = 0; c < source.size(); ++c) {
                RealImage plane(23, 19);
                for (std::size_t i = 0; i < plane.sampleCount(); ++i) {
                    plane.data()[i] = source[c]->data()[i];
                }
                const auto moved = direct.runPlane(plane);
                FloatImage expected(23, 19);
                for (std::size_t i = 0; i < plane.sampleCount(); ++i) {
                    expected.data()[i] = toFloat(moved->data()[i]);
                }
                expected.clamp(0.0f, 255.0f);
                EXPECT_TRUE(sameBits(*result.planes[c], expected));
            }
        }
    }
}

TEST(ShockMethod, TakesItsMethodsByNumberToo) {
    Arguments arguments(kShockMethod.parameters);

    EXPECT_EQ(arguments.set("method", "1"), "");
    EXPECT_EQ(arguments.choiceName("method"), "diffusive-sign");
}

TEST(ShockMethod, RefusesWhatIsOutOfRange) {
    Arguments arguments(kShockMethod.parameters);

    EXPECT_EQ(arguments.set("method", "4"),
              "--method: 4 is out of range (expected sign, diffusive-sign, arctan, "
              "diffusive-arctan, default diffusive-arctan)");
    EXPECT_EQ(arguments.set("iterations", "-1"),
              "--iterations: -1 is out of range (expected STEPS from 0 to 10000, default 4)");
    EXPECT_EQ(arguments.set("step", "1.5"),
              "--step: 1.5 is out of range (expected PIXELS from 0 to 1, default 0.2)");
    EXPECT_EQ(
        kShockMethod.run(noisyPlanes(2), Arguments(kShockMethod.parameters), nullptr).error,
        "takes 1 or 3 planes, not 2");
}

TEST(ShockMethod, TellsHowFarItIsAndStopsWhenAsked) {
    double last = -1.0;
    const MethodResult whole =
        kShockMethod.run(noisyPlanes(3), argumentsOf("sign"), [&](double done) {
            EXPECT_GE(done, last);
            last = done;
            return true;
        });
    EXPECT_EQ(whole.error, "");
    EXPECT_EQ(last, 1.0);

    int calls = 0;
    const MethodResult stopped =
        kShockMethod.run(noisyPlanes(3), argumentsOf("sign"), [&](double) {
            ++calls;
            return calls < 3;
        });
    EXPECT_TRUE(stopped.cancelled);
    EXPECT_TRUE(stopped.planes.empty());
    EXPECT_EQ(calls, 3);
}

TEST(ShockMethod, IsInTheCatalogue) {
    EXPECT_EQ(findMethod("shock"), &kShockMethod);
}

}  // namespace
}  // namespace orv
