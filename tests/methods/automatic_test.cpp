#include "methods/automatic.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <sstream>
#include <string>
#include <vector>

#include "methods/denoise_method.h"
#include "methods/method_catalogue.h"
#include "methods/restore_method.h"
#include "methods/wavelet_method.h"
#include "support/gaussian_noise.h"
#include "support/method_planes.h"
#include "support/plane_support.h"

namespace orv {
namespace {

using test::argumentsOf;
using test::copyOf;
using test::noisyPhoto;
using test::photoCropPlanes;
using test::psnrOf;
using test::sameBits;

std::vector<const Method*> automaticMethods() {
    std::vector<const Method*> methods;
    for (const Method* const method : methodCatalogue()) {
        if (method->choose != nullptr) {
            methods.push_back(method);
        }
    }
    return methods;
}

Planes runChosen(const Method& method, const Planes& planes, std::optional<double> strength) {
    Arguments arguments(method.parameters);
    chooseAutomatically(method, planes, strength, arguments);
    MethodResult result = method.run(copyOf(planes), arguments, nullptr);
    EXPECT_EQ(result.error, "");
    return std::move(result.planes);
}

void expectSameBits(const Planes& a, const Planes& b) {
    ASSERT_EQ(a.size(), b.size());
    for (std::size_t c = 0; c < a.size(); ++c) {
        EXPECT_TRUE(sameBits(*a[c], *b[c]));
    }
}

/// Arguments that are given what commandText() of others shows.
Arguments argumentsOfText(const Method& method, const std::string& text) {
    Arguments arguments(method.parameters);
    std::istringstream words(text);
    for (std::string name, value; words >> name >> value;) {
        EXPECT_EQ(arguments.set(name.substr(2), value), "") << text;
    }
    return arguments;
}

TEST(Automatic, ThreeMethodsHaveItAndRestoreIsAutomaticByItself) {
    EXPECT_EQ(automaticMethods(),
              (std::vector<const Method*>{&kRestoreMethod, &kDenoiseMethod, &kWaveletMethod}));
    for (const Method* const method : methodCatalogue()) {
        EXPECT_EQ(method->automatic, method == &kRestoreMethod);
    }
}

TEST(Automatic, StrengthZeroChangesNoSample) {
    for (const Method* const method : automaticMethods()) {
        for (const int count : {1, 3}) {
            SCOPED_TRACE(method->name);
            const Planes planes = test::noisyPlanes(37, 22, count, 0.0, 255.0);

            expectSameBits(runChosen(*method, planes, 0.0), planes);
        }
    }
}

TEST(Automatic, PicturesWithoutNoiseStayAsTheyAre) {
    Planes planes;
    planes.push_back(std::make_unique<FloatImage>(40, 40, 33.0f));
    for (const Method* const method : automaticMethods()) {
        SCOPED_TRACE(method->name);
        expectSameBits(runChosen(*method, planes, std::nullopt), planes);
    }
}

TEST(Automatic, TheCommandTextGivesTheSameBitsAgain) {
    const Planes noisy = noisyPhoto(photoCropPlanes("coffee"), 12.0, 1);
    for (const Method* const method : automaticMethods()) {
        SCOPED_TRACE(method->name);
        Arguments chosen(method->parameters);
        chooseAutomatically(*method, noisy, std::nullopt, chosen);

        const Arguments again = argumentsOfText(*method, chosen.commandText());

        EXPECT_EQ(again.commandText(), chosen.commandText());
        const MethodResult first = method->run(copyOf(noisy), chosen, nullptr);
        const MethodResult second = method->run(copyOf(noisy), again, nullptr);
        expectSameBits(first.planes, second.planes);
    }
}

TEST(Automatic, GivenParametersStay) {
    const NoiseToRemove noise = noiseOfStrength(30.0, /*colour=*/true);
    const std::pair<const char*, const char*> given[] = {
        {"tau", "0.75"},   {"sigma", "1.25"},   {"contrast", "7"},   {"steps", "3"},
        {"flow", "TV"},    {"scheme", "AOS"},   {"noise", "4"},      {"shifts", "2"},
        {"chroma", "0.5"}, {"colours", "rgb"},  {"border", "still"}, {"shrinkage", "0.25"},
        {"fidelity", "2"}, {"wavelet", "haar"}, {"rule", "visu"}};
    for (const Method* const method : automaticMethods()) {
        for (const auto& [name, text] : given) {
            Arguments arguments(method->parameters);
            if (!arguments.set(name, text).empty()) {
                continue;
            }
            const double value = arguments.real(name);

            method->choose(noise, arguments);

            EXPECT_EQ(arguments.real(name), value) << method->name << " --" << name;
        }
    }
}

TEST(Automatic, ChosenParametersSuitTheGivenOnes) {
    const NoiseToRemove noise = noiseOfStrength(30.0, /*colour=*/true);
    Arguments open(kRestoreMethod.parameters);
    Arguments steps = argumentsOf(kRestoreMethod, {{"steps", "8"}});
    Arguments tau = argumentsOf(kRestoreMethod, {{"tau", "0.5"}});
    Arguments rgb = argumentsOf(kRestoreMethod, {{"colours", "rgb"}});
    Arguments adi = argumentsOf(kRestoreMethod, {{"scheme", "ADI"}});

    for (Arguments* const arguments : {&open, &steps, &tau, &rgb, &adi}) {
        kRestoreMethod.choose(noise, *arguments);
    }

    // More steps and longer ones smooth more: the other of the two stays.
    EXPECT_EQ(steps.real("tau"), open.real("tau"));
    EXPECT_EQ(tau.integer("steps"), open.integer("steps"));
    // A channel has sqrt(3) times the noise of brightness.
    EXPECT_NEAR(rgb.real("contrast"), std::sqrt(3.0) * open.real("contrast"), 0.01);
    EXPECT_NEAR(rgb.real("noise"), 15.0, 1e-9);
    // What is explicit in ADI overshoots unless it is split.
    EXPECT_TRUE(adi.flag("substeps"));
    EXPECT_FALSE(open.flag("substeps"));
}

TEST(Automatic, DiffusionThatIsAskedForRunsWithoutNoise) {
    for (const char* const name : {"tau", "steps", "sigma", "contrast"}) {
        Arguments asked = argumentsOf(kRestoreMethod, {{name, "3"}});

        kRestoreMethod.choose(NoiseToRemove{}, asked);

        EXPECT_GT(asked.integer("steps"), 0) << name;
        EXPECT_GT(asked.real("contrast"), 0.1) << name;
        EXPECT_EQ(asked.real(name), 3.0);
    }
    Arguments none = argumentsOf(kRestoreMethod, {{"steps", "0"}});
    kRestoreMethod.choose(NoiseToRemove{}, none);
    EXPECT_EQ(none.real("shrinkage"), 0.0);
}

TEST(Automatic, MoreStrengthChangesMore) {
    const Planes noisy = noisyPhoto(photoCropPlanes("chelsea"), 10.0, 2);
    for (const Method* const method : automaticMethods()) {
        double before = 100.0;
        for (const double strength : {1.0, 3.0, 10.0, 20.0, 40.0, 70.0, 100.0}) {
            const double likeness = psnrOf(noisy, runChosen(*method, noisy, strength));

            EXPECT_LT(likeness, before) << method->name << " " << strength;
            before = likeness;
        }
    }
}

TEST(Automatic, AGivenStrengthIsTheSameForEveryPicture) {
    const Planes first = noisyPhoto(photoCropPlanes("coffee"), 12.0, 1);
    const Planes second = photoCropPlanes("astronaut");
    for (const Method* const method : automaticMethods()) {
        Arguments one(method->parameters);
        Arguments other(method->parameters);

        const AutomaticChoice choice = chooseAutomatically(*method, first, 25.0, one);
        chooseAutomatically(*method, second, 25.0, other);

        EXPECT_FALSE(choice.measured);
        EXPECT_EQ(choice.strength, 25.0);
        EXPECT_EQ(one.commandText(), other.commandText());
    }
}

TEST(Automatic, TellsWhatItMeasured) {
    NoiseEstimate grey;
    grey.channels = {7.25};
    NoiseEstimate colour;
    colour.channels = {3.0, 4.0, 5.0};
    NoiseEstimate loud;
    loud.channels = {60.0};

    EXPECT_EQ(noiseText(grey), "noise 7.2 grey levels");
    EXPECT_EQ(noiseText(colour), "noise 4.1 grey levels (red 3.0, green 4.0, blue 5.0)");
    EXPECT_EQ(strengthOf(grey), 14.5);
    EXPECT_EQ(strengthOf(loud), 100.0);
}

TEST(Automatic, TakesPicturesOfAnySize) {
    for (const Method* const method : automaticMethods()) {
        for (const int count : {1, 3}) {
            for (const auto& [width, height] : {std::pair{1, 1}, {1, 9}, {2, 2}, {5, 3}}) {
                const Planes planes = test::noisyPlanes(width, height, count, 0.0, 255.0);
                Arguments arguments(method->parameters);
                chooseAutomatically(*method, planes, std::nullopt, arguments);

                const MethodResult result = method->run(copyOf(planes), arguments, nullptr);

                // Wavelets have a smallest size, and say so.
                EXPECT_EQ(result.error.empty(), method != &kWaveletMethod) << result.error;
            }
        }
    }
}

// What each method gains on 112 x 96 pixels of a photo; what was measured less 0.2 dB.
TEST(Automatic, GainsOnPhotosOfEveryNoise) {
    const struct {
        const Method* method;
        double deviation;
        double gain;
    } cases[] = {{&kRestoreMethod, 5.0, 3.8},  {&kRestoreMethod, 10.0, 6.2},
                 {&kRestoreMethod, 20.0, 8.5}, {&kRestoreMethod, 40.0, 10.0},
                 {&kDenoiseMethod, 5.0, 2.8},  {&kDenoiseMethod, 10.0, 5.4},
                 {&kDenoiseMethod, 20.0, 7.9}, {&kDenoiseMethod, 40.0, 9.8},
                 {&kWaveletMethod, 5.0, 3.8},  {&kWaveletMethod, 10.0, 6.1},
                 {&kWaveletMethod, 20.0, 8.2}, {&kWaveletMethod, 40.0, 9.6}};
    for (const auto& c : cases) {
        double gain = 0.0;
        for (const char* const name : test::kPhotoCrops) {
            const Planes clean = photoCropPlanes(name);
            const Planes noisy = noisyPhoto(clean, c.deviation, 7);
            gain +=
                psnrOf(clean, runChosen(*c.method, noisy, std::nullopt)) - psnrOf(clean, noisy);
        }
        gain /= static_cast<double>(test::kPhotoCrops.size());

        EXPECT_GE(gain, c.gain) << c.method->name << " at " << c.deviation;
    }
}

TEST(Automatic, CleanPhotosLoseNothingVisible) {
    for (const Method* const method : automaticMethods()) {
        for (const char* const name : test::kPhotoCrops) {
            const Planes clean = photoCropPlanes(name);

            EXPECT_GE(psnrOf(clean, runChosen(*method, clean, std::nullopt)), 38.0)
                << method->name << " on " << name;
        }
    }
}

}  // namespace
}  // namespace orv
