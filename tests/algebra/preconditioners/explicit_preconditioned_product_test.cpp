#include "algebra/preconditioners/explicit_preconditioned_product.h"

#include <gtest/gtest.h>

#include <memory>

#include "algebra/storage/diagonal_matrix.h"
#include "support/matrix_support.h"

namespace orv {
namespace {

using test::elementsOf;
using test::vectorOf;

std::unique_ptr<Matrix> times(float value) {
    return std::make_unique<DiagonalMatrix>(2, value);
}

TEST(ExplicitPreconditionedProduct, StartsWithEmptyPlaces) {
    const ExplicitPreconditionedProduct chain(2, 3);

    EXPECT_EQ(chain.FactorCount(), 3);
    for (const int k : {-1, 0, 1, 2, 3}) {
        EXPECT_EQ(chain.GetFactor(k), nullptr) << k;
    }
    EXPECT_EQ(chain.Rows(), 2);
}

TEST(ExplicitPreconditionedProduct, OwnsTheFactorsThatAreSet) {
    ExplicitPreconditionedProduct chain(2, 2);
    auto first = times(2);
    const Matrix* const given = first.get();

    chain.SetFactor(0, std::move(first));
    chain.SetFactor(1, times(5));
    chain.SetFactor(1, times(3));
    chain.SetFactor(2, times(7));
    chain.SetFactor(-1, times(7));

    EXPECT_EQ(chain.GetFactor(0), given);
    EXPECT_EQ(elementsOf(*chain.Multiply(vectorOf({1, 2}), nullptr)),
              (std::vector<float>{6, 12}));
}

TEST(ExplicitPreconditionedProduct, NeitherSolvesNorInvertsNorKnowsASource) {
    ExplicitPreconditionedProduct chain(2, 1);
    chain.SetFactor(0, times(2));

    EXPECT_EQ(chain.Solve(RealVector(2), nullptr), nullptr);
    EXPECT_EQ(chain.Inverse(), nullptr);
    EXPECT_EQ(chain.SourceClone(), nullptr);
}

TEST(ExplicitPreconditionedProduct, CloneIsDeepAndKeepsEmptyPlaces) {
    auto chain = std::make_unique<ExplicitPreconditionedProduct>(2, 2);
    chain->SetFactor(1, times(3));
    const std::unique_ptr<Matrix> clone = chain->Clone();
    chain.reset();

    const auto* const copy = dynamic_cast<const PreconditionerMatrix*>(clone.get());

    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->FactorCount(), 2);
    EXPECT_EQ(copy->GetFactor(0), nullptr);
    EXPECT_EQ(copy->GetFactor(1)->Get(1, 1), 3.0F);
}

TEST(ExplicitPreconditionedProduct, PrintsTheFactorsThatAreSet) {
    ExplicitPreconditionedProduct chain(2, 3);
    chain.SetFactor(0, times(2));
    chain.SetFactor(2, times(3));

    EXPECT_EQ(test::standardOutputOf([&] { chain.Print(); }),
              "Explicit Preconditioned product of 3 matrix\n"
              "Diagonal Matrix(2,2)\nDiagonal: v(2): [ 2.0000  2.0000 ]\n"
              "Diagonal Matrix(2,2)\nDiagonal: v(2): [ 3.0000  3.0000 ]\n");
    EXPECT_EQ(test::fileOutputOf(
                  [](std::FILE* f) { ExplicitPreconditionedProduct(2, 0).PrintTo(f); }),
              "Explicit Preconditioned product of 0 matrix\n");
}

}  // namespace
}  // namespace orv
