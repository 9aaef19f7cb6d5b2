#include "methods/shrinkage_run.h"

#include <array>
#include <cstddef>
#include <vector>

#include "base/rounding.h"
#include "exports/work_window.h"
#include "methods/plane_run.h"
#include "methods/working_planes.h"
#include "operators/thin/wavelet_denoising_operator.h"

namespace orv {

namespace {

struct Shift {
    int x;
    int y;
};

// A column and a row never stand twice among the first 2, 4 and 8, and each step of the
// coarser grids is met as evenly as the count allows.
constexpr std::array<Shift, kMostShifts> kShifts{{{0, 0},
                                                  {1, 1},
                                                  {2, 3},
                                                  {3, 2},
                                                  {4, 6},
                                                  {5, 7},
                                                  {6, 5},
                                                  {7, 4},
                                                  {0, 5},
                                                  {1, 4},
                                                  {2, 6},
                                                  {3, 7},
                                                  {4, 3},
                                                  {5, 2},
                                                  {6, 0},
                                                  {7, 1}}};

std::unique_ptr<RealImage> runOnce(const RealImage& plane, const Shrinkage& shrinkage) {
    WaveletDenoisingOperator op(shrinkage.rule, shrinkage.levels, shrinkage.wavelet);
    op.setNoise(shrinkage.noise);
    return shrinkage.mirrored ? op.runPlaneMirrored(plane) : op.runPlane(plane);
}

void addTo(std::vector<double>& sums, const RealImage& shrunk, Shift shift, int width,
           int height) {
    double* to = sums.data();
    for (int x = 0; x < width; ++x, to += height) {
        const double* const from = shrunk.row(shift.x + x) + shift.y;
        for (int y = 0; y < height; ++y) {
            to[y] += from[y];
        }
    }
}

}  // namespace

bool shrinkageFits(const Shrinkage& shrinkage, int width, int height) {
    return WaveletDenoisingOperator(shrinkage.rule, shrinkage.levels, shrinkage.wavelet)
               .levelLimit(width, height, shrinkage.mirrored) >= 1;
}

std::unique_ptr<FloatImage> shrunkPlane(const FloatImage& plane, const Shrinkage& shrinkage) {
    const int width = plane.width();
    const int height = plane.height();
    if (shrinkage.noise == 0.0 || !shrinkageFits(shrinkage, width, height)) {
        return plane.clone();
    }
    if (shrinkage.shifts <= 1) {
        return floatImageOf(*runOnce(*realImageOf(plane), shrinkage));
    }
    std::vector<double> sums(plane.sampleCount(), 0.0);
    for (int i = 0; i < shrinkage.shifts && !workCancelled(); ++i) {
        const WorkSlice slice(i, shrinkage.shifts);
        const Shift shift = kShifts[static_cast<std::size_t>(i)];
        const std::unique_ptr<FloatImage> moved = framed(plane, shift.x, shift.y, 0, 0);
        addTo(sums, *runOnce(*realImageOf(*moved), shrinkage), shift, width, height);
    }
    auto mean = FloatImage::uninitialised(width, height);
    for (std::size_t i = 0; i < sums.size(); ++i) {
        mean->data()[i] = toFloat(sums[i] / shrinkage.shifts);
    }
    return mean;
}

}  // namespace orv
