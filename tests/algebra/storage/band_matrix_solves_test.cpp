#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "algebra/storage/band_matrix.h"
#include "support/matrix_support.h"

namespace orv {
namespace {

using test::expectSameBits;
using test::randomVector;

// Five diagonals of random elements, the main one dominant.
BandMatrix randomStencil(int n, int width) {
    const int center = n - 1;
    const int positions[] = {center - width, center - 1, center, center + 1, center + width};
    BandMatrix A(n, 5, positions);
    test::randomise(A, static_cast<unsigned>(n), 5.0f);
    return A;
}

// The sweep and the four substitutions, one after the other.
std::vector<std::unique_ptr<RealVector>> sweepAndSolves(const BandMatrix& A,
                                                        const RealVector& b) {
    std::vector<std::unique_ptr<RealVector>> results;
    results.push_back(A.SorSweep(b, 1.2f, nullptr));
    results.push_back(A.SolveUpper(b, nullptr));
    results.push_back(A.SolveUnitUpper(b, nullptr));
    results.push_back(A.SolveLower(b, nullptr));
    results.push_back(A.SolveUnitLower(b, nullptr));
    return results;
}

TEST(BandMatrix, SolvesAndSweepsSeeElementsThatChangedSinceTheLastOne) {
    for (const int n : {50, 90}) {
        BandMatrix A = randomStencil(n, 9);
        const RealVector b = randomVector(n, 3);
        for (const bool moved : {false, true}) {
            SCOPED_TRACE(testing::Message() << "n " << n << (moved ? ", moved" : ", written"));
            sweepAndSolves(A, b);
            for (const int position : {n - 10, n}) {
                RealVector& values = *A.diagonal(position);
                if (moved) {
                    values = randomVector(values.size(), 5);
                } else {
                    values.MultiplyScalar(0.5f);
                }
            }

            const auto results = sweepAndSolves(A, b);

            const auto expected = sweepAndSolves(BandMatrix(A), b);
            for (std::size_t k = 0; k < results.size(); ++k) {
                expectSameBits(*results[k], *expected[k]);
            }
        }
    }
}

}  // namespace
}  // namespace orv
