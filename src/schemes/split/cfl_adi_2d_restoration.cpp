#include "schemes/split/cfl_adi_2d_restoration.h"

#include <utility>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"
#include "base/text_output.h"
#include "exports/work_window.h"
#include "schemes/flows/flow.h"
#include "schemes/split/explicit_substeps.h"
#include "solvers/linear_solver.h"

namespace orv {

CflAdi2DRestoration::CflAdi2DRestoration(int solverId, int iterations, int solverIterations,
                                         double tau, Flow* flow, bool cflSubsteps,
                                         bool reservedFlag, bool updateEachStep)
    : Splitted2DRestoration(solverId, iterations, solverIterations, tau, flow, reservedFlag,
                            updateEachStep),
      cflSubsteps_(cflSubsteps) {
    stepFillsTarget_ = true;
}

CflAdi2DRestoration::~CflAdi2DRestoration() = default;

std::unique_ptr<FloatImage> CflAdi2DRestoration::step(const FloatImage& source,
                                                      std::unique_ptr<FloatImage> target) {
    if (updateEachStep_) {
        flow_->update(source);
    }
    FloatImage& work = workPlane(source);
    const ExplicitSubsteps substeps(tau_, cflSubsteps_);
    flow_->setTimeStep(substeps.half);
    multiplyLinesY({0, 4, substeps.size, source, source, work}, substeps.count);
    solveLinesX({1, 4, substeps.half, source, work, *target}, implicitX_);
    multiplyLinesX({2, 4, substeps.size, source, *target, work}, substeps.count);
    solveLinesY({3, 4, substeps.half, source, work, *target}, implicitY_);
    return target;
}

void CflAdi2DRestoration::multiplyLinesX(const Pass& pass, int count) {
    const WorkSlice slice(pass.index, pass.count);
    LineFlow kernelLines;
    if (linesByKernels(pass.source, /*products=*/true, kernelLines)) {
        runLinesX(
            pass, kernelLines,
            {.products = explicitProducts(count), .productStep = pass.tau, .solve = false});
        return;
    }
    const int lines = pass.source.height();
    for (int y = 0; y < lines && reportLine(y, lines); ++y) {
        rhsX_ = flow_->lineVectorX(pass.from, y, std::move(rhsX_));
        explicitX_ = flow_->explicitMatrixX(pass.tau, pass.source, y, std::move(explicitX_));
        solutionX_ = explicitStage(*explicitX_, count, *rhsX_, std::move(solutionX_));
        storeX(y, pass.store, pass.to);
    }
}

void CflAdi2DRestoration::multiplyLinesY(const Pass& pass, int count) {
    const WorkSlice slice(pass.index, pass.count);
    LineFlow kernelLines;
    if (linesByKernels(pass.source, /*products=*/true, kernelLines)) {
        runLinesY(
            pass, kernelLines,
            {.products = explicitProducts(count), .productStep = pass.tau, .solve = false});
        return;
    }
    const int lines = pass.source.width();
    for (int x = 0; x < lines && reportLine(x, lines); ++x) {
        rhsY_ = flow_->lineVectorY(pass.from, x, std::move(rhsY_));
        explicitY_ = flow_->explicitMatrixY(pass.tau, pass.source, x, std::move(explicitY_));
        solutionY_ = explicitStage(*explicitY_, count, *rhsY_, std::move(solutionY_));
        storeY(x, pass.store, pass.to);
    }
}

void CflAdi2DRestoration::printName(std::FILE* file) const {
    printTextTo(file, "CFL ADI 2D restoration\n");
}

}  // namespace orv
