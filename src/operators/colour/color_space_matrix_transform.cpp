#include "operators/colour/color_space_matrix_transform.h"

#include <utility>

#include "operators/colour/plane_samples.h"

namespace orv {

namespace {

void copyRows(const ColourRows& from, ColourRows& to) {
    for (int i = 0; i < 3; ++i) {
        for (int k = 0; k < 3; ++k) {
            to[i][k] = from[i][k];
        }
    }
}

void multiplyPixel(const ColourRows& rows, double& a, double& b, double& c, double in1,
                   double in2, double in3) {
    a = rows[0][0] * in1 + rows[1][0] * in2 + rows[2][0] * in3;
    b = rows[0][1] * in1 + rows[1][1] * in2 + rows[2][1] * in3;
    c = rows[0][2] * in1 + rows[1][2] * in2 + rows[2][2] * in3;
}

}  // namespace

ColorSpaceMatrixTransform::ColorSpaceMatrixTransform(const ColourRows& forwardRows,
                                                     const ColourRows& inverseRows) {
    copyRows(forwardRows, forwardRows_);
    copyRows(inverseRows, inverseRows_);
}

std::unique_ptr<RealImage3> ColorSpaceMatrixTransform::forward(
    const RealImage3& planes, std::unique_ptr<RealImage3> target) const {
    target = targetLike(planes, std::move(target));
    forwardSamples(samplesOf(planes).data(), samplesOf(*target).data(),
                   planes.plane(0).sampleCount());
    return target;
}

std::unique_ptr<RealImage3> ColorSpaceMatrixTransform::inverse(
    const RealImage3& planes, std::unique_ptr<RealImage3> target) const {
    target = targetLike(planes, std::move(target));
    inverseSamples(samplesOf(planes).data(), samplesOf(*target).data(),
                   planes.plane(0).sampleCount());
    return target;
}

void ColorSpaceMatrixTransform::forwardSingle(double& a, double& b, double& c, double in1,
                                              double in2, double in3) const {
    multiplyPixel(forwardRows_, a, b, c, in1, in2, in3);
}

void ColorSpaceMatrixTransform::inverseSingle(double& a, double& b, double& c, double in1,
                                              double in2, double in3) const {
    multiplyPixel(inverseRows_, a, b, c, in1, in2, in3);
}

void ColorSpaceMatrixTransform::forwardSamples(const double* const* in, double* const* out,
                                               std::size_t n) const {
    colourKernels().multiply(in, forwardRows_, out, n);
}

void ColorSpaceMatrixTransform::inverseSamples(const double* const* in, double* const* out,
                                               std::size_t n) const {
    colourKernels().multiply(in, inverseRows_, out, n);
}

}  // namespace orv
