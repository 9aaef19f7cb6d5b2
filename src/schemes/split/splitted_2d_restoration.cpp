#include "schemes/split/splitted_2d_restoration.h"

#include <utility>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"
#include "base/text_output.h"
#include "exports/work_window.h"
#include "schemes/flows/flow.h"
#include "solvers/linear_solver.h"
#include "solvers/linear_solver_list.h"

namespace orv {

Splitted2DRestoration::Splitted2DRestoration(int solverId, int iterations, int solverIterations,
                                             double tau, Flow* flow, bool reservedFlag,
                                             bool updateEachStep)
    : SimpleAnisotropicOperator(iterations, solverIterations, tau, flow, reservedFlag,
                                updateEachStep),
      solverId_(solverId) {
    LinearSolverList list(50, 10);
    solverX_ = list.Create(solverId_, solverIterations_, solverIterations_, 0.0001);
    solverY_ = list.Create(solverId_, solverIterations_, solverIterations_, 0.0001);
}

Splitted2DRestoration::~Splitted2DRestoration() = default;

std::unique_ptr<FloatImage> Splitted2DRestoration::apply(const FloatImage& source,
                                                         std::unique_ptr<FloatImage> target) {
    rhsX_ = std::make_unique<RealVector>(source.width());
    solutionX_ = std::make_unique<RealVector>(source.width());
    rhsY_ = std::make_unique<RealVector>(source.height());
    solutionY_ = std::make_unique<RealVector>(source.height());
    target = SimpleAnisotropicOperator::apply(source, std::move(target));
    rhsX_.reset();
    solutionX_.reset();
    rhsY_.reset();
    solutionY_.reset();
    return target;
}

void Splitted2DRestoration::printName(std::FILE* file) const {
    printTextTo(file, "Splitted 2D restoration\n");
}

void Splitted2DRestoration::setSolverX(int id) {
    solverX_ = otherSolver(id, std::move(solverX_));
}

void Splitted2DRestoration::setSolverY(int id) {
    solverY_ = otherSolver(id, std::move(solverY_));
}

std::unique_ptr<LinearSolver> Splitted2DRestoration::otherSolver(
    int id, std::unique_ptr<LinearSolver> solver) {
    if (id != solverId_) {
        solver.reset();
    }
    if (solver == nullptr) {
        // quirk: set-solver-keeps-id
        solver =
            LinearSolverList(50, 10).Create(solverId_, solverIterations_, /*m=*/5, tolerance_);
    }
    return solver;
}

void Splitted2DRestoration::solveLinesX(const Pass& pass, std::unique_ptr<Matrix>& matrix) {
    const WorkSlice slice(pass.index, pass.count);
    LineFlow kernelLines;
    if (linesByKernels(pass.source, /*products=*/false, kernelLines)) {
        runLinesX(pass, kernelLines, {.solveStep = pass.tau});
        return;
    }
    const int lines = pass.source.height();
    for (int y = 0; y < lines && reportLine(y, lines); ++y) {
        rhsX_ = flow_->lineVectorX(pass.from, y, std::move(rhsX_));
        matrix = flow_->implicitMatrixX(pass.tau, pass.source, y, std::move(matrix));
        solutionX_->CopyFrom(*rhsX_);
        solveX(*matrix);
        storeX(y, pass.store, pass.to);
    }
}

void Splitted2DRestoration::solveLinesY(const Pass& pass, std::unique_ptr<Matrix>& matrix) {
    const WorkSlice slice(pass.index, pass.count);
    LineFlow kernelLines;
    if (linesByKernels(pass.source, /*products=*/false, kernelLines)) {
        runLinesY(pass, kernelLines, {.solveStep = pass.tau});
        return;
    }
    const int lines = pass.source.width();
    for (int x = 0; x < lines && reportLine(x, lines); ++x) {
        rhsY_ = flow_->lineVectorY(pass.from, x, std::move(rhsY_));
        matrix = flow_->implicitMatrixY(pass.tau, pass.source, x, std::move(matrix));
        solutionY_->CopyFrom(*rhsY_);
        solveY(*matrix);
        storeY(x, pass.store, pass.to);
    }
}

void Splitted2DRestoration::solveX(const Matrix& matrix) {
    solverX_->Reset();
    solutionX_ = solverX_->Solve(matrix, *rhsX_, std::move(solutionX_));
}

void Splitted2DRestoration::solveY(const Matrix& matrix) {
    solverY_->Reset();
    solutionY_ = solverY_->Solve(matrix, *rhsY_, std::move(solutionY_));
}

void Splitted2DRestoration::storeX(int y, Store store, FloatImage& to) {
    if (store == Store::Replace) {
        flow_->storeLineX(*solutionX_, y, to);
        return;
    }
    for (int x = 0; x < to.width(); ++x) {
        float& sample = to.row(x)[y];
        sample = ((*solutionX_)[x] + sample) * 0.5f;
    }
}

void Splitted2DRestoration::storeY(int x, Store store, FloatImage& to) {
    if (store == Store::Replace) {
        flow_->storeLineY(*solutionY_, x, to);
        return;
    }
    float* column = to.row(x);
    for (int y = 0; y < to.height(); ++y) {
        column[y] = ((*solutionY_)[y] + column[y]) * 0.5f;
    }
}

FloatImage& Splitted2DRestoration::workPlane(const FloatImage& source) {
    if (workPlane_ == nullptr || workPlane_->width() != source.width() ||
        workPlane_->height() != source.height()) {
        workPlane_ = FloatImage::uninitialised(source.width(), source.height());
    }
    return *workPlane_;
}

bool Splitted2DRestoration::linesByKernels(const FloatImage& source, bool products,
                                           LineFlow& lines) const {
    const bool longEnough = !products || (source.width() > 1 && source.height() > 1);
    return !plainPath_ && solverId_ == 0 && longEnough && describeLines(*flow_, lines);
}

void Splitted2DRestoration::runLinesX(const Pass& pass, const LineFlow& lines,
                                      LineStage stage) {
    LineObserver account;
    stage.average = pass.store == Store::Average;
    passes_.alongX(lines, stage, pass.from, pass.to, account);
}

void Splitted2DRestoration::runLinesY(const Pass& pass, const LineFlow& lines,
                                      LineStage stage) {
    LineObserver account;
    stage.average = pass.store == Store::Average;
    passes_.alongY(lines, stage, pass.from, pass.to, account);
}

}  // namespace orv
