#include "images/curvature_flow.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

#include "base/text_output.h"
#include "images/kernels/curvature_kernels.h"

namespace orv {

namespace {

/// Copies of the last columns of a plane as they were before a step overwrote them.
class KeptColumns {
  public:
    KeptColumns(int count, int height)
        : count_(static_cast<std::size_t>(count)),
          height_(static_cast<std::size_t>(height)),
          samples_(count_ * height_) {}

    /// The place of column x; it holds column x - count until then.
    double* column(int x) {
        return samples_.data() + static_cast<std::size_t>(x) % count_ * height_;
    }
    /// Copies column x of the plane into its place.
    void keep(const RealImage& plane, int x) {
        std::copy_n(plane.row(x), plane.height(), column(x));
    }

  private:
    std::size_t count_;
    std::size_t height_;
    std::vector<double> samples_;
};

std::size_t entryOf(CurvatureFlow flow) {
    return static_cast<std::size_t>(flow);
}

/// Columns x - 1 to x + 1 before the step: the first two from the copies, the third one from
/// the plane, where it still stands.
StencilColumns columnsAt(KeptColumns& kept, const RealImage& plane, int x) {
    return {kept.column(x - 1), kept.column(x), plane.row(x + 1)};
}

// What a step on a reference of zeros does: each term is 0.
void limitInterior(int margin, double addend, RealImage& plane) {
    const CurvatureKernels& kernels = curvatureKernels();
    const int count = plane.height() - 2 * margin;
    for (int x = margin; x < plane.width() - margin && count > 0; ++x) {
        kernels.addAndLimit(addend, static_cast<std::size_t>(count), plane.row(x) + margin);
    }
}

/// The loop of the drivers on one plane; `first` and `step` are what an iteration does.
template <class First, class Step>
void drive(int iterations, First first, Step step) {
    for (int i = 0; i < iterations; ++i) {
        if (i % 10 == 0) {
            printText(" %d", i);
        }
        if (i == 0) {
            first();  // quirk: curvature-first-iteration
        } else {
            step();
        }
    }
    printText("\nrestauration done\n");
}

}  // namespace

void curvatureStep(CurvatureFlow flow, double coeff, RealImage& plane) {
    const auto column = curvatureKernels().plain[entryOf(flow)];
    const int height = plane.height();
    if (plane.width() < 3 || height < 3) {
        return;
    }
    KeptColumns kept(3, height);
    kept.keep(plane, 0);
    kept.keep(plane, 1);
    for (int x = 1; x < plane.width() - 1; ++x) {
        column(columnsAt(kept, plane, x), height, coeff, kept.column(x + 1), plane.row(x));
    }
}

void geodesicCurvatureStep(CurvatureFlow flow, double coeff, double cgrad, RealImage& plane) {
    const CurvatureKernels& kernels = curvatureKernels();
    const auto column = kernels.geodesic[entryOf(flow)];
    const CurvatureWeights weights = {coeff, cgrad};
    const int height = plane.height();
    if (plane.width() < 5) {
        return;
    }
    KeptColumns kept(2, height);
    KeptColumns stopping(3, height);
    const auto stopAt = [&](int x) {
        kernels.edgeStopping({plane.row(x - 1), plane.row(x), plane.row(x + 1)}, height,
                             stopping.column(x));
    };
    kept.keep(plane, 1);
    stopAt(1);
    stopAt(2);
    for (int x = 2; x < plane.width() - 2; ++x) {
        // Columns x to x + 2 are still those from before the step.
        stopAt(x + 1);
        kept.keep(plane, x);
        column(columnsAt(kept, plane, x),
               {stopping.column(x - 1), stopping.column(x), stopping.column(x + 1)}, height,
               weights, plane.row(x));
    }
}

void fullColorBeltramiStep(double coeff, RealImage3& planes) {
    const CurvatureKernels& kernels = curvatureKernels();
    const double still = coeff * 0.0;
    const int width = planes.width();
    const int height = planes.height();
    std::array<KeptColumns, 3> kept = {KeptColumns(2, height), KeptColumns(2, height),
                                       KeptColumns(2, height)};
    for (int x = 0; x < width; ++x) {
        std::array<StencilColumns, 3> columns;
        std::array<double*, 3> samples;
        const bool moves = x >= 2 && x < width - 2 && height > 4;
        for (std::size_t k = 0; k < 3; ++k) {
            RealImage& plane = planes.plane(static_cast<int>(k));
            kept[k].keep(plane, x);
            samples[k] = plane.row(x);
            if (moves) {
                columns[k] = columnsAt(kept[k], plane, x);
                kernels.addAndLimit(still, 2, samples[k]);
                kernels.addAndLimit(still, 2, samples[k] + height - 2);
            } else {
                kernels.addAndLimit(still, static_cast<std::size_t>(height), samples[k]);
            }
        }
        if (moves) {
            kernels.fullColor(columns.data(), height, coeff, samples.data());
        }
    }
}

void runCurvatureFlow(CurvatureFlow flow, double coeff, int iterations, RealImage& plane) {
    drive(
        iterations, [&] { limitInterior(1, coeff * 0.0, plane); },
        [&] { curvatureStep(flow, coeff, plane); });
}

void runGeodesicCurvatureFlow(CurvatureFlow flow, double coeff, double cgrad, int iterations,
                              RealImage& plane) {
    drive(
        iterations, [&] { limitInterior(2, coeff * 0.0 + cgrad * 0.0, plane); },
        [&] { geodesicCurvatureStep(flow, coeff, cgrad, plane); });
}

void runFullColorBeltrami(double coeff, int iterations, RealImage3& planes) {
    for (int i = 0; i < iterations; ++i) {
        if (i % 5 == 0) {
            printText(" %d", i);
        }
        fullColorBeltramiStep(coeff, planes);
    }
    printText("\n");
}

}  // namespace orv
