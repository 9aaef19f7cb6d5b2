#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>

#include "base/rounding.h"
#include "exports/progress_window.h"
#include "images/rgb_discrete_image.h"
#include "methods/denoise_method.h"
#include "methods/diffusion_run.h"
#include "methods/restore_method.h"
#include "operators/diffusion/fast_denoiser_operator.h"
#include "operators/diffusion/fast_restoration_operator.h"
#include "support/handle.h"

namespace orv {
namespace {

struct NamedScheme {
    const char* name;
    int number;
};
constexpr NamedScheme kSchemes[] = {{"LOD", 0},        {"AFI", 1},   {"ADI", 10},
                                    {"AOS", 20},       {"AMOS", 21}, {"2DSemi", 30},
                                    {"2DImplicit", 40}};

/// Blocks of two levels with noise: edges for the diffusivity, and samples near 0 and 255.
float sampleAt(int x, int y, int c) {
    const auto mixed = static_cast<unsigned>(x * 7919 + y * 104729 + c * 1299709) * 2654435761U;
    const float noise = static_cast<float>(mixed >> 24) / 255.0f * 40.0f - 20.0f;
    const float level = ((x / 5) + (y / 4)) % 2 == 0 ? 10.0f : 245.0f;
    return std::floor(std::fmin(255.0f, std::fmax(0.0f, level + noise)));
}

Planes testPlanes(int width, int height, int count) {
    Planes planes;
    for (int c = 0; c < count; ++c) {
        planes.push_back(std::make_unique<FloatImage>(width, height));
        for (int x = 0; x < width; ++x) {
            for (int y = 0; y < height; ++y) {
                planes.back()->row(x)[y] = sampleAt(x, y, c);
            }
        }
    }
    return planes;
}

FloatImage3 threePlanes(int width, int height) {
    FloatImage3 result(width, height);
    Planes planes = testPlanes(width, height, 3);
    for (int c = 0; c < 3; ++c) {
        result.setPlane(c, std::move(planes[static_cast<std::size_t>(c)]));
    }
    return result;
}

Arguments argumentsOf(const Method& method,
                      std::initializer_list<std::pair<const char*, const char*>> values) {
    Arguments arguments(method.parameters);
    for (const auto& [name, value] : values) {
        EXPECT_EQ(arguments.set(name, value), "");
    }
    return arguments;
}

void expectClampedBits(const FloatImage& unclamped, const FloatImage& result) {
    const auto expected = unclamped.clone();
    expected->clamp(0.0f, 255.0f);
    ASSERT_EQ(result.sampleCount(), expected->sampleCount());
    EXPECT_EQ(
        std::memcmp(result.data(), expected->data(), expected->sampleCount() * sizeof(float)),
        0);
}

TEST(RestoreMethod, OneStepIsTheOperatorsOwnResultClamped) {
    for (const NamedScheme& scheme : kSchemes) {
        SCOPED_TRACE(scheme.name);
        const Arguments arguments = argumentsOf(kRestoreMethod, {{"scheme", scheme.name},
                                                                 {"flow", "WE"},
                                                                 {"tau", "3.5"},
                                                                 {"sigma", "0.8"},
                                                                 {"contrast", "9"},
                                                                 {"norm", "minmod"},
                                                                 {"substeps", "on"},
                                                                 {"steps", "1"}});
        FastRestorationOperator direct(scheme.number, 1, 50, 3.5, 0.8, 9.0, 0, true, 10, 1);

        const MethodResult colour =
            kRestoreMethod.run(testPlanes(23, 17, 3), arguments, nullptr);
        const MethodResult grey = kRestoreMethod.run(testPlanes(23, 17, 1), arguments, nullptr);

        ASSERT_EQ(colour.error, "");
        ASSERT_EQ(colour.planes.size(), 3U);
        const auto expected = direct.runPlanes(threePlanes(23, 17), nullptr);
        for (int c = 0; c < 3; ++c) {
            expectClampedBits(expected->plane(c), *colour.planes[static_cast<std::size_t>(c)]);
        }
        ASSERT_EQ(grey.planes.size(), 1U);
        expectClampedBits(*direct.runPlane(*testPlanes(23, 17, 1)[0]), *grey.planes[0]);
    }
}

TEST(DenoiseMethod, OneStepIsTheOperatorsOwnResultClamped) {
    for (const NamedScheme& scheme : kSchemes) {
        SCOPED_TRACE(scheme.name);
        const Arguments arguments = argumentsOf(kDenoiseMethod, {{"scheme", scheme.name},
                                                                 {"flow", "TV"},
                                                                 {"tau", "1.5"},
                                                                 {"sigma", "0.5"},
                                                                 {"contrast", "7"},
                                                                 {"fidelity", "0.3"},
                                                                 {"steps", "1"}});
        FastDenoiserOperator direct(scheme.number, 1, 50, 1.5, 0.5, 7.0, 0.3, 0, true, 21, 0);

        const MethodResult result =
            kDenoiseMethod.run(testPlanes(19, 24, 3), arguments, nullptr);

        ASSERT_EQ(result.error, "");
        const auto expected = direct.runPlanes(threePlanes(19, 24), nullptr);
        for (int c = 0; c < 3; ++c) {
            expectClampedBits(expected->plane(c), *result.planes[static_cast<std::size_t>(c)]);
        }
    }
}

/// The bytes of the test planes as a host stores them, so that reading gives planes in order.
test::Handle testHandle(int width, int height) {
    std::vector<unsigned char> bytes;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            for (int c = 0; c < 3; ++c) {
                bytes.push_back(static_cast<unsigned char>(sampleAt(x, y, c)));
            }
        }
    }
    return test::handleOf(bytes, width, height);
}

/// The planes that the engine reads from a handle.
Planes planesOfHandle(const test::Handle& handle) {
    const FloatImage3 read(*static_cast<const RgbDiscreteImage*>(handle.get()));
    Planes planes;
    for (int c = 0; c < 3; ++c) {
        planes.push_back(read.plane(c).clone());
    }
    return planes;
}

/// Within 0 to 255 the two faces differ in the fraction alone; outside one clamps, one wraps.
void expectTruncated(const Planes& planes, const FloatImage3& written, int width, int height) {
    int inside = 0;
    for (int c = 0; c < 3; ++c) {
        const FloatImage& plane = *planes[static_cast<std::size_t>(c)];
        for (int x = 0; x < width; ++x) {
            for (int y = 0; y < height; ++y) {
                const float sample = plane.row(x)[y];
                if (sample > 0.0f && sample < 255.0f) {
                    ++inside;
                    ASSERT_EQ(static_cast<float>(toInt(sample)), written.plane(c).row(x)[y]);
                }
            }
        }
    }
    EXPECT_GT(inside, width * height);
}

TEST(RestoreMethod, OneStepTruncatedIsWhatTheCFaceWrites) {
    for (const NamedScheme& scheme : kSchemes) {
        SCOPED_TRACE(scheme.name);
        const test::Handle source = testHandle(29, 31);
        const Arguments arguments = argumentsOf(kRestoreMethod, {{"scheme", scheme.name},
                                                                 {"flow", "PM"},
                                                                 {"tau", "2"},
                                                                 {"sigma", "1"},
                                                                 {"contrast", "10"},
                                                                 {"norm", "central"},
                                                                 {"steps", "1"}});

        const MethodResult result =
            kRestoreMethod.run(planesOfHandle(source), arguments, nullptr);
        const test::Handle written(ORVFastRestoration(source.get(), scheme.name, 0, 1, 2.0, 50,
                                                      1.0, 10.0, "PM", 0, 0));

        ASSERT_EQ(result.error, "");
        ASSERT_NE(written, nullptr);
        const FloatImage3 bytes(*static_cast<const RgbDiscreteImage*>(written.get()));
        expectTruncated(result.planes, bytes, 29, 31);
    }
}

TEST(RestoreMethod, UnclampedResultTruncatedAndWrappedIsTheCFaceToTheByte) {
    for (const NamedScheme& scheme : kSchemes) {
        SCOPED_TRACE(scheme.name);
        const test::Handle source = testHandle(29, 31);
        FloatImage3 planes(29, 31);
        Planes read = planesOfHandle(source);
        for (int c = 0; c < 3; ++c) {
            planes.setPlane(c, std::move(read[static_cast<std::size_t>(c)]));
        }
        FastRestorationOperator direct(scheme.number, 1, 50, 2.0, 1.0, 10.0, 0, false, 1, 0);

        const auto unclamped = direct.runPlanes(planes, nullptr);
        const test::Handle written(ORVFastRestoration(source.get(), scheme.name, 0, 1, 2.0, 50,
                                                      1.0, 10.0, "PM", 0, 0));

        ASSERT_NE(written, nullptr);
        const FloatImage3 bytes(*static_cast<const RgbDiscreteImage*>(written.get()));
        for (int c = 0; c < 3; ++c) {
            for (int x = 0; x < 29; ++x) {
                for (int y = 0; y < 31; ++y) {
                    const int wrapped = toLowByte(toInt(unclamped->plane(c).row(x)[y]));
                    ASSERT_EQ(static_cast<float>(wrapped), bytes.plane(c).row(x)[y]);
                }
            }
        }
    }
}

TEST(DenoiseMethod, OneStepTruncatedIsWhatTheCFaceWrites) {
    const test::Handle source = testHandle(33, 20);
    const Arguments arguments = argumentsOf(kDenoiseMethod, {{"scheme", "LOD"},
                                                             {"flow", "VAR"},
                                                             {"solver", "CBB"},
                                                             {"solver-iterations", "20"},
                                                             {"tau", "1"},
                                                             {"sigma", "1"},
                                                             {"contrast", "10"},
                                                             {"fidelity", "0.2"},
                                                             {"steps", "1"}});

    const MethodResult result = kDenoiseMethod.run(planesOfHandle(source), arguments, nullptr);
    const test::Handle written(ORVFastDenoiser(source.get(), "LOD", /*solverId=*/6, 1, 1.0, 20,
                                               1.0, 10.0, 0.2, "VAR", 0, 0));

    ASSERT_EQ(result.error, "");
    const FloatImage3 bytes(*static_cast<const RgbDiscreteImage*>(written.get()));
    expectTruncated(result.planes, bytes, 33, 20);
}

TEST(RestoreMethod, StepsFeedTheUnclampedResultToAFreshOperator) {
    const Arguments arguments = argumentsOf(kRestoreMethod, {{"steps", "3"},
                                                             {"tau", "1.5"},
                                                             {"sigma", "1"},
                                                             {"contrast", "8"},
                                                             {"scheme", "AMOS"}});
    const Parameter* const flow = &kRestoreMethod.parameters[1];
    const auto source = threePlanes(21, 26);

    const MethodResult result = kRestoreMethod.run(testPlanes(21, 26, 3), arguments, nullptr);

    auto expected = std::make_unique<FloatImage3>(source);
    for (int step = 0; step < 3; ++step) {
        FastRestorationOperator fresh(21, 1, arguments.integer("solver-iterations"), 1.5, 1.0,
                                      8.0, 0, false, static_cast<int>(flow->defaultValue),
                                      arguments.integer("norm"));
        expected = fresh.runPlanes(*expected, nullptr);
    }
    for (int c = 0; c < 3; ++c) {
        expectClampedBits(expected->plane(c), *result.planes[static_cast<std::size_t>(c)]);
    }
}

TEST(DiffusionMethods, ProgressNeverFallsAndEndsAtOne) {
    for (const Method* const method : {&kRestoreMethod, &kDenoiseMethod}) {
        for (const NamedScheme& scheme : kSchemes) {
            SCOPED_TRACE(scheme.name);
            const Arguments arguments =
                argumentsOf(*method, {{"scheme", scheme.name}, {"steps", "3"}});
            double last = 0.0;
            int calls = 0;
            const MethodResult result =
                method->run(testPlanes(31, 22, 3), arguments, [&](double done) {
                    EXPECT_GE(done, last);
                    EXPECT_LE(done, 1.0);
                    last = done;
                    ++calls;
                    return true;
                });

            EXPECT_EQ(result.error, "");
            EXPECT_GE(calls, 9);
            EXPECT_DOUBLE_EQ(last, 1.0);
        }
    }
}

TEST(DiffusionMethods, StopWhenTheProgressFunctionSaysSo) {
    for (const NamedScheme& scheme : kSchemes) {
        SCOPED_TRACE(scheme.name);
        const Arguments arguments =
            argumentsOf(kRestoreMethod, {{"scheme", scheme.name}, {"steps", "50"}});
        double last = 0.0;
        const MethodResult result =
            kRestoreMethod.run(testPlanes(31, 22, 3), arguments, [&](double done) {
                last = done;
                return done < 0.1;
            });

        EXPECT_TRUE(result.cancelled);
        EXPECT_TRUE(result.planes.empty());
        EXPECT_LT(last, 0.2);
    }
}

TEST(DiffusionMethods, LeaveTheHostsProgressAsItWas) {
    static int calls = 0;
    calls = 0;
    SetORVCallBack([](int) { ++calls; });
    progressWindow().progressLow = 30;
    progressWindow().progressHigh = 60;

    const Arguments arguments(kRestoreMethod.parameters);
    const MethodResult result = kRestoreMethod.run(testPlanes(16, 16, 3), arguments, nullptr);

    EXPECT_EQ(result.error, "");
    EXPECT_EQ(calls, 0);
    EXPECT_NE(progressWindow().callback, nullptr);
    EXPECT_EQ(progressWindow().progressLow, 30);
    EXPECT_EQ(progressWindow().progressHigh, 60);
    SetORVCallBack(nullptr);
}

TEST(DiffusionMethods, PrintNothing) {
    const Arguments arguments =
        argumentsOf(kDenoiseMethod, {{"solver", "GMRES*-CBB"}, {"solver-iterations", "3"}});

    testing::internal::CaptureStdout();
    const MethodResult result = kDenoiseMethod.run(testPlanes(16, 16, 3), arguments, nullptr);
    const std::string printed = testing::internal::GetCapturedStdout();

    EXPECT_EQ(result.error, "");
    EXPECT_EQ(printed, "");
}

TEST(DiffusionMethods, RefuseSolver41OnLineSchemes) {
    const Arguments arguments =
        argumentsOf(kRestoreMethod, {{"solver", "41"}, {"scheme", "AOS"}});

    const MethodResult result = kRestoreMethod.run(testPlanes(8, 8, 1), arguments, nullptr);

    EXPECT_EQ(result.error,
              "the solver ILU0-BiCGStab can't work on the lines of the scheme AOS; it takes "
              "2DSemi or 2DImplicit");
}

TEST(DiffusionMethods, RefusePicturesThatAreTooSmallForTheScheme) {
    for (const char* const scheme : {"ADI", "AMOS", "2DSemi", "2DImplicit"}) {
        SCOPED_TRACE(scheme);
        const Arguments arguments = argumentsOf(kRestoreMethod, {{"scheme", scheme}});

        const MethodResult result = kRestoreMethod.run(testPlanes(1, 9, 3), arguments, nullptr);

        EXPECT_EQ(result.error, "the scheme " + std::string(scheme) +
                                    " needs at least 2 x 2 pixels, this picture has 1 x 9");
    }
    const MethodResult fine =
        kRestoreMethod.run(testPlanes(1, 9, 3), Arguments(kRestoreMethod.parameters), nullptr);
    EXPECT_EQ(fine.error, "");
}

TEST(DiffusionMethods, RefuseSamplesThatAreNotFinite) {
    for (const float bad :
         {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity()}) {
        Planes planes = testPlanes(9, 9, 3);
        planes[1]->row(4)[4] = bad;

        const MethodResult result = kRestoreMethod.run(
            std::move(planes), Arguments(kRestoreMethod.parameters), nullptr);

        EXPECT_EQ(result.error, "the picture holds samples that aren't finite numbers");
    }
}

TEST(DiffusionMethods, RefusePlanesThatDoNotBelongTogether) {
    const Arguments arguments(kRestoreMethod.parameters);
    Planes unequal = testPlanes(9, 9, 3);
    unequal[2] = std::make_unique<FloatImage>(9, 8);

    EXPECT_EQ(kRestoreMethod.run(testPlanes(9, 9, 2), arguments, nullptr).error,
              "takes 1 or 3 planes, not 2");
    EXPECT_EQ(kRestoreMethod.run({}, arguments, nullptr).error, "takes 1 or 3 planes, not 0");
    EXPECT_EQ(kRestoreMethod.run(std::move(unequal), arguments, nullptr).error,
              "the planes are empty or of unequal size");
}

TEST(DiffusionMethods, RefuseABandFactorThatWouldNotFit) {
    const Arguments arguments = argumentsOf(kRestoreMethod, {{"scheme", "2DSemi"}});

    const MethodResult result =
        kRestoreMethod.run(testPlanes(2000, 1000, 1), arguments, nullptr);

    EXPECT_EQ(result.error.substr(0, 56),
              "the factors of Thomas on 2000 x 1000 pixels at once woul");
}

TEST(DiffusionMethods, SayWhenASolverBreaksDownAndWhatToTake) {
    const auto poisoned = [](double) {
        return DiffusionStep{[](const FloatImage& plane) {
                                 auto result = plane.clone();
                                 result->row(3)[3] = std::nanf("");
                                 return result;
                             },
                             nullptr};
    };

    const struct {
        const char* solver;
        const char* scheme;
        const char* advice;
    } cases[] = {{"SOR", "AOS", "take Thomas or CG"},
                 {"SOR", "2DSemi", "take CG, or fewer --solver-iterations (now 50)"},
                 {"Thomas", "AOS", "take a smaller tau"},
                 {"CG", "2DSemi", "take a smaller tau"}};
    for (const auto& c : cases) {
        const Arguments arguments =
            argumentsOf(kRestoreMethod, {{"solver", c.solver}, {"scheme", c.scheme}});

        const MethodResult result =
            runDiffusion(testPlanes(8, 8, 1), arguments, false, poisoned, nullptr);

        EXPECT_EQ(result.error, "the solver " + std::string(c.solver) +
                                    " broke down on the scheme " + c.scheme +
                                    " (samples that are no numbers); " + c.advice);
        EXPECT_TRUE(result.planes.empty());
    }
}

TEST(DiffusionMethods, OvershootIsClampedAtTheEnd) {
    // A long step whose explicit half isn't split swings a lone white sample below black.
    const Arguments arguments = argumentsOf(kRestoreMethod, {{"scheme", "2DImplicit"},
                                                             {"tau", "100"},
                                                             {"sigma", "0"},
                                                             {"contrast", "1000"},
                                                             {"steps", "1"}});
    const auto lone = [] {
        Planes planes;
        planes.push_back(std::make_unique<FloatImage>(9, 9));
        planes[0]->row(4)[4] = 255.0f;
        return planes;
    };
    FastRestorationOperator direct(40, 1, 50, 100.0, 0.0, 1000.0, 0, false, 1, 0);
    const auto unclamped = direct.runPlane(*lone()[0]);
    ASSERT_LT(unclamped->row(4)[4], -1.0f);

    const MethodResult result = kRestoreMethod.run(lone(), arguments, nullptr);

    ASSERT_EQ(result.error, "");
    EXPECT_EQ(result.planes[0]->row(4)[4], 0.0f);
    expectClampedBits(*unclamped, *result.planes[0]);
}

}  // namespace
}  // namespace orv
