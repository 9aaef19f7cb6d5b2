#include "schemes/flows/flow.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"
#include "images/float_image.h"

namespace orv {

namespace {

std::unique_ptr<Matrix> addIdentity(std::unique_ptr<Matrix> matrix) {
    const int n = matrix->Rows();
    for (int i = 0; i < n; ++i) {
        matrix->Set(i, i, matrix->Get(i, i) + 1.0F);
    }
    return matrix;
}

std::unique_ptr<Matrix> identityMinus(std::unique_ptr<Matrix> matrix) {
    matrix->Scale(-1.0F);
    return addIdentity(std::move(matrix));
}

std::unique_ptr<RealVector> vectorOf(int n, std::unique_ptr<RealVector> vector) {
    return vector ? std::move(vector) : std::make_unique<RealVector>(n);
}

}  // namespace

Flow::~Flow() = default;

void Flow::prepare(const FloatImage& /*plane*/) {}

const FloatImage* Flow::initialPlane() const {
    return nullptr;
}

double Flow::reservedMeasure() const {
    return 0.0;
}

void Flow::setTimeStep(float /*tau*/) {}

void Flow::update(const FloatImage& /*plane*/) {}

std::unique_ptr<RealVector> Flow::imageToVector(const FloatImage& plane,
                                                std::unique_ptr<RealVector> vector) {
    const int width = plane.width();
    const int height = plane.height();
    vector = vectorOf(width * height, std::move(vector));
    float* const elements = vector->data();
    for (int x = 0; x < width; ++x) {
        const float* const column = plane.row(x);
        for (int y = 0; y < height; ++y) {
            elements[x + static_cast<std::ptrdiff_t>(width) * y] = column[y];
        }
    }
    return vector;
}

FloatImage& Flow::vectorToImage(const RealVector& vector, FloatImage& plane) {
    const int width = plane.width();
    const int height = plane.height();
    const float* const elements = vector.data();
    for (int x = 0; x < width; ++x) {
        float* const column = plane.row(x);
        for (int y = 0; y < height; ++y) {
            column[y] = elements[x + static_cast<std::ptrdiff_t>(width) * y];
        }
    }
    return plane;
}

std::unique_ptr<Matrix> Flow::explicitFullMatrix(float tau, const FloatImage& plane,
                                                 std::unique_ptr<Matrix> matrix) {
    return addIdentity(fullMatrix(tau, plane, std::move(matrix)));
}

std::unique_ptr<Matrix> Flow::implicitFullMatrix(float tau, const FloatImage& plane,
                                                 std::unique_ptr<Matrix> matrix) {
    return identityMinus(fullMatrix(tau, plane, std::move(matrix)));
}

std::unique_ptr<RealVector> Flow::lineVectorX(const FloatImage& plane, int y,
                                              std::unique_ptr<RealVector> vector) {
    const int width = plane.width();
    vector = vectorOf(width, std::move(vector));
    float* const elements = vector->data();
    for (int x = 0; x < width; ++x) {
        elements[x] = plane.row(x)[y];
    }
    return vector;
}

FloatImage& Flow::storeLineX(const RealVector& vector, int y, FloatImage& plane) {
    const int width = plane.width();
    const float* const elements = vector.data();
    for (int x = 0; x < width; ++x) {
        plane.row(x)[y] = elements[x];
    }
    return plane;
}

std::unique_ptr<RealVector> Flow::lineVectorY(const FloatImage& plane, int x,
                                              std::unique_ptr<RealVector> vector) {
    const int height = plane.height();
    vector = vectorOf(height, std::move(vector));
    std::copy_n(plane.row(x), height, vector->data());
    return vector;
}

FloatImage& Flow::storeLineY(const RealVector& vector, int x, FloatImage& plane) {
    std::copy_n(vector.data(), plane.height(), plane.row(x));
    return plane;
}

std::unique_ptr<Matrix> Flow::explicitMatrixX(float tau, const FloatImage& plane, int y,
                                              std::unique_ptr<Matrix> matrix) {
    return addIdentity(lineMatrixX(tau, plane, y, std::move(matrix)));
}

std::unique_ptr<Matrix> Flow::explicitMatrixY(float tau, const FloatImage& plane, int x,
                                              std::unique_ptr<Matrix> matrix) {
    return addIdentity(lineMatrixY(tau, plane, x, std::move(matrix)));
}

std::unique_ptr<Matrix> Flow::implicitMatrixX(float tau, const FloatImage& plane, int y,
                                              std::unique_ptr<Matrix> matrix) {
    return identityMinus(lineMatrixX(tau, plane, y, std::move(matrix)));
}

std::unique_ptr<Matrix> Flow::implicitMatrixY(float tau, const FloatImage& plane, int x,
                                              std::unique_ptr<Matrix> matrix) {
    return identityMinus(lineMatrixY(tau, plane, x, std::move(matrix)));
}

}  // namespace orv
