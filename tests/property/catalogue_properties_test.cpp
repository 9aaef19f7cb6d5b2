#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "methods/method_catalogue.h"
#include "support/photo_bytes.h"

// Laws that hold for every method of the plane face.

namespace orv {
namespace {

struct Size {
    int width;
    int height;
};

/// Planes of a synthetic photo, 1 or 3.
Planes photoPlanes(Size size, std::size_t count, std::uint32_t seed = 1) {
    const std::vector<unsigned char> bytes = test::photoBytes(size.width, size.height, seed);
    Planes planes;
    for (std::size_t c = 0; c < count; ++c) {
        auto plane = std::make_unique<FloatImage>(size.width, size.height);
        for (int x = 0; x < size.width; ++x) {
            for (int y = 0; y < size.height; ++y) {
                const int pixel = y * size.width + x;
                plane->row(x)[y] = bytes[3U * static_cast<std::size_t>(pixel) + c];
            }
        }
        planes.push_back(std::move(plane));
    }
    return planes;
}

MethodResult runMethod(const Method& method, Planes planes, const Arguments& arguments,
                       const Progress& progress = {}) {
    return method.secondPicture.empty()
               ? method.run(std::move(planes), arguments, progress)
               : method.runWithSecond(std::move(planes), photoPlanes({14, 12}, 3, /*seed=*/2),
                                      arguments, progress);
}

/// A result is either planes of the source's size within 0 to 255, or one line of text.
void expectResultOrReason(const MethodResult& result, Size size) {
    EXPECT_FALSE(result.cancelled);
    if (!result.error.empty()) {
        EXPECT_TRUE(result.planes.empty());
        EXPECT_EQ(result.error.find('\n'), std::string::npos) << result.error;
        return;
    }
    ASSERT_TRUE(result.planes.size() == 1 || result.planes.size() == 3);
    for (const auto& plane : result.planes) {
        ASSERT_EQ(plane->width(), size.width);
        ASSERT_EQ(plane->height(), size.height);
        for (std::size_t i = 0; i < plane->sampleCount(); ++i) {
            ASSERT_TRUE(plane->data()[i] >= 0.0f && plane->data()[i] <= 255.0f);
        }
    }
}

TEST(Catalogue, DefaultsGiveAPictureOrAReasonOnEverySize) {
    constexpr Size kSizes[] = {{1, 1}, {1, 7},   {2, 2},   {3, 3},   {5, 4},  {6, 6},
                               {9, 2}, {11, 11}, {16, 16}, {17, 32}, {40, 37}};
    for (const Method* const method : methodCatalogue()) {
        for (const Size size : kSizes) {
            for (const std::size_t count : {1U, 3U}) {
                SCOPED_TRACE(std::string(method->name) + " " + std::to_string(size.width) +
                             " x " + std::to_string(size.height));
                const MethodResult result =
                    runMethod(*method, photoPlanes(size, count), Arguments(method->parameters));
                expectResultOrReason(result, size);
                if (size.width >= 16) {
                    EXPECT_EQ(result.error, "");
                }
            }
        }
    }
}

TEST(Catalogue, EndsOfEveryRangeGiveAPictureOrAReason) {
    constexpr Size kSize{18, 13};
    for (const Method* const method : methodCatalogue()) {
        for (const Parameter& parameter : method->parameters) {
            std::vector<double> values{parameter.from, parameter.to};
            if (parameter.kind == ParameterKind::Choice) {
                values.clear();
                for (const Choice& choice : parameter.choices()) {
                    values.push_back(choice.value);
                }
            }
            for (const double value : values) {
                SCOPED_TRACE(std::string(method->name) + " --" + std::string(parameter.name) +
                             " " + std::to_string(value));
                Arguments arguments(method->parameters);
                ASSERT_EQ(arguments.setNumber(parameter.name, value), "");
                expectResultOrReason(runMethod(*method, photoPlanes(kSize, 3), arguments),
                                     kSize);
            }
        }
    }
}

TEST(Catalogue, ProgressNeverFallsAndEndsNearOne) {
    for (const Method* const method : methodCatalogue()) {
        SCOPED_TRACE(method->name);
        std::vector<double> reports;
        const MethodResult result = runMethod(*method, photoPlanes({40, 37}, 3),
                                              Arguments(method->parameters), [&](double done) {
                                                  reports.push_back(done);
                                                  return true;
                                              });
        ASSERT_EQ(result.error, "");
        ASSERT_GE(reports.size(), 2U);
        for (std::size_t i = 1; i < reports.size(); ++i) {
            EXPECT_LE(reports[i - 1], reports[i]);
        }
        EXPECT_LT(reports.front(), 0.5);
        EXPECT_GT(reports.back(), 0.6);
        EXPECT_LE(reports.back(), 1.0);
    }
}

TEST(Catalogue, AskingToStopStopsEveryMethodSoon) {
    for (const Method* const method : methodCatalogue()) {
        SCOPED_TRACE(method->name);
        int calls = 0;
        const MethodResult result = runMethod(*method, photoPlanes({40, 37}, 3),
                                              Arguments(method->parameters), [&](double) {
                                                  ++calls;
                                                  return false;
                                              });
        EXPECT_TRUE(result.cancelled);
        EXPECT_TRUE(result.planes.empty());
        EXPECT_LE(calls, 10);
    }
}

TEST(Catalogue, SameRunTwiceGivesTheSamePicture) {
    for (const Method* const method : methodCatalogue()) {
        SCOPED_TRACE(method->name);
        const Arguments arguments(method->parameters);
        const MethodResult first = runMethod(*method, photoPlanes({19, 23}, 3), arguments);
        const MethodResult second = runMethod(*method, photoPlanes({19, 23}, 3), arguments);
        ASSERT_EQ(first.error, "");
        ASSERT_EQ(first.planes.size(), second.planes.size());
        for (std::size_t i = 0; i < first.planes.size(); ++i) {
            for (std::size_t k = 0; k < first.planes[i]->sampleCount(); ++k) {
                ASSERT_EQ(first.planes[i]->data()[k], second.planes[i]->data()[k]);
            }
        }
    }
}

TEST(Catalogue, NamesAreUniqueAndTextsFitALine) {
    std::vector<std::string_view> names;
    for (const Method* const method : methodCatalogue()) {
        SCOPED_TRACE(method->name);
        for (const std::string_view name : names) {
            EXPECT_NE(name, method->name);
        }
        names.push_back(method->name);
        EXPECT_FALSE(method->summary.empty());
        EXPECT_FALSE(method->literature.empty());
        EXPECT_EQ(method->secondPicture.empty(), method->runWithSecond == nullptr);
        EXPECT_EQ(method->secondPicture.empty(), method->run != nullptr);
        for (const Parameter& parameter : method->parameters) {
            EXPECT_FALSE(parameter.help.empty()) << parameter.name;
            EXPECT_EQ(parameter.help.find('\n'), std::string_view::npos) << parameter.name;
        }
    }
}

}  // namespace
}  // namespace orv
