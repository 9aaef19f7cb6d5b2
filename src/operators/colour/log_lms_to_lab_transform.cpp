#include "operators/colour/log_lms_to_lab_transform.h"

namespace orv {

namespace {

constexpr ColourRows kForwardRows = {{1.0, 1.0, 1.0}, {1.0, 1.0, -1.0}, {1.0, -2.0, 0.0}};
constexpr ColourRows kInverseRows = {{1.0, 1.0, 1.0}, {1.0, 1.0, -2.0}, {1.0, -1.0, 0.0}};

}  // namespace

LogLmsToLabTransform::LogLmsToLabTransform()
    : ColorSpaceMatrixTransform(kForwardRows, kInverseRows),
      forwardScale_{0.5773502691896258, 0.4082482904638631, 0.7071067811865475},
      inverseScale_{0.5773502691896257, 0.40824829046386296, 0.7071067811865476} {}

void LogLmsToLabTransform::forwardSamples(const double* const* in, double* const* out,
                                          std::size_t n) const {
    colourKernels().multiplyLogs(in, forwardRows(), forwardScale_, out, n);
}

void LogLmsToLabTransform::inverseSamples(const double* const* in, double* const* out,
                                          std::size_t n) const {
    colourKernels().powersOfProduct(in, inverseScale_, inverseRows(), out, n);
}

}  // namespace orv
