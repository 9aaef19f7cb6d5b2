#pragma once

#include <cstdio>
#include <memory>

#include "images/float_image.h"
#include "schemes/simple_anisotropic_operator.h"

namespace orv {

class LinearSolver;
class Matrix;
class RealVector;

/// Base of the schemes that solve the whole plane as one system of order w h with five
/// diagonals: exact and dear, the measure for the splitting schemes.
///
/// Shapes:  one picture size a scheme object.
/// Fails:   never tells: an iteration that hits its limit leaves its last iterate. Whether the
///          solver can work on a band matrix is the caller's care.
class Full2DRestoration : public SimpleAnisotropicOperator {
  public:
    /// Makes the solver, with `solverIterations` as limit and as restart length.
    Full2DRestoration(int solverId, int iterations, int solverIterations, double tau,
                      Flow* flow, bool reservedFlag, bool updateEachStep);
    ~Full2DRestoration() override;

    /// Runs the time loop with vectors of w h elements, zero at the start.
    std::unique_ptr<FloatImage> apply(const FloatImage& source,
                                      std::unique_ptr<FloatImage> target) override;
    /// Writes "Full 2D restoration".
    void printName(std::FILE* file) const override;

    /// Assigns one plane to another by FloatImage::assign, which does nothing.
    virtual void assignPlane(const FloatImage& source, FloatImage& target);
    /// Makes the solver anew when `id` is not the stored one.
    ///
    /// Quirk:   set-solver-keeps-id: the new solver is made by the stored id all the same.
    virtual void setSolver(int id);

  protected:
    int solverId_;
    std::unique_ptr<LinearSolver> solver_;
    std::unique_ptr<RealVector> rhs_;
    std::unique_ptr<RealVector> solution_;
};

}  // namespace orv
