#include "methods/diffusion_run.h"

#include <cstddef>
#include <utility>

#include "base/rounding.h"
#include "base/text_output.h"
#include "exports/work_window.h"
#include "methods/plane_run.h"
#include "methods/shrinkage_run.h"
#include "methods/working_planes.h"
#include "operators/diffusion/scheme_table.h"

namespace orv {

namespace {

constexpr int kThomas = 0;
constexpr int kConjugateGradients = 7;
/// What the band factors of an unsplit scheme may take, bytes.
constexpr double kMostFactorBytes = 4.0e9;

/// How much of the contrast and of the noise of the first plane a plane has.
double scaleOf(std::size_t plane, const Arguments& arguments) {
    return plane == 0 ? 1.0 : arguments.real("chroma");
}

/// Puts the planes into a frame for as long as they diffuse, where `--border` asks for one.
class BorderFrame {
  public:
    BorderFrame(Planes& planes, const Arguments& arguments)
        : width_(planes[0]->width()),
          height_(planes[0]->height()),
          wide_(arguments.integer("border") == MirroredBorder) {
        for (auto& plane : planes) {
            plane = wide_ ? framed(*plane, 1, 1, 1, 1) : std::move(plane);
        }
    }

    void takeOff(Planes& planes) const {
        for (auto& plane : planes) {
            plane = wide_ ? cropped(*plane, 1, 1, width_, height_) : std::move(plane);
        }
    }

  private:
    int width_;
    int height_;
    bool wide_;
};

/// Whether the planes hold what a next step can start from.
bool sound(const Planes& planes) {
    for (const auto& plane : planes) {
        if (plane == nullptr) {
            return false;
        }
    }
    return !planes.empty() && allFinite(planes);
}

/// One step on all planes at once, whose first plane may steer the others, or on each alone.
Planes oneStep(Planes planes, const Arguments& arguments, bool opponent,
               const StepMaker& makeStep) {
    const double contrast = arguments.real("contrast");
    if (planes.size() == 3 && !opponent) {
        const std::unique_ptr<FloatImage3> colour = floatImage3Of(std::move(planes));
        return planesOf(makeStep(contrast).threePlanes(*colour));
    }
    for (std::size_t c = 0; c < planes.size() && !workCancelled(); ++c) {
        const double scale = scaleOf(c, arguments);
        if (scale > 0.0) {
            const WorkSlice slice(static_cast<int>(c), static_cast<int>(planes.size()));
            planes[c] = makeStep(scale * contrast).onePlane(*planes[c]);
        }
    }
    return planes;
}

/// The planes after all steps; empty when a solver broke down.
Planes diffused(Planes planes, const Arguments& arguments, bool opponent,
                const StepMaker& makeStep) {
    const int steps = arguments.integer("steps");
    const BorderFrame frame(planes, arguments);
    for (int i = 0; i < steps; ++i) {
        const WorkSlice slice(i, steps);
        planes = oneStep(std::move(planes), arguments, opponent, makeStep);
        if (workCancelled() || !sound(planes)) {
            return {};
        }
    }
    frame.takeOff(planes);
    return planes;
}

Planes shrunkPlanes(const Planes& planes, const Arguments& arguments, bool opponent) {
    Planes shrunk;
    for (std::size_t c = 0; c < planes.size(); ++c) {
        const WorkSlice slice(static_cast<int>(c), static_cast<int>(planes.size()));
        Shrinkage shrinkage;
        shrinkage.shifts = arguments.integer("shifts");
        shrinkage.noise = arguments.real("noise");
        if (shrinkage.noise > 0.0 && opponent) {
            shrinkage.noise *= scaleOf(c, arguments);
        }
        shrunk.push_back(shrunkPlane(*planes[c], shrinkage));
    }
    return shrunk;
}

/// to = (1 - share) to + share other
void mixIn(Planes& to, const Planes& other, double share) {
    const float kept = toFloat(1.0 - share);
    const float taken = toFloat(share);
    for (std::size_t c = 0; c < to.size(); ++c) {
        float* const samples = to[c]->data();
        const float* const others = other[c]->data();
        for (std::size_t i = 0; i < to[c]->sampleCount(); ++i) {
            samples[i] = kept * samples[i] + taken * others[i];
        }
    }
}

/// The share of shrinkage in the result that these planes can have.
double shareOf(const Planes& planes, const Arguments& arguments) {
    const bool fits = shrinkageFits(Shrinkage(), planes[0]->width(), planes[0]->height());
    return fits ? arguments.real("shrinkage") : 0.0;
}

/// Diffusion and shrinkage of the source, mixed; empty when a solver broke down.
Planes restored(Planes planes, const Arguments& arguments, const StepMaker& makeStep) {
    const bool opponent = planes.size() == 3 && arguments.integer("colours") == OpponentColours;
    if (opponent) {
        turnToOpponent(planes);
    }
    const double share = shareOf(planes, arguments);
    const int parts = share > 0.0 && share < 1.0 ? 2 : 1;
    Planes shrunk;
    if (share > 0.0) {
        const WorkSlice slice(0, parts);
        shrunk = shrunkPlanes(planes, arguments, opponent);
    }
    if (share < 1.0) {
        const WorkSlice slice(parts - 1, parts);
        planes = diffused(std::move(planes), arguments, opponent, makeStep);
    }
    if (workCancelled() || planes.empty()) {
        return {};
    }
    if (share > 0.0) {
        mixIn(planes, shrunk, share);
    }
    if (opponent) {
        turnToRgb(planes);
    }
    return planes;
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
                          const StepMaker& makeStep, const Progress& progress) {
    std::string refusal = planesRefusal(planes, "the picture");
    if (refusal.empty()) {
        refusal =
            diffusionRefusal(arguments, substeps, planes[0]->width(), planes[0]->height());
    }
    if (!refusal.empty()) {
        return failure(std::move(refusal));
    }

    MethodResult result;
    // Turning to other planes and back would move the last bits.
    const bool nothing = arguments.integer("steps") == 0 && shareOf(planes, arguments) == 0.0;
    if (nothing) {
        result.planes = std::move(planes);
        result.cancelled = progress && !progress(1.0);
    } else {
        StepObserver observer(progress, /*steps=*/1);
        const SilencedOutput silence;
        const HostProgressPause pause;
        const WorkObserverScope scope(&observer);
        result.planes = restored(std::move(planes), arguments, makeStep);
        result.cancelled = workCancelled();
    }
    if (result.cancelled) {
        result.planes.clear();
        return result;
    }
    if (!sound(result.planes)) {
        return failure(breakdownText(arguments));
    }
    for (const auto& plane : result.planes) {
        plane->clamp(0.0f, 255.0f);
    }
    return result;
}

}  // namespace orv
