#include "methods/restore_method.h"

#include <array>
#include <utility>

#include "methods/diffusion_choices.h"
#include "methods/diffusion_fit.h"
#include "methods/diffusion_run.h"
#include "methods/shrinkage_run.h"
#include "methods/solver_listing.h"
#include "methods/working_planes.h"
#include "operators/diffusion/fast_restoration_operator.h"
#include "operators/diffusion/flow_table.h"
#include "operators/diffusion/scheme_table.h"

namespace orv {

namespace {

constexpr std::array<Parameter, 16> kParameters{
    rare(choice("scheme", kSchemeAos, schemeChoices, kSchemeHelp)),
    rare(choice("flow", kFlowPeronaMalik, flowChoices, kFlowHelp)),
    rare(numberedChoice("solver", 0, solverChoices, kSolverHelp)),
    rare(integer("solver-iterations", "iterations", 50, 1, 10000, kSolverIterationsHelp,
                 "is more exact and slower")),
    real("tau", "pixels^2", 1.0, 0.0, kLongestTau, kTauHelp, "smooths more in a step"),
    real("sigma", "pixels", 0.5, 0.0, 64.0, kSigmaHelp,
         "smooths coarser noise, and fine edges too"),
    real("contrast", "grey levels", 5.0, 0.01, 1000.0, kContrastHelp,
         "smooths stronger edges too"),
    rare(choice("norm", 0, gradientNormChoices, kNormHelp)),
    rare(flag("substeps", false, "split the explicit half steps of ADI, AMOS and 2DImplicit")),
    integer("steps", "steps", 4, 0, 1000, kStepsHelp, "smooths more"),
    rare(choice("colours", RgbColours, workingColoursChoices, kColoursHelp)),
    rare(real("chroma", "", 1.0, 0.0, 100.0, kChromaHelp, "smooths colour more")),
    rare(choice("border", StillBorder, workingBorderChoices, kBorderHelp)),
    rare(real("shrinkage", "", 0.0, 0.0, 1.0,
              "share of wavelet shrinkage in the result; 0 is diffusion alone",
              "takes less from diffusion")),
    rare(real("noise", "grey levels", -1.0, -1.0, 255.0, kNoiseHelp,
              "removes more by shrinkage")),
    rare(integer("shifts", "shifts", 4, 1, kMostShifts, kShiftsHelp,
                 "leaves fewer ripples and takes longer")),
};

constexpr std::array<std::string_view, 5> kNotes{
    "Without options the noise is measured and the rest chosen by it; the command that it "
    "amounts to is printed.",
    "--strength alone does for most pictures: 10 for slight noise, 60 for strong.",
    "--contrast and --noise are grey levels from 0 to 255, whatever the depth of the picture.",
    "Noise in grains of several pixels looks like edges: raise --sigma, or --max-side first.",
    "Some solvers break down or spoil pictures, and 2DSemi takes minutes with Thomas: take CG "
    "there. orv solvers tells.",
};

constexpr std::array<std::string_view, 3> kLiterature{
    "Perona, Malik: Scale-space and edge detection using anisotropic diffusion, 1990",
    "Weickert, ter Haar Romeny, Viergever: Efficient and reliable schemes for nonlinear "
    "diffusion filtering, 1998",
    "Weickert: Anisotropic diffusion in image processing, 1998",
};

MethodResult run(Planes planes, const Arguments& arguments, const Progress& progress) {
    const bool substeps = arguments.flag("substeps");
    const auto makeStep = [&](double contrast) {
        return stepOf(std::make_shared<FastRestorationOperator>(
            arguments.integer("scheme"), /*iterations=*/1,
            arguments.integer("solver-iterations"), arguments.real("tau"),
            arguments.real("sigma"), contrast, arguments.integer("solver"), substeps,
            arguments.integer("flow"), arguments.integer("norm")));
    };
    return runDiffusion(std::move(planes), arguments, substeps, makeStep, progress);
}

void choose(const NoiseToRemove& measured, Arguments& arguments) {
    const NoiseToRemove noise = noiseFor(measured, arguments);
    if (noise.channel <= 0.0 || noise.brightness <= 0.0) {
        chooseNothing(arguments);
        return;
    }
    arguments.choose("shrinkage", 0.6);
    DiffusionFit fit;
    fit.scheme = kSchemeLod;
    fit.flow = kFlowPeronaMalik;
    fit.steps = 6;
    fit.time = 12.0;
    fit.sigma = 0.8;
    fit.contrast = 0.15;
    chooseDiffusion(noise, fit, arguments);
    arguments.choose("noise", workingDeviation(noise, arguments));
    arguments.choose("shifts", 4);
}

}  // namespace

constinit const Method kRestoreMethod{
    .name = "restore",
    .summary = "Take noise out of a picture and keep its edges, by diffusion and wavelets",
    .parameters = kParameters,
    .literature = kLiterature,
    .run = run,
    .choose = choose,
    .automatic = true,
    .notes = kNotes,
    .example = "orv restore noisy.jpg clean.jpg --strength 30",
};

}  // namespace orv
