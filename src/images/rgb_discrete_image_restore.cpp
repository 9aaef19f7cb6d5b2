#include "base/text_output.h"
#include "images/curvature_flow.h"
#include "images/real_image3.h"
#include "images/rgb_discrete_image.h"

namespace orv {

namespace {

// Weight of the geodesic term in parts of the weight of the curvature term.
constexpr double kGeodesicShare = 0.2;

constexpr int kMethodFullColor = 0;
constexpr int kMethodBeltrami = 3;

constexpr int kSpaceRootRgb = 0;
constexpr int kSpaceRgb = 1;
constexpr int kSpaceHsi = 2;
constexpr int kSpaceYiq = 3;

void runPlain(CurvatureFlow flow, int iterations, double coeff, RealImage3& planes) {
    for (int k = 0; k < 3; ++k) {
        runCurvatureFlow(flow, coeff, iterations, planes.plane(k));
    }
}

void runGeodesic(CurvatureFlow flow, int iterations, double coeff, RealImage3& planes) {
    for (int k = 0; k < 3; ++k) {
        runGeodesicCurvatureFlow(flow, coeff, kGeodesicShare * coeff, iterations,
                                 planes.plane(k));
    }
}

/// Runs the flow of a method number, its text first.
void runMethod(int method, int iterations, double coeff, RealImage3& planes) {
    const double cgrad = kGeodesicShare * coeff;
    switch (method) {
        case kMethodFullColor:
            printText("Full Color Beltrami coeff=%f iterations=%d\n", coeff, iterations);
            return runFullColorBeltrami(coeff, iterations, planes);
        case 1:
            printText("Mean Curvature coeff=%f iterations=%d\n", coeff, iterations);
            return runPlain(CurvatureFlow::MeanCurvature, iterations, coeff, planes);
        case 2:
            printText("Geodesic Mean Curvature coeff=%f, cgrad=%f, iterations=%d\n", coeff,
                      cgrad, iterations);
            return runGeodesic(CurvatureFlow::MeanCurvature, iterations, coeff, planes);
        case 4:
            printText("Geodesic Beltrami coeff=%f, cgrad=%f, iterations=%d\n", coeff, cgrad,
                      iterations);
            return runGeodesic(CurvatureFlow::Beltrami, iterations, coeff, planes);
        case 5:
            printText("Perona/Malik coeff=%f iterations=%d\n", coeff, iterations);
            return runPlain(CurvatureFlow::PeronaMalik, iterations, coeff, planes);
        case 6:
            printText("Geodesic Perona/Malik coeff=%f, cgrad=%f, iterations=%d\n", coeff, cgrad,
                      iterations);
            return runGeodesic(CurvatureFlow::PeronaMalik, iterations, coeff, planes);
        default:
            printText("Beltrami coeff=%f iterations=%d\n", coeff, iterations);
            return runPlain(CurvatureFlow::Beltrami, iterations, coeff, planes);
    }
}

void runKind(int kind, int method, int iterations, double coeff, RealImage3& planes) {
    if (kind == 1) {
        printText("Separate 3 Color ");
        runMethod(method == kMethodFullColor ? kMethodBeltrami : method, iterations, coeff,
                  planes);
    } else if (kind == 2) {
        printText("Full Color ");
        printText("Beltrami coeff=%f iterations=%d\n", coeff, iterations);
        runFullColorBeltrami(coeff, iterations, planes);
    }
}

/// Each sample squared, at most 255.
void squareOf(RealImage& plane) {
    double* const samples = plane.data();
    for (std::size_t i = 0; i < plane.sampleCount(); ++i) {
        const double square = samples[i] * samples[i];
        samples[i] = square > 255.0 ? 255.0 : square;
    }
}

/// Calls set(x, y, first, second, third) with the samples of the planes.
template <class Set>
void forEachPixel(const RealImage3& planes, Set set) {
    for (int x = 0; x < planes.width(); ++x) {
        for (int y = 0; y < planes.height(); ++y) {
            set(x, y, planes.plane(0).row(x)[y], planes.plane(1).row(x)[y],
                planes.plane(2).row(x)[y]);
        }
    }
}

}  // namespace

void RgbDiscreteImage::restoreFullColor(int method, int iterations, double coeff) {
    RealImage3 planes(*this);
    runMethod(method, iterations, coeff, planes);
    printText("new restored colored image from RGB\n");
    setFromReal3(planes);
}

void RgbDiscreteImage::restoreSeparateColor(int space, int kind, int method, int iterations,
                                            double coeff, double /*spare*/) {
    RealImage3 planes(*this);
    for (int k = 0; k < 3 && space == kSpaceRootRgb; ++k) {
        planes.plane(k).sqrtOf();
    }
    runKind(kind, method, iterations, coeff, planes);
    // The flows ran on the channels as they are: these spaces only read the result.
    // quirk: curvature-colour-spaces
    switch (space) {
        case kSpaceRootRgb:
            for (int k = 0; k < 3; ++k) {
                squareOf(planes.plane(k));
            }
            setFromReal3(planes);
            printText("new restored colored image from root RGB\n");
            break;
        case kSpaceRgb:
            setFromReal3(planes);
            printText("new restored colored image\n");
            break;
        case kSpaceHsi:
            forEachPixel(planes, [&](int x, int y, double lightness, double saturation,
                                     double hue) { setHsi(x, y, lightness, hue, saturation); });
            printText("new restored colored image from LHS\n");
            break;
        case kSpaceYiq:
            forEachPixel(planes, [&](int x, int y, double luma, double i, double q) {
                setYiq(x, y, luma, i, q);
            });
            printText("new restored colored image from YIQ\n");
            break;
        default:
            break;
    }
}

}  // namespace orv
