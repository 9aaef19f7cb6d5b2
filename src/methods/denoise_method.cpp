#include "methods/denoise_method.h"

#include <array>
#include <utility>

#include "methods/diffusion_choices.h"
#include "methods/diffusion_fit.h"
#include "methods/diffusion_run.h"
#include "methods/solver_listing.h"
#include "methods/working_planes.h"
#include "operators/diffusion/fast_denoiser_operator.h"
#include "operators/diffusion/flow_table.h"
#include "operators/diffusion/scheme_table.h"

namespace orv {

namespace {

constexpr std::array<Parameter, 13> kParameters{
    rare(choice("scheme", kSchemeAos, schemeChoices, kSchemeHelp)),
    rare(choice("flow", kFlowVariational, flowChoices, kFlowHelp)),
    rare(numberedChoice("solver", 0, solverChoices, kSolverHelp)),
    rare(integer("solver-iterations", "iterations", 50, 1, 10000, kSolverIterationsHelp,
                 "is more exact and slower")),
    real("tau", "pixels^2", 1.0, 0.0, kLongestTau, kTauHelp, "smooths more in a step"),
    real("sigma", "pixels", 0.5, 0.0, 64.0, kSigmaHelp,
         "smooths coarser noise, and fine edges too"),
    real("contrast", "grey levels", 2.0, 0.01, 1000.0, kContrastHelp,
         "smooths stronger edges too"),
    real("fidelity", "", 0.05, 0.0, 1000.0, "pull back toward the source",
         "keeps more of the source, noise included"),
    rare(choice("norm", 0, gradientNormChoices, kNormHelp)),
    integer("steps", "steps", 4, 0, 1000, kStepsHelp, "smooths more"),
    rare(choice("colours", RgbColours, workingColoursChoices, kColoursHelp)),
    rare(real("chroma", "", 1.0, 0.0, 100.0, kChromaHelp, "smooths colour more")),
    rare(choice("border", StillBorder, workingBorderChoices, kBorderHelp)),
};

constexpr std::array<std::string_view, 3> kNotes{
    "The pull lets long runs end in a balance, where restore ends in a flat picture.",
    "--contrast is in grey levels from 0 to 255, whatever the depth of the picture.",
    "Some solvers break down or spoil pictures, and 2DSemi takes minutes with Thomas: take CG "
    "there. orv solvers tells.",
};

constexpr std::array<std::string_view, 2> kLiterature{
    "Rudin, Osher, Fatemi: Nonlinear total variation based noise removal algorithms, 1992",
    "Nordstrom: Biased anisotropic diffusion, 1990",
};

MethodResult run(Planes planes, const Arguments& arguments, const Progress& progress) {
    // The engine splits the explicit half steps of the denoiser whatever it is told.
    constexpr bool kSubsteps = true;
    const auto makeStep = [&](double contrast) {
        return stepOf(std::make_shared<FastDenoiserOperator>(
            arguments.integer("scheme"), /*iterations=*/1,
            arguments.integer("solver-iterations"), arguments.real("tau"),
            arguments.real("sigma"), contrast, arguments.real("fidelity"),
            arguments.integer("solver"), kSubsteps, arguments.integer("flow"),
            arguments.integer("norm")));
    };
    return runDiffusion(std::move(planes), arguments, kSubsteps, makeStep, progress);
}

void choose(const NoiseToRemove& measured, Arguments& arguments) {
    const NoiseToRemove noise = noiseFor(measured, arguments);
    if (noise.channel <= 0.0 || noise.brightness <= 0.0) {
        chooseNothing(arguments);
        return;
    }
    DiffusionFit fit;
    fit.scheme = kSchemeLod;
    fit.flow = kFlowPeronaMalik;
    fit.steps = 4;
    // Weak noise needs less time than texture bears.
    fit.time = 18.0 * noise.channel / (noise.channel + 4.0);
    fit.sigma = 0.8;
    fit.contrast = 0.15;
    arguments.choose("fidelity", 0.05);
    chooseDiffusion(noise, fit, arguments);
}

}  // namespace

constinit const Method kDenoiseMethod{
    .name = "denoise",
    .summary = "Remove noise by diffusion that is held to the source picture",
    .parameters = kParameters,
    .literature = kLiterature,
    .run = run,
    .choose = choose,
    .notes = kNotes,
    .example = "orv denoise noisy.jpg clean.jpg --fidelity 0.1",
};

}  // namespace orv
