#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "base/cpu_features.h"
#include "exports/work_window.h"
#include "filters/float_recursive_2d_blur_operator.h"
#include "filters/real_recursive_2d_blur_operator.h"
#include "filters/recursive_gaussian.h"
#include "support/plane_support.h"
#include "support/printed_text.h"

namespace orv {
namespace {

using test::noisePlane;
using test::noiseRealPlane;
using test::printedTo;
using test::sameBits;

template <class Operator>
struct TypesOf;
template <>
struct TypesOf<FloatRecursive2dBlurOperator> {
    using Sample = float;
    using Image = FloatImage;
    static FloatImage noise(int w, int h, unsigned seed) { return noisePlane(w, h, seed); }
};
template <>
struct TypesOf<RealRecursive2dBlurOperator> {
    using Sample = double;
    using Image = RealImage;
    static RealImage noise(int w, int h, unsigned seed) { return noiseRealPlane(w, h, seed); }
};

// One line at a time through two buffers, sample by sample: the formula as it is written.
template <class Operator>
std::vector<typename TypesOf<Operator>::Sample> plainLine(
    const Operator& op, const std::vector<typename TypesOf<Operator>::Sample>& s) {
    using Sample = typename TypesOf<Operator>::Sample;
    const std::size_t n = s.size();
    std::vector<Sample> f(n + 3);
    std::vector<Sample> g(n + 3);
    f[0] = s[2];
    f[1] = s[1];
    f[2] = s[0];
    for (std::size_t i = 0; i < n; ++i) {
        Sample sum = op.B() * s[i];
        sum += op.b1OverB0() * f[i + 2];
        sum += op.b2OverB0() * f[i + 1];
        sum += op.b3OverB0() * f[i];
        f[i + 3] = sum;
    }
    g[n + 2] = f[n];
    g[n + 1] = f[n + 1];
    g[n] = f[n + 2];
    for (std::size_t i = n; i-- > 0;) {
        Sample sum = op.B() * f[i + 3];
        sum += op.b1OverB0() * g[i + 1];
        sum += op.b2OverB0() * g[i + 2];
        sum += op.b3OverB0() * g[i + 3];
        g[i] = sum;
    }
    g.resize(n);
    return g;
}

template <class Operator>
typename TypesOf<Operator>::Image plainBlur(const Operator& op,
                                            const typename TypesOf<Operator>::Image& source) {
    using Sample = typename TypesOf<Operator>::Sample;
    typename TypesOf<Operator>::Image target(source.width(), source.height());
    const std::size_t w = static_cast<std::size_t>(source.width());
    const std::size_t h = static_cast<std::size_t>(source.height());
    std::vector<Sample> line(w);
    for (std::size_t y = 0; y < h; ++y) {
        for (std::size_t x = 0; x < w; ++x) {
            line[x] = source.data()[x * h + y];
        }
        const std::vector<Sample> blurred = plainLine(op, line);
        for (std::size_t x = 0; x < w; ++x) {
            target.data()[x * h + y] = blurred[x];
        }
    }
    for (std::size_t x = 0; x < w; ++x) {
        line.assign(target.data() + x * h, target.data() + (x + 1) * h);
        const std::vector<Sample> blurred = plainLine(op, line);
        std::copy(blurred.begin(), blurred.end(), target.data() + x * h);
    }
    return target;
}

template <class Operator>
class Recursive2dBlurOperator : public testing::Test {
  protected:
    using Image = typename TypesOf<Operator>::Image;

    void TearDown() override { limitKernelTarget(KernelTarget::Avx512); }

    static Image noise(int w, int h) {
        return TypesOf<Operator>::noise(w, h, static_cast<unsigned>(w * 977 + h));
    }

    // Compares `apply` with the plain form on one plane for all targets of this machine.
    static void compare(Operator& op, int w, int h) {
        const Image source = noise(w, h);
        const Image expected = plainBlur(op, source);
        for (const auto target :
             {KernelTarget::Generic, KernelTarget::Avx2, KernelTarget::Avx512}) {
            if (!isAvailable(target)) {
                continue;
            }
            SCOPED_TRACE(std::string(nameOf(target)) + " " + std::to_string(w) + " x " +
                         std::to_string(h));
            limitKernelTarget(target);
            EXPECT_TRUE(sameBits(*op.apply(source, nullptr), expected));
            Image place(source);
            op.blurInPlace(place);
            EXPECT_TRUE(sameBits(place, expected)) << "in place";
        }
    }
};

using Operators = testing::Types<FloatRecursive2dBlurOperator, RealRecursive2dBlurOperator>;
TYPED_TEST_SUITE(Recursive2dBlurOperator, Operators);

TYPED_TEST(Recursive2dBlurOperator, GivesThePlainFormsBitsOnSmallPlanes) {
    testing::internal::CaptureStdout();
    TypeParam op(1.7);
    testing::internal::GetCapturedStdout();
    for (int w = 3; w <= 40; w += w < 20 ? 1 : 3) {
        for (int h = 3; h <= 40; h += h < 20 ? 1 : 3) {
            this->compare(op, w, h);
        }
    }
}

TYPED_TEST(Recursive2dBlurOperator, GivesThePlainFormsBitsOverSeveralBlocks) {
    testing::internal::CaptureStdout();
    TypeParam narrow(0.5);
    TypeParam wide(40.0);
    testing::internal::GetCapturedStdout();
    // Full blocks of 64, 32 and 16 columns, a rest, and ends at every place of a tile.
    for (const int w : {127, 128, 129, 141, 257, 300}) {
        this->compare(narrow, w, 37);
        this->compare(wide, w, 3);
    }
    for (const int h : {63, 64, 65, 70, 200, 1300, 2700, 5600, 11000}) {
        this->compare(wide, 135, h);
    }
}

TYPED_TEST(Recursive2dBlurOperator, WritesEverySampleOfAGivenTarget) {
    testing::internal::CaptureStdout();
    TypeParam op(3.0);
    testing::internal::GetCapturedStdout();
    const auto source = this->noise(21, 18);
    auto target = std::make_unique<typename TestFixture::Image>(
        21, 18, std::numeric_limits<float>::quiet_NaN());
    const auto* const place = target.get();

    const auto result = op.apply(source, std::move(target));

    EXPECT_EQ(result.get(), place);
    EXPECT_TRUE(sameBits(*result, plainBlur(op, source)));
}

TYPED_TEST(Recursive2dBlurOperator, CarriesTheFlagOfTheSourceToANewTarget) {
    testing::internal::CaptureStdout();
    TypeParam op(3.0);
    testing::internal::GetCapturedStdout();
    auto source = this->noise(5, 4);
    source.setFlag(7);
    source.setChannel(2);

    const auto result = op.apply(source, nullptr);

    EXPECT_EQ(result->flag(), 7);
    EXPECT_EQ(result->channel(), 0);
}

/// Asks to stop at report `limit`.
class StopAt : public WorkObserver {
  public:
    explicit StopAt(int limit) : limit_(limit) {}

    bool onWork(double done) override {
        rises_ = rises_ && done >= last_ && done <= 1.0;
        last_ = done;
        return ++reports_ < limit_;
    }

    int reports() const { return reports_; }
    double last() const { return last_; }
    bool rises() const { return rises_; }

  private:
    int limit_;
    int reports_ = 0;
    double last_ = 0.0;
    bool rises_ = true;
};

TYPED_TEST(Recursive2dBlurOperator, AccountsForItsWorkBlockByBlock) {
    testing::internal::CaptureStdout();
    TypeParam op(2.0);
    testing::internal::GetCapturedStdout();
    StopAt observer(1000);
    const WorkObserverScope scope(&observer);

    op.apply(this->noise(640, 20), nullptr);

    EXPECT_EQ(observer.reports(), 20);  // two passes over ten blocks of 64 columns
    EXPECT_TRUE(observer.rises());
    EXPECT_GT(observer.last(), 0.9);
}

TYPED_TEST(Recursive2dBlurOperator, StopsWithTheBlocksSoFar) {
    testing::internal::CaptureStdout();
    TypeParam op(2.0);
    testing::internal::GetCapturedStdout();
    const auto source = this->noise(640, 20);
    const auto whole = op.apply(source, nullptr);
    for (const auto& [limit, finished] : {std::pair{11, 0}, {12, 1}, {15, 4}}) {
        StopAt observer(limit);
        const WorkObserverScope scope(&observer);

        const auto result = op.apply(source, nullptr);

        EXPECT_TRUE(workCancelled());
        const int first = 640 - 64 * finished;
        for (int x = 0; x < 640; ++x) {
            EXPECT_EQ(std::equal(result->row(x), result->row(x) + 20, whole->row(x)),
                      x >= first)
                << limit << " column " << x;
        }
    }
}

TYPED_TEST(Recursive2dBlurOperator, KeepsAConstantPlaneUpToRounding) {
    for (const double sigma : {0.0, 0.9, 2.5, 2.6, 7.0}) {
        testing::internal::CaptureStdout();
        TypeParam op(sigma);
        testing::internal::GetCapturedStdout();
        const typename TestFixture::Image source(33, 29, 200.0F);

        const auto result = op.apply(source, nullptr);

        for (std::size_t i = 0; i < source.sampleCount(); ++i) {
            // The coefficients are rounded to float, the gain at 7 pixels is 0.01.
            ASSERT_NEAR(result->data()[i], 200.0, 0.02) << sigma;
        }
    }
}

TYPED_TEST(Recursive2dBlurOperator, SpreadsAPointAsItsTransferFunctionTells) {
    for (const double sigma : {1.0, 2.0, 3.0, 6.0}) {
        testing::internal::CaptureStdout();
        TypeParam op(sigma);
        testing::internal::GetCapturedStdout();
        typename TestFixture::Image source(121, 121);
        source.row(60)[60] = 1000.0F;

        const auto result = op.apply(source, nullptr);

        const double k[] = {op.b1() / op.b0(), op.b2() / op.b0(), op.b3() / op.b0()};
        const double gain = 1.0 - k[0] - k[1] - k[2];
        double mass = 0.0;
        double alongX = 0.0;
        double alongY = 0.0;
        for (int x = 0; x < 121; ++x) {
            for (int y = 0; y < 121; ++y) {
                const double s = result->row(x)[y];
                mass += s;
                alongX += s * (x - 60) * (x - 60);
                alongY += s * (y - 60) * (y - 60);
            }
        }
        EXPECT_NEAR(mass, 1000.0, 0.5);
        // Mean and variance of the response of one recursion, from its transfer function; the
        // wide tails of the approximation make its deviation larger than sigma.
        const double mean = (k[0] + 2.0 * k[1] + 3.0 * k[2]) / gain;
        const double variance = (k[0] + 4.0 * k[1] + 9.0 * k[2]) / gain + mean * mean;
        EXPECT_NEAR(std::sqrt(alongX / mass), std::sqrt(2.0 * variance), 0.005 * sigma);
        EXPECT_NEAR(std::sqrt(alongY / mass), std::sqrt(2.0 * variance), 0.005 * sigma);
    }
}

TYPED_TEST(Recursive2dBlurOperator, CountsSigmaBelowHalfAsHalf) {
    testing::internal::CaptureStdout();
    for (const double sigma : {-3.0, 0.0, 0.25, 0.5}) {
        const TypeParam op(sigma);
        EXPECT_EQ(op.sigma(), 0.5);
        EXPECT_EQ(op.q(), 3.97156 - 4.14554 * std::sqrt(1.0 - 0.134455));
    }
    testing::internal::GetCapturedStdout();
}

TYPED_TEST(Recursive2dBlurOperator, ChangesTheScaleFormulaAboveTwoAndAHalf) {
    testing::internal::CaptureStdout();
    const TypeParam last(2.5);
    const TypeParam next(std::nextafter(2.5, 3.0));
    testing::internal::GetCapturedStdout();

    EXPECT_EQ(last.q(), 3.97156 - 4.14554 * std::sqrt(1.0 - 0.26891 * 2.5));
    EXPECT_EQ(next.q(), 0.98711 * std::nextafter(2.5, 3.0) - 0.9833);
}

TYPED_TEST(Recursive2dBlurOperator, FillsTheCoefficientsFromTheScale) {
    using Sample = typename TypesOf<TypeParam>::Sample;
    testing::internal::CaptureStdout();
    const TypeParam op(5.0);
    testing::internal::GetCapturedStdout();
    const double q = 0.98711 * 5.0 - 0.9833;

    EXPECT_DOUBLE_EQ(op.b0(), 1.57825 + 2.44413 * q + 1.4281 * q * q + 0.422205 * q * q * q);
    EXPECT_DOUBLE_EQ(op.b1(), 2.44413 * q + 2.85619 * q * q + 1.26661 * q * q * q);
    EXPECT_DOUBLE_EQ(op.b2(), -(1.4281 * q * q + 1.26661 * q * q * q));
    EXPECT_DOUBLE_EQ(op.b3(), 0.422205 * q * q * q);
    EXPECT_EQ(op.B(), static_cast<Sample>(1.0 - (op.b1() + op.b2() + op.b3()) / op.b0()));
    EXPECT_EQ(op.b1OverB0(), static_cast<Sample>(op.b1() / op.b0()));
    EXPECT_EQ(op.b2OverB0(), static_cast<Sample>(op.b2() / op.b0()));
    EXPECT_EQ(op.b3OverB0(), static_cast<Sample>(op.b3() / op.b0()));
}

TYPED_TEST(Recursive2dBlurOperator, TakesNewCoefficientsFromANewSigma) {
    testing::internal::CaptureStdout();
    TypeParam op(5.0);
    testing::internal::GetCapturedStdout();
    const auto before = op.B();

    EXPECT_EQ(op.computeQ(0.1), 3.97156 - 4.14554 * std::sqrt(1.0 - 0.26891 * 0.5));

    EXPECT_EQ(op.sigma(), 0.5);
    op.computeCoefficients();  // from q, which computeQ gives back and doesn't store
    EXPECT_EQ(op.B(), before);
}

TEST(FloatRecursive2dBlurOperator, PrintsItsCoefficientsOnceAtConstruction) {
    testing::internal::CaptureStdout();
    FloatRecursive2dBlurOperator op(2.0);
    const std::string atConstruction = testing::internal::GetCapturedStdout();
    testing::internal::CaptureStdout();
    op.apply(noisePlane(9, 9, 1), nullptr);
    const std::string atRun = testing::internal::GetCapturedStdout();

    char expected[400];
    std::snprintf(expected, sizeof expected,
                  "b0=%f, b1=%f, b2=%f, b3=%f\nb1/b0=%f, b2/b0=%f, b3/b0=%f\nB=%f\n", op.b0(),
                  op.b1(), op.b2(), op.b3(), static_cast<double>(op.b1OverB0()),
                  static_cast<double>(op.b2OverB0()), static_cast<double>(op.b3OverB0()),
                  static_cast<double>(op.B()));
    EXPECT_EQ(atConstruction, expected);
    EXPECT_EQ(atRun, "");
}

TEST(FloatRecursive2dBlurOperator, PrintsTheKnownNumbersOfSigmaFive) {
    testing::internal::CaptureStdout();
    const FloatRecursive2dBlurOperator op(5.0);

    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "b0=59.610317, b1=132.468788, b2=-100.501809, b3=26.064932\n"
              "b1/b0=2.222246, b2/b0=-1.685980, b3/b0=0.437255\nB=0.026479\n");
}

TEST(RealRecursive2dBlurOperator, PrintsNothing) {
    testing::internal::CaptureStdout();
    RealRecursive2dBlurOperator op(2.0);
    op.apply(noiseRealPlane(9, 9, 1), nullptr);

    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST(FloatRecursive2dBlurOperator, WritesItsNameToTheFile) {
    testing::internal::CaptureStdout();
    const FloatRecursive2dBlurOperator op(2.0);
    testing::internal::GetCapturedStdout();

    EXPECT_EQ(printedTo([&](std::FILE* file) { op.printName(file); }),
              "Float Recursive 2d Blur Operator\n");
}

TEST(RealRecursive2dBlurOperator, WritesItsNameToTheFile) {
    const RealRecursive2dBlurOperator op(2.0);

    EXPECT_EQ(printedTo([&](std::FILE* file) { op.printName(file); }),
              "Real Recursive 2d Blur Operator\n");
}

TEST(FloatRecursive2dBlurOperator, IteratesToTheResultOfOneApplication) {
    testing::internal::CaptureStdout();
    FloatRecursive2dBlurOperator op(1.2);
    testing::internal::GetCapturedStdout();
    const FloatImage source = noisePlane(17, 23, 4);

    EXPECT_TRUE(sameBits(*op.iterate(3, source, nullptr), *op.apply(source, nullptr)));
}

TEST(RealRecursive2dBlurOperator, IteratesOnItsOwnResult) {
    RealRecursive2dBlurOperator op(1.2);
    const RealImage source = noiseRealPlane(17, 23, 4);
    const auto once = op.apply(source, nullptr);
    const auto twice = op.apply(*once, nullptr);

    EXPECT_TRUE(sameBits(*op.iterate(2, source, nullptr), *twice));
    EXPECT_FALSE(sameBits(*once, *twice));
}

TEST(Quirk, BlurLineStart) {
    // One bright sample next to the corner, on grey: it is taken for the slope of the past.
    RealImage start(200, 200, 100.0);
    start.row(1)[100] = 130.0;
    RealImage end(200, 200, 100.0);
    end.row(198)[100] = 130.0;
    RealRecursive2dBlurOperator op(10.0);

    const auto atStart = op.apply(start, nullptr);
    const auto atEnd = op.apply(end, nullptr);

    EXPECT_LT(atStart->row(0)[100], 95.0);
    EXPECT_NEAR(atEnd->row(199)[100], 100.0, 0.5);
}

TEST(Quirk, BlurScaleConstant) {
    EXPECT_EQ(gaussianScale(10.0), 0.98711 * 10.0 - 0.9833);
}

}  // namespace
}  // namespace orv
