#include "schemes/flows/fidelity_diffusion_flow.h"

#include <cstddef>
#include <utility>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"
#include "base/rounding.h"

namespace orv {

namespace {

/// (f r + u) (1 / (1 + r)) sample by sample, in double and rounded once.
class DataTerm {
  public:
    DataTerm(float fidelity, float tau)
        : r_(static_cast<double>(fidelity) * tau), scale_(1.0 / (1.0 + r_)) {}

    float operator()(float u, float f) const { return toFloat((f * r_ + u) * scale_); }

  private:
    double r_;
    double scale_;
};

std::unique_ptr<RealVector> vectorOf(int n, std::unique_ptr<RealVector> vector) {
    return vector ? std::move(vector) : std::make_unique<RealVector>(n);
}

}  // namespace

FidelityDiffusionFlow::FidelityDiffusionFlow(double sigma, double contrast, double fidelity,
                                             int kind, int gradientNormId)
    : DiffusionFlow(sigma, contrast, kind, gradientNormId), fidelity_(toFloat(fidelity)) {}

FidelityDiffusionFlow::~FidelityDiffusionFlow() = default;

void FidelityDiffusionFlow::prepare(const FloatImage& plane) {
    initialPlane_ = &plane;
}

const FloatImage* FidelityDiffusionFlow::initialPlane() const {
    return initialPlane_;
}

void FidelityDiffusionFlow::setTimeStep(float tau) {
    tau_ = tau;
}

float FidelityDiffusionFlow::timeStep() const {
    return tau_;
}

float FidelityDiffusionFlow::reducedStep(float tau) const {
    return toFloat(tau / (static_cast<double>(tau) * fidelity_ + 1.0));
}

std::unique_ptr<RealVector> FidelityDiffusionFlow::imageToVector(
    const FloatImage& plane, std::unique_ptr<RealVector> vector) {
    const int w = plane.width();
    const int h = plane.height();
    vector = vectorOf(w * h, std::move(vector));
    float* const elements = vector->data();
    const DataTerm term(fidelity_, tau_);
    for (int x = 0; x < w; ++x) {
        const float* u = plane.row(x);
        const float* f = initialPlane_->row(x);
        for (int y = 0; y < h; ++y) {
            elements[x + static_cast<std::ptrdiff_t>(w) * y] = term(u[y], f[y]);
        }
    }
    return vector;
}

std::unique_ptr<RealVector> FidelityDiffusionFlow::lineVectorX(
    const FloatImage& plane, int y, std::unique_ptr<RealVector> vector) {
    const int w = plane.width();
    vector = vectorOf(w, std::move(vector));
    const DataTerm term(fidelity_, tau_);
    for (int x = 0; x < w; ++x) {
        (*vector)[x] = term(plane.row(x)[y], initialPlane_->row(x)[y]);
    }
    return vector;
}

std::unique_ptr<RealVector> FidelityDiffusionFlow::lineVectorY(
    const FloatImage& plane, int x, std::unique_ptr<RealVector> vector) {
    const int h = plane.height();
    vector = vectorOf(h, std::move(vector));
    const float* u = plane.row(x);
    const float* f = initialPlane_->row(x);
    const DataTerm term(fidelity_, tau_);
    for (int y = 0; y < h; ++y) {
        (*vector)[y] = term(u[y], f[y]);
    }
    return vector;
}

std::unique_ptr<Matrix> FidelityDiffusionFlow::fullMatrix(float tau, const FloatImage& plane,
                                                          std::unique_ptr<Matrix> matrix) {
    return DiffusionFlow::fullMatrix(reducedStep(tau), plane, std::move(matrix));
}

std::unique_ptr<Matrix> FidelityDiffusionFlow::lineMatrixX(float tau, const FloatImage& plane,
                                                           int y,
                                                           std::unique_ptr<Matrix> matrix) {
    return DiffusionFlow::lineMatrixX(reducedStep(tau), plane, y, std::move(matrix));
}

std::unique_ptr<Matrix> FidelityDiffusionFlow::lineMatrixY(float tau, const FloatImage& plane,
                                                           int x,
                                                           std::unique_ptr<Matrix> matrix) {
    return DiffusionFlow::lineMatrixY(reducedStep(tau), plane, x, std::move(matrix));
}

}  // namespace orv
