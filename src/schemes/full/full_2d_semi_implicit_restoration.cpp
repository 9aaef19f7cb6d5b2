#include "schemes/full/full_2d_semi_implicit_restoration.h"

#include <utility>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"
#include "base/text_output.h"
#include "exports/work_window.h"
#include "schemes/flows/flow.h"
#include "solvers/linear_solver.h"

namespace orv {

Full2DSemiImplicitRestoration::~Full2DSemiImplicitRestoration() = default;

std::unique_ptr<FloatImage> Full2DSemiImplicitRestoration::step(
    const FloatImage& source, std::unique_ptr<FloatImage> target) {
    if (updateEachStep_) {
        flow_->update(source);
    }
    flow_->setTimeStep(tau_);
    rhs_ = flow_->imageToVector(source, std::move(rhs_));
    implicitMatrix_ = flow_->implicitFullMatrix(tau_, source, std::move(implicitMatrix_));
    if (!reportWork(1, 2)) {
        return target;
    }
    solution_->CopyFrom(*rhs_);
    solver_->Reset();
    solution_ = solver_->Solve(*implicitMatrix_, *rhs_, std::move(solution_));
    flow_->vectorToImage(*solution_, *target);
    reportWork(2, 2);
    return target;
}

void Full2DSemiImplicitRestoration::printName(std::FILE* file) const {
    printTextTo(file, "Full 2D Semi-Implicit restoration\n");
}

}  // namespace orv
