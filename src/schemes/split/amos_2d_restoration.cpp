#include "schemes/split/amos_2d_restoration.h"

#include <utility>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"
#include "base/text_output.h"
#include "exports/work_window.h"
#include "schemes/flows/flow.h"
#include "schemes/split/explicit_substeps.h"
#include "solvers/linear_solver.h"

namespace orv {

Amos2DRestoration::Amos2DRestoration(int solverId, int iterations, int solverIterations,
                                     double tau, Flow* flow, bool cflSubsteps,
                                     bool reservedFlag, bool updateEachStep)
    : Splitted2DRestoration(solverId, iterations, solverIterations, tau, flow, reservedFlag,
                            updateEachStep),
      cflSubsteps_(cflSubsteps) {
    stepFillsTarget_ = true;
}

Amos2DRestoration::~Amos2DRestoration() = default;

std::unique_ptr<FloatImage> Amos2DRestoration::step(const FloatImage& source,
                                                    std::unique_ptr<FloatImage> target) {
    if (updateEachStep_) {
        flow_->update(source);
    }
    FloatImage& work = workPlane(source);
    const auto [half, count, size] = ExplicitSubsteps(tau_, cflSubsteps_);
    flow_->setTimeStep(half);
    crankNicolsonLinesX({0, 4, half, source, source, work}, size, count);
    crankNicolsonLinesY({1, 4, half, source, work, *target}, size, count);
    crankNicolsonLinesY({2, 4, half, source, source, work}, size, count);
    crankNicolsonLinesX({3, 4, half, source, work, *target, Store::Average}, size, count);
    return target;
}

void Amos2DRestoration::crankNicolsonLinesX(const Pass& pass, float substep, int count) {
    const WorkSlice slice(pass.index, pass.count);
    LineFlow kernelLines;
    if (linesByKernels(pass.source, /*products=*/true, kernelLines)) {
        runLinesX(pass, kernelLines,
                  {.products = explicitProducts(count),
                   .productStep = substep,
                   .solveStep = pass.tau});
        return;
    }
    const int lines = pass.source.height();
    for (int y = 0; y < lines && reportLine(y, lines); ++y) {
        rhsX_ = flow_->lineVectorX(pass.from, y, std::move(rhsX_));
        explicitX_ = flow_->explicitMatrixX(substep, pass.source, y, std::move(explicitX_));
        solutionX_ = explicitStage(*explicitX_, count, *rhsX_, std::move(solutionX_));
        implicitX_ = flow_->implicitMatrixX(pass.tau, pass.source, y, std::move(implicitX_));
        rhsX_->CopyFrom(*solutionX_);
        solveX(*implicitX_);
        storeX(y, pass.store, pass.to);
    }
}

void Amos2DRestoration::crankNicolsonLinesY(const Pass& pass, float substep, int count) {
    const WorkSlice slice(pass.index, pass.count);
    LineFlow kernelLines;
    if (linesByKernels(pass.source, /*products=*/true, kernelLines)) {
        runLinesY(pass, kernelLines,
                  {.products = explicitProducts(count),
                   .productStep = substep,
                   .solveStep = pass.tau});
        return;
    }
    const int lines = pass.source.width();
    for (int x = 0; x < lines && reportLine(x, lines); ++x) {
        rhsY_ = flow_->lineVectorY(pass.from, x, std::move(rhsY_));
        explicitY_ = flow_->explicitMatrixY(substep, pass.source, x, std::move(explicitY_));
        solutionY_ = explicitStage(*explicitY_, count, *rhsY_, std::move(solutionY_));
        implicitY_ = flow_->implicitMatrixY(pass.tau, pass.source, x, std::move(implicitY_));
        rhsY_->CopyFrom(*solutionY_);
        solveY(*implicitY_);
        storeY(x, pass.store, pass.to);
    }
}

void Amos2DRestoration::printName(std::FILE* file) const {
    printTextTo(file, "Amos 2D restoration\n");
}

}  // namespace orv
