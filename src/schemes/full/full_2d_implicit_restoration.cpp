#include "schemes/full/full_2d_implicit_restoration.h"

#include <utility>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"
#include "base/text_output.h"
#include "exports/work_window.h"
#include "schemes/flows/flow.h"
#include "schemes/split/explicit_substeps.h"
#include "solvers/linear_solver.h"

namespace orv {

Full2DImplicitRestoration::Full2DImplicitRestoration(int solverId, int iterations,
                                                     int solverIterations, double tau,
                                                     Flow* flow, bool cflSubsteps,
                                                     bool reservedFlag, bool updateEachStep)
    : Full2DRestoration(solverId, iterations, solverIterations, tau, flow, reservedFlag,
                        updateEachStep),
      cflSubsteps_(cflSubsteps) {}

Full2DImplicitRestoration::~Full2DImplicitRestoration() = default;

std::unique_ptr<FloatImage> Full2DImplicitRestoration::step(
    const FloatImage& source, std::unique_ptr<FloatImage> target) {
    if (updateEachStep_) {
        flow_->update(source);
    }
    const ExplicitSubsteps substeps(tau_, cflSubsteps_);
    flow_->setTimeStep(substeps.half);
    rhs_ = flow_->imageToVector(source, std::move(rhs_));
    explicitMatrix_ =
        flow_->explicitFullMatrix(substeps.size, source, std::move(explicitMatrix_));
    if (substeps.count > 0) {
        // Every one of the passes multiplies the same vector, so that one gives their result.
        // quirk: implicit-copy-direction
        const RealVector factor(*rhs_);
        rhs_ = explicitMatrix_->Multiply(factor, std::move(rhs_));
    }
    implicitMatrix_ =
        flow_->implicitFullMatrix(substeps.half, source, std::move(implicitMatrix_));
    if (!reportWork(1, 2)) {
        return target;
    }
    // quirk: implicit-no-reset
    solution_ = solver_->Solve(*implicitMatrix_, *rhs_, std::move(solution_));
    flow_->vectorToImage(*solution_, *target);
    reportWork(2, 2);
    return target;
}

void Full2DImplicitRestoration::printName(std::FILE* file) const {
    // quirk: shared-print-names
    printTextTo(file, "Full 2D Semi-Implicit restoration\n");
}

}  // namespace orv
