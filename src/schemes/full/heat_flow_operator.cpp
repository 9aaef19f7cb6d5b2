#include "schemes/full/heat_flow_operator.h"

#include <algorithm>
#include <utility>

#include "algebra/real_vector.h"
#include "algebra/storage/f_tri_diagonal_matrix.h"
#include "base/rounding.h"
#include "base/text_output.h"
#include "solvers/linear_solver.h"
#include "solvers/linear_solver_list.h"
#include "solvers/stationary/thomas_solver.h"

namespace orv {

HeatFlowOperator::HeatFlowOperator(int solverId, int iterations, int solverIterations,
                                   float tau, float epsilon)
    : iterations_(iterations),
      solverIterations_(solverIterations),
      tau_(tau),
      epsilon_(epsilon),
      solver_(LinearSolverList(50, 10).Create(solverId, solverIterations_, toInt(epsilon_),
                                              0.0001)) {}

HeatFlowOperator::~HeatFlowOperator() = default;

std::unique_ptr<FloatImage> HeatFlowOperator::apply(const FloatImage& source,
                                                    std::unique_ptr<FloatImage> target) {
    if (target == nullptr) {
        target = source.clone();
    }
    // quirk: heat-flow-reuse
    const std::unique_ptr<FTriDiagonalMatrix> matrixX = lineMatrix(source.width());
    const std::unique_ptr<FTriDiagonalMatrix> matrixY = lineMatrix(source.height());
    const bool byKernels =
        !plainPath_ && dynamic_cast<const ThomasSolver*>(solver_.get()) != nullptr;
    for (int i = 0; i < iterations_; ++i) {
        if (byKernels) {
            smoothByKernels(*matrixX, *matrixY, *target);
            continue;
        }
        smoothLinesX(*matrixX, *target);
        smoothLinesY(*matrixY, *target);
    }
    return target;
}

void HeatFlowOperator::printName(std::FILE* file) const {
    printTextTo(file, "HeatFlow: 2D Linear Solver\n");
}

std::unique_ptr<FTriDiagonalMatrix> HeatFlowOperator::lineMatrix(int n) const {
    auto matrix = std::make_unique<FTriDiagonalMatrix>(n, 0.0f);
    matrix->lower().Fill(-tau_);
    matrix->main().Fill(2.0f * tau_ + 1.0f);
    matrix->upper().Fill(-tau_);
    matrix->main()[0] = tau_ + 1.0f;
    matrix->main()[n - 1] = tau_ + 1.0f;
    return matrix;
}

void HeatFlowOperator::smoothByKernels(const FTriDiagonalMatrix& matrixX,
                                       const FTriDiagonalMatrix& matrixY, FloatImage& plane) {
    const auto factorsOf = [](const Matrix& lu) {
        const auto& f = static_cast<const FTriDiagonalMatrix&>(lu);
        return LineFactors{f.lower().data(), f.main().data(), f.upper().data(), f.Rows()};
    };
    const std::unique_ptr<Matrix> luX = matrixX.FactorLU();
    const std::unique_ptr<Matrix> luY = matrixY.FactorLU();
    passes_.solveRows(factorsOf(*luX), plane);
    passes_.solveColumns(factorsOf(*luY), plane);
}

void HeatFlowOperator::smoothLinesX(const FTriDiagonalMatrix& matrix, FloatImage& plane) {
    const int n = plane.width();
    RealVector rhs(n);
    auto solution = std::make_unique<RealVector>(n);

    solver_->Reset();
    for (int y = 0; y < plane.height(); ++y) {
        for (int x = 0; x < n; ++x) {
            rhs[x] = plane.row(x)[y];
        }
        solution->CopyFrom(rhs);
        solution = solver_->Solve(matrix, rhs, std::move(solution));
        for (int x = 0; x < n; ++x) {
            plane.row(x)[y] = (*solution)[x];
        }
    }
}

void HeatFlowOperator::smoothLinesY(const FTriDiagonalMatrix& matrix, FloatImage& plane) {
    const int n = plane.height();
    RealVector rhs(n);
    auto solution = std::make_unique<RealVector>(n);

    solver_->Reset();
    for (int x = 0; x < plane.width(); ++x) {
        float* line = plane.row(x);
        std::copy_n(line, n, rhs.data());
        solution->CopyFrom(rhs);
        solution = solver_->Solve(matrix, rhs, std::move(solution));
        std::copy_n(solution->data(), n, line);
    }
}

}  // namespace orv
