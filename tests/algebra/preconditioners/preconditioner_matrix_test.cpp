#include "algebra/preconditioners/preconditioner_matrix.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "algebra/preconditioners/explicit_preconditioned_product.h"
#include "support/matrix_support.h"

namespace orv {
namespace {

using test::elementsOf;
using test::expectSameBits;
using test::PlainMatrix;
using test::randomise;
using test::randomVector;
using test::vectorOf;

using Product = std::unique_ptr<RealVector> (Matrix::*)(const RealVector&,
                                                        std::unique_ptr<RealVector>) const;
const Product kProducts[] = {&Matrix::Multiply, &Matrix::MultiplyTransposed,
                             &Matrix::MultiplyAdjoint, &Matrix::MultiplyConjugate};

PlainMatrix factor(int n, int k) {
    PlainMatrix F(n);
    randomise(F, static_cast<std::uint32_t>(k + 1), 1.0F);
    return F;
}

std::unique_ptr<Matrix> factorOnHeap(int n, int k) {
    return std::make_unique<PlainMatrix>(factor(n, k));
}

// Shows whether the scratch vector was made.
class Chain : public ExplicitPreconditionedProduct {
  public:
    Chain(int n, int count) : ExplicitPreconditionedProduct(n, count) {
        for (int k = 0; k < count; ++k) {
            SetFactor(k, factorOnHeap(n, k));
        }
    }
    const RealVector* work() const { return work_.get(); }
};

// Adds a letter for each product that is asked of it.
class Recorder : public PlainMatrix {
  public:
    Recorder(int n, std::string& calls) : PlainMatrix(n), calls_(&calls) {}

    using Target = std::unique_ptr<RealVector>;
    std::unique_ptr<RealVector> Multiply(const RealVector& x, Target) const override {
        return note('m', x);
    }
    std::unique_ptr<RealVector> MultiplyTransposed(const RealVector& x, Target) const override {
        return note('t', x);
    }
    std::unique_ptr<RealVector> MultiplyAdjoint(const RealVector& x, Target) const override {
        return note('a', x);
    }
    std::unique_ptr<RealVector> MultiplyConjugate(const RealVector& x, Target) const override {
        return note('c', x);
    }

  private:
    std::unique_ptr<RealVector> note(char letter, const RealVector& x) const {
        *calls_ += letter;
        return x.Clone();
    }

    std::string* calls_;
};

TEST(PreconditionerMatrix, AppliesEveryFactorOnceInTheirOrder) {
    const RealVector x = randomVector(4, 9);
    for (int count = 1; count <= 7; ++count) {
        const Chain chain(4, count);
        for (const Product product : kProducts) {
            std::unique_ptr<RealVector> expected = x.Clone();
            for (int k = 0; k < count; ++k) {
                expected = (factor(4, k).*product)(*expected, nullptr);
            }

            expectSameBits(*(chain.*product)(x, nullptr), *expected);
        }
    }
}

TEST(PreconditionerMatrix, AsksEachFactorForTheSameProduct) {
    const std::string letters[] = {"mmm", "ttt", "aaa", "ccc"};
    for (std::size_t p = 0; p < std::size(kProducts); ++p) {
        std::string calls;
        ExplicitPreconditionedProduct chain(2, 3);
        for (int k = 0; k < 3; ++k) {
            chain.SetFactor(k, std::make_unique<Recorder>(2, calls));
        }

        const Product product = kProducts[p];
        (chain.*product)(vectorOf({1, 2}), nullptr);

        EXPECT_EQ(calls, letters[p]);
    }
}

TEST(PreconditionerMatrix, WritesToTheGivenResultAndKeepsItsScratchVector) {
    const RealVector x = randomVector(3, 4);
    for (int count = 2; count <= 6; ++count) {
        const Chain chain(3, count);
        auto y = std::make_unique<RealVector>(3, 7.0F);
        const RealVector* const given = y.get();
        EXPECT_EQ(chain.work(), nullptr);

        y = chain.Multiply(x, std::move(y));
        const RealVector* const work = chain.work();
        y = chain.Multiply(x, std::move(y));

        EXPECT_EQ(y.get(), given) << count;
        EXPECT_NE(work, nullptr) << count;
        EXPECT_EQ(chain.work(), work) << count;
        expectSameBits(*y, *chain.Multiply(x, nullptr));
    }
}

TEST(PreconditionerMatrix, OneFactorIsCalledWithoutTheScratchVector) {
    const Chain chain(3, 1);

    const auto y = chain.Multiply(vectorOf({1, 2, 3}), nullptr);

    EXPECT_EQ(chain.work(), nullptr);
    expectSameBits(*y, *factor(3, 0).Multiply(vectorOf({1, 2, 3}), nullptr));
}

TEST(PreconditionerMatrix, AMissingFactorOrAnotherSizeGivesNull) {
    for (int count = 1; count <= 5; ++count) {
        Chain chain(3, count);
        EXPECT_EQ(chain.Multiply(RealVector(2), nullptr), nullptr);
        for (int missing = 0; missing < count; ++missing) {
            chain.SetFactor(missing, nullptr);

            EXPECT_EQ(chain.Multiply(RealVector(3), nullptr), nullptr);

            chain.SetFactor(missing, factorOnHeap(3, missing));
        }
        EXPECT_NE(chain.Multiply(RealVector(3), nullptr), nullptr) << "works again";
    }
    EXPECT_EQ(Chain(3, 0).Multiply(RealVector(3), nullptr), nullptr);
}

TEST(PreconditionerMatrix, HasNoElements) {
    Chain chain(3, 2);
    const PlainMatrix other = test::spdMatrix(3);

    chain.Set(1, 1, 5.0F);
    chain.Set1(1, 1, 5.0F);
    chain.Fill(5.0F);
    chain.Assign(other, 0);
    chain.AddMatrix(other);
    chain.SubtractMatrix(other);
    chain.AddScalar(2.0F);
    chain.SubtractScalar(1.0F);
    chain.Scale(2.0F);
    chain.Divide(4.0F);

    EXPECT_EQ(chain.Rows(), 3);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(chain.Get(i, i), 0.0F);
        EXPECT_EQ(chain.Get1(i + 1, 1), 0.0F);
    }
    expectSameBits(*chain.Multiply(vectorOf({1, 2, 3}), nullptr),
                   *Chain(3, 2).Multiply(vectorOf({1, 2, 3}), nullptr));
}

TEST(PreconditionerMatrix, HasMeasuresOfZeroAndNoRangeProducts) {
    const Chain chain(3, 2);
    const RealVector x(3, 1.0F);

    for (const double measure :
         {chain.Sum(), chain.Min(), chain.Max(), chain.Mean(), chain.StdDev(),
          chain.DiagonalMeasure(), chain.ReservedMeasure(), chain.FrobeniusNorm()}) {
        EXPECT_EQ(measure, 0.0);
    }
    EXPECT_EQ(chain.MultiplyRange(x, 0, 0, 0, nullptr), nullptr);
    EXPECT_EQ(chain.MultiplyTransposedRange(x, 0, 0, 0, nullptr), nullptr);
    EXPECT_EQ(chain.MultiplyAdjointRange(x, 0, 0, 0, nullptr), nullptr);
    EXPECT_EQ(chain.MultiplyConjugateRange(x, 0, 0, 0, nullptr), nullptr);
    EXPECT_EQ(chain.CloneTransposed(nullptr), nullptr);
}

TEST(Quirk, ChainNotReversed) {
    const RealVector x = randomVector(3, 5);
    const Chain chain(3, 2);

    const auto y = chain.MultiplyTransposed(x, nullptr);

    const auto inOrder =
        factor(3, 1).MultiplyTransposed(*factor(3, 0).MultiplyTransposed(x, nullptr), nullptr);
    const auto transpose =
        factor(3, 0).MultiplyTransposed(*factor(3, 1).MultiplyTransposed(x, nullptr), nullptr);
    expectSameBits(*y, *inOrder);
    EXPECT_NE(elementsOf(*y), elementsOf(*transpose));
    expectSameBits(*chain.MultiplyAdjoint(x, nullptr), *inOrder);
}

}  // namespace
}  // namespace orv
