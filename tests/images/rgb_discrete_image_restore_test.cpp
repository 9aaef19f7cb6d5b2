#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "images/curvature_plain.h"
#include "images/image_support.h"
#include "images/plain_image.h"
#include "images/real_image3.h"
#include "images/rgb_discrete_image.h"

namespace orv {
namespace {

using test::noiseImage;
using test::sameBytes;

constexpr int kRoot = 0;
constexpr int kRgb = 1;
constexpr int kHsi = 2;
constexpr int kYiq = 3;

template <class Run>
std::string textOf(Run run) {
    testing::internal::CaptureStdout();
    run();
    std::fflush(stdout);
    return testing::internal::GetCapturedStdout();
}

/// The planes of a picture after a flow on each of them, sample by sample.
RealImage3 planesAfter(const DiscreteImage& image, CurvatureFlow flow, bool geodesic,
                       double coeff, int iterations) {
    RealImage3 planes(image);
    for (int k = 0; k < 3; ++k) {
        test::plainFlow(flow, geodesic, coeff, 0.2 * coeff, iterations, planes.plane(k));
    }
    return planes;
}

struct Row {
    int method;
    CurvatureFlow flow;
    bool geodesic;
    const char* text;
};

constexpr Row kRows[] = {
    {1, CurvatureFlow::MeanCurvature, false, "Mean Curvature coeff=2.500000 iterations=3\n"},
    {2, CurvatureFlow::MeanCurvature, true,
     "Geodesic Mean Curvature coeff=2.500000, cgrad=0.500000, iterations=3\n"},
    {3, CurvatureFlow::Beltrami, false, "Beltrami coeff=2.500000 iterations=3\n"},
    {7, CurvatureFlow::Beltrami, false, "Beltrami coeff=2.500000 iterations=3\n"},
    {-1, CurvatureFlow::Beltrami, false, "Beltrami coeff=2.500000 iterations=3\n"},
    {4, CurvatureFlow::Beltrami, true,
     "Geodesic Beltrami coeff=2.500000, cgrad=0.500000, iterations=3\n"},
    {5, CurvatureFlow::PeronaMalik, false, "Perona/Malik coeff=2.500000 iterations=3\n"},
    {6, CurvatureFlow::PeronaMalik, true,
     "Geodesic Perona/Malik coeff=2.500000, cgrad=0.500000, iterations=3\n"},
};

std::string threeRuns() {
    const std::string run = " 0\nrestauration done\n";
    return run + run + run;
}

TEST(RgbDiscreteImageRestore, MethodNumbersRunTheirFlowOnEachChannel) {
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.method);
        RgbDiscreteImage image = noiseImage(13, 9, 2);
        RgbDiscreteImage expected(13, 9);
        expected.setFromReal3(planesAfter(image, row.flow, row.geodesic, 2.5, 3));

        const std::string text = textOf([&] { image.restoreFullColor(row.method, 3, 2.5); });

        EXPECT_TRUE(sameBytes(image, expected));
        EXPECT_EQ(text, row.text + threeRuns() + "new restored colored image from RGB\n");
    }
}

TEST(RgbDiscreteImageRestore, MethodZeroRunsTheCoupledFlow) {
    RgbDiscreteImage image = noiseImage(13, 9, 2);
    RgbDiscreteImage expected(13, 9);
    RealImage3 planes(image);
    test::plainFullColor(400.0, 6, planes);
    expected.setFromReal3(planes);

    const std::string text = textOf([&] { image.restoreFullColor(0, 6, 400.0); });

    EXPECT_TRUE(sameBytes(image, expected));
    EXPECT_EQ(text,
              "Full Color Beltrami coeff=400.000000 iterations=6\n 0 5\n"
              "new restored colored image from RGB\n");
}

TEST(RgbDiscreteImageRestore, OneIterationOfADriverChangesNothing) {
    for (int method = 1; method <= 6; ++method) {
        RgbDiscreteImage image = noiseImage(8, 8, 3);
        RgbDiscreteImage source = noiseImage(8, 8, 3);

        textOf([&] { image.restoreFullColor(method, 1, 0.2); });

        EXPECT_TRUE(sameBytes(image, source)) << method;
    }
}

TEST(RgbDiscreteImageRestore, AFlatPictureStaysUnderTheCoupledFlow) {
    RgbDiscreteImage image(8, 8);
    image.fillRgb(10, 200, 90);
    RgbDiscreteImage source(8, 8);
    source.fillRgb(10, 200, 90);

    textOf([&] { image.restoreFullColor(0, 20, 100.0); });

    EXPECT_TRUE(sameBytes(image, source));
}

TEST(RgbDiscreteImageRestore, SeparateMethodZeroIsTheBeltramiDriver) {
    RgbDiscreteImage image = noiseImage(11, 10, 4);
    RgbDiscreteImage expected = noiseImage(11, 10, 4);

    const std::string text =
        textOf([&] { image.restoreSeparateColor(kRgb, 1, 0, 3, 100.0, 0.5); });
    textOf([&] { expected.restoreFullColor(3, 3, 100.0); });

    EXPECT_TRUE(sameBytes(image, expected));
    EXPECT_EQ(text, "Separate 3 Color Beltrami coeff=100.000000 iterations=3\n" + threeRuns() +
                        "new restored colored image\n");
}

TEST(RgbDiscreteImageRestore, KindTwoRunsTheCoupledFlowWhateverTheMethod) {
    for (const int method : {0, 1, 5}) {
        RgbDiscreteImage image = noiseImage(11, 10, 4);
        RgbDiscreteImage expected = noiseImage(11, 10, 4);

        const std::string text =
            textOf([&] { image.restoreSeparateColor(kRgb, 2, method, 2, 300.0, 0.5); });
        textOf([&] { expected.restoreFullColor(0, 2, 300.0); });

        EXPECT_TRUE(sameBytes(image, expected));
        EXPECT_EQ(text,
                  "Full Color Beltrami coeff=300.000000 iterations=2\n 0\n"
                  "new restored colored image\n");
    }
}

TEST(RgbDiscreteImageRestore, AnotherKindRunsNoFlowAndStillReadsTheSpace) {
    RgbDiscreteImage image = noiseImage(6, 7, 5);
    RgbDiscreteImage expected = noiseImage(6, 7, 5);
    const RgbDiscreteImage source = noiseImage(6, 7, 5);
    for (int x = 0; x < 6; ++x) {
        for (int y = 0; y < 7; ++y) {
            expected.setYiq(x, y, source.red(x, y), source.green(x, y), source.blue(x, y));
        }
    }

    const std::string text =
        textOf([&] { image.restoreSeparateColor(kYiq, 3, 1, 5, 1.0, 0.5); });

    EXPECT_TRUE(sameBytes(image, expected));
    EXPECT_EQ(text, "new restored colored image from YIQ\n");
}

TEST(Quirk, CurvatureColourSpaces) {
    RgbDiscreteImage image = noiseImage(9, 8, 6);
    RgbDiscreteImage expected(9, 8);
    const RealImage3 planes = planesAfter(image, CurvatureFlow::MeanCurvature, false, 2.0, 4);
    for (int x = 0; x < 9; ++x) {
        for (int y = 0; y < 8; ++y) {
            // Intensity from plane 1, hue from plane 3, saturation from plane 2, unconverted.
            expected.setHsi(x, y, planes.plane(0).row(x)[y], planes.plane(2).row(x)[y],
                            planes.plane(1).row(x)[y]);
        }
    }

    const std::string text =
        textOf([&] { image.restoreSeparateColor(kHsi, 1, 1, 4, 2.0, 0.5); });

    EXPECT_TRUE(sameBytes(image, expected));
    EXPECT_EQ(text.substr(text.size() - 37), "\nnew restored colored image from LHS\n");
}

TEST(RgbDiscreteImageRestore, RootsAreSquaredBackAndLimited) {
    RgbDiscreteImage image = noiseImage(9, 8, 7);
    RgbDiscreteImage expected(9, 8);
    RealImage3 planes(image);
    for (int k = 0; k < 3; ++k) {
        RealImage& plane = planes.plane(k);
        plane.sqrtOf();
        test::plainFlow(CurvatureFlow::PeronaMalik, false, 0.2, 0.0, 5, plane);
        for (std::size_t i = 0; i < plane.sampleCount(); ++i) {
            const double square = plane.data()[i] * plane.data()[i];
            plane.data()[i] = square > 255.0 ? 255.0 : square;
        }
    }
    expected.setFromReal3(planes);

    const std::string text =
        textOf([&] { image.restoreSeparateColor(kRoot, 1, 5, 5, 0.2, 0.5); });

    EXPECT_TRUE(sameBytes(image, expected));
    EXPECT_EQ(text, "Separate 3 Color Perona/Malik coeff=0.200000 iterations=5\n" +
                        threeRuns() + "new restored colored image from root RGB\n");
}

TEST(RgbDiscreteImageRestore, RootsOfWhiteComeBackAsAtMost255) {
    RgbDiscreteImage image(7, 6);
    image.fill(255);

    textOf([&] { image.restoreSeparateColor(kRoot, 1, 1, 12, 0.2, 0.5); });

    for (int x = 0; x < 7; ++x) {
        for (int y = 0; y < 6; ++y) {
            // sqrt 255 squared may fall just below 255 and is truncated.
            EXPECT_GE(image.red(x, y), 254);
            EXPECT_EQ(image.red(x, y), image.blue(x, y));
        }
    }
}

TEST(RgbDiscreteImageRestore, AnotherSpaceWritesNothingBackAndTellsNoEnd) {
    for (const int space : {-1, 4}) {
        RgbDiscreteImage image = noiseImage(9, 8, 8);
        RgbDiscreteImage source = noiseImage(9, 8, 8);

        const std::string text =
            textOf([&] { image.restoreSeparateColor(space, 1, 1, 2, 5.0, 0.5); });

        EXPECT_TRUE(sameBytes(image, source));
        EXPECT_EQ(text, "Separate 3 Color Mean Curvature coeff=5.000000 iterations=2\n" +
                            threeRuns());
    }
}

TEST(RgbDiscreteImageRestore, TheDefaultFormRunsChannelByChannel) {
    RgbDiscreteImage image = noiseImage(9, 8, 9);
    RgbDiscreteImage expected = noiseImage(9, 8, 9);

    const std::string text =
        textOf([&] { image.restoreSeparateColorDefault(kRgb, 2, 3, 1.5); });
    const std::string expectedText =
        textOf([&] { expected.restoreSeparateColor(kRgb, 1, 2, 3, 1.5, 0.5); });

    EXPECT_TRUE(sameBytes(image, expected));
    EXPECT_EQ(text, expectedText);
}

TEST(RgbDiscreteImageRestore, ColorAAndColorBAreTheFullColorForm) {
    RgbDiscreteImage a = noiseImage(9, 8, 9);
    RgbDiscreteImage b = noiseImage(9, 8, 9);
    RgbDiscreteImage expected = noiseImage(9, 8, 9);

    const std::string text = textOf([&] { a.restoreColorA(5, 4, 9.0); });
    textOf([&] { b.restoreColorB(5, 4, 9.0); });

    EXPECT_EQ(textOf([&] { expected.restoreFullColor(5, 4, 9.0); }), text);
    EXPECT_TRUE(sameBytes(a, expected));
    EXPECT_TRUE(sameBytes(b, expected));
}

/// A class that notes what reaches restoreFullColor.
class NotingImage : public test::PlainImage {
  public:
    using PlainImage::PlainImage;
    void restoreFullColor(int method, int iterations, double coeff) override {
        method_ = method;
        iterations_ = iterations;
        coeff_ = coeff;
    }
    int method_ = 0;
    int iterations_ = 0;
    double coeff_ = 0.0;
};

TEST(DiscreteImage, SeparateColorOfTheBaseForwardsToFullColor) {
    NotingImage image(3, 3, 1);

    image.restoreSeparateColorDefault(2, 4, 9, 0.25);

    EXPECT_EQ(image.method_, 4);
    EXPECT_EQ(image.iterations_, 9);
    EXPECT_EQ(image.coeff_, 0.25);
}

TEST(DiscreteImage, FullColorOfTheBaseDoesNothing) {
    test::PlainImage image(3, 3, 1);
    image.fillRgb(5, 5, 5);

    EXPECT_EQ(textOf([&] { image.restoreColorA(0, 5, 3.0); }), "");
    EXPECT_EQ(image.value(1, 1), 5);
}

}  // namespace
}  // namespace orv
