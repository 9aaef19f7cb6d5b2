#include "schemes/flows/diffusion_flow.h"

#include <cstddef>
#include <utility>

#include "algebra/real_vector.h"
#include "algebra/storage/f_tri_diagonal_matrix.h"
#include "base/rounding.h"
#include "schemes/gradient_norms/gradient_norm_list.h"
#include "schemes/kernels/diffusivity_plane.h"

namespace orv {

namespace {

// A matrix that is handed in was made by an earlier call, so its class is known.
std::unique_ptr<Matrix> clearedTriDiagonal(int n, std::unique_ptr<Matrix> matrix) {
    if (matrix == nullptr || matrix->Rows() != n) {
        return std::make_unique<FTriDiagonalMatrix>(n, 0.0f);
    }
    matrix->Fill(0.0f);
    return matrix;
}

// Fills the matrix of a line of n samples, whose diffusivities lie `stride` floats apart.
void fillLine(float tau, const float* g, std::ptrdiff_t stride, int n,
              FTriDiagonalMatrix& matrix) {
    float left = g[0] * 0.5f;
    for (int i = 0; i < n; ++i) {
        const float here = g[i * stride];
        const float next = i < n - 1 ? g[(i + 1) * stride] : 0.0f;
        const float right = (here + next) * 0.5f;
        if (i < n - 1) {
            matrix.upper()[i] = right * tau;
        }
        if (i == 0) {
            matrix.main()[i] = -right * tau;
        } else if (i == n - 1) {
            matrix.main()[i] = -left * tau;
        } else {
            matrix.main()[i] = -(left + right) * tau;
        }
        if (i > 0) {
            matrix.lower()[i - 1] = left * tau;
        }
        left = right;
    }
}

}  // namespace

DiffusionFlow::DiffusionFlow(double sigma, double contrast, int kind, int gradientNormId)
    : sigma_(toFloat(sigma)),
      contrast_(toFloat(contrast)),
      contrastSquared_(contrast_ * contrast_),
      kind_(static_cast<FlowKind>(kind)),
      norm_(GradientNormList(8).create(gradientNormId)),
      gradientNormId_(gradientNormId) {}

DiffusionFlow::~DiffusionFlow() = default;

void DiffusionFlow::update(const FloatImage& plane) {
    constexpr float kLeastSigma = 0.05f;
    const FloatImage* taken = &plane;
    if (!(sigma_ <= kLeastSigma)) {
        if (presmoother_ == nullptr) {
            presmoother_ = std::make_unique<HeatFlowOperator>(
                /*solverId=*/0, /*iterations=*/1, /*solverIterations=*/1,
                sigma_ * sigma_ * 0.5f, /*epsilon=*/0.0001f);
        }
        presmoother_->setPlainPath(plainPath_);
        smoothed_ = presmoother_->apply(plane, std::move(smoothed_));
        taken = smoothed_.get();
    }
    diffusivity_ = computeDiffusivity(*taken, std::move(diffusivity_));
}

std::unique_ptr<FloatImage> DiffusionFlow::computeDiffusivity(
    const FloatImage& plane, std::unique_ptr<FloatImage> target) {
    if (target == nullptr) {
        target = FloatImage::uninitialised(plane.width(), plane.height());
        target->setFlag(plane.flag());
    }
    norm_->setImage(plane);
    if (!plainPath_) {
        fillDiffusivity(plane, gradientNormId_, kind_, contrastSquared_, *target);
        return target;
    }
    target->fill(0.0f);
    for (int y = 1; y < plane.height() - 1; ++y) {
        for (int x = 1; x < plane.width() - 1; ++x) {
            const double n = norm_->interiorNorm(x, y);
            const double g = n <= 0.0 ? 1.0 : diffusivity(kind_, n / contrastSquared_);
            target->row(x)[y] = toFloat(g);
        }
    }
    return target;
}

std::unique_ptr<Matrix> DiffusionFlow::lineMatrixX(float tau, const FloatImage& plane, int y,
                                                   std::unique_ptr<Matrix> matrix) {
    const int n = plane.width();
    matrix = clearedTriDiagonal(n, std::move(matrix));
    fillLine(tau, diffusivity_->data() + y, diffusivity_->height(), n,
             static_cast<FTriDiagonalMatrix&>(*matrix));
    return matrix;
}

std::unique_ptr<Matrix> DiffusionFlow::lineMatrixY(float tau, const FloatImage& plane, int x,
                                                   std::unique_ptr<Matrix> matrix) {
    const int n = plane.height();
    matrix = clearedTriDiagonal(n, std::move(matrix));
    fillLine(tau, diffusivity_->row(x), 1, n, static_cast<FTriDiagonalMatrix&>(*matrix));
    return matrix;
}

}  // namespace orv
