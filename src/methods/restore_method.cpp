#include "methods/restore_method.h"

#include <array>
#include <utility>

#include "methods/diffusion_choices.h"
#include "methods/diffusion_run.h"
#include "methods/solver_listing.h"
#include "operators/diffusion/fast_restoration_operator.h"
#include "operators/diffusion/flow_table.h"
#include "operators/diffusion/scheme_table.h"

namespace orv {

namespace {

constexpr std::array<Parameter, 10> kParameters{
    choice("scheme", kSchemeAos, schemeChoices, kSchemeHelp),
    choice("flow", kFlowPeronaMalik, flowChoices, kFlowHelp),
    numberedChoice("solver", 0, solverChoices, kSolverHelp),
    integer("solver-iterations", "iterations", 50, 1, 10000, kSolverIterationsHelp),
    real("tau", "pixels^2", 1.0, 0.0, kLongestTau, kTauHelp),
    real("sigma", "pixels", 0.5, 0.0, 64.0, kSigmaHelp),
    real("contrast", "grey levels", 5.0, 0.01, 1000.0, kContrastHelp),
    choice("norm", 0, gradientNormChoices, kNormHelp),
    flag("substeps", false, "split the explicit half steps of ADI, AMOS and 2DImplicit"),
    integer("steps", "steps", 4, 1, 1000, kStepsHelp),
};

constexpr std::array<std::string_view, 3> kLiterature{
    "Perona, Malik: Scale-space and edge detection using anisotropic diffusion, 1990",
    "Weickert, ter Haar Romeny, Viergever: Efficient and reliable schemes for nonlinear "
    "diffusion filtering, 1998",
    "Weickert: Anisotropic diffusion in image processing, 1998",
};

MethodResult run(Planes planes, const Arguments& arguments, const Progress& progress) {
    const bool substeps = arguments.flag("substeps");
    const auto makeStep = [&] {
        return stepOf(std::make_shared<FastRestorationOperator>(
            arguments.integer("scheme"), /*iterations=*/1,
            arguments.integer("solver-iterations"), arguments.real("tau"),
            arguments.real("sigma"), arguments.real("contrast"), arguments.integer("solver"),
            substeps, arguments.integer("flow"), arguments.integer("norm")));
    };
    return runDiffusion(std::move(planes), arguments, substeps, makeStep, progress);
}

}  // namespace

constinit const Method kRestoreMethod{
    "restore", "Restore a picture by nonlinear diffusion, which smooths noise and keeps edges",
    kParameters, kLiterature, run};

}  // namespace orv
