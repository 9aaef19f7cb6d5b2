#include "schemes/split/aos_2d_restoration.h"

#include <utility>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"
#include "base/text_output.h"
#include "exports/progress_window.h"
#include "exports/work_window.h"
#include "schemes/flows/flow.h"
#include "schemes/plane_operators/progress_share.h"
#include "solvers/linear_solver.h"

namespace orv {

namespace {

// Tells the host of each line; its scale is fixed by the window at the start of the step.
class HostReports final : public LineObserver {
  public:
    HostReports(int start, long long width) : start_(start), width_(width) {}

    bool beginLine(int line, int lines) override {
        if (!LineObserver::beginLine(line, lines)) {
            return false;
        }
        reportProgress(progressSum(start_, progressShare(width_, line, 2LL * lines)));
        return true;
    }

  private:
    int start_;
    long long width_;
};

}  // namespace

Aos2DRestoration::Aos2DRestoration(int solverId, int iterations, int solverIterations,
                                   double tau, Flow* flow, bool reservedFlag,
                                   bool updateEachStep)
    : Splitted2DRestoration(solverId, iterations, solverIterations, tau, flow, reservedFlag,
                            updateEachStep) {
    stepFillsTarget_ = true;
}

Aos2DRestoration::~Aos2DRestoration() = default;

std::unique_ptr<FloatImage> Aos2DRestoration::step(const FloatImage& source,
                                                   std::unique_ptr<FloatImage> target) {
    if (updateEachStep_) {
        flow_->update(source);
    }
    const float t = tau_ + tau_;
    flow_->setTimeStep(t);
    reportProgress(progressWindow().progressLow);
    solveRows(t, source, *target);
    if (!workCancelled()) {
        const ProgressWindow& window = progressWindow();
        reportProgress(
            progressSum(window.progressLow, progressShare(progressWidth(window), 1, 2)));
    }
    solveColumns(t, source, *target);
    return target;
}

void Aos2DRestoration::solveRows(float t, const FloatImage& source, FloatImage& target) {
    const WorkSlice slice(0, 2);
    const ProgressWindow& window = progressWindow();
    HostReports reports(window.progressLow, progressWidth(window));
    LineFlow kernelLines;
    if (linesByKernels(source, /*products=*/false, kernelLines)) {
        passes_.alongX(kernelLines, {.solveStep = t}, source, target, reports);
        return;
    }
    const int lines = source.height();
    for (int y = 0; y < lines && reports.beginLine(y, lines); ++y) {
        rhsX_ = flow_->lineVectorX(source, y, std::move(rhsX_));
        implicitX_ = flow_->implicitMatrixX(t, source, y, std::move(implicitX_));
        solveX(*implicitX_);
        storeX(y, Store::Replace, target);
    }
}

void Aos2DRestoration::solveColumns(float t, const FloatImage& source, FloatImage& target) {
    const WorkSlice slice(1, 2);
    const ProgressWindow& window = progressWindow();
    const long long width = progressWidth(window);
    const int middle = progressSum(window.progressLow, progressShare(width, 1, 2));
    HostReports reports(middle, width);
    LineFlow kernelLines;
    if (linesByKernels(source, /*products=*/false, kernelLines)) {
        passes_.alongY(kernelLines, {.solveStep = t, .average = true}, source, target, reports);
        return;
    }
    const int lines = source.width();
    for (int x = 0; x < lines && reports.beginLine(x, lines); ++x) {
        rhsY_ = flow_->lineVectorY(source, x, std::move(rhsY_));
        implicitY_ = flow_->implicitMatrixY(t, source, x, std::move(implicitY_));
        solveY(*implicitY_);
        storeY(x, Store::Average, target);
    }
}

void Aos2DRestoration::printName(std::FILE* file) const {
    printTextTo(file, "AOS 2D restoration\n");
}

}  // namespace orv
