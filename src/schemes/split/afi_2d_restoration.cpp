#include "schemes/split/afi_2d_restoration.h"

#include "algebra/matrix.h"
#include "algebra/real_vector.h"
#include "base/text_output.h"
#include "schemes/flows/flow.h"
#include "solvers/linear_solver.h"

namespace orv {

Afi2DRestoration::Afi2DRestoration(int solverId, int iterations, int solverIterations,
                                   double tau, Flow* flow, bool reservedFlag,
                                   bool updateEachStep)
    : Splitted2DRestoration(solverId, iterations, solverIterations, tau, flow, reservedFlag,
                            updateEachStep) {
    stepFillsTarget_ = true;
}

Afi2DRestoration::~Afi2DRestoration() = default;

std::unique_ptr<FloatImage> Afi2DRestoration::step(const FloatImage& source,
                                                   std::unique_ptr<FloatImage> target) {
    if (updateEachStep_) {
        flow_->update(source);
    }
    // quirk: afi-data-term
    FloatImage& work = workPlane(source);
    solveLinesX({0, 4, tau_, source, source, work}, implicitX_);
    solveLinesY({1, 4, tau_, source, work, *target}, implicitY_);
    solveLinesY({2, 4, tau_, source, source, work}, implicitY_);
    solveLinesX({3, 4, tau_, source, work, *target, Store::Average}, implicitX_);
    return target;
}

void Afi2DRestoration::printName(std::FILE* file) const {
    printTextTo(file, "AOS 2D restoration\n");  // quirk: shared-print-names
}

}  // namespace orv
