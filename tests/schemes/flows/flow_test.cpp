#include "schemes/flows/flow.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>

#include "algebra/real_vector.h"
#include "algebra/storage/f_tri_diagonal_matrix.h"
#include "algebra/storage/full_matrix.h"
#include "images/float_image.h"

namespace orv {
namespace {

/// M is 10 tau on the diagonal, tau beside it, and counts in the line number.
class PlainFlow : public Flow {
  public:
    std::unique_ptr<Matrix> fullMatrix(float tau, const FloatImage& plane,
                                       std::unique_ptr<Matrix> matrix) override {
        const int n = plane.width() * plane.height();
        return fillIn(matrix ? std::move(matrix) : std::make_unique<FullMatrix>(n, 0.0F), tau,
                      0);
    }
    std::unique_ptr<Matrix> lineMatrixX(float tau, const FloatImage& plane, int y,
                                        std::unique_ptr<Matrix> matrix) override {
        return fillIn(matrix ? std::move(matrix)
                             : std::make_unique<FTriDiagonalMatrix>(plane.width(), 0.0F),
                      tau, y);
    }
    std::unique_ptr<Matrix> lineMatrixY(float tau, const FloatImage& plane, int x,
                                        std::unique_ptr<Matrix> matrix) override {
        return fillIn(matrix ? std::move(matrix)
                             : std::make_unique<FTriDiagonalMatrix>(plane.height(), 0.0F),
                      tau, 100 + x);
    }

  private:
    static std::unique_ptr<Matrix> fillIn(std::unique_ptr<Matrix> matrix, float tau, int line) {
        const int n = matrix->Rows();
        for (int i = 0; i < n; ++i) {
            matrix->Set(i, i, 10.0F * tau + static_cast<float>(line));
            matrix->Set(i + 1, i, tau);
        }
        return matrix;
    }
};

/// Sample (x, y) is 10 x + y.
FloatImage numbered(int width, int height) {
    FloatImage plane(width, height);
    for (int x = 0; x < width; ++x) {
        for (int y = 0; y < height; ++y) {
            plane.row(x)[y] = static_cast<float>(10 * x + y);
        }
    }
    return plane;
}

void expectMatrix(const Matrix& matrix, int n, float diagonal, float beside) {
    ASSERT_EQ(matrix.Rows(), n);
    for (int i = 0; i < n; ++i) {
        EXPECT_EQ(matrix.Get(i, i), diagonal) << i;
        if (i < n - 1) {
            EXPECT_EQ(matrix.Get(i + 1, i), beside) << i;
            EXPECT_EQ(matrix.Get(i, i + 1), 0.0F) << i;
        }
    }
}

TEST(Flow, HasHooksThatDoNothingAndGettersThatYieldNothing) {
    PlainFlow flow;
    FloatImage plane = numbered(3, 2);

    flow.prepare(plane);
    flow.update(plane);
    flow.setTimeStep(3.0F);

    EXPECT_EQ(flow.initialPlane(), nullptr);
    EXPECT_EQ(flow.reservedMeasure(), 0.0);
    EXPECT_EQ(plane.row(2)[1], 21.0F);
}

TEST(Flow, OrdersThePlaneRowByRowInItsVector) {
    PlainFlow flow;
    const FloatImage plane = numbered(3, 2);

    const auto vector = flow.imageToVector(plane, nullptr);

    ASSERT_EQ(vector->size(), 6);
    const float expected[] = {0, 10, 20, 1, 11, 21};
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ((*vector)[i], expected[i]) << i;
    }
}

TEST(Flow, WritesAVectorBackToThePlane) {
    PlainFlow flow;
    const FloatImage plane = numbered(3, 2);
    FloatImage copy(3, 2, -1.0F);

    FloatImage& result = flow.vectorToImage(*flow.imageToVector(plane, nullptr), copy);

    EXPECT_EQ(&result, &copy);
    for (int x = 0; x < 3; ++x) {
        for (int y = 0; y < 2; ++y) {
            EXPECT_EQ(copy.row(x)[y], plane.row(x)[y]);
        }
    }
}

TEST(Flow, TakesLinesAlongBothAxes) {
    PlainFlow flow;
    const FloatImage plane = numbered(3, 2);

    const auto row = flow.lineVectorX(plane, 1, nullptr);
    const auto column = flow.lineVectorY(plane, 2, nullptr);

    ASSERT_EQ(row->size(), 3);
    EXPECT_EQ((*row)[0], 1.0F);
    EXPECT_EQ((*row)[2], 21.0F);
    ASSERT_EQ(column->size(), 2);
    EXPECT_EQ((*column)[0], 20.0F);
    EXPECT_EQ((*column)[1], 21.0F);
}

TEST(Flow, StoresLinesAlongBothAxesAndNothingElse) {
    PlainFlow flow;
    FloatImage plane(3, 2, -1.0F);

    EXPECT_EQ(&flow.storeLineX(RealVector(3, 5.0F), 1, plane), &plane);
    EXPECT_EQ(&flow.storeLineY(RealVector(2, 7.0F), 2, plane), &plane);

    EXPECT_EQ(plane.row(0)[0], -1.0F);
    EXPECT_EQ(plane.row(0)[1], 5.0F);
    EXPECT_EQ(plane.row(1)[0], -1.0F);
    EXPECT_EQ(plane.row(1)[1], 5.0F);
    EXPECT_EQ(plane.row(2)[0], 7.0F);
    EXPECT_EQ(plane.row(2)[1], 7.0F);
}

TEST(Flow, UsesTheVectorsAndMatricesThatAreGiven) {
    PlainFlow flow;
    const FloatImage plane = numbered(3, 3);
    auto vector = std::make_unique<RealVector>(3);
    auto full = std::make_unique<RealVector>(9);
    std::unique_ptr<Matrix> matrix = std::make_unique<FTriDiagonalMatrix>(3, 9.0F);
    const RealVector* const vectorAddress = vector.get();
    const RealVector* const fullAddress = full.get();
    const Matrix* const matrixAddress = matrix.get();

    vector = flow.lineVectorX(plane, 0, std::move(vector));
    vector = flow.lineVectorY(plane, 0, std::move(vector));
    full = flow.imageToVector(plane, std::move(full));
    matrix = flow.implicitMatrixX(0.5F, plane, 0, std::move(matrix));
    matrix = flow.explicitMatrixY(0.5F, plane, 0, std::move(matrix));

    EXPECT_EQ(vector.get(), vectorAddress);
    EXPECT_EQ(full.get(), fullAddress);
    EXPECT_EQ(matrix.get(), matrixAddress);
}

TEST(Flow, AddsTheIdentityInTheExplicitForms) {
    PlainFlow flow;
    const FloatImage plane = numbered(3, 2);

    expectMatrix(*flow.explicitMatrixX(0.5F, plane, 1, nullptr), 3, 1.0F + 6.0F, 0.5F);
    expectMatrix(*flow.explicitMatrixY(0.5F, plane, 2, nullptr), 2, 1.0F + 107.0F, 0.5F);
    expectMatrix(*flow.explicitFullMatrix(0.5F, plane, nullptr), 6, 1.0F + 5.0F, 0.5F);
}

TEST(Flow, SubtractsFromTheIdentityInTheImplicitForms) {
    PlainFlow flow;
    const FloatImage plane = numbered(3, 2);

    expectMatrix(*flow.implicitMatrixX(0.5F, plane, 1, nullptr), 3, 1.0F - 6.0F, -0.5F);
    expectMatrix(*flow.implicitMatrixY(0.5F, plane, 2, nullptr), 2, 1.0F - 107.0F, -0.5F);
    expectMatrix(*flow.implicitFullMatrix(0.5F, plane, nullptr), 6, 1.0F - 5.0F, -0.5F);
}

}  // namespace
}  // namespace orv
