#include "algebra/kernels/vector_kernels.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

#include "base/cpu_features.h"
#include "support/kernel_targets.h"
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
    results.push_back(kernels.addScaledSumSquares(v, -0.4f, x, n));
    kernels.addScaled2(v, 0.6f, x, -0.2f, y, n);
    kernels.addScaled3(v, 0.6f, x, -0.2f, y, 1.1f, z, n);
    kernels.scaleAdd(v, 0.8f, z, n);
    kernels.scaleAddScaled(v, 0.8f, 0.1f, x, n);
    kernels.scaleAddScaled2(v, 0.8f, 0.1f, x, 0.3f, z, n);
    kernels.addProduct(v, x, y, n);
    kernels.addTridiagonalProduct(v, x, y, z, array(4), n);
    const BandTerm terms[kBandTerms] = {{x, y}, {y, z}, {z, x}, {x, x}, {z, z}};
    kernels.addBandRows(v, terms, n % (kBandTerms + 1), n);
    kernels.setScaled(array(4), 1.3f, x, n);
    kernels.setDifference(array(5), y, z, n);
    kernels.fill(array(5), -0.0f, n / 2);
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

// Where two NaNs meet, the compiler may choose which of them stays: bits count for numbers.
void expectSameNumbers(const std::vector<float>& actual, const std::vector<float>& expected) {
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        if (std::isnan(expected[i])) {
            EXPECT_TRUE(std::isnan(actual[i])) << "at " << i;
        } else {
            EXPECT_EQ(std::memcmp(&actual[i], &expected[i], sizeof(float)), 0) << "at " << i;
        }
    }
}

// n repeatable floats, among them zeros of both signs, infinities, NaN and halves of an ulp.
std::vector<float> awkwardFloats(int n, unsigned seed) {
    const float awkward[] = {0.0f, -0.0f, HUGE_VALF, -HUGE_VALF, NAN, 0x1p-140f, 0x1p127f};
    const RealVector random = test::randomVector(n, seed);
    std::vector<float> values(random.data(), random.data() + n);
    for (std::size_t i = seed % 3u; i < values.size(); i += 3u) {
        values[i] = awkward[(i + seed) % 7u];
    }
    return values;
}

TEST(VectorKernels, BandRowsHaveTheBitsOfOnePassADiagonal) {
    for (const KernelTarget target : test::availableTargets()) {
        const VectorKernels& kernels = vectorKernels(target);
        for (int n = 0; n <= 70; ++n) {
            for (int count = 0; count <= kBandTerms; ++count) {
                SCOPED_TRACE(testing::Message()
                             << nameOf(target) << ", n " << n << ", count " << count);
                std::vector<std::vector<float>> values;
                const std::vector<float> x = awkwardFloats(n + 8, 90u);
                std::vector<BandTerm> terms;
                for (int k = 0; k < count; ++k) {
                    values.push_back(awkwardFloats(n, static_cast<unsigned>(10 * n + k)));
                }
                for (int k = 0; k < count; ++k) {
                    terms.push_back({values[static_cast<std::size_t>(k)].data(), x.data() + k});
                }
                // One float beyond the rows, which has to stay.
                const std::vector<float> given = awkwardFloats(n + 1, 91u);
                std::vector<float> added = given;
                std::vector<float> set = given;
                for (int i = 0; i < n; ++i) {
                    const std::size_t at = static_cast<std::size_t>(i);
                    set[at] = 0.0f;
                    for (const BandTerm& term : terms) {
                        added[at] = added[at] + term.values[i] * term.x[i];
                        set[at] = set[at] + term.values[i] * term.x[i];
                    }
                }

                std::vector<float> actual = given;
                kernels.addBandRows(actual.data(), terms.data(), count, n);
                expectSameNumbers(actual, added);
                actual = given;
                kernels.setBandRows(actual.data(), terms.data(), count, n);
                expectSameNumbers(actual, set);
            }
        }
    }
}

TEST(VectorKernels, BandRowsThatStartFromZeroLoseTheSignOfAZero) {
    const float minus[] = {-0.0f};
    const float one[] = {1.0f};
    const BandTerm term = {minus, one};
    for (const KernelTarget target : test::availableTargets()) {
        float set[] = {7.0f};
        float added[] = {-0.0f};

        vectorKernels(target).setBandRows(set, &term, 1, 1);
        vectorKernels(target).addBandRows(added, &term, 1, 1);

        EXPECT_FALSE(std::signbit(set[0]));
        EXPECT_TRUE(std::signbit(added[0]));
    }
}

TEST(VectorKernels, TridiagonalProductsRoundTheirThreeTermsOnce) {
    for (const KernelTarget target : test::availableTargets()) {
        const VectorKernels& kernels = vectorKernels(target);
        for (int n = 0; n <= 70; ++n) {
            SCOPED_TRACE(testing::Message() << nameOf(target) << ", n " << n);
            const std::vector<float> below = awkwardFloats(n, 1u);
            const std::vector<float> main = awkwardFloats(n, 2u);
            const std::vector<float> above = awkwardFloats(n, 3u);
            const std::vector<float> x = awkwardFloats(n, 4u);
            const std::vector<float> given = awkwardFloats(n, 5u);
            std::vector<float> set = given;
            std::vector<float> added = given;
            for (std::size_t i = 1; i + 1 < given.size(); ++i) {
                const double terms = (double{above[i]} * double{x[i + 1]} +
                                      double{below[i - 1]} * double{x[i - 1]}) +
                                     double{main[i]} * double{x[i]};
                set[i] = static_cast<float>(terms);
                added[i] = static_cast<float>(double{given[i]} + terms);
            }

            std::vector<float> actual = given;
            kernels.setTridiagonalProduct(actual.data(), below.data(), main.data(),
                                          above.data(), x.data(), n);
            expectSameNumbers(actual, set);
            actual = given;
            kernels.addTridiagonalProduct(actual.data(), below.data(), main.data(),
                                          above.data(), x.data(), n);
            expectSameNumbers(actual, added);
        }
    }
}

// Sizes on either side of the runs that the sums fetch ahead, and all small ones.
std::vector<int> sizesOfSums() {
    std::vector<int> sizes = {127, 128, 129, 255, 256, 1151, 1152, 1153, 1280, 4103};
    for (int n = 0; n <= 70; ++n) {
        sizes.push_back(n);
    }
    return sizes;
}

// The sum of the terms in the declared order.
template <class Term>
double sumOfLanes(int n, Term term) {
    double lanes[8] = {};
    for (int i = 0; i < n; ++i) {
        lanes[i % 8] += term(i);
    }
    return ((lanes[0] + lanes[1]) + (lanes[2] + lanes[3])) +
           ((lanes[4] + lanes[5]) + (lanes[6] + lanes[7]));
}

TEST(VectorKernels, SumsHaveTheBitsOfTheDeclaredOrder) {
    for (const KernelTarget target : test::availableTargets()) {
        const VectorKernels& kernels = vectorKernels(target);
        for (const int n : sizesOfSums()) {
            SCOPED_TRACE(testing::Message() << nameOf(target) << ", n " << n);
            const RealVector x = test::randomVector(n, 6u);
            const RealVector y = test::randomVector(n, 7u);
            const auto square = [&](int i) { return double{x[i]} * double{x[i]}; };
            const auto product = [&](int i) { return double{x[i]} * double{y[i]}; };
            const auto element = [&](int i) { return double{x[i]}; };

            EXPECT_EQ(kernels.sumOfSquares(x.data(), n), sumOfLanes(n, square));
            EXPECT_EQ(kernels.dot(x.data(), y.data(), n), sumOfLanes(n, product));
            EXPECT_EQ(kernels.sum(x.data(), n), sumOfLanes(n, element));
        }
    }
}

TEST(VectorKernels, AnUpdateWithItsSumHasTheBitsOfBothAfterEachOther) {
    for (const KernelTarget target : test::availableTargets()) {
        for (const int n : sizesOfSums()) {
            SCOPED_TRACE(testing::Message() << nameOf(target) << ", n " << n);
            const RealVector x = test::randomVector(n, 6u);
            // One float beyond the vector, which has to stay.
            const RealVector given = test::randomVector(n + 1, 7u);
            std::vector<float> expected(given.data(), given.data() + n + 1);
            std::vector<float> actual = expected;
            for (int i = 0; i < n; ++i) {
                float& updated = expected[static_cast<std::size_t>(i)];
                updated = updated + -1.3f * x[i];
            }

            const double sum =
                vectorKernels(target).addScaledSumSquares(actual.data(), -1.3f, x.data(), n);

            expectSameNumbers(actual, expected);
            EXPECT_EQ(sum, sumOfLanes(n, [&](int i) {
                          const double updated = expected[static_cast<std::size_t>(i)];
                          return updated * updated;
                      }));
        }
    }
}

TEST(VectorKernels, AnUpdateWithItsSumPassesNanOn) {
    for (const KernelTarget target : test::availableTargets()) {
        for (const int at : {0, 7, 8, 18}) {
            std::vector<float> v(19, 1.0f);
            const std::vector<float> x(19, 2.0f);
            v[static_cast<std::size_t>(at)] = NAN;

            EXPECT_TRUE(std::isnan(
                vectorKernels(target).addScaledSumSquares(v.data(), 0.5f, x.data(), 19)));
        }
    }
}

TEST(VectorKernels, FillWritesItsRunAlone) {
    for (const KernelTarget target : test::availableTargets()) {
        for (const int n : {-1, 0, 1, 3, 16, 33}) {
            std::vector<float> expected(40, 2.0f);
            std::fill(expected.begin() + 1, expected.begin() + 1 + std::max(n, 0), -0.0f);
            std::vector<float> actual(40, 2.0f);

            vectorKernels(target).fill(actual.data() + 1, -0.0f, n);

            expectSameNumbers(actual, expected);
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
