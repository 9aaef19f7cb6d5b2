// Every solver of the catalogue through the two diffusion exports.
#include <gtest/gtest.h>

#include <climits>
#include <cstdlib>
#include <string>
#include <vector>

#include "base/text_output.h"
#include "exports/keyword.h"
#include "operators/diffusion/scheme_table.h"
#include "orv/orv.h"
#include "orv/orv_constants.h"
#include "support/handle.h"

namespace orv {
namespace {

using test::Handle;
using test::photoHandle;
using test::pixelsOf;

constexpr const char* kSchemes[] = {"LOD", "AOS", "2DSemi"};

// The solvers that bring a diffusion system to its solution, as their pages say.
constexpr int kExactSolvers[] = {0,  2,  3,  4,  7,  8,  9,  10, 18, 19, 20, 23,
                                 24, 25, 27, 28, 30, 33, 34, 35, 37, 38, 39};

// The first row of AOS is an identity that starts from zeros, where these two divide 0 by 0.
bool breaksDown(int id, const std::string& scheme) {
    return scheme == "AOS" && (id == ORV_SOLVER_BICGSTAB || id == ORV_SOLVER_BICGSTAB2);
}

Handle restore(void* image, const char* scheme, int solverId, int limit) {
    return Handle(ORVFastRestoration(image, scheme, solverId, /*iterations=*/1, /*tau=*/1.0,
                                     limit, /*sigma=*/0.5, /*contrast=*/10.0, "PM", 0, 0));
}

Handle denoise(void* image, const char* scheme, int solverId, int limit) {
    return Handle(ORVFastDenoiser(image, scheme, solverId, /*iterations=*/1, /*tau=*/1.0, limit,
                                  /*sigma=*/0.5, /*contrast=*/10.0, /*fidelity=*/0.1, "PM", 0,
                                  0));
}

int largestDifference(const std::vector<unsigned char>& a,
                      const std::vector<unsigned char>& b) {
    int largest = 0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        largest = std::max(largest, std::abs(int{a[i]} - int{b[i]}));
    }
    return largest;
}

TEST(SolverExports, EverySolverAnswersOnLinesAndPlanes) {
    const SilencedOutput silence;
    const struct {
        int width;
        int height;
    } sizes[] = {{13, 9}, {2, 2}, {8, 3}, {1, 6}, {6, 1}, {1, 1}};
    for (const auto& size : sizes) {
        const Handle image = photoHandle(size.width, size.height, /*seed=*/3);
        for (const char* const scheme : kSchemes) {
            const int number = schemeNumber(scheme);
            for (int id = 0; id < ORV_SOLVER_COUNT; ++id) {
                const bool fits = solverFitsScheme(id, number) &&
                                  schemeFitsSize(number, size.width, size.height);
                for (const int limit : {-1, 0, 1, 2, 7, 40}) {
                    SCOPED_TRACE(testing::Message()
                                 << size.width << "x" << size.height << " " << scheme << " "
                                 << id << " limit " << limit);

                    EXPECT_EQ(restore(image.get(), scheme, id, limit) != nullptr, fits);
                    EXPECT_EQ(denoise(image.get(), scheme, id, limit) != nullptr, fits);
                }
            }
        }
    }
}

TEST(SolverExports, SolversThatConvergeGiveThePictureOfTheDirectOne) {
    const SilencedOutput silence;
    const Handle image = photoHandle(21, 17, /*seed=*/4);
    for (const char* const scheme : kSchemes) {
        const auto direct =
            pixelsOf(restore(image.get(), scheme, ORV_SOLVER_THOMAS, /*limit=*/60));
        for (const int id : kExactSolvers) {
            SCOPED_TRACE(testing::Message() << scheme << " " << id);

            const auto pixels = pixelsOf(restore(image.get(), scheme, id, /*limit=*/60));

            // Fractions are cut off, so a tiny difference may cost a level.
            EXPECT_EQ(largestDifference(pixels, direct) > 1, breaksDown(id, scheme));
        }
    }
}

TEST(SolverExports, APictureDoesNotDependOnTheOneBefore) {
    const SilencedOutput silence;
    const Handle first = photoHandle(11, 8, /*seed=*/5);
    const Handle second = photoHandle(8, 11, /*seed=*/6);
    for (const char* const scheme : kSchemes) {
        for (int id = 0; id < ORV_SOLVER_COUNT; ++id) {
            if (!solverFitsScheme(id, schemeNumber(scheme))) {
                continue;
            }
            SCOPED_TRACE(testing::Message() << scheme << " " << id);
            const auto alone = pixelsOf(restore(second.get(), scheme, id, /*limit=*/10));

            restore(first.get(), scheme, id, /*limit=*/10);

            EXPECT_EQ(pixelsOf(restore(second.get(), scheme, id, /*limit=*/10)), alone);
        }
    }
}

TEST(SolverExports, IncompleteFactorsArePrintedOnTheStandardOutput) {
    const Handle image = photoHandle(2, 2, /*seed=*/7);

    testing::internal::CaptureStdout();
    const Handle result = restore(image.get(), "2DSemi", ORV_SOLVER_ILU0_BICGSTAB, /*limit=*/3);
    flushText();
    const std::string text = testing::internal::GetCapturedStdout();

    EXPECT_NE(result, nullptr);
    EXPECT_EQ(text.substr(0, 12), "row2: v(4): ");
}

}  // namespace
}  // namespace orv
