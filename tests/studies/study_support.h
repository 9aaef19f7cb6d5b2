#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "images/float_image.h"
#include "operators/diffusion/flow_table.h"
#include "operators/diffusion/scheme_table.h"
#include "solvers/linear_solver_list.h"
#include "studies/study_system.h"
#include "support/plane_support.h"

namespace orv::test {

/// The settings of `orv solve` when nothing else is said.
inline StudySettings settingsOf(int scheme, double tau = 1.0) {
    return {scheme,
            tau,
            /*sigma=*/0.5,
            /*contrast=*/5.0,
            kFlowPeronaMalik,
            /*gradientNormId=*/0};
}

/// A picture with edges and noise, so that a solver has something to do.
inline FloatImage studyPlane(int width, int height) {
    FloatImage plane = noisePlane(width, height, 5, 0.0, 30.0);
    for (int x = 0; x < width; ++x) {
        for (int y = 0; y < height; ++y) {
            plane.row(x)[y] += x > y ? 150.0f : 20.0f;
        }
    }
    return plane;
}

/// The solver that the schemes would make.
inline std::unique_ptr<LinearSolver> schemeSolver(int id, int limit) {
    return LinearSolverList(50, 10).Create(id, limit, limit, 0.0001);
}

/// The samples of a plane at x + w y.
inline std::vector<float> rowsOf(const FloatImage& plane) {
    std::vector<float> samples;
    for (int y = 0; y < plane.height(); ++y) {
        for (int x = 0; x < plane.width(); ++x) {
            samples.push_back(plane.row(x)[y]);
        }
    }
    return samples;
}

}  // namespace orv::test
