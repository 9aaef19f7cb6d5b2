#pragma once

#include <cstdio>
#include <memory>

#include "images/float_image.h"
#include "schemes/kernels/line_passes.h"
#include "schemes/simple_anisotropic_operator.h"

namespace orv {

class LinearSolver;
class Matrix;
class RealVector;

/// Base of the schemes whose systems hold one image line each.
///
/// A pass solves or multiplies all lines of one direction; a step is a sequence of passes. The
/// matrices of every pass belong to the source of the step, so all lines see one diffusivity.
///
/// Shapes:  one picture size a scheme object.
/// Fails:   never tells: an iteration that hits its limit leaves its last iterate, an unknown
///          solver id a null solver that the first line calls.
class Splitted2DRestoration : public SimpleAnisotropicOperator {
  public:
    /// Makes one solver for each direction, with `solverIterations` as limit and as restart
    /// length and the tolerance 0.0001.
    Splitted2DRestoration(int solverId, int iterations, int solverIterations, double tau,
                          Flow* flow, bool reservedFlag, bool updateEachStep);
    ~Splitted2DRestoration() override;

    /// Runs the time loop with line vectors of the size of the plane, zero at the start.
    std::unique_ptr<FloatImage> apply(const FloatImage& source,
                                      std::unique_ptr<FloatImage> target) override;
    /// Writes "Splitted 2D restoration".
    void printName(std::FILE* file) const override;

    /// Makes the solver along x anew when `id` is not the stored one.
    ///
    /// Quirk:   set-solver-keeps-id: the new solver is made by the stored id all the same, with
    ///          restart length 5.
    virtual void setSolverX(int id);
    /// The same for the solver along y.
    virtual void setSolverY(int id);

    /// Forces the line by line path through flow, matrix and solver where a faster one gives
    /// the same bits.
    void setPlainPath(bool plain) { plainPath_ = plain; }

  protected:
    /// What a pass does with its result: Replace the target sample, or Average the two.
    enum class Store { Replace, Average };

    /// One pass over all lines of one direction.
    struct Pass {
        int index;                 ///< its place in the step, for the account of the work
        int count;                 ///< passes of the step
        float tau;                 ///< step size of the implicit matrices
        const FloatImage& source;  ///< the plane of the step, which the matrices belong to
        const FloatImage& from;    ///< the right sides
        FloatImage& to;            ///< the results
        Store store = Store::Replace;
    };

    /// One implicit pass along x: solves the rows. It ends early when the work is cancelled.
    ///
    /// `matrix` is built on first use and refilled row by row. The right side serves as start
    /// vector.
    void solveLinesX(const Pass& pass, std::unique_ptr<Matrix>& matrix);
    /// One implicit pass along y: solves the columns.
    void solveLinesY(const Pass& pass, std::unique_ptr<Matrix>& matrix);

    /// Solves one row: `solutionX_` starts the solver and receives the result.
    void solveX(const Matrix& matrix);
    /// Solves one column.
    void solveY(const Matrix& matrix);
    /// Writes `solutionX_` to row y.
    void storeX(int y, Store store, FloatImage& to);
    /// Writes `solutionY_` to column x.
    void storeY(int x, Store store, FloatImage& to);

    /// The work plane of a step, kept from step to step. The first pass writes all of it, so
    /// the samples of the source are not copied.
    FloatImage& workPlane(const FloatImage& source);

    /// Whether the kernels can do the passes: solver 0, a flow of this library, and with
    /// products no side of one sample. Call it after the flow is updated.
    bool linesByKernels(const FloatImage& source, bool products, LineFlow& lines) const;
    /// A whole pass by the kernels.
    void runLinesX(const Pass& pass, const LineFlow& lines, LineStage stage);
    void runLinesY(const Pass& pass, const LineFlow& lines, LineStage stage);

    int solverId_;
    std::unique_ptr<LinearSolver> solverX_;
    std::unique_ptr<LinearSolver> solverY_;
    std::unique_ptr<RealVector> rhsX_;
    std::unique_ptr<RealVector> solutionX_;
    std::unique_ptr<RealVector> rhsY_;
    std::unique_ptr<RealVector> solutionY_;
    LinePasses passes_;
    std::unique_ptr<FloatImage> workPlane_;
    bool plainPath_ = false;

  private:
    std::unique_ptr<LinearSolver> otherSolver(int id, std::unique_ptr<LinearSolver> solver);
};

}  // namespace orv
