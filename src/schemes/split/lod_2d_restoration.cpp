#include "schemes/split/lod_2d_restoration.h"

#include "algebra/matrix.h"
#include "algebra/real_vector.h"
#include "base/text_output.h"
#include "schemes/flows/flow.h"
#include "solvers/linear_solver.h"

namespace orv {

Lod2DRestoration::Lod2DRestoration(int solverId, int iterations, int solverIterations,
                                   double tau, Flow* flow, bool reservedFlag,
                                   bool updateEachStep)
    : Splitted2DRestoration(solverId, iterations, solverIterations, tau, flow, reservedFlag,
                            updateEachStep) {
    stepFillsTarget_ = true;
}

Lod2DRestoration::~Lod2DRestoration() = default;

std::unique_ptr<FloatImage> Lod2DRestoration::step(const FloatImage& source,
                                                   std::unique_ptr<FloatImage> target) {
    if (updateEachStep_) {
        flow_->update(source);
    }
    FloatImage& work = workPlane(source);
    flow_->setTimeStep(tau_);
    solveLinesX({0, 2, tau_, source, source, work}, implicitX_);
    solveLinesY({1, 2, tau_, source, work, *target}, implicitY_);
    return target;
}

void Lod2DRestoration::printName(std::FILE* file) const {
    printTextTo(file, "AOS 2D restoration\n");  // quirk: shared-print-names
}

}  // namespace orv
