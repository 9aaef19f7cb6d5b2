#include "schemes/full/full_2d_restoration.h"

#include <utility>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"
#include "base/text_output.h"
#include "solvers/linear_solver.h"
#include "solvers/linear_solver_list.h"

namespace orv {

Full2DRestoration::Full2DRestoration(int solverId, int iterations, int solverIterations,
                                     double tau, Flow* flow, bool reservedFlag,
                                     bool updateEachStep)
    : SimpleAnisotropicOperator(iterations, solverIterations, tau, flow, reservedFlag,
                                updateEachStep),
      solverId_(solverId),
      solver_(LinearSolverList(50, 10).Create(solverId_, solverIterations_, solverIterations_,
                                              tolerance_)) {}

Full2DRestoration::~Full2DRestoration() = default;

std::unique_ptr<FloatImage> Full2DRestoration::apply(const FloatImage& source,
                                                     std::unique_ptr<FloatImage> target) {
    const int n = source.width() * source.height();
    rhs_ = std::make_unique<RealVector>(n);
    solution_ = std::make_unique<RealVector>(n);
    target = SimpleAnisotropicOperator::apply(source, std::move(target));
    rhs_.reset();
    solution_.reset();
    return target;
}

void Full2DRestoration::printName(std::FILE* file) const {
    printTextTo(file, "Full 2D restoration\n");
}

void Full2DRestoration::assignPlane(const FloatImage& source, FloatImage& target) {
    target.assign(source);
}

void Full2DRestoration::setSolver(int id) {
    if (id != solverId_) {
        solver_.reset();
    }
    if (solver_ == nullptr) {
        // quirk: set-solver-keeps-id
        solver_ = LinearSolverList(50, 10).Create(solverId_, solverIterations_,
                                                  solverIterations_, tolerance_);
    }
}

}  // namespace orv
