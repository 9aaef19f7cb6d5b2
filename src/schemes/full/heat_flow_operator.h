#pragma once

#include <cstdio>
#include <memory>

#include "images/float_image.h"
#include "schemes/kernels/line_passes.h"
#include "schemes/plane_operators/float_operator.h"

namespace orv {

class FTriDiagonalMatrix;
class LinearSolver;
class RealVector;

/// Linear smoothing by implicit heat flow, one direction after the other, in place.
///
///     u = (I + tau L_y)^-1 (I + tau L_x)^-1 u,   L the 1-D Laplacian with reflecting ends
///
/// One pass with tau = sigma^2 / 2 stands for a Gaussian of that sigma.
class HeatFlowOperator final : public FloatOperator {
  public:
    /// Domain:  `epsilon` is truncated and serves as the restart length of the solver.
    HeatFlowOperator(int solverId, int iterations, int solverIterations, float tau,
                     float epsilon);
    ~HeatFlowOperator() override;

    /// Smooths the target; a missing target is cloned from the source first.
    ///
    /// Shapes:  source and target w x h, w and h at least 2 for matrix rows that sum to 1.
    /// Cost:    per iteration one line solve a row and one a column; four vectors and two
    ///          matrices a call.
    /// Quirk:   heat-flow-reuse: a target that is passed in is smoothed as it stands, the
    ///          source only gives the size.
    std::unique_ptr<FloatImage> apply(const FloatImage& source,
                                      std::unique_ptr<FloatImage> target) override;
    /// Writes "HeatFlow: 2D Linear Solver".
    void printName(std::FILE* file) const override;

    /// Forces the line by line path through the solver where the kernels give the same bits.
    void setPlainPath(bool plain) { plainPath_ = plain; }

  private:
    void smoothByKernels(const FTriDiagonalMatrix& matrixX, const FTriDiagonalMatrix& matrixY,
                         FloatImage& plane);
    std::unique_ptr<FTriDiagonalMatrix> lineMatrix(int n) const;
    void smoothLinesX(const FTriDiagonalMatrix& matrix, FloatImage& plane);
    void smoothLinesY(const FTriDiagonalMatrix& matrix, FloatImage& plane);

    int iterations_;
    int solverIterations_;
    float tau_;
    float epsilon_;
    std::unique_ptr<LinearSolver> solver_;
    LinePasses passes_;
    bool plainPath_ = false;
};

}  // namespace orv
