#include "methods/shock_method.h"

#include <array>
#include <utility>

#include "methods/plane_run.h"
#include "operators/shock/shock_operator.h"

namespace orv {

namespace {

constexpr std::array<Choice, 4> kMethods{{
    {"sign", 0, "full speed everywhere; sharpest, and noise grows with it"},
    {"diffusive-sign", 1, "full speed, smoothed along edges"},
    {"arctan", 2, "weak edges move slower, from step to step less so"},
    {"diffusive-arctan", 3, "weak edges move slower, smoothed along edges"},
}};

std::span<const Choice> methodChoices() {
    return kMethods;
}

constexpr std::array<Parameter, 5> kParameters{
    numberedChoice("method", 3, methodChoices, "how the speed follows from the curvature"),
    integer("iterations", "steps", 4, 0, 10000,
            "steps; a blur of 0.8, 1.2 or 2 pixels standard deviation takes 2, 4 or 10",
            "sharpens wider edges, and flattens texture"),
    real("step", "pixels", 0.2, 0.0, 1.0,
         "length of a step; from 0.7 on the diffusive methods flicker",
         "sharpens more in a step"),
    real("diffusion", "weight", kShockDiffusionWeight, 0.0, 1.0,
         "smoothing along edges in the two diffusive methods", "smooths ragged edges more"),
    real("arctan-scale", "per grey level", kShockArctanScale, 0.0, 1000.0,
         "how soon the two arctan methods come to speed as the curvature grows",
         "hardens weak edges more"),
};

constexpr std::array<std::string_view, 2> kNotes{
    "Noise is sharpened as edges are: run restore or susan first.",
    "Many iterations turn texture into flat patches, as in a painting.",
};

constexpr std::array<std::string_view, 3> kLiterature{
    "Osher, Rudin: Feature-oriented image enhancement using shock filters, 1990",
    "Alvarez, Mazorra: Signal and image restoration using shock filters and anisotropic "
    "diffusion, 1994",
    "Gilboa, Sochen, Zeevi: Regularized shock filters and complex diffusion, 2002",
};

MethodResult run(Planes planes, const Arguments& arguments, const Progress& progress) {
    ShockOperator op(arguments.integer("iterations"), arguments.integer("method"),
                     arguments.real("step"), arguments.real("diffusion"),
                     arguments.real("arctan-scale"));
    return runRealOperator(std::move(planes), progress, op);
}

}  // namespace

constinit const Method kShockMethod{
    .name = "shock",
    .summary = "Sharpen soft edges to steps by a shock filter",
    .parameters = kParameters,
    .literature = kLiterature,
    .run = run,
    .notes = kNotes,
    .example = "orv shock soft.jpg sharp.jpg --iterations 2",
};

}  // namespace orv
