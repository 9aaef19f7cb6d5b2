#include "methods/curvature_method.h"

#include <array>
#include <utility>

#include "exports/work_window.h"
#include "images/curvature_flow.h"
#include "methods/plane_run.h"

namespace orv {

namespace {

// The engine's method numbers.
constexpr int kFullColor = 0;
constexpr int kMean = 1;
constexpr int kGeodesicMean = 2;
constexpr int kBeltrami = 3;
constexpr int kGeodesicBeltrami = 4;
constexpr int kPeronaMalik = 5;
constexpr int kGeodesicPeronaMalik = 6;

constexpr std::array<Choice, 7> kFlows{{
    {"mean-curvature", kMean, "level lines shrink by their curvature; 5 to 20 steps"},
    {"perona-malik", kPeronaMalik, "held back at edges; takes some 100 steps"},
    {"beltrami", kBeltrami, "held back most at edges; takes some 1000 steps"},
    {"geodesic-mean-curvature", kGeodesicMean, "mean-curvature with a pull toward edges"},
    {"geodesic-perona-malik", kGeodesicPeronaMalik, "perona-malik with a pull toward edges"},
    {"geodesic-beltrami", kGeodesicBeltrami, "beltrami with a pull toward edges"},
    {"full-color-beltrami", kFullColor, "beltrami with coupled colour channels; no grey"},
}};

std::span<const Choice> flowChoices() {
    return kFlows;
}

constexpr std::array<Parameter, 4> kParameters{
    choice("flow", kMean, flowChoices, "how a sample moves with the curvature around it"),
    real("coeff", "", 0.2, 0.0, 10.0,
         "length of a step; above 0.25 flat regions break into a checkerboard",
         "smooths more in a step"),
    real("pull", "", 0.2, 0.0, 100.0,
         "weight of the pull toward edges in parts of coeff; geodesic flows", "pulls harder"),
    integer("steps", "steps", 10, 1, 10000, "effective steps, each from the one before",
            "smooths more"),
};

constexpr std::array<std::string_view, 2> kNotes{
    "mean-curvature takes 10 steps where perona-malik takes 100 and beltrami 1000.",
    "The outermost pixel, or two with the geodesic and coupled flows, stays as it is.",
};

constexpr std::array<std::string_view, 3> kLiterature{
    "El-Fallah, Ford: The evolution of mean curvature in image filtering, 1994",
    "Caselles, Kimmel, Sapiro: Geodesic active contours, 1997",
    "Sochen, Kimmel, Malladi: A general framework for low level vision, 1998",
};

CurvatureFlow flowOf(int method) {
    switch (method) {
        case kMean:
        case kGeodesicMean:
            return CurvatureFlow::MeanCurvature;
        case kPeronaMalik:
        case kGeodesicPeronaMalik:
            return CurvatureFlow::PeronaMalik;
        default:
            return CurvatureFlow::Beltrami;
    }
}

bool isGeodesic(int method) {
    return method == kGeodesicMean || method == kGeodesicBeltrami ||
           method == kGeodesicPeronaMalik;
}

/// Calls step() `steps` times as part `index` of `count` of the work.
template <class Step>
void repeat(int steps, int index, int count, Step step) {
    for (int i = 0; i < steps && !workCancelled(); ++i) {
        step();
        reportWork(index * steps + i + 1, count * steps);
    }
}

Planes runCoupled(Planes planes, double coeff, int steps) {
    std::unique_ptr<RealImage3> colour = realImage3Of(std::move(planes));
    repeat(steps, 0, 1, [&] { fullColorBeltramiStep(coeff, *colour); });
    return planesOf(std::move(colour));
}

Planes runEach(Planes planes, const Arguments& arguments) {
    const int method = arguments.integer("flow");
    const double coeff = arguments.real("coeff");
    const double cgrad = arguments.real("pull") * coeff;
    const int count = static_cast<int>(planes.size());
    for (int k = 0; k < count; ++k) {
        auto& plane = planes[static_cast<std::size_t>(k)];
        const std::unique_ptr<RealImage> work = realImageOf(*plane);
        repeat(arguments.integer("steps"), k, count, [&] {
            if (isGeodesic(method)) {
                geodesicCurvatureStep(flowOf(method), coeff, cgrad, *work);
            } else {
                curvatureStep(flowOf(method), coeff, *work);
            }
        });
        plane = floatImageOf(*work);
    }
    return planes;
}

MethodResult run(Planes planes, const Arguments& arguments, const Progress& progress) {
    const bool coupled = arguments.integer("flow") == kFullColor;
    if (coupled && planes.size() == 1) {
        return failure(
            "--flow full-color-beltrami couples three channels and the picture is grey: take "
            "beltrami");
    }
    return runPlaneWork(std::move(planes), progress, [&](Planes source) {
        return coupled ? runCoupled(std::move(source), arguments.real("coeff"),
                                    arguments.integer("steps"))
                       : runEach(std::move(source), arguments);
    });
}

}  // namespace

constinit const Method kCurvatureMethod{
    .name = "curvature",
    .summary = "Smooth a picture by the curvature of its level lines, which rounds noise off",
    .parameters = kParameters,
    .literature = kLiterature,
    .run = run,
    .notes = kNotes,
    .example = "orv curvature noisy.jpg smooth.jpg --steps 5",
};

}  // namespace orv
