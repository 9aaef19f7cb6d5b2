// What the listing of the solvers promises, held against the systems of photos.
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "images/float_image.h"
#include "methods/restore_method.h"
#include "methods/solver_listing.h"
#include "operators/diffusion/flow_table.h"
#include "operators/diffusion/scheme_table.h"
#include "studies/solver_study.h"
#include "support/matrix_support.h"
#include "support/method_planes.h"
#include "support/photo_crops.h"

namespace orv {
namespace {

/// The brightness of a crop, without rounding, with noise of about 20 grey levels: what `restore`
/// is for.
FloatImage noisyBrightnessOf(const test::PhotoCrop& crop) {
    test::FloatSource noise(/*seed=*/7);
    FloatImage plane(crop.width, crop.height);
    for (int x = 0; x < crop.width; ++x) {
        for (int y = 0; y < crop.height; ++y) {
            const unsigned char* const pixel =
                &crop.bytes[3U * static_cast<std::size_t>(y * crop.width + x)];
            plane.row(x)[y] = 0.299F * static_cast<float>(pixel[0]) +
                              0.587F * static_cast<float>(pixel[1]) +
                              0.114F * static_cast<float>(pixel[2]) + 35.0F * noise.next();
        }
    }
    return plane;
}

/// The largest error of every solver on a scheme's systems, with the defaults of `restore`.
std::vector<SolverRecordOfStudy> recordsOf(const FloatImage& plane, int scheme) {
    StudyOrder order;
    order.settings = {scheme,
                      /*tau=*/1.0,
                      /*sigma=*/0.5,
                      /*contrast=*/5.0,
                      kFlowPeronaMalik,
                      /*gradientNormId=*/0};
    for (const SolverEntry& entry : solverListing()) {
        order.solvers.push_back(entry.id);
    }
    return studySolvers(plane, order, nullptr).solvers;
}

/// Whether `restore` gives a picture with a solver and its other defaults.
bool restores(const FloatImage& plane, const char* scheme, const std::string& solver) {
    Planes planes;
    planes.push_back(plane.clone());
    const Arguments arguments =
        test::argumentsOf(kRestoreMethod, {{"scheme", scheme}, {"solver", solver.c_str()}});
    return kRestoreMethod.run(std::move(planes), arguments, nullptr).error.empty();
}

/// Marks the solvers that leave half a grey level or more on a scheme's systems of a photo, or
/// break down in the steps of `restore`.
void markFailures(const FloatImage& plane, int number, const char* scheme,
                  std::vector<bool>& fails) {
    for (const SolverRecordOfStudy& record : recordsOf(plane, number)) {
        const auto id = static_cast<std::size_t>(record.id);
        // NaN keeps no promise.
        const bool exact =
            record.status != SolverStatus::Skipped && record.last.differenceMax <= 0.5;
        if (!exact || !restores(plane, scheme, solverListing()[id].name)) {
            fails[id] = true;
        }
    }
}

TEST(SolverSuitability, IsWhatTheSystemsOfPhotosShow) {
    std::vector<bool> failsOnLines(solverListing().size());
    std::vector<bool> failsOnPlanes(solverListing().size());

    for (const char* const name : test::kPhotoCrops) {
        const test::PhotoCrop crop = test::photoCrop(name);
        ASSERT_GT(crop.width, 0) << name;
        const FloatImage plane = noisyBrightnessOf(crop);
        markFailures(plane, kSchemeAos, "AOS", failsOnLines);
        markFailures(plane, kSchemeLod, "LOD", failsOnLines);
        markFailures(plane, kScheme2DSemi, "2DSemi", failsOnPlanes);
    }

    for (const SolverEntry& entry : solverListing()) {
        const auto id = static_cast<std::size_t>(entry.id);
        // One breaks down on larger photos alone, after the first step of AOS.
        const bool failsLater = entry.name == "GMRESRAlt";
        EXPECT_EQ(entry.suitsLines, !failsOnLines[id] && !failsLater) << entry.name;
        EXPECT_EQ(entry.suitsPlanes, !failsOnPlanes[id]) << entry.name;
    }
}

}  // namespace
}  // namespace orv
