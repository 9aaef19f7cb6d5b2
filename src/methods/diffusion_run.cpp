#include "methods/diffusion_run.h"

#include <utility>

#include "base/text_output.h"
#include "exports/work_window.h"
#include "methods/plane_run.h"
#include "operators/diffusion/scheme_table.h"

namespace orv {

namespace {

constexpr int kThomas = 0;
constexpr int kConjugateGradients = 7;
/// What the band factors of an unsplit scheme may take, bytes.
constexpr double kMostFactorBytes = 4.0e9;

Planes oneStep(Planes planes, const DiffusionStep& step) {
    if (planes.size() == 1) {
        planes[0] = step.onePlane(*planes[0]);
        return planes;
    }
    const std::unique_ptr<FloatImage3> colour = floatImage3Of(std::move(planes));
    return planesOf(step.threePlanes(*colour));
}

/// What to do when a solver broke down.
std::string breakdownText(const Arguments& arguments) {
    const int solver = arguments.integer("solver");
    std::string advice = "take Thomas or CG";
    if (solver == kThomas || solver == kConjugateGradients) {
        advice = "take a smaller tau";
    } else if (isUnsplitScheme(arguments.integer("scheme"))) {
        advice = "take CG, or fewer --solver-iterations (now " +
                 std::to_string(arguments.integer("solver-iterations")) + ")";
    }
    return "the solver " + std::string(arguments.choiceName("solver")) +
           " broke down on the scheme " + std::string(arguments.choiceName("scheme")) +
           " (samples that are no numbers); " + advice;
}

}  // namespace

std::string diffusionRefusal(const Arguments& arguments, bool substeps, int width, int height) {
    const int scheme = arguments.integer("scheme");
    const int solver = arguments.integer("solver");
    const std::string schemeName(arguments.choiceName("scheme"));
    const std::string solverName(arguments.choiceName("solver"));

    if (!solverFitsScheme(solver, scheme)) {
        return "the solver " + solverName + " can't work on the lines of the scheme " +
               schemeName + "; it takes 2DSemi or 2DImplicit";
    }
    if (!schemeFitsSize(scheme, width, height)) {
        return "the scheme " + schemeName + " needs at least 2 x 2 pixels, this picture has " +
               std::to_string(width) + " x " + std::to_string(height);
    }
    if (!subStepsFit(scheme, arguments.real("tau"), substeps)) {
        return "tau " + numberText(arguments.real("tau")) +
               " asks for more explicit sub-steps than can be counted";
    }
    const double factorBytes = 4.0 * width * height * (2.0 * width + 1.0);
    if (isUnsplitScheme(scheme) && solver == kThomas && factorBytes > kMostFactorBytes) {
        return "the factors of Thomas on " + std::to_string(width) + " x " +
               std::to_string(height) + " pixels at once would take " +
               std::to_string(static_cast<long>(factorBytes / 1e9)) +
               " GB; take an iterative solver such as CG, or a split scheme such as AOS";
    }
    return {};
}

MethodResult runDiffusion(Planes planes, const Arguments& arguments, bool substeps,
                          const std::function<DiffusionStep()>& makeStep,
                          const Progress& progress) {
    std::string refusal = planesRefusal(planes, "the picture");
    if (refusal.empty()) {
        refusal =
            diffusionRefusal(arguments, substeps, planes[0]->width(), planes[0]->height());
    }
    if (!refusal.empty()) {
        return failure(std::move(refusal));
    }

    const int steps = arguments.integer("steps");
    StepObserver observer(progress, steps);
    const SilencedOutput silence;
    const HostProgressPause pause;
    for (int i = 0; i < steps; ++i) {
        {
            const WorkObserverScope scope(&observer);
            planes = oneStep(std::move(planes), makeStep());
            if (workCancelled()) {
                MethodResult stopped;
                stopped.cancelled = true;
                return stopped;
            }
        }
        if (planes.empty() || planes[0] == nullptr || !allFinite(planes)) {
            return failure(breakdownText(arguments));
        }
        observer.nextStep();
    }

    for (const auto& plane : planes) {
        plane->clamp(0.0f, 255.0f);
    }
    MethodResult result;
    result.planes = std::move(planes);
    return result;
}

}  // namespace orv
