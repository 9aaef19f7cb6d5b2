#include "algebra/kernels/vector_kernels.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "base/cpu_features.h"
#include "support/matrix_support.h"

namespace orv {
namespace {

// Everything that a kernel table computes from arrays of n elements that start `shift` floats
// past an aligned block.
std::vector<double> resultsOf(const VectorKernels& kernels, int n, int shift) {
    const RealVector source = test::randomVector(6 * (n + 24), static_cast<unsigned>(n) + 1u);
    std::vector<float> memory(source.data(), source.data() + source.size());
    const auto array = [&](int k) { return memory.data() + k * (n + 24) + shift + 1; };
    float* v = array(0);
    const float* x = array(1);
    const float* y = array(2);
    const float* z = array(3);
    std::vector<double> sums(static_cast<std::size_t>(n) + 1, 0.25);

    std::vector<double> results = {kernels.sumOfSquares(x, n), kernels.dot(x, y, n),
                                   kernels.sum(x, n)};
    kernels.addScalar(v, 0.3f, n);
    kernels.multiplyScalar(v, 1.7f, n);
    kernels.divideScalar(v, 0.9f, n);
    kernels.add(v, x, n);
    kernels.addScaled(v, 0.7f, y, n);
    kernels.addScaled2(v, 0.6f, x, -0.2f, y, n);
    kernels.addScaled3(v, 0.6f, x, -0.2f, y, 1.1f, z, n);
    kernels.scaleAdd(v, 0.8f, z, n);
    kernels.scaleAddScaled(v, 0.8f, 0.1f, x, n);
    kernels.scaleAddScaled2(v, 0.8f, 0.1f, x, 0.3f, z, n);
    kernels.addProduct(v, x, y, n);
    kernels.addTridiagonalProduct(v, x, y, z, array(4), n);
    kernels.setScaled(array(4), 1.3f, x, n);
    kernels.setDifference(array(5), y, z, n);
    kernels.accumulateProduct(sums.data(), x, y, n);
    const float rows[] = {0.1f, -0.7f, 0.3f, 0.9f};
    kernels.accumulateRows4(sums.data(), rows, x, y, z, v, n);
    kernels.accumulateScaled(sums.data(), -0.4f, z, n);

    results.insert(results.end(), sums.begin(), sums.end());
    results.insert(results.end(), memory.begin(), memory.end());
    return results;
}

TEST(VectorKernels, EveryTargetGivesTheBitsOfGeneric) {
    for (const KernelTarget target : {KernelTarget::Avx2, KernelTarget::Avx512}) {
        // Below a limit that the environment sets, the faster tables can't be asked for.
        if (target > bestKernelTarget()) {
            continue;
        }
        ASSERT_NE(&vectorKernels(target), &vectorKernels(KernelTarget::Generic));
        for (int n = 0; n <= 100; ++n) {
            for (int shift = 0; shift < 16; shift += 3) {
                const auto expected = resultsOf(vectorKernels(KernelTarget::Generic), n, shift);
                const auto actual = resultsOf(vectorKernels(target), n, shift);
                ASSERT_EQ(expected.size(), actual.size());
                ASSERT_EQ(std::memcmp(expected.data(), actual.data(),
                                      expected.size() * sizeof(double)),
                          0)
                    << nameOf(target) << ", n " << n << ", shift " << shift;
            }
        }
    }
}

TEST(VectorKernels, TheChosenTableBelongsToAnAvailableTarget) {
    EXPECT_EQ(&vectorKernels(), &vectorKernels(bestKernelTarget()));
}

TEST(VectorKernels, TridiagonalProductSumsItsTermsInOrderAndRoundsOnce) {
    // (big + 1) - big loses the 1 in double, (big - big) + 1 would keep it.
    const float big = 0x1p60f;
    const float below[] = {1.0f, 0.0f};
    const float main[] = {0.0f, -big, 0.0f};
    const float above[] = {0.0f, big};
    const float x[] = {1.0f, 1.0f, 1.0f};
    float y[] = {0.0f, 0.0f, 0.0f};

    vectorKernels(KernelTarget::Generic).addTridiagonalProduct(y, below, main, above, x, 3);

    EXPECT_EQ(y[1], 0.0f);
}

TEST(VectorKernels, BandRowsAddTheirTermsOneAfterTheOther) {
    const float a[] = {1.0f, 1.0f, 1.0f, 1.0f};
    const float big[] = {0x1p60f};
    const float one[] = {1.0f};
    const float minus[] = {-0x1p60f};
    double sums[] = {0.0};

    vectorKernels(KernelTarget::Generic).accumulateRows4(sums, a, big, one, minus, one, 1);

    EXPECT_EQ(sums[0], 1.0);
}

}  // namespace
}  // namespace orv
