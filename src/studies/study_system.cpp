#include "studies/study_system.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <utility>

#include "algebra/storage/band_matrix.h"
#include "algebra/storage/f_tri_diagonal_matrix.h"
#include "base/rounding.h"
#include "operators/diffusion/flow_table.h"
#include "operators/diffusion/scheme_table.h"
#include "schemes/flows/diffusion_flow.h"
#include "solvers/iterative_linear_solver.h"

namespace orv {

namespace {

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

/// The flow of the operators, ready for the systems of the first step.
std::unique_ptr<DiffusionFlow> flowOf(const FloatImage& plane, const StudySettings& settings) {
    auto flow = std::make_unique<DiffusionFlow>(settings.sigma, settings.contrast,
                                                static_cast<int>(flowKindOf(settings.flow)),
                                                settings.gradientNormId);
    flow->prepare(plane);
    flow->update(plane);
    return flow;
}

}  // namespace

StudySystem::StudySystem(const FloatImage& plane, const StudySettings& settings)
    : unknowns_(plane.width() * plane.height()),
      startsFromLineBefore_(settings.scheme == kSchemeAos) {
    if (settings.scheme == kScheme2DSemi) {
        buildPlane(plane, settings);
    } else {
        buildRows(plane, settings);
    }
}

void StudySystem::buildPlane(const FloatImage& plane, const StudySettings& settings) {
    const float tau = toFloat(settings.tau);
    const std::unique_ptr<DiffusionFlow> flow = flowOf(plane, settings);
    flow->setTimeStep(tau);
    Part part;
    part.b = flow->imageToVector(plane, nullptr);
    part.A = flow->implicitFullMatrix(tau, plane, nullptr);
    // What the flow makes of a whole plane.
    bands_.emplace_back(static_cast<const BandMatrix&>(*part.A));
    parts_.push_back(std::move(part));
}

void StudySystem::buildRows(const FloatImage& plane, const StudySettings& settings) {
    const float tau = toFloat(settings.tau);
    const float step = settings.scheme == kSchemeAos ? tau + tau : tau;
    const std::unique_ptr<DiffusionFlow> flow = flowOf(plane, settings);
    flow->setTimeStep(step);
    for (int y = 0; y < plane.height(); ++y) {
        Part part;
        part.b = flow->lineVectorX(plane, y, nullptr);
        part.A = flow->implicitMatrixX(step, plane, y, nullptr);
        // What the flow makes of a line.
        bands_.emplace_back(static_cast<const FTriDiagonalMatrix&>(*part.A));
        parts_.push_back(std::move(part));
    }
}

StudySolution StudySystem::solve(LinearSolver& solver) const {
    StudySolution solution;
    solution.samples.reserve(static_cast<std::size_t>(unknowns_));
    const auto* const iterative = dynamic_cast<const IterativeLinearSolver*>(&solver);
    auto u = std::make_unique<RealVector>(parts_.front().b->size());
    for (const Part& part : parts_) {
        const Clock::time_point start = Clock::now();
        if (!startsFromLineBefore_) {
            u->CopyFrom(*part.b);
        }
        solver.Reset();
        u = solver.Solve(*part.A, *part.b, std::move(u));
        solution.seconds += secondsSince(start);
        if (u == nullptr) {
            solution.samples.clear();
            return solution;
        }
        solution.converged += iterative != nullptr && iterative->converged() ? 1 : 0;
        solution.samples.insert(solution.samples.end(), u->data(), u->data() + u->size());
    }
    return solution;
}

std::vector<float> StudySystem::rightSide() const {
    std::vector<float> samples;
    samples.reserve(static_cast<std::size_t>(unknowns_));
    for (const Part& part : parts_) {
        samples.insert(samples.end(), part.b->data(), part.b->data() + part.b->size());
    }
    return samples;
}

double StudySystem::residual(const std::vector<float>& u) const {
    return residual(std::vector<double>(u.begin(), u.end()));
}

double StudySystem::residual(const std::vector<double>& u) const {
    double sum = 0.0;
    std::vector<double> r;
    const double* from = u.data();
    for (std::size_t i = 0; i < parts_.size(); ++i) {
        const DoubleBand& band = bands_[i];
        r.resize(static_cast<std::size_t>(band.size()));
        band.residual(parts_[i].b->data(), from, r.data());
        for (const double element : r) {
            sum += element * element;
        }
        from += band.size();
    }
    return std::sqrt(sum);
}

}  // namespace orv
