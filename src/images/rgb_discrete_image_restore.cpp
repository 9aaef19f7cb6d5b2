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

void runPlain(const char* text, CurvatureFlow flow, int iterations, double coeff,
              RealImage3& planes) {
    printText("%s coeff=%f iterations=%d\n", text, coeff, iterations);
    for (int k = 0; k < 3; ++k) {
        runCurvatureFlow(flow, coeff, iterations, planes.plane(k));
    }
}

void runGeodesic(const char* text, CurvatureFlow flow, int iterations, double coeff,
                 RealImage3& planes) {
    const double cgrad = kGeodesicShare * coeff;
    printText("%s coeff=%f, cgrad=%f, iterations=%d\n", text, coeff, cgrad, iterations);
    for (int k = 0; k < 3; ++k) {
        runGeodesicCurvatureFlow(flow, coeff, cgrad, iterations, planes.plane(k));
    }
}

void runCoupled(const char* text, int iterations, double coeff, RealImage3& planes) {
    printText("%s coeff=%f iterations=%d\n", text, coeff, iterations);
    runFullColorBeltrami(coeff, iterations, planes);
}

/// Runs the flow of a method number.
void runMethod(int method, int iterations, double coeff, RealImage3& planes) {
    switch (method) {
        case kMethodFullColor:
            return runCoupled("Full Color Beltrami", iterations, coeff, planes);
        case 1:
            return runPlain("Mean Curvature", CurvatureFlow::MeanCurvature, iterations, coeff,
                            planes);
        case 2:
            return runGeodesic("Geodesic Mean Curvature", CurvatureFlow::MeanCurvature,
                               iterations, coeff, planes);
        case 4:
            return runGeodesic("Geodesic Beltrami", CurvatureFlow::Beltrami, iterations, coeff,
                               planes);
        case 5:
            return runPlain("Perona/Malik", CurvatureFlow::PeronaMalik, iterations, coeff,
                            planes);
        case 6:
            return runGeodesic("Geodesic Perona/Malik", CurvatureFlow::PeronaMalik, iterations,
                               coeff, planes);
        default:
            return runPlain("Beltrami", CurvatureFlow::Beltrami, iterations, coeff, planes);
    }
}

void runKind(int kind, int method, int iterations, double coeff, RealImage3& planes) {
    if (kind == 1) {
        printText("Separate 3 Color ");
        runMethod(method == kMethodFullColor ? kMethodBeltrami : method, iterations, coeff,
                  planes);
    } else if (kind == 2) {
        printText("Full Color ");
        runCoupled("Beltrami", iterations, coeff, planes);
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
