#include "methods/memory_need.h"

#include <gtest/gtest.h>

#include <string>

#include "methods/method_catalogue.h"
#include "methods/solver_listing.h"

namespace orv {
namespace {

constexpr PlanesSize kGrey{1000, 700, 1};
constexpr PlanesSize kColour{1000, 700, 3};
constexpr double kSamples = 700000.0;

double bytesOf(const char* name, const PlanesSize& size, const std::string& parameter = {},
               const std::string& value = {}) {
    const Method& method = *findMethod(name);
    Arguments arguments(method.parameters);
    if (!parameter.empty()) {
        EXPECT_EQ(arguments.set(parameter, value), "");
    }
    return peakBytes(method, arguments, size, size);
}

TEST(MemoryNeed, EveryMethodNeedsMoreThanItsPlanes) {
    for (const Method* const method : methodCatalogue()) {
        const Arguments arguments(method->parameters);

        const double grey = peakBytes(*method, arguments, kGrey, kColour);
        const double colour = peakBytes(*method, arguments, kColour, kColour);

        EXPECT_GT(grey, 4.0 * kSamples) << method->name;
        EXPECT_GT(colour, 12.0 * kSamples) << method->name;
        EXPECT_GE(colour, grey) << method->name;
        EXPECT_LT(colour, 200.0 * kSamples) << method->name;
    }
}

TEST(MemoryNeed, UnknownMethodTellsNothing) {
    Method other = *findMethod("blur");
    other.name = "other";

    EXPECT_EQ(peakBytes(other, Arguments(other.parameters), kGrey), 0.0);
}

TEST(MemoryNeed, EverySolverIsCounted) {
    for (const SolverEntry& entry : solverListing()) {
        // Thomas keeps its factors; Gauss-Seidel and its kin work in place.
        const bool none = entry.id == 0 || entry.id == 2 || entry.id == 3;
        EXPECT_EQ(solverVectors(entry.id, 10) == 0.0, none) << entry.name;
    }
    EXPECT_EQ(solverVectors(static_cast<int>(solverListing().size()), 10), 0.0);
    EXPECT_EQ(solverVectors(-1, 10), 0.0);
}

TEST(MemoryNeed, GmresKeepsAVectorForEachIteration) {
    const double few = solverVectors(24, 10);

    EXPECT_EQ(solverVectors(24, 50), few + 40.0);
    EXPECT_EQ(solverVectors(7, 50), solverVectors(7, 10));
}

TEST(MemoryNeed, FactorsOfThomasGrowWithTheWidth) {
    const Method& method = *findMethod("restore");
    Arguments arguments(method.parameters);
    ASSERT_EQ(arguments.set("scheme", "2DSemi"), "");

    const double wide = peakBytes(method, arguments, {2000, 100, 1});
    const double narrow = peakBytes(method, arguments, {100, 2000, 1});

    EXPECT_GT(wide, 4.0 * 2000 * 100 * 4001);
    EXPECT_LT(narrow, wide / 15.0);
}

TEST(MemoryNeed, ParametersThatKeepMoreCount) {
    EXPECT_GT(bytesOf("restore", kGrey, "scheme", "LOD"), bytesOf("restore", kGrey));
    EXPECT_LT(bytesOf("restore", kGrey, "sigma", "0"), bytesOf("restore", kGrey));
    EXPECT_LT(bytesOf("restore", kColour, "colours", "opponent"), bytesOf("restore", kColour));
    EXPECT_GT(bytesOf("restore", kColour, "shrinkage", "0.5"), bytesOf("restore", kColour));
    EXPECT_GT(bytesOf("blur", kGrey, "sigma", "100"), bytesOf("blur", kGrey));
    EXPECT_LT(bytesOf("blur", kGrey, "extend", "none"), bytesOf("blur", kGrey));
    EXPECT_GT(bytesOf("wavelet", kGrey, "shifts", "2"), bytesOf("wavelet", kGrey));
    EXPECT_GT(bytesOf("recolor", kColour, "strength", "0.5"), bytesOf("recolor", kColour));
    EXPECT_GT(bytesOf("curvature", kColour, "flow", "full-color-beltrami"),
              bytesOf("curvature", kColour));
}

}  // namespace
}  // namespace orv
